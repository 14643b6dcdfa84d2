#include <QtTest>

#include <KxCameraControl/kxerrors.h>
#include <ToolBase/lumointerface.h>

#include "messagelog.h"
#include "scriptedsdk.h"
#include "workerundertest.h"

class tst_FeatureBagTransfer : public QObject
{
    Q_OBJECT

private slots:
    void init() { ScriptedSdk::Reset(); }
    void FeatureBagImport_Success_LoadsTheFileAndSaysNothing();
    void FeatureBagExport_Transport_SavesUnderModelAndSerial_data();
    void FeatureBagExport_Transport_SavesUnderModelAndSerial();
    void FeatureBagImport_PathOutsideLatin1_GoesWithSubstitutes();
    void FeatureBagExport_PathOutsideLatin1_GoesWithSubstitutes();
    void run_CreateHandleFails_EndsSilently_data() { BothTypes(); }
    void run_CreateHandleFails_EndsSilently();
    void run_OpenFails_ClosesAndEndsSilently_data() { BothTypes(); }
    void run_OpenFails_ClosesAndEndsSilently();
    void FeatureBagImport_LoadFails_ReportsCodeAndDescription();
    void FeatureBagExport_SaveFails_ReportsCodeAndDescription();

private:
    static void BothTypes()
    {
        QTest::addColumn<unsigned int>("type");
        QTest::newRow("import") << 0U;
        QTest::newRow("export") << 1U;
    }
    static void Run(WorkerUnderTest *pWorker, unsigned int nType, const QString &strPath,
                    quint32 nDeviceType = KX_CC_TRANSPORT_GIGE)
    {
        pWorker->SetImportThreadInfo(CameraRecord(nDeviceType, "M", "S"), strPath);
        pWorker->m_nThreadType = nType;
        pWorker->run();
    }
    static QString ErrorCode(unsigned int nResult)
    {
        return LumoInterface::GenerateSDKCode(LumoInterface::SDKCode2LumoCode(nResult));
    }
    static QString ErrorDescription(unsigned int nResult)
    {
        return LumoInterface::GenerateLumoErrorDesc(LumoInterface::SDKCode2LumoCode(nResult));
    }
    static QStringList CallsAround(const QString &strCall)
    {
        return {"KX_CC_CreateHandle()", "KX_CC_OpenDevice(1, 0)", strCall, "KX_CC_CloseDevice()",
                "KX_CC_DestroyHandle()"};
    }
};

void tst_FeatureBagTransfer::FeatureBagImport_Success_LoadsTheFileAndSaysNothing()
{
    WorkerUnderTest worker;
    MessageLog log;
    Run(&worker, 0, "/d/bag.kfb");
    QCOMPARE(ScriptedSdk::Calls(), CallsAround("KX_CC_FeatureLoad(/d/bag.kfb)"));
    QCOMPARE(worker.Events(), QStringList({"begin 7 0", "end 7 0 /d/bag.kfb"}));
    QCOMPARE(log.Entries(), QStringList());
}

void tst_FeatureBagTransfer::FeatureBagExport_Transport_SavesUnderModelAndSerial_data()
{
    QTest::addColumn<quint32>("type");
    QTest::addColumn<QString>("file");
    QTest::newRow("network") << 1U << "M_S.kfb";
    QTest::newRow("USB") << 4U << "M_S.kfb";
    QTest::newRow("port") << 8U << "M_S.kfb";
    QTest::newRow("unknown") << 2U << "_.kfb";
}

void tst_FeatureBagTransfer::FeatureBagExport_Transport_SavesUnderModelAndSerial()
{
    QFETCH(quint32, type);
    QFETCH(QString, file);
    WorkerUnderTest worker;
    Run(&worker, 1, "/d", type);
    QCOMPARE(ScriptedSdk::Calls(), CallsAround(QStringLiteral("KX_CC_FeatureSave(/d/%1)").arg(file)));
    QCOMPARE(worker.Events(), QStringList({"begin 7 1", "end 7 1 /d"})); // the directory, not the file
}

void tst_FeatureBagTransfer::FeatureBagImport_PathOutsideLatin1_GoesWithSubstitutes()
{
    WorkerUnderTest worker;
    Run(&worker, 0, QString::fromUtf8("/ä/相机.kfb"));
    QCOMPARE(ScriptedSdk::Calls().at(2), QString::fromUtf8("KX_CC_FeatureLoad(/ä/??.kfb)"));
}

