#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

#include <KxCameraControl/kxerrors.h>

#include "messagelog.h"
#include "scriptedsdk.h"
#include "workerundertest.h"

class tst_FeatureXmlImport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_directory.isValid()); }
    void init() { ScriptedSdk::Reset(); }
    void Run_File_SetsInFourPassesAndSaysNothing();
    void Run_SetCallsFail_GoesOnAndSaysNothing();
    void Run_Value_IsConverted_data();
    void Run_Value_IsConverted();
    void Run_RecordThatIsNotApplied_IsSkipped_data();
    void Run_RecordThatIsNotApplied_IsSkipped();
    void Run_NameOutsideLatin1_GoesWithSubstitutes();
    void Run_OnlyTheModelName_EndsWithoutMessage();
    void Run_RootWithoutElements_EndsWithoutMessage();
    void Run_FileWithoutModelLine_FirstRecordIsTakenAsTheModel();
    void Run_RootAndRecordsOfAnyTag_AreTaken();
    void Run_Model_IsCompared_data();
    void Run_Model_IsCompared();
    void Run_FullModelField_Matches();
    void Run_Failure_IsReportedAndEnds_data();
    void Run_Failure_IsReportedAndEnds();
    void Run_FailedCreateLeftAHandle_IsClosed();
    void Run_DeviceAndFileMissing_ReportsTheDevice();
    void Run_RecordNotStreamable_NeverEnds_data();
    void Run_RecordNotStreamable_NeverEnds();

private:
    QString File(const QByteArray &text) const;
    void Import(WorkerUnderTest *pWorker, const QByteArray &text,
                quint32 nDeviceType = KX_CC_TRANSPORT_GIGE) const;
    static QByteArray Record(const char *szName, const char *szType, const char *szValue)
    {
        return QByteArray("<Feature><Name>") + szName + "</Name><Type>" + szType + "</Type><Value>" +
               szValue + "</Value><Streamable>Yes</Streamable></Feature>";
    }
    static QByteArray Features(const QByteArray &records)
    {
        return "<Features><DeviceModelName>M</DeviceModelName>" + records + "</Features>";
    }

    QTemporaryDir m_directory;
};

QString tst_FeatureXmlImport::File(const QByteArray &text) const
{
    QFile file(m_directory.filePath("import.kfb"));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? file.fileName() : QString();
}

void tst_FeatureXmlImport::Import(WorkerUnderTest *pWorker, const QByteArray &text, quint32 nDeviceType) const
{
    pWorker->SetImportThreadInfo(CameraRecord(nDeviceType, "M", "S"), File(text));
    pWorker->run();
}

void tst_FeatureXmlImport::Run_File_SetsInFourPassesAndSaysNothing()
{
    WorkerUnderTest worker;
    MessageLog log;
    Import(&worker, Features(Record("F", "Float", "0.5") + Record("E1", "Enumeration", "3") +
                             Record("B1", "Boolean", "1") + Record("I", "Integer", "7") +
                             Record("E2", "Enumeration", "4") + Record("R", "IntReg", "9") +
                             Record("B2", "Boolean", "0")));
    QCOMPARE(
        ScriptedSdk::Calls(),
        QStringList({"KX_CC_CreateHandle()", "KX_CC_OpenDevice(1, 0)", "KX_CC_SetBoolValue(B1, true)",
                     "KX_CC_SetBoolValue(B2, false)", "KX_CC_SetEnumValue(E1, 3)",
                     "KX_CC_SetEnumValue(E2, 4)", "KX_CC_SetFloatValue(F, 0.5)", "KX_CC_SetIntValue(I, 7)",
                     "KX_CC_SetIntValue(R, 9)", "KX_CC_SetFloatValue(F, 0.5)", "KX_CC_SetIntValue(I, 7)",
                     "KX_CC_SetIntValue(R, 9)", "KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"}));
    QCOMPARE(worker.Events(), QStringList({"begin 7 2", "end 7 2 " + worker.m_strFilePath}));
    QCOMPARE(log.Entries(), QStringList());
    QVERIFY(!worker.m_hDevice);
}

void tst_FeatureXmlImport::Run_SetCallsFail_GoesOnAndSaysNothing()
{
    for (const char *szCall : {"Bool", "Enum", "Int", "Float"})
        ScriptedSdk::Refuse(QStringLiteral("KX_CC_Set%1Value").arg(szCall), KX_CC_E_FEATURE_ACCESS);
    WorkerUnderTest worker;
    MessageLog log;
    Import(&worker, Features(Record("B", "Boolean", "1") + Record("E", "Enumeration", "3") +
                             Record("I", "Integer", "7") + Record("F", "Float", "1")));
    QCOMPARE(ScriptedSdk::FeatureCalls().size(), 6);
    QCOMPARE(worker.Events(), QStringList({"begin 7 2", "end 7 2 " + worker.m_strFilePath}));
    QCOMPARE(log.Entries(), QStringList());
}

