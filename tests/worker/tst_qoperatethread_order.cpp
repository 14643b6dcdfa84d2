#include <QTemporaryDir>
#include <QtTest>

#include <KxCameraControl/kxerrors.h>
#include <ToolBase/lumointerface.h>

#include "journal.h"
#include "messagelog.h"
#include "scriptedsdk.h"
#include "workerundertest.h"

// The order of a worker's signals, SDK calls and log entries, in one list: a camera is free, and its message
// has come, before its end is told; a file is there before its camera is given back.
class tst_QOperateThread_Order : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void FeatureXmlExport_Order_IsThis_data();
    void FeatureXmlExport_Order_IsThis();
    void FeatureXmlImport_Order_IsThis_data();
    void FeatureXmlImport_Order_IsThis();
    void FeatureBag_Order_IsThis_data();
    void FeatureBag_Order_IsThis();

private:
    QStringList Run(unsigned int nType, const QString &strPath, unsigned int nRefusedBuffer = 0);
    static void Refuse(const QString &strFunction)
    {
        if (!strFunction.isEmpty())
            ScriptedSdk::Refuse(strFunction, KX_CC_E_ACCESS_DENIED);
    }

    QScopedPointer<QTemporaryDir> m_pDirectory;
};

namespace {

const QString kCreate = "KX_CC_CreateHandle()";
const QString kOpen = "KX_CC_OpenDevice(1, 0)";
const QString kFetch = "KX_XML_GetGenICamXML(3145728, 4294967295)";
const QString kRead = "KX_CC_GetIntValue(A)";
const QStringList kClosed = {"KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"};

QString Text(int nCode)
{
    return LumoInterface::GenerateSDKCode(LumoInterface::SDKCode2LumoCode(static_cast<unsigned int>(nCode)));
}

QString Description(int nCode)
{
    return LumoInterface::GenerateLumoErrorDesc(
        LumoInterface::SDKCode2LumoCode(static_cast<unsigned int>(nCode)));
}

} // namespace

void tst_QOperateThread_Order::init()
{
    ScriptedSdk::Reset();
    m_pDirectory.reset(new QTemporaryDir);
    QVERIFY(m_pDirectory->isValid());
}

// Gives what happened, without the path, which is another one in each run.
QStringList tst_QOperateThread_Order::Run(unsigned int nType, const QString &strPath,
                                          unsigned int nRefusedBuffer)
{
    WorkerUnderTest worker;
    worker.RefuseBuffer(nRefusedBuffer);
    MessageLog log;
    worker.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"), strPath);
    worker.m_nThreadType = nType;
    Journal::Clear();
    Journal::Watch(strPath + "/M_S.kfb");
    worker.run();
    return Journal::Entries().replaceInStrings(strPath, "PATH");
}

void tst_QOperateThread_Order::FeatureXmlExport_Order_IsThis_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<unsigned int>("refusedBuffer");
    QTest::addColumn<QStringList>("order");
    const QStringList ended = kClosed + QStringList("end 7 3 PATH");
    const QString strDevice = "failed 7 Failed to export features.Failed to open device.";
    const QString strFile = "failed 7 Failed to export features.Failed to open File.";
    const QStringList opened = {"begin 7 3", kCreate, kOpen};

    QTest::newRow("success") << ""
                             << "" << 0U << opened + QStringList({kFetch, kRead, "file"}) + ended;
    QTest::newRow("create fails") << "KX_CC_CreateHandle"
                                  << "" << 0U
                                  << QStringList({"begin 7 3", kCreate, strDevice, "end 7 3 PATH"});
    QTest::newRow("open fails") << "KX_CC_OpenDevice"
                                << "" << 0U << opened + QStringList(strDevice) + ended;
    QTest::newRow("file not opened") << ""
                                     << "/none" << 0U
                                     << opened + QStringList({kFetch, kRead, strFile}) + ended;
    QTest::newRow("description not fetched")
        << "KX_XML_GetGenICamXML"
        << "" << 0U
        << opened +
               QStringList({kFetch, "KX_XML_GetGenICamXML(4294967295, 4294967295)",
                            "log GenerateFeatureXmlMap: Load xml failed.", "file"}) +
               ended;
    QTest::newRow("buffer refused") << ""
                                    << "" << 0x300000U
                                    << opened +
                                           QStringList("log GenerateFeatureXmlMap: CAMEAR_CREAT_BUF_FAILED") +
                                           ended + QStringList({"file", "end 7 3 PATH"});
}

void tst_QOperateThread_Order::FeatureXmlExport_Order_IsThis()
{
    QFETCH(QString, refused);
    QFETCH(QString, folder);
    QFETCH(unsigned int, refusedBuffer);
    QFETCH(QStringList, order);
    ScriptedSdk::SetDescription(
        "<R><Integer Name='A'><Streamable>Yes</Streamable><pValue>Reg</pValue></Integer>"
        "<IntReg Name='Reg'><pInvalidator>UserSetLoad</pInvalidator></IntReg></R>");
    ScriptedSdk::AnswerEverything();
    Refuse(refused);
    QCOMPARE(Run(3, m_pDirectory->path() + folder, refusedBuffer), order);
}

