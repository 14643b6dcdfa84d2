#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>

#include <KxCameraControl/kxerrors.h>

#include "messagelog.h"
#include "scriptedsdk.h"
#include "workerundertest.h"

class tst_FeatureXmlExport : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void Run_Camera_WritesTheWholeFile();
    void Run_Camera_CallsTheSdkOncePerFeatureInNameOrder();
    void Run_Streamable_DecidesWhatIsWritten_data();
    void Run_Streamable_DecidesWhatIsWritten();
    void Run_UserSetChoosers_AreNeverWritten();
    void Run_UserSetChooserInOtherCase_IsWritten();
    void Run_OtherNames_AreAllWritten();
    void Run_RefusedFeature_IsLeftOut_data();
    void Run_RefusedFeature_IsLeftOut();
    void Run_SelectedElementOfAnotherTag_IsWrittenWithoutValue();
    void Run_Transport_NamesFileAndModel_data();
    void Run_Transport_NamesFileAndModel();
    void Run_ModelOutsideAscii_IsLatin1InTheTextAndUtf8InTheName();
    void Run_NameOutsideLatin1_GoesWithSubstitutesAndIsWrittenAsUtf8();
    void Run_ExistingFile_IsReplaced();
    void Run_DeviceNotOpened_IsReportedAndEnds_data();
    void Run_DeviceNotOpened_IsReportedAndEnds();
    void Run_FileNotOpened_IsReportedAndEnds();
    void Run_DiskFull_SaysNothingButKnowsIt();
    void Run_SecondExportFails_ForgetsTheFileOfTheFirst();
    void Run_DescriptionNotParsable_WritesNoFeaturesAndSucceeds();
    void Run_DescriptionNotFetched_WritesNoFeaturesAndSucceeds();
    void Run_CommandNotNamed_WritesNoFeatures();
    void Run_BufferRefused_EndsTwice();
    void Run_SecondExportWithBrokenDescription_WritesTheFeaturesOfTheFirst();
    void Run_ThousandsOfFeatures_AllWritten();

private:
    static QByteArray Feature(const char *szTag, const char *szName, const char *szStreamable = "Yes")
    {
        return QByteArray("<") + szTag + " Name='" + szName + "'><Streamable>" + szStreamable +
               "</Streamable><pValue>Reg</pValue></" + szTag + ">";
    }
    static QByteArray Description(const QByteArray &features)
    {
        return "<R><IntReg Name='Reg'><pInvalidator>UserSetLoad</pInvalidator></IntReg>" + features + "</R>";
    }
    static QByteArray Record(const char *szName, const char *szType, const char *szValue)
    {
        return QByteArray("<Feature>\r\n<Name>") + szName + "</Name>\r\n<Type>" + szType +
               "</Type>\r\n<Value>" + szValue + "</Value>\r\n<Streamable>Yes</Streamable>\r\n</Feature>\r\n";
    }
    static QByteArray Whole(const QByteArray &records, const QByteArray &model = "M")
    {
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Features>\r\n<DeviceModelName>" + model +
               "</DeviceModelName>\r\n" + records + "</Features>";
    }
    void Export(WorkerUnderTest *pWorker, const QByteArray &description, const char *szModel = "M");
    QByteArray Written(const QString &strFile = "M_S.kfb") const;
    QStringList Ended() const { return {"begin 7 3", "end 7 3 " + m_pDirectory->path()}; }

    QScopedPointer<QTemporaryDir> m_pDirectory;
};

void tst_FeatureXmlExport::init()
{
    ScriptedSdk::Reset();
    m_pDirectory.reset(new QTemporaryDir);
    QVERIFY(m_pDirectory->isValid());
}

void tst_FeatureXmlExport::Export(WorkerUnderTest *pWorker, const QByteArray &description,
                                  const char *szModel)
{
    ScriptedSdk::SetDescription(description);
    pWorker->SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, szModel, "S"), m_pDirectory->path());
    pWorker->run();
}

