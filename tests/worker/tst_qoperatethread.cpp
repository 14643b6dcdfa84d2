#include <QSignalSpy>
#include <QTranslator>
#include <QtTest>

#include <cstring>

#include <KxCameraControl/kxerrors.h>

#include "messagelog.h"
#include "scriptedsdk.h"
#include "workerundertest.h"

namespace {

const char *const kWrongThread = "wrong thread";

/// Makes every translated text tell its context.
class ContextTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return QString::fromLatin1(context) + QLatin1Char('|') + QString::fromLatin1(sourceText);
    }
};

} // namespace

class tst_QOperateThread : public QObject
{
    Q_OBJECT

private slots:
    void init() { ScriptedSdk::Reset(); }
    void Constructor_Default_HasDocumentedValues();
    void MetaObject_Signals_HaveDocumentedOrderTypesAndNames();
    void SetImportThreadInfo_Record_IsCopiedWhole();
    void SetExportThreadInfo_Record_IsCopiedWhole();
    void SetThreadInfo_CopyChanged_SourceStays();
    void run_WithoutSetter_ImportsWithoutDeviceAndPath();
    void run_TypeOutOfRange_OnlyBegins_data();
    void run_TypeOutOfRange_OnlyBegins();
    void OpenDevice_Results_DecideTheAnswer_data();
    void OpenDevice_Results_DecideTheAnswer();
    void ReleaseThread_WithoutHandle_OnlyEnds();
    void ReleaseThread_CloseAndDestroyFail_HandleIsNulledAllTheSame();
    void ExitThread_Twice_SendsTwice();
    void Destructor_OpenHandle_IsNotClosed();
    void run_Messages_AreTranslatedInTheWorkersContext();
    void start_RealThread_SignalsArriveInOrderInTheMakersThread();
    void start_TwoCameras_RunAtOnce();
    void start_SameObjectForAnotherBatch_RunsAgain();
};

void tst_QOperateThread::Constructor_Default_HasDocumentedValues()
{
    const WorkerUnderTest worker;
    QCOMPARE(worker.m_bRunning, true);
    QCOMPARE(worker.m_nThreadType, 2U);
    QCOMPARE(worker.m_stDeviceInfo.nDeviceID, -1);
    QCOMPARE(worker.m_stDeviceInfo.nDeviceType, 1U);
    QCOMPARE(worker.m_stDeviceInfo.nAccessStatus, 0U);
    const KX_CC_DEVICE_INFO stZero = {};
    QCOMPARE(std::memcmp(&worker.m_stDeviceInfo.stDevInfo, &stZero, sizeof stZero), 0);
    QVERIFY(worker.m_strFilePath.isEmpty());
    QVERIFY(!worker.m_hDevice);
    QVERIFY(worker.m_mapDomElement.isEmpty() && worker.m_mapFeatureInvalidator.isEmpty() &&
            worker.m_mapFeatureXml.isEmpty() && worker.m_domDocument.isNull());
}

void tst_QOperateThread::MetaObject_Signals_HaveDocumentedOrderTypesAndNames()
{
    const QMetaObject &meta = QOperateThread::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QCOMPARE(method.methodType(), QMetaMethod::Signal);
        methods.append(
            QString::fromLatin1(method.methodSignature() + ' ' + method.parameterNames().join(',')));
    }
    QCOMPARE(methods, QStringList({"SigBeginThread(long,uint) nDeviceID,nThreadType",
                                   "SigEndThread(long,uint,QString) nDeviceID,nThreadType,strFilePath",
                                   "SigThreadInfo(long,QString,bool) nDeviceID,strMsg,bFailed"}));
    QCOMPARE(meta.className(), "QOperateThread");
    QCOMPARE(meta.superClass(), &QThread::staticMetaObject);
}

void tst_QOperateThread::SetImportThreadInfo_Record_IsCopiedWhole()
{
    _STRUCT_DEVICE_INFO_ info = CameraRecord(KX_CC_TRANSPORT_USB, "M", "S", 42);
    info.nAccessStatus = 3;
    info.stNetWorkInfo.strNetText2 = "net";
    info.stUsbControllerInfo.strUsbText5 = "usb";
    info.bReserveFlag = true;
    info.nReserveValue2 = 9;
    WorkerUnderTest worker;
    worker.m_nThreadType = 1;

    worker.SetImportThreadInfo(info, "/f.kfb");

    QCOMPARE(worker.m_nThreadType, 2U);
    QCOMPARE(worker.m_strFilePath, QString("/f.kfb"));
    const _STRUCT_DEVICE_INFO_ &copy = worker.m_stDeviceInfo;
    QCOMPARE(std::memcmp(&copy, &info, offsetof(_STRUCT_DEVICE_INFO_, stNetWorkInfo)), 0);
    QCOMPARE(copy.stNetWorkInfo.strNetText2, QString("net"));
    QCOMPARE(copy.stNetWorkInfo.nNetValue1, 1000);
    QCOMPARE(copy.stUsbControllerInfo.strUsbText5, QString("usb"));
    QVERIFY(copy.bReserveFlag);
    QCOMPARE(copy.nReserveValue2, 9);
}