void tst_FeatureXmlImport::Run_Value_IsConverted_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("call");
    const auto row = [](const char *szType, const char *szValue, const char *szCall) {
        QTest::addRow("%s '%s'", szType, szValue)
            << QByteArray(szType) << QByteArray(szValue) << QString::fromLatin1(szCall);
    };
    row("Boolean", "1", "KX_CC_SetBoolValue(N, true)");
    row("Boolean", "2", "KX_CC_SetBoolValue(N, true)");
    row("Boolean", "0", "KX_CC_SetBoolValue(N, false)");
    row("Boolean", "-1", "KX_CC_SetBoolValue(N, false)");
    row("Boolean", "true", "KX_CC_SetBoolValue(N, false)");
    row("Boolean", "2147483648", "KX_CC_SetBoolValue(N, false)"); // no signed integer
    row("Integer", "4294967295", "KX_CC_SetIntValue(N, 4294967295)");
    row("Integer", "4294967296", "KX_CC_SetIntValue(N, 0)");
    row("Integer", "-5", "KX_CC_SetIntValue(N, 0)");
    row("Integer", "-1", "KX_CC_SetIntValue(N, 0)");
    row("Integer", "0x10", "KX_CC_SetIntValue(N, 0)");
    row("Integer", "1.5", "KX_CC_SetIntValue(N, 0)");
    row("Integer", "1,000", "KX_CC_SetIntValue(N, 0)");
    row("IntReg", "12", "KX_CC_SetIntValue(N, 12)");
    row("IntReg", "x", "KX_CC_SetIntValue(N, 0)");
    row("Enumeration", "3", "KX_CC_SetEnumValue(N, 3)");
    row("Enumeration", "Continuous", "KX_CC_SetEnumValue(N, 0)");
    row("Float", "29.970000", "KX_CC_SetFloatValue(N, 29.97)");
    row("Float", "-0.5", "KX_CC_SetFloatValue(N, -0.5)");
    row("Float", "1,5", "KX_CC_SetFloatValue(N, 0)");
    row("Float", "fast", "KX_CC_SetFloatValue(N, 0)");
}

void tst_FeatureXmlImport::Run_Value_IsConverted()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, value);
    QFETCH(QString, call);
    WorkerUnderTest worker;
    Import(&worker, Features(Record("N", type, value)));
    QVERIFY(!ScriptedSdk::FeatureCalls().isEmpty());
    QCOMPARE(ScriptedSdk::FeatureCalls().first(), call);
}

void tst_FeatureXmlImport::Run_RecordThatIsNotApplied_IsSkipped_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::newRow("empty name") << Record("", "Integer", "1");
    QTest::newRow("empty type") << Record("N", "", "1");
    QTest::newRow("empty value") << Record("N", "Integer", "");
    QTest::newRow("other type") << Record("N", "String", "text");
    QTest::newRow("type in other case") << Record("N", "integer", "1");
    QTest::newRow("type with a blank") << Record("N", "Integer ", "1");
}

void tst_FeatureXmlImport::Run_RecordThatIsNotApplied_IsSkipped()
{
    QFETCH(QByteArray, record);
    WorkerUnderTest worker;
    Import(&worker, Features(record + Record("Next", "Boolean", "1")));
    QCOMPARE(ScriptedSdk::FeatureCalls(), QStringList({"KX_CC_SetBoolValue(Next, true)"}));
    QCOMPARE(worker.Events(), QStringList({"begin 7 2", "end 7 2 " + worker.m_strFilePath}));
}

void tst_FeatureXmlImport::Run_NameOutsideLatin1_GoesWithSubstitutes()
{
    WorkerUnderTest worker;
    Import(&worker, Features(Record("\xC3\xA4\xE7\x9B\xB8", "Boolean", "1")));
    QCOMPARE(ScriptedSdk::FeatureCalls(), QStringList({QString::fromUtf8("KX_CC_SetBoolValue(ä?, true)")}));
}

void tst_FeatureXmlImport::Run_OnlyTheModelName_EndsWithoutMessage()
{
    WorkerUnderTest worker;
    MessageLog log;
    Import(&worker, Features(""));
    QCOMPARE(worker.Events(), QStringList({"begin 7 2", "end 7 2 " + worker.m_strFilePath}));
    QCOMPARE(log.Entries(), QStringList());
    QCOMPARE(ScriptedSdk::FeatureCalls(), QStringList());
}