QByteArray tst_FeatureXmlExport::Written(const QString &strFile) const
{
    QFile file(m_pDirectory->filePath(strFile));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void tst_FeatureXmlExport::Run_Camera_WritesTheWholeFile()
{
    ScriptedSdk::SetBool("On", true);
    ScriptedSdk::SetBool("Off", false);
    ScriptedSdk::SetUnsigned("Width", 640);
    ScriptedSdk::SetUnsigned("Offset", static_cast<quint32>(-1));
    ScriptedSdk::SetUnsigned("Address", 0x1000);
    ScriptedSdk::SetUnsigned("TriggerMode", 1);
    ScriptedSdk::SetFloat("Gain", 0.5F);
    ScriptedSdk::SetFloat("exposure", 10000.0F);
    WorkerUnderTest worker;
    MessageLog log;
    Export(&worker, Description(Feature("Integer", "Width") + Feature("Float", "exposure") +
                                Feature("Boolean", "On") + Feature("Boolean", "Off") +
                                Feature("Integer", "Offset") + Feature("IntReg", "Address") +
                                Feature("Enumeration", "TriggerMode") + Feature("Float", "Gain")));
    QCOMPARE(Written(),
             Whole(Record("Address", "IntReg", "4096") + Record("Gain", "Float", "0.500000") +
                   Record("Off", "Boolean", "0") + Record("Offset", "Integer", "4294967295") +
                   Record("On", "Boolean", "1") + Record("TriggerMode", "Enumeration", "1") +
                   Record("Width", "Integer", "640") + Record("exposure", "Float", "10000.000000")));
    QCOMPARE(worker.Events(), Ended()); // success has no message of its own
    QVERIFY(worker.IsFileWritten());
    QCOMPARE(log.Entries(), QStringList());
}

void tst_FeatureXmlExport::Run_Camera_CallsTheSdkOncePerFeatureInNameOrder()
{
    ScriptedSdk::AnswerEverything();
    WorkerUnderTest worker;
    Export(&worker, Description(Feature("Integer", "d") + Feature("Float", "c") + Feature("Boolean", "b") +
                                Feature("IntReg", "a") + Feature("Enumeration", "E") +
                                Feature("Integer", "No", "No")));
    QCOMPARE(ScriptedSdk::Calls(),
             QStringList({"KX_CC_CreateHandle()", "KX_CC_OpenDevice(1, 0)",
                          "KX_XML_GetGenICamXML(3145728, 4294967295)", "KX_CC_GetEnumValue(E)",
                          "KX_CC_GetIntValue(a)", "KX_CC_GetBoolValue(b)", "KX_CC_GetFloatValue(c)",
                          "KX_CC_GetIntValue(d)", "KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"}));
    QVERIFY(!worker.m_hDevice);
}

void tst_FeatureXmlExport::Run_Streamable_DecidesWhatIsWritten_data()
{
    QTest::addColumn<QByteArray>("children");
    QTest::addColumn<bool>("written");
    QTest::newRow("Yes") << QByteArray("<Streamable>Yes</Streamable>") << true;
    QTest::newRow("yes") << QByteArray("<Streamable>yes</Streamable>") << true;
    QTest::newRow("YES") << QByteArray("<Streamable>YES</Streamable>") << true;
    QTest::newRow("No") << QByteArray("<Streamable>No</Streamable>") << false;
    QTest::newRow("empty") << QByteArray("<Streamable/>") << false;
    QTest::newRow("text of elements inside") << QByteArray("<Streamable>Yes<a>No</a></Streamable>") << true;
    QTest::newRow("blank behind") << QByteArray("<Streamable>Yes </Streamable>") << false;
    QTest::newRow("missing") << QByteArray() << false;
    QTest::newRow("tag in other case") << QByteArray("<streamable>Yes</streamable>") << false;
    QTest::newRow("further down") << QByteArray("<a><b><Streamable>Yes</Streamable></b></a>") << true;
    QTest::newRow("first of two counts: No")
        << QByteArray("<a><Streamable>No</Streamable></a><Streamable>Yes</Streamable>") << false;
    QTest::newRow("first of two counts: Yes")
        << QByteArray("<a><Streamable>Yes</Streamable></a><Streamable>No</Streamable>") << true;
}

void tst_FeatureXmlExport::Run_Streamable_DecidesWhatIsWritten()
{
    QFETCH(QByteArray, children);
    QFETCH(bool, written);
    ScriptedSdk::AnswerEverything();
    WorkerUnderTest worker;
    Export(&worker, Description("<Integer Name='F'>" + children + "<pValue>Reg</pValue></Integer>"));
    QCOMPARE(Written(), Whole(written ? Record("F", "Integer", "1") : QByteArray()));
    QCOMPARE(ScriptedSdk::FeatureCalls().size(), written ? 1 : 0);
}

void tst_FeatureXmlExport::Run_UserSetChoosers_AreNeverWritten()
{
    ScriptedSdk::AnswerEverything();
    WorkerUnderTest worker;
    Export(&worker,
           Description(Feature("Enumeration", "UserSetDefault") + Feature("Enumeration", "UserSetSelector")));
    QCOMPARE(worker.m_mapFeatureXml.size(), 2);
    QCOMPARE(Written(), Whole(""));
    QCOMPARE(ScriptedSdk::FeatureCalls(), QStringList());
}

void tst_FeatureXmlExport::Run_UserSetChooserInOtherCase_IsWritten()
{
    ScriptedSdk::AnswerEverything();
    WorkerUnderTest worker;
    Export(&worker, Description(Feature("Enumeration", "UsersetDefault")));
    QCOMPARE(Written(), Whole(Record("UsersetDefault", "Enumeration", "1")));
}

void tst_FeatureXmlExport::Run_OtherNames_AreAllWritten()
{
    // Two names are left out and no third one, however much it is about user sets or choosing.
    QStringList names({"UserSetLoad",
                       "UserSetSave",
                       "UserSetCurrent",
                       "UserSetDescription",
                       "UserSetFeature",
                       "UserSetFeatureSelector",
                       "UserSetFeatureEnable",
                       "UserSetDefaultSelector",
                       "UserSetSelectorDefault",
                       "UserSetDefault2",
                       "DefaultUserSet",
                       "UserSet",
                       "Selector",
                       "UserOutputSelector",
                       "UserOutputValue",
                       "DeviceUserID",
                       "DeviceReset",
                       "DeviceMode",
                       "AcquisitionMode",
                       "AcquisitionFrameRate",
                       "TriggerSelector",
                       "TriggerMode",
                       "GainSelector",
                       "Gain",
                       "GainAuto",
                       "ExposureTime",
                       "ExposureAuto",
                       "BlackLevel",
                       "Gamma",
                       "Width",
                       "Height",
                       "OffsetX",
                       "OffsetY",
                       "PixelFormat",
                       "TestPattern",
                       "ReverseX",
                       "LineSelector",
                       "LUTIndex",
                       "SequencerMode",
                       "SequencerSetSelector",
                       "SequencerConfigurationMode",
                       "ChunkModeActive",
                       "TLParamsLocked",
                       "PayloadSize",
                       "GevSCPSPacketSize",
                       "GevPersistentIPAddress"});
    names.sort();
    ScriptedSdk::AnswerEverything();
    QByteArray features;
    QByteArray records;
    for (const QString &strName : qAsConst(names)) {
        features += Feature("Integer", strName.toLatin1());
        records += Record(strName.toLatin1(), "Integer", "1");
    }
    WorkerUnderTest worker;
    Export(&worker, Description(features));
    QCOMPARE(Written(), Whole(records));
}

void tst_FeatureXmlExport::Run_RefusedFeature_IsLeftOut_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<QByteArray>("tag");
    QTest::newRow("Boolean") << "KX_CC_GetBoolValue" << QByteArray("Boolean");
    QTest::newRow("Integer") << "KX_CC_GetIntValue" << QByteArray("Integer");
    QTest::newRow("IntReg") << "KX_CC_GetIntValue" << QByteArray("IntReg");
    QTest::newRow("Enumeration") << "KX_CC_GetEnumValue" << QByteArray("Enumeration");
    QTest::newRow("Float") << "KX_CC_GetFloatValue" << QByteArray("Float");
}

