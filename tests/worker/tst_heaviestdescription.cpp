#include <QTemporaryDir>
#include <QtTest>

#include <ctime>
#include <sys/resource.h>

#include "description/descriptionreader.h"
#include "scriptedsdk.h"
#include "workerundertest.h"

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kAddressSanitizer = true;
#else
constexpr bool kAddressSanitizer = false;
#endif

/// What a description that a helper lets pass can cost the process of all cameras.
class tst_HeaviestDescription : public QObject
{
    Q_OBJECT

private slots:
    void Run_EveryBoundReached_TakesSecondsAndSomeHundredMegabytes();

private:
    static QByteArray Description();
    static QByteArray Diamond(int nLevels);
};

/// Nodes between which the paths double with every level: uses up the steps that all walks have together.
QByteArray tst_HeaviestDescription::Diamond(int nLevels)
{
    QByteArray nodes;
    for (int i = 0; i < nLevels; ++i) {
        const QByteArray next = "<pValue>D" + QByteArray::number(i + 1) + "</pValue>";
        nodes += "<Converter Name='D" + QByteArray::number(i) + "'>" + next + next + "</Converter>";
    }
    return nodes + "<Register Name='D" + QByteArray::number(nLevels) +
           "'><pInvalidator>UserSetLoad</pInvalidator></Register>";
}

/// As many elements and attributes as pass, in features that are all selected, below features whose every
/// descendant is looked at in search of "Streamable"; filled up with long names and texts. Each level costs
/// 40 ms more; the 200 that pass would take this test 10 s.
QByteArray tst_HeaviestDescription::Description()
{
    const int nLevels = 20;
    const int nFeatures = kxcc::kMaxAttributes / 2 - 1000;
    QByteArray text = "<R>" + Diamond(40);
    for (int i = 0; i < nLevels; ++i)
        text += "<Float Name='Level" + QByteArray::number(i) + "'><pMin>D0</pMin>";
    const int nFill = (static_cast<int>(kxcc::kMaxDescription) - text.size() - 20000) / nFeatures - 60;
    for (int i = 0; i < nFeatures; ++i) {
        text += "<Float Name='" + QByteArray(nFill / 2, 'n') + QByteArray::number(i) + "' b=''>" +
                QByteArray(nFill / 2, 't') + "<pMin>D0</pMin></Float>";
    }
    return text + QByteArray("</Float>").repeated(nLevels) + "</R>";
}

void tst_HeaviestDescription::Run_EveryBoundReached_TakesSecondsAndSomeHundredMegabytes()
{
    const QByteArray text = Description();
    QVERIFY(text.size() > static_cast<int>(kxcc::kMaxDescription) * 9 / 10);
    QVERIFY(kxcc::ReadDescription(text.toStdString()) == kxcc::DescriptionVerdict::Good);
    ScriptedSdk::Reset();
    ScriptedSdk::SetDescription(text);
    const QTemporaryDir directory;
    WorkerUnderTest worker;
    worker.SetExportThreadInfo(CameraRecord(KX_CC_TRANSPORT_GIGE, "M", "S"), directory.path());
    rusage before = {};
    getrusage(RUSAGE_SELF, &before);
    const std::clock_t nStart = std::clock();

    worker.run();

    const double dSeconds = static_cast<double>(std::clock() - nStart) / CLOCKS_PER_SEC;
    rusage after = {};
    getrusage(RUSAGE_SELF, &after);
    const long nMegabytes = (after.ru_maxrss - before.ru_maxrss) >> 10;
    qInfo("%.1f s of processor time, %ld MB", dSeconds, nMegabytes);
    QVERIFY(worker.m_mapFeatureXml.size() > kxcc::kMaxNodes * 2 / 5);
    QVERIFY(dSeconds < 20);
    if (!kAddressSanitizer)
        QVERIFY(nMegabytes < 600);
}

QTEST_GUILESS_MAIN(tst_HeaviestDescription)
#include "tst_heaviestdescription.moc"