void tst_FeatureXmlImport::Run_RootWithoutElements_EndsWithoutMessage()
{
    WorkerUnderTest worker;
    MessageLog log;
    Import(&worker, "<Features>text<!-- comment --></Features>");
    QCOMPARE(worker.Events(), QStringList({"begin 7 2", "end 7 2 " + worker.m_strFilePath}));
    QCOMPARE(log.Entries(), QStringList());
    QCOMPARE(ScriptedSdk::Calls(), QStringList({"KX_CC_CreateHandle()", "KX_CC_OpenDevice(1, 0)",
                                                "KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"}));
}

void tst_FeatureXmlImport::Run_FileWithoutModelLine_FirstRecordIsTakenAsTheModel()
{
    WorkerUnderTest worker;
    Import(&worker,
           "<Features>" + Record("First", "Boolean", "1") + Record("Second", "Boolean", "1") + "</Features>",
           2);
    QCOMPARE(ScriptedSdk::FeatureCalls(), QStringList({"KX_CC_SetBoolValue(Second, true)"}));
}

void tst_FeatureXmlImport::Run_RootAndRecordsOfAnyTag_AreTaken()
{
    WorkerUnderTest worker;
    Import(&worker, "<Root><Any>M</Any><Thing><Name>B</Name><Type>Boolean</Type><Value>1</Value>"
                    "<Other/><Streamable>yes</Streamable></Thing></Root>");
    QCOMPARE(ScriptedSdk::FeatureCalls(), QStringList({"KX_CC_SetBoolValue(B, true)"}));
}

void tst_FeatureXmlImport::Run_Model_IsCompared_data()
{
    QTest::addColumn<quint32>("type");
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<bool>("accepted");
    for (const quint32 nType : {1U, 4U, 8U}) {
        QTest::addRow("type %u, same", nType) << nType << QByteArray("M") << true;
        QTest::addRow("type %u, other", nType) << nType << QByteArray("N") << false;
    }
    QTest::newRow("other case") << 1U << QByteArray("m") << false;
    QTest::newRow("blank behind") << 1U << QByteArray("M ") << false;
    QTest::newRow("empty") << 1U << QByteArray("") << false;
    QTest::newRow("unknown type is not compared") << 2U << QByteArray("N") << true;
}

void tst_FeatureXmlImport::Run_Model_IsCompared()
{
    QFETCH(quint32, type);
    QFETCH(QByteArray, model);
    QFETCH(bool, accepted);
    WorkerUnderTest worker;
    MessageLog log;
    Import(&worker, "<F><M>" + model + "</M>" + Record("B", "Boolean", "1") + "</F>", type);
    QCOMPARE(ScriptedSdk::FeatureCalls().size(), accepted ? 1 : 0);
    QCOMPARE(log.Entries().size(), accepted ? 0 : 1);
}

void tst_FeatureXmlImport::Run_FullModelField_Matches()
{
    const QByteArray model(32, 'm');
    WorkerUnderTest worker;
    worker.SetImportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, model.constData(), "S"),
                               File("<F><M>" + model + "</M></F>"));
    worker.run();
    QCOMPARE(worker.Events(), QStringList({"begin 7 2", "end 7 2 " + worker.m_strFilePath}));
}

void tst_FeatureXmlImport::Run_Failure_IsReportedAndEnds_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("logged");
    QTest::addColumn<QString>("message");
    const QByteArray good = Features(Record("B", "Boolean", "1"));
    const QString strDevice = "Failed to import features.Failed to open device.";
    const QString strOpen = "Failed to import features.Failed to open xml.";
    const QString strLoad = "Failed to import features.Failed to load xml.";
    const QString strModels = "Failed to import features. Camera models mismatch.";

    QTest::newRow("create fails") << "KX_CC_CreateHandle" << good << "OpenDevice failed." << strDevice;
    QTest::newRow("open fails") << "KX_CC_OpenDevice" << good << "OpenDevice failed." << strDevice;
    QTest::newRow("file missing") << "" << QByteArray() << "Open xml failed." << strOpen;
    QTest::newRow("file empty") << "" << QByteArray("") << "Open xml failed." << strOpen;
    QTest::newRow("file starts with a NUL") << "" << QByteArray("\0<F/>", 5) << "Open xml failed." << strOpen;
    QTest::newRow("not well-formed") << "" << QByteArray("<F><M>") << "Load xml failed." << strLoad;
    QTest::newRow("model name not escaped")
        << "" << QByteArray("<F><M>A&B</M></F>") << "Load xml failed." << strLoad;
    QTest::newRow("nested too deeply")
        << "" << QByteArray("<a>").repeated(100000) + QByteArray("</a>").repeated(100000)
        << "Load xml failed." << strLoad;
    QTest::newRow("document type") << "" << QByteArray("<!DOCTYPE F><F><M>M</M></F>") << "Load xml failed."
                                   << strLoad;
    QTest::newRow("other model") << "" << QByteArray("<F><M>N</M></F>") << strModels << strModels;
}