void tst_FeatureXmlExport::Run_RefusedFeature_IsLeftOut()
{
    QFETCH(QString, function);
    QFETCH(QByteArray, tag);
    ScriptedSdk::AnswerEverything();
    ScriptedSdk::Refuse(function, KX_CC_E_FEATURE_ACCESS, "B");
    WorkerUnderTest worker;
    MessageLog log;
    Export(&worker, Description(Feature("Integer", "A") + Feature(tag, "B") + Feature("Integer", "C")));
    QCOMPARE(Written(), Whole(Record("A", "Integer", "1") + Record("C", "Integer", "1")));
    QCOMPARE(ScriptedSdk::FeatureCalls().size(), 3);
    QCOMPARE(worker.Events(), Ended());
    QCOMPARE(log.Entries(), QStringList());
}

void tst_FeatureXmlExport::Run_SelectedElementOfAnotherTag_IsWrittenWithoutValue()
{
    // A later element of the selected feature's name takes its place.
    WorkerUnderTest worker;
    Export(&worker,
           Description(Feature("Integer", "A") + "<String Name='A'><Streamable>Yes</Streamable></String>"));
    QCOMPARE(Written(), Whole(Record("A", "String", "")));
    QCOMPARE(ScriptedSdk::FeatureCalls(), QStringList());
}