void tst_QOperateThread_Order::FeatureXmlImport_Order_IsThis_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("order");
    const QByteArray good = "<F><M>M</M><R><Name>N</Name><Type>Integer</Type><Value>1</Value>"
                            "<Streamable>Yes</Streamable></R></F>";
    const QStringList opened = {"begin 7 2", kCreate, kOpen};
    const QStringList ended = kClosed + QStringList("end 7 2 PATH");
    const auto failure = [](const QString &strLogged, const QString &strMessage) {
        return QStringList({"log FeatureXmlImport: " + strLogged, "failed 7 " + strMessage});
    };
    const QStringList device =
        failure("OpenDevice failed.", "Failed to import features.Failed to open device.");
    const QString strModels = "Failed to import features. Camera models mismatch.";

    QTest::newRow("success") << "" << good
                             << opened + QStringList({"KX_CC_SetIntValue(N, 1)", "KX_CC_SetIntValue(N, 1)"}) +
                                    ended;
    QTest::newRow("create fails") << "KX_CC_CreateHandle" << good
                                  << QStringList({"begin 7 2", kCreate}) + device +
                                         QStringList("end 7 2 PATH");
    QTest::newRow("open fails") << "KX_CC_OpenDevice" << good << opened + device + ended;
    QTest::newRow("file empty") << "" << QByteArray("")
                                << opened +
                                       failure("Open xml failed.",
                                               "Failed to import features.Failed to open xml.") +
                                       ended;
    QTest::newRow("not well-formed") << "" << QByteArray("<F>")
                                     << opened +
                                            failure("Load xml failed.",
                                                    "Failed to import features.Failed to load xml.") +
                                            ended;
    QTest::newRow("no records") << "" << QByteArray("<F/>") << opened + ended;
    QTest::newRow("other model") << "" << QByteArray("<F><M>N</M></F>")
                                 << opened + failure(strModels, strModels) + ended;
}

void tst_QOperateThread_Order::FeatureXmlImport_Order_IsThis()
{
    QFETCH(QString, refused);
    QFETCH(QByteArray, file);
    QFETCH(QStringList, order);
    QFile out(m_pDirectory->filePath("import.kfb"));
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(file);
    out.close();
    Refuse(refused);
    QCOMPARE(Run(2, out.fileName()), order);
}

void tst_QOperateThread_Order::FeatureBag_Order_IsThis_data()
{
    QTest::addColumn<unsigned int>("type");
    QTest::addColumn<QString>("refused");
    QTest::addColumn<QStringList>("order");
    const QString strError = Text(KX_CC_E_ACCESS_DENIED);
    const QString strErrorText = strError + Description(KX_CC_E_ACCESS_DENIED);
    const auto row = [](const char *szName, unsigned int nType, const QString &strRefused,
                        const QStringList &middle) {
        const QString strType = QString::number(nType);
        QTest::newRow(szName) << nType << strRefused
                              << QStringList("begin 7 " + strType) + middle +
                                     QStringList("end 7 " + strType + " PATH");
    };
    const QStringList load = {kCreate, kOpen, "KX_CC_FeatureLoad(PATH)"};
    const QStringList save = {kCreate, kOpen, "KX_CC_FeatureSave(PATH/M_S.kfb)"};

    for (const unsigned int nType : {0U, 1U}) {
        row("create fails", nType, "KX_CC_CreateHandle", {kCreate});
        row("open fails", nType, "KX_CC_OpenDevice", QStringList({kCreate, kOpen}) + kClosed);
    }
    row("import", 0, "", load + kClosed);
    row("export", 1, "", save + kClosed);
    row("import fails", 0, "KX_CC_FeatureLoad",
        load +
            QStringList({"log FeatureBagImport: KX_CC_FeatureLoad failed." + strError,
                         "failed 7 Failed to load feature." + strErrorText}) +
            kClosed);
    row("export fails", 1, "KX_CC_FeatureSave",
        save +
            QStringList({"log FeatureBagExport: KX_CC_FeatureSave failed." + strError,
                         "failed 7 Failed to save feature." + strErrorText}) +
            kClosed);
}

void tst_QOperateThread_Order::FeatureBag_Order_IsThis()
{
    QFETCH(unsigned int, type);
    QFETCH(QString, refused);
    QFETCH(QStringList, order);
    Refuse(refused);
    QCOMPARE(Run(type, m_pDirectory->path()), order);
}

QTEST_GUILESS_MAIN(tst_QOperateThread_Order)
#include "tst_qoperatethread_order.moc"
