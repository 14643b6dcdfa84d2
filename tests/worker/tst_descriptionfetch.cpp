#include <QtTest>

#include <KxCameraControl/kxerrors.h>

#include <sys/resource.h>

#include "messagelog.h"
#include "scriptedsdk.h"
#include "workerundertest.h"

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kAddressSanitizer = true;
#else
constexpr bool kAddressSanitizer = false;
#endif

/// How the description gets from the SDK into memory, whatever size the SDK reports.
class tst_DescriptionFetch : public QObject
{
    Q_OBJECT

private slots:
    void init() { ScriptedSdk::Reset(); }
    void GenerateFeatureXmlMap_SizeAroundTheBuffer_FetchesAgainFromItsSizeOn_data();
    void GenerateFeatureXmlMap_SizeAroundTheBuffer_FetchesAgainFromItsSizeOn();
    void GenerateFeatureXmlMap_SecondFetchReportsMore_NoThirdFetch();
    void GenerateFeatureXmlMap_TextFillsBufferWithoutNul_ReadsNoFurther();
    void GenerateFeatureXmlMap_BytesBehindNul_AreIgnored();
    void GenerateFeatureXmlMap_Utf8Text_IsDecoded();
    void GenerateFeatureXmlMap_FetchFails_AsksForFourGigabytesWithoutUsingThem();
    void GenerateFeatureXmlMap_FetchFails_KeepsCameraOpenAndMaps();
    void GenerateFeatureXmlMap_FirstBufferRefused_ClosesCameraAndEnds();
    void GenerateFeatureXmlMap_FirstBufferRefusedWithoutCamera_Ends();
    void GenerateFeatureXmlMap_LargerBufferRefused_IsLikeNoText();

private:
    static constexpr int kBuffer = 3145728;
    static QByteArray TextOfSize(int nBytes);
    static QStringList Fetches()
    {
        return ScriptedSdk::Calls().filter(QStringLiteral("KX_XML_GetGenICamXML"));
    }
    static QString LoadFailed()
    {
        return MessageLog::WorkerEntry(QStringLiteral("GenerateFeatureXmlMap"),
                                       QStringLiteral("Load xml failed."));
    }
};

/// A description with the node "Last" at its very end.
QByteArray tst_DescriptionFetch::TextOfSize(int nBytes)
{
    const QByteArray start = "<R><!--";
    const QByteArray end = "--><Integer Name='Last'/></R>";
    return start + QByteArray(nBytes - start.size() - end.size(), 'x') + end;
}

void tst_DescriptionFetch::GenerateFeatureXmlMap_SizeAroundTheBuffer_FetchesAgainFromItsSizeOn_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QStringList>("fetches");
    const QString strFirst = QStringLiteral("KX_XML_GetGenICamXML(3145728, 4294967295)");
    QTest::newRow("3145726") << kBuffer - 2 << QStringList({strFirst});
    QTest::newRow("3145727") << kBuffer - 1 << QStringList({strFirst});
    QTest::newRow("3145728") << kBuffer << QStringList({strFirst, "KX_XML_GetGenICamXML(3145728, 3145728)"});
    QTest::newRow("3145729") << kBuffer + 1
                             << QStringList({strFirst, "KX_XML_GetGenICamXML(3145729, 3145729)"});
}

void tst_DescriptionFetch::GenerateFeatureXmlMap_SizeAroundTheBuffer_FetchesAgainFromItsSizeOn()
{
    QFETCH(int, size);
    QFETCH(QStringList, fetches);
    ScriptedSdk::SetDescription(TextOfSize(size - 1)); // the reported size counts the NUL
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());

    worker.GenerateFeatureXmlMap();

    QCOMPARE(Fetches(), fetches);
    QCOMPARE(worker.m_mapDomElement.keys(), QList<QString>({"Last"}));
}

void tst_DescriptionFetch::GenerateFeatureXmlMap_SecondFetchReportsMore_NoThirdFetch()
{
    ScriptedSdk::SetDescription(TextOfSize(kBuffer + 100));
    ScriptedSdk::ReportDescriptionSize(kBuffer + 1); // too small for the text
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());
    MessageLog log;

    worker.GenerateFeatureXmlMap();

    QCOMPARE(Fetches().size(), 2);
    QCOMPARE(log.Entries(), QStringList({LoadFailed()}));
}

void tst_DescriptionFetch::GenerateFeatureXmlMap_TextFillsBufferWithoutNul_ReadsNoFurther()
{
    // An SDK that does not count the NUL and leaves no room for it.
    ScriptedSdk::SetDescription(TextOfSize(kBuffer + 8));
    ScriptedSdk::ReportUnterminated();
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());

    worker.GenerateFeatureXmlMap();

    QCOMPARE(worker.m_mapDomElement.keys(), QList<QString>({"Last"}));
}