void tst_FeatureXmlExport::Run_Transport_NamesFileAndModel_data()
{
    QTest::addColumn<quint32>("type");
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("model");
    QTest::newRow("network") << 1U << "M_S.kfb" << true;
    QTest::newRow("USB") << 4U << "M_S.kfb" << true;
    QTest::newRow("port") << 8U << "M_S.kfb" << true;
    QTest::newRow("unknown") << 2U << "_.kfb" << false;
}

void tst_FeatureXmlExport::Run_Transport_NamesFileAndModel()
{
    QFETCH(quint32, type);
    QFETCH(QString, file);
    QFETCH(bool, model);
    ScriptedSdk::SetDescription("<R/>");
    WorkerUnderTest worker;
    worker.SetExportThreadInfo(CameraRecord(type, "M", "S"), m_pDirectory->path());
    worker.run();
    QByteArray expected = Whole("");
    if (!model)
        expected.replace("<DeviceModelName>M</DeviceModelName>\r\n", "");
    QCOMPARE(Written(file), expected);
    QCOMPARE(worker.Events(), Ended());
}

void tst_FeatureXmlExport::Run_ModelOutsideAscii_IsLatin1InTheTextAndUtf8InTheName()
{
    WorkerUnderTest worker;
    Export(&worker, "<R/>", "K\xC3\xA4m");
    QCOMPARE(Written(QString::fromUtf8("Käm_S.kfb")), Whole("", "K\xC3\x83\xC2\xA4m"));
}

void tst_FeatureXmlExport::Run_NameOutsideLatin1_GoesWithSubstitutesAndIsWrittenAsUtf8()
{
    ScriptedSdk::AnswerEverything();
    WorkerUnderTest worker;
    Export(&worker, Description(Feature("Integer", "\xC3\xA4\xE7\x9B\xB8")));
    QCOMPARE(ScriptedSdk::FeatureCalls(), QStringList({QString::fromUtf8("KX_CC_GetIntValue(ä?)")}));
    QCOMPARE(Written(), Whole(Record("\xC3\xA4\xE7\x9B\xB8", "Integer", "1")));
}

void tst_FeatureXmlExport::Run_ExistingFile_IsReplaced()
{
    QFile file(m_pDirectory->filePath("M_S.kfb"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(10000, 'x'));
    file.close();
    WorkerUnderTest worker;
    Export(&worker, "<R/>");
    QCOMPARE(Written(), Whole(""));
}

void tst_FeatureXmlExport::Run_DeviceNotOpened_IsReportedAndEnds_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("create") << "KX_CC_CreateHandle" << QStringList({"KX_CC_CreateHandle()"});
    QTest::newRow("open") << "KX_CC_OpenDevice"
                          << QStringList({"KX_CC_CreateHandle()", "KX_CC_OpenDevice(1, 0)",
                                          "KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"});
}

void tst_FeatureXmlExport::Run_DeviceNotOpened_IsReportedAndEnds()
{
    QFETCH(QString, refused);
    QFETCH(QStringList, calls);
    ScriptedSdk::Refuse(refused, KX_CC_E_UNREACHABLE);
    WorkerUnderTest worker;
    MessageLog log;
    Export(&worker, "<R/>");
    QCOMPARE(worker.Events(),
             QStringList({"begin 7 3", "failed 7 Failed to export features.Failed to open device.",
                          "end 7 3 " + m_pDirectory->path()}));
    QCOMPARE(ScriptedSdk::Calls(), calls);
    QCOMPARE(log.Entries(), QStringList());
    QCOMPARE(Written(), QByteArray("no file"));
    QVERIFY(!worker.m_hDevice);
}

void tst_FeatureXmlExport::Run_FileNotOpened_IsReportedAndEnds()
{
    ScriptedSdk::SetDescription("<R/>");
    WorkerUnderTest worker;
    MessageLog log;
    const QString strMissing = m_pDirectory->filePath("missing");
    worker.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"), strMissing);
    worker.run();
    QCOMPARE(worker.Events(),
             QStringList({"begin 7 3", "failed 7 Failed to export features.Failed to open File.",
                          "end 7 3 " + strMissing}));
    QCOMPARE(ScriptedSdk::Calls().mid(3), QStringList({"KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"}));
    QCOMPARE(log.Entries(), QStringList());
    QVERIFY(!worker.m_hDevice);
}