void tst_FeatureBagTransfer::FeatureBagExport_PathOutsideLatin1_GoesWithSubstitutes()
{
    WorkerUnderTest worker;
    Run(&worker, 1, QString::fromUtf8("/ä/相机x"));
    QCOMPARE(ScriptedSdk::Calls().at(2), QString::fromUtf8("KX_CC_FeatureSave(/ä/??x/M_S.kfb)"));
}

void tst_FeatureBagTransfer::run_CreateHandleFails_EndsSilently()
{
    QFETCH(unsigned int, type);
    ScriptedSdk::Refuse("KX_CC_CreateHandle", KX_CC_E_UNSUPPORTED);
    WorkerUnderTest worker;
    MessageLog log;
    Run(&worker, type, "/p");
    QCOMPARE(ScriptedSdk::Calls(), QStringList({"KX_CC_CreateHandle()"}));
    QCOMPARE(worker.Events(),
             QStringList({QStringLiteral("begin 7 %1").arg(type), QStringLiteral("end 7 %1 /p").arg(type)}));
    QCOMPARE(log.Entries(), QStringList());
}

void tst_FeatureBagTransfer::run_OpenFails_ClosesAndEndsSilently()
{
    QFETCH(unsigned int, type);
    ScriptedSdk::Refuse("KX_CC_OpenDevice", KX_CC_E_ACCESS_DENIED);
    WorkerUnderTest worker;
    MessageLog log;
    Run(&worker, type, "/p");
    QCOMPARE(ScriptedSdk::Calls(), QStringList({"KX_CC_CreateHandle()", "KX_CC_OpenDevice(1, 0)",
                                                "KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"}));
    QCOMPARE(worker.Events(),
             QStringList({QStringLiteral("begin 7 %1").arg(type), QStringLiteral("end 7 %1 /p").arg(type)}));
    QCOMPARE(log.Entries(), QStringList());
    QVERIFY(!worker.m_hDevice);
}

void tst_FeatureBagTransfer::FeatureBagImport_LoadFails_ReportsCodeAndDescription()
{
    const int nCode = KX_CC_E_FILE_FORMAT;
    ScriptedSdk::Refuse("KX_CC_FeatureLoad", nCode);
    WorkerUnderTest worker;
    MessageLog log;
    Run(&worker, 0, "/d/bag.kfb");

    QVERIFY(!ErrorCode(nCode).isEmpty());
    QVERIFY(!ErrorDescription(nCode).isEmpty());
    QCOMPARE(log.Entries(), QStringList({MessageLog::WorkerEntry(
                                "FeatureBagImport", "KX_CC_FeatureLoad failed." + ErrorCode(nCode))}));
    QCOMPARE(worker.Events(),
             QStringList({"begin 7 0",
                          "failed 7 Failed to load feature." + ErrorCode(nCode) + ErrorDescription(nCode),
                          "end 7 0 /d/bag.kfb"}));
    QCOMPARE(ScriptedSdk::Calls(), CallsAround("KX_CC_FeatureLoad(/d/bag.kfb)"));
}

void tst_FeatureBagTransfer::FeatureBagExport_SaveFails_ReportsCodeAndDescription()
{
    const int nCode = KX_CC_E_FILE_WRITE;
    ScriptedSdk::Refuse("KX_CC_FeatureSave", nCode);
    WorkerUnderTest worker;
    MessageLog log;
    Run(&worker, 1, "/d");

    QCOMPARE(log.Entries(), QStringList({MessageLog::WorkerEntry(
                                "FeatureBagExport", "KX_CC_FeatureSave failed." + ErrorCode(nCode))}));
    QCOMPARE(worker.Events(),
             QStringList({"begin 7 1",
                          "failed 7 Failed to save feature." + ErrorCode(nCode) + ErrorDescription(nCode),
                          "end 7 1 /d"}));
    QCOMPARE(ScriptedSdk::Calls(), CallsAround("KX_CC_FeatureSave(/d/M_S.kfb)"));
}

QTEST_GUILESS_MAIN(tst_FeatureBagTransfer)
#include "tst_featurebagtransfer.moc"