void tst_FeatureXmlImport::Run_Failure_IsReportedAndEnds()
{
    QFETCH(QString, refused);
    QFETCH(QByteArray, text);
    QFETCH(QString, logged);
    QFETCH(QString, message);
    if (!refused.isEmpty())
        ScriptedSdk::Refuse(refused, KX_CC_E_ACCESS_DENIED);
    WorkerUnderTest worker;
    MessageLog log;
    worker.SetImportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"),
                               text.isNull() ? m_directory.filePath("missing.kfb") : File(text));

    worker.run();

    QCOMPARE(log.Entries(), QStringList({MessageLog::WorkerEntry("FeatureXmlImport", logged)}));
    QCOMPARE(worker.Events(),
             QStringList({"begin 7 2", "failed 7 " + message, "end 7 2 " + worker.m_strFilePath}));
    QStringList calls({"KX_CC_CreateHandle()"});
    if (refused != "KX_CC_CreateHandle")
        calls += {"KX_CC_OpenDevice(1, 0)", "KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"};
    QCOMPARE(ScriptedSdk::Calls(), calls);
    QVERIFY(!worker.m_hDevice);
    QVERIFY(!worker.m_bRunning);
}

void tst_FeatureXmlImport::Run_FailedCreateLeftAHandle_IsClosed()
{
    ScriptedSdk::Refuse("KX_CC_CreateHandle", KX_CC_E_RESOURCE);
    ScriptedSdk::HandOutHandleOfFailedCreate();
    WorkerUnderTest worker;
    MessageLog log;
    Import(&worker, Features(""));
    QCOMPARE(ScriptedSdk::Calls(),
             QStringList({"KX_CC_CreateHandle()", "KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"}));
}

void tst_FeatureXmlImport::Run_DeviceAndFileMissing_ReportsTheDevice()
{
    ScriptedSdk::Refuse("KX_CC_OpenDevice", KX_CC_E_UNREACHABLE);
    WorkerUnderTest worker;
    MessageLog log;
    worker.SetImportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"),
                               m_directory.filePath("missing.kfb"));
    worker.run();
    QCOMPARE(worker.Events().filter("failed"),
             QStringList({"failed 7 Failed to import features.Failed to open device."}));
}

void tst_FeatureXmlImport::Run_RecordNotStreamable_NeverEnds_data()
{
    QTest::addColumn<QByteArray>("streamable");
    QTest::newRow("No") << QByteArray("<Streamable>No</Streamable>");
    QTest::newRow("missing") << QByteArray();
}

void tst_FeatureXmlImport::Run_RecordNotStreamable_NeverEnds()
{
    QFETCH(QByteArray, streamable);
    const QString strFile = File(Features(Record("Before", "Boolean", "1") + "<Feature><Name>Stuck</Name>" +
                                          "<Type>Boolean</Type><Value>1</Value>" + streamable + "</Feature>" +
                                          Record("After", "Boolean", "1")));
    // Nothing ends the worker's thread but the end of its process, so it works in a process of its own.
    const pid_t nChild = fork();
    QVERIFY(nChild >= 0);
    if (nChild == 0) {
        alarm(30); // should the test go away
        WorkerUnderTest worker;
        worker.SetImportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"), strFile);
        worker.start();
        const QStringList calls = {"KX_CC_CreateHandle()", "KX_CC_OpenDevice(1, 0)",
                                   "KX_CC_SetBoolValue(Before, true)"};
        while (ScriptedSdk::Calls().size() < calls.size())
            QThread::msleep(1);               // alarm() is the limit
        const bool bEnded = worker.wait(500); // what is left of a file this small takes a millisecond
        const bool bAsMeant = !bEnded && worker.isRunning() && ScriptedSdk::Calls() == calls &&
                              worker.Events() == QStringList({"begin 7 2"});
        _exit(bAsMeant ? 0 : 1);
    }
    int nStatus = 0;
    QCOMPARE(waitpid(nChild, &nStatus, 0), nChild);
    QVERIFY(WIFEXITED(nStatus));
    QCOMPARE(WEXITSTATUS(nStatus), 0);
}

QTEST_GUILESS_MAIN(tst_FeatureXmlImport)
#include "tst_featurexmlimport.moc"