void tst_QOperateThread::SetExportThreadInfo_Record_IsCopiedWhole()
{
    WorkerUnderTest worker;
    worker.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_PORT, "M", "S", 5), "/d");
    QCOMPARE(worker.m_nThreadType, 3U);
    QCOMPARE(worker.m_strFilePath, QString("/d"));
    QCOMPARE(worker.m_stDeviceInfo.nDeviceID, 5);
    QCOMPARE(worker.m_stDeviceInfo.stDevInfo.SpecialInfo.stPortInfo.chModelName[0], uchar('M'));
}

void tst_QOperateThread::SetThreadInfo_CopyChanged_SourceStays()
{
    _STRUCT_DEVICE_INFO_ info;
    info.stNetWorkInfo.strNetText1 = "source";
    WorkerUnderTest worker;
    worker.SetExportThreadInfo(info, "/d");
    worker.m_stDeviceInfo.stNetWorkInfo.strNetText1 = "copy";
    QCOMPARE(info.stNetWorkInfo.strNetText1, QString("source"));
}

void tst_QOperateThread::run_WithoutSetter_ImportsWithoutDeviceAndPath()
{
    WorkerUnderTest worker;
    MessageLog log;
    worker.run();
    QCOMPARE(
        worker.Events(),
        QStringList({"begin -1 2", "failed -1 Failed to import features.Failed to open xml.", "end -1 2 "}));
}

void tst_QOperateThread::run_TypeOutOfRange_OnlyBegins_data()
{
    QTest::addColumn<unsigned int>("type");
    QTest::newRow("4") << 4U;
    QTest::newRow("largest") << 0xFFFFFFFFU;
}

void tst_QOperateThread::run_TypeOutOfRange_OnlyBegins()
{
    QFETCH(unsigned int, type);
    WorkerUnderTest worker;
    worker.m_nThreadType = type;
    worker.run();
    QCOMPARE(worker.Events(), QStringList({QStringLiteral("begin -1 %1").arg(type)}));
    QCOMPARE(ScriptedSdk::Calls(), QStringList());
    QVERIFY(worker.m_bRunning);
}

void tst_QOperateThread::OpenDevice_Results_DecideTheAnswer_data()
{
    QTest::addColumn<int>("create");
    QTest::addColumn<int>("open");
    QTest::addColumn<QStringList>("calls");
    const QStringList both({"KX_CC_CreateHandle()", "KX_CC_OpenDevice(1, 0)"});
    QTest::newRow("both succeed") << 0 << 0 << both;
    QTest::newRow("create fails") << KX_CC_E_RESOURCE << 0 << QStringList({"KX_CC_CreateHandle()"});
    QTest::newRow("open fails") << 0 << KX_CC_E_ACCESS_DENIED << both;
    QTest::newRow("open fails with a negative code") << 0 << -1 << both;
}

void tst_QOperateThread::OpenDevice_Results_DecideTheAnswer()
{
    QFETCH(int, create);
    QFETCH(int, open);
    QFETCH(QStringList, calls);
    ScriptedSdk::Refuse("KX_CC_CreateHandle", create);
    ScriptedSdk::Refuse("KX_CC_OpenDevice", open);
    WorkerUnderTest worker;
    worker.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_USB, "Model", "S"), "/d");

    QCOMPARE(worker.OpenDevice(), create == 0 && open == 0);

    QCOMPARE(ScriptedSdk::Calls(), calls);
    const KX_CC_DEVICE_INFO stGiven = ScriptedSdk::LastDeviceInfo();
    QCOMPARE(std::memcmp(&stGiven, &worker.m_stDeviceInfo.stDevInfo, sizeof stGiven), 0);
}

void tst_QOperateThread::ReleaseThread_WithoutHandle_OnlyEnds()
{
    WorkerUnderTest worker;
    worker.ReleaseThread();
    QCOMPARE(worker.Events(), QStringList({"end -1 2 "}));
    QCOMPARE(ScriptedSdk::Calls(), QStringList());
    QVERIFY(!worker.m_bRunning);
}