void tst_FeatureXmlExport::Run_DiskFull_SaysNothingButKnowsIt()
{
    // A limit on the size of files stands in for a full disk.
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small = {50, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    WorkerUnderTest worker;
    Export(&worker, "<R/>");
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, oldHandler);
    QCOMPARE(worker.Events(), Ended());
    QCOMPARE(Written(), QByteArray("no file"));
    QVERIFY(!worker.IsFileWritten());
}

void tst_FeatureXmlExport::Run_SecondExportFails_ForgetsTheFileOfTheFirst()
{
    WorkerUnderTest worker;
    Export(&worker, "<R/>");
    QVERIFY(worker.IsFileWritten());
    ScriptedSdk::Refuse("KX_CC_OpenDevice", KX_CC_E_UNREACHABLE);
    Export(&worker, "<R/>");
    QVERIFY(!worker.IsFileWritten());
}

void tst_FeatureXmlExport::Run_DescriptionNotParsable_WritesNoFeaturesAndSucceeds()
{
    WorkerUnderTest worker;
    MessageLog log;
    Export(&worker, "<R><broken");
    QCOMPARE(Written(), Whole(""));
    QCOMPARE(worker.Events(), Ended());
    QCOMPARE(log.Entries(),
             QStringList({MessageLog::WorkerEntry("GenerateFeatureXmlMap", "Load xml failed.")}));
    QCOMPARE(ScriptedSdk::Calls().mid(3), QStringList({"KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"}));
}

void tst_FeatureXmlExport::Run_DescriptionNotFetched_WritesNoFeaturesAndSucceeds()
{
    ScriptedSdk::Refuse("KX_XML_GetGenICamXML", KX_CC_E_TIMEOUT);
    WorkerUnderTest worker;
    MessageLog log;
    Export(&worker, "<R/>");
    QCOMPARE(Written(), Whole(""));
    QCOMPARE(worker.Events(), Ended());
}

void tst_FeatureXmlExport::Run_CommandNotNamed_WritesNoFeatures()
{
    ScriptedSdk::AnswerEverything();
    WorkerUnderTest worker;
    MessageLog log;
    Export(&worker, "<R>" + Feature("Integer", "A") + "<IntReg Name='Reg'/></R>");
    QCOMPARE(Written(), Whole(""));
    QCOMPARE(worker.Events(), Ended());
    QCOMPARE(log.Entries(), QStringList());
}

void tst_FeatureXmlExport::Run_BufferRefused_EndsTwice()
{
    WorkerUnderTest worker;
    worker.RefuseBuffer(0x300000);
    MessageLog log;
    Export(&worker, Description(Feature("Integer", "A")));
    const QString strEnd = "end 7 3 " + m_pDirectory->path();
    QCOMPARE(worker.Events(), QStringList({"begin 7 3", strEnd, strEnd}));
    QCOMPARE(Written(), Whole(""));
    QCOMPARE(log.Entries(),
             QStringList({MessageLog::WorkerEntry("GenerateFeatureXmlMap", "CAMEAR_CREAT_BUF_FAILED")}));
    QCOMPARE(ScriptedSdk::Calls(), QStringList({"KX_CC_CreateHandle()", "KX_CC_OpenDevice(1, 0)",
                                                "KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"}));
}

void tst_FeatureXmlExport::Run_SecondExportWithBrokenDescription_WritesTheFeaturesOfTheFirst()
{
    ScriptedSdk::SetUnsigned("A", 1);
    WorkerUnderTest worker;
    MessageLog log;
    Export(&worker, Description(Feature("Integer", "A")));
    ScriptedSdk::SetUnsigned("A", 2);

    Export(&worker, "<R><broken");

    QCOMPARE(Written(), Whole(Record("A", "Integer", "2")));
    QCOMPARE(worker.Events(), Ended() + Ended());
}

void tst_FeatureXmlExport::Run_ThousandsOfFeatures_AllWritten()
{
    ScriptedSdk::AnswerEverything();
    QByteArray features;
    QByteArray records;
    for (int i = 10000; i < 30000; ++i) {
        const QByteArray name = "F" + QByteArray::number(i);
        features += Feature("Integer", name);
        records += Record(name, "Integer", "1");
    }
    WorkerUnderTest worker;
    Export(&worker, Description(features));
    QVERIFY(Written() == Whole(records)); // without printing both
}

QTEST_GUILESS_MAIN(tst_FeatureXmlExport)
#include "tst_featurexmlexport.moc"