void tst_DescriptionFetch::GenerateFeatureXmlMap_BytesBehindNul_AreIgnored()
{
    ScriptedSdk::SetDescription(QByteArray("<R><Integer Name='A'/></R>\0<broken", 34));
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());

    worker.GenerateFeatureXmlMap();

    QCOMPARE(worker.m_mapDomElement.keys(), QList<QString>({"A"}));
}

void tst_DescriptionFetch::GenerateFeatureXmlMap_Utf8Text_IsDecoded()
{
    ScriptedSdk::SetDescription("<R><Integer Name='Gr\xC3\xB6\xC3\x9F"
                                "e'/></R>");
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());

    worker.GenerateFeatureXmlMap();

    QCOMPARE(worker.m_mapDomElement.keys(), QList<QString>({QString::fromUtf8("Größe")}));
}

void tst_DescriptionFetch::GenerateFeatureXmlMap_FetchFails_AsksForFourGigabytesWithoutUsingThem()
{
    ScriptedSdk::Refuse(QStringLiteral("KX_XML_GetGenICamXML"), KX_CC_E_TIMEOUT);
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());
    MessageLog log;
    rusage before = {};
    getrusage(RUSAGE_SELF, &before);

    worker.GenerateFeatureXmlMap();

    rusage after = {};
    getrusage(RUSAGE_SELF, &after);
    QCOMPARE(log.Entries(), QStringList({LoadFailed()}));
    QVERIFY(!Fetches().isEmpty());
    if (kAddressSanitizer)
        QSKIP("AddressSanitizer marks freed memory, an eighth of its size, in memory of its own");
    const long nGrownKiB = after.ru_maxrss - before.ru_maxrss;
    QVERIFY2(nGrownKiB < 65536, qPrintable(QStringLiteral("grew by %1 KiB").arg(nGrownKiB)));
}

void tst_DescriptionFetch::GenerateFeatureXmlMap_FetchFails_KeepsCameraOpenAndMaps()
{
    ScriptedSdk::SetDescription("<R><Integer Name='A'/></R>");
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());
    worker.GenerateFeatureXmlMap();
    ScriptedSdk::Refuse(QStringLiteral("KX_XML_GetGenICamXML"), KX_CC_E_TIMEOUT);
    MessageLog log;

    worker.GenerateFeatureXmlMap();

    QCOMPARE(log.Entries(), QStringList({LoadFailed()}));
    QCOMPARE(worker.m_mapDomElement.keys(), QList<QString>({"A"}));
    QCOMPARE(ScriptedSdk::LivingHandles(), 1);
    QCOMPARE(worker.Events(), QStringList());
}

void tst_DescriptionFetch::GenerateFeatureXmlMap_FirstBufferRefused_ClosesCameraAndEnds()
{
    WorkerUnderTest worker;
    worker.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"), QStringLiteral("/d"));
    QVERIFY(worker.OpenDevice());
    worker.RefuseBuffer(kBuffer);
    MessageLog log;

    worker.GenerateFeatureXmlMap();

    QCOMPARE(log.Entries(),
             QStringList({MessageLog::WorkerEntry("GenerateFeatureXmlMap", "CAMEAR_CREAT_BUF_FAILED")}));
    QCOMPARE(worker.Events(), QStringList({"end 7 3 /d"}));
    QCOMPARE(ScriptedSdk::Calls().mid(2), QStringList({"KX_CC_CloseDevice()", "KX_CC_DestroyHandle()"}));
    QVERIFY(!worker.m_hDevice);
}

void tst_DescriptionFetch::GenerateFeatureXmlMap_FirstBufferRefusedWithoutCamera_Ends()
{
    WorkerUnderTest worker;
    worker.RefuseBuffer(kBuffer);
    MessageLog log;

    worker.GenerateFeatureXmlMap();

    QCOMPARE(log.Entries().size(), 1);
    QCOMPARE(worker.Events(), QStringList({"end -1 2 "}));
    QCOMPARE(ScriptedSdk::Calls(), QStringList());
}

void tst_DescriptionFetch::GenerateFeatureXmlMap_LargerBufferRefused_IsLikeNoText()
{
    ScriptedSdk::SetDescription(TextOfSize(kBuffer + 100));
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());
    worker.RefuseBuffer(kBuffer + 101);
    MessageLog log;

    worker.GenerateFeatureXmlMap();

    QCOMPARE(Fetches().size(), 1);
    QCOMPARE(log.Entries(), QStringList({LoadFailed()}));
    QCOMPARE(ScriptedSdk::LivingHandles(), 1);
    QCOMPARE(worker.Events(), QStringList());
}

QTEST_GUILESS_MAIN(tst_DescriptionFetch)
#include "tst_descriptionfetch.moc"