void tst_QOperateThread::ReleaseThread_CloseAndDestroyFail_HandleIsNulledAllTheSame()
{
    ScriptedSdk::Refuse("KX_CC_CloseDevice", KX_CC_E_LOST);
    ScriptedSdk::Refuse("KX_CC_DestroyHandle", KX_CC_E_HANDLE);
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());
    worker.ReleaseThread();
    QCOMPARE(ScriptedSdk::Calls().mid(2), QStringList({"KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"}));
    QVERIFY(!worker.m_hDevice);
    QCOMPARE(worker.Events(), QStringList({"end -1 2 "}));
}

void tst_QOperateThread::ExitThread_Twice_SendsTwice()
{
    WorkerUnderTest worker;
    worker.ExitThread();
    worker.ExitThread();
    QCOMPARE(worker.Events(), QStringList({"end -1 2 ", "end -1 2 "}));
}

void tst_QOperateThread::Destructor_OpenHandle_IsNotClosed()
{
    {
        WorkerUnderTest worker;
        QVERIFY(worker.OpenDevice());
    }
    QCOMPARE(ScriptedSdk::LivingHandles(), 1);
    QCOMPARE(ScriptedSdk::Calls().size(), 2);
}

void tst_QOperateThread::run_Messages_AreTranslatedInTheWorkersContext()
{
    ContextTranslator translator;
    QCoreApplication::installTranslator(&translator);
    ScriptedSdk::Refuse("KX_CC_OpenDevice", KX_CC_E_TIMEOUT);
    WorkerUnderTest worker;
    MessageLog log;
    worker.run();
    QCoreApplication::removeTranslator(&translator);

    QCOMPARE(worker.Events().at(1),
             QString("failed -1 QOperateThread|Failed to import features.Failed to open device."));
    QCOMPARE(log.Entries(), QStringList({MessageLog::WorkerEntry("FeatureXmlImport",
                                                                 "OpenDevice failed.")})); // never translated
}

void tst_QOperateThread::start_RealThread_SignalsArriveInOrderInTheMakersThread()
{
    ScriptedSdk::Refuse("KX_CC_OpenDevice", KX_CC_E_TIMEOUT);
    QOperateThread worker;
    worker.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"), "/d");
    QStringList events;
    QObject context;
    const auto note = [&events](const QString &strEvent) {
        events.append(QThread::currentThread() == QCoreApplication::instance()->thread() ? strEvent
                                                                                         : kWrongThread);
    };
    connect(&worker, &QOperateThread::SigBeginThread, &context, [&note] { note("begin"); });
    connect(&worker, &QOperateThread::SigThreadInfo, &context, [&note] { note("failed"); });
    connect(&worker, &QOperateThread::SigEndThread, &context, [&note] { note("end"); });

    worker.start();

    QTRY_COMPARE_WITH_TIMEOUT(events, QStringList({"begin", "failed", "end"}), 10000);
    QVERIFY(worker.wait(10000));
}

void tst_QOperateThread::start_TwoCameras_RunAtOnce()
{
    ScriptedSdk::HoldOpens();
    WorkerUnderTest first;
    WorkerUnderTest second;
    const QTemporaryDir directory;
    first.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "1", 1), directory.path());
    second.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "2", 2), directory.path());
    ScriptedSdk::SetDescription("<R/>");

    first.start();
    second.start();

    QTRY_COMPARE_WITH_TIMEOUT(ScriptedSdk::Calls().count("KX_CC_OpenDevice(1, 0)"), 2, 10000);
    ScriptedSdk::ReleaseOpens();
    QVERIFY(first.wait(10000) && second.wait(10000));
    QCOMPARE(first.Events(), QStringList({"begin 1 3", "end 1 3 " + directory.path()}));
    QCOMPARE(second.Events(), QStringList({"begin 2 3", "end 2 3 " + directory.path()}));
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files), QStringList({"M_1.kfb", "M_2.kfb"}));
    QCOMPARE(ScriptedSdk::LivingHandles(), 0);
}

void tst_QOperateThread::start_SameObjectForAnotherBatch_RunsAgain()
{
    const QTemporaryDir directory;
    ScriptedSdk::SetDescription("<R/>");
    WorkerUnderTest worker;
    worker.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"), directory.path());
    worker.start();
    QVERIFY(worker.wait(10000));
    QVERIFY(!worker.m_bRunning);

    worker.SetImportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S", 8),
                               directory.filePath("M_S.kfb"));
    QVERIFY(!worker.m_bRunning); // only the constructor sets it
    worker.start();
    QVERIFY(worker.wait(10000));

    QCOMPARE(worker.Events(), QStringList({"begin 7 3", "end 7 3 " + directory.path(), "begin 8 2",
                                           "end 8 2 " + directory.filePath("M_S.kfb")}));
    QCOMPARE(ScriptedSdk::LivingHandles(), 0);
    QVERIFY(!worker.m_hDevice);
}

QTEST_GUILESS_MAIN(tst_QOperateThread)
#include "tst_qoperatethread.moc"
