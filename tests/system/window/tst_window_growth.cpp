#include <QtTest>

#include <malloc.h>

#include <camerafarm.h>
#include <processuse.h>

#include "heldsearch.h"
#include "toolwindow.h"

namespace {

const int kCameras = 4;
#if defined(__SANITIZE_ADDRESS__)
const int kBatches = 40; // slower, and memory is not compared
#else
const int kBatches = 100;
#endif
const int kWarmUp = 20; // what is made once for the process is there by then
const int kLooks = 10;
// On a busy machine the allocator keeps up to 4 MB more or less. A real leak adds up to more over 80 batches:
// the text of a description that each worker forgets comes to 52 MB.
const qint64 kNoiseKb = 8LL * 1024;

} // namespace

/// A hundred batches in one window, of which one camera fails each time.
class tst_WindowGrowth : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void Export_ManyBatches_NothingGrows();

private:
    void Export(int nBatches);
    ProcessUse UseAtRest();

    CameraFarm m_farm;
    HeldSearch m_search;
    std::unique_ptr<ToolWindow> m_pTool;
};

void tst_WindowGrowth::initTestCase()
{
    if (const QString strWhy = WindowTestObstacle(); !strWhy.isEmpty())
        QSKIP(qPrintable(strWhy));
    QVERIFY2(m_farm.Start({"--count", QString::number(kCameras), "--first-address", "127.64.1.1"}),
             qPrintable(m_farm.Error()));
    QCOMPARE(m_farm.Command("set SIM0002 description not-xml"), QByteArray("ok"));
    m_pTool = std::make_unique<ToolWindow>();
    m_pTool->Show(kCameras);
}

void tst_WindowGrowth::cleanupTestCase()
{
    m_pTool.reset(); // before the search that its tree uses
}

void tst_WindowGrowth::Export(int nBatches)
{
    for (int nBatch = 0; nBatch < nBatches && !QTest::currentTestFailed(); ++nBatch) {
        const QTemporaryDir folder;
        m_pTool->Hands().TickAll();
        m_pTool->Hands().Export(folder.path());
        QCOMPARE(m_pTool->Hands().Counts(), QString("0, 3, 1"));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 3);
    }
}

/// What this program has when nothing is at work: the least of some looks, because threads and dialogs of the
/// last batch end a little after it.
ProcessUse tst_WindowGrowth::UseAtRest()
{
    ProcessUse least;
    for (int nLook = 0; nLook < kLooks; ++nLook) {
        QTest::qWait(50);
        const auto held = m_search.Hold(); // a round has sockets of its own
        const ProcessUse use = UseOfThisProcess();
        least.nDescriptors = nLook ? qMin(least.nDescriptors, use.nDescriptors) : use.nDescriptors;
        least.nThreads = nLook ? qMin(least.nThreads, use.nThreads) : use.nThreads;
        least.nChildren = nLook ? qMin(least.nChildren, use.nChildren) : use.nChildren;
    }
    malloc_trim(0); // what is free, but kept for the next request, is not in use
    least.nResidentKb = UseOfThisProcess().nResidentKb;
    return least;
}

void tst_WindowGrowth::Export_ManyBatches_NothingGrows()
{
    Export(kWarmUp);
    const ProcessUse before = UseAtRest();
    Export(kBatches - kWarmUp);
    const ProcessUse after = UseAtRest();

    QCOMPARE(after.nDescriptors, before.nDescriptors);
    QCOMPARE(after.nThreads, before.nThreads);
    QCOMPARE(after.nChildren, before.nChildren);
    qInfo("resident set: %lld kB, then %lld kB", before.nResidentKb, after.nResidentKb);
#if !defined(__SANITIZE_ADDRESS__) // it keeps what was freed
    QVERIFY(after.nResidentKb < before.nResidentKb + kNoiseKb);
#endif
}

int main(int argc, char **argv)
{
    return RunWindowTest<tst_WindowGrowth>(argc, argv);
}
#include "tst_window_growth.moc"
