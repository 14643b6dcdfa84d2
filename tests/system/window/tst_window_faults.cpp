#include <QtTest>

#include <camerafarm.h>
#include <companion.h>
#include <faultbatch.h>
#include <processuse.h>

#include "heldsearch.h"
#include "toolwindow.h"

using Wanted = FaultBatch::Wanted;
Q_DECLARE_METATYPE(Wanted)

namespace {

const int kCameras = 3;
const QString kFaulty = "SIM0002";
const QStringList kNeighbours{"SIM0001", "SIM0003"};
const QString kNotOpened = "Failed to export features.Failed to open device.";
const int kOperateColumn = 8;
const int kSuccessRole = Qt::UserRole + 2;
const int kFreeAgainMs = 15000; // a heartbeat of 3 s, a restart, a busy machine

QMap<QString, QByteArray> FilesIn(const QString &strFolder)
{
    QMap<QString, QByteArray> mapFiles;
    const QStringList listNames = QDir(strFolder).entryList(QDir::Files | QDir::Hidden);
    for (const QString &strName : listNames)
        mapFiles.insert(strName, ReadFile(strFolder + '/' + strName));
    return mapFiles;
}

QString NameOf(const QString &strSerial)
{
    return "SimCam-150_" + strSerial + ".kfb";
}

} // namespace

/// One faulty camera in batches of the real window, by mouse and keyboard. One window for all cases: no fault
/// may spoil it for the next one.
class tst_WindowFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void Export_OneFaultyCamera_CostsItsRowAlone_data();
    void Export_OneFaultyCamera_CostsItsRowAlone();
    void Import_OneFaultyCamera_CostsItsRowAlone_data();
    void Import_OneFaultyCamera_CostsItsRowAlone();

private:
    struct Row
    {
        QString strText;
        QString strTip;
        bool bSuccess = false;
        bool bRed = false;
    };
    /// What the window showed when the batch was over.
    struct Outcome
    {
        WindowHands::Batch batch;
        QString strCounts;
        bool bEnabled = false;
        QMap<QString, Row> mapRows; // by serial number
    };

    WindowHands Hands() const { return m_pTool->Hands(); }
    Row RowOf(const QString &strSerial) const;
    Outcome Play(bool bExport, const QString &strPath, const QByteArray &fault);
    void VerifyOutcome(const Outcome &outcome, const QString &strDone, const QString &strFailure);
    void EndFault();
    QByteArray Changed() const;

    CameraFarm m_farm;
    HeldSearch m_search;
    std::unique_ptr<ToolWindow> m_pTool;
    QByteArray m_reference; // a healthy camera's file
    int m_nChildren = 0;    // of this program while the window is idle
};

tst_WindowFaults::Row tst_WindowFaults::RowOf(const QString &strSerial) const
{
    const int nRow = Hands().RowOf(strSerial);
    if (nRow < 0)
        return {};
    const QTableWidgetItem *pItem = Hands().Table()->item(nRow, kOperateColumn);
    return {pItem->text(), Hands().Table()->detailTip(nRow, kOperateColumn),
            pItem->data(kSuccessRole).toBool(), pItem->foreground() == QBrush(Qt::red)};
}

/// Exports to a folder, or imports a file, with all cameras, of which one has the fault from the start.
tst_WindowFaults::Outcome tst_WindowFaults::Play(bool bExport, const QString &strPath,
                                                 const QByteArray &fault)
{
    Outcome outcome;
    WindowHands::Moments moments;
    moments.beforeStart = [&] {
        // The next round takes its time: it cannot take the tick from the row before the batch begins.
        const auto held = m_search.Hold();
        if (!fault.isEmpty())
            QCOMPARE(m_farm.Command(fault), QByteArray("ok"));
    };
    moments.atEnd = [&] { // a camera that has gone takes its row along soon
        outcome.bEnabled = m_pTool->Window().isEnabled();
        outcome.strCounts = Hands().Counts();
        for (const QString &strSerial : kNeighbours + QStringList(kFaulty))
            outcome.mapRows.insert(strSerial, RowOf(strSerial));
    };
    Hands().TickAll();
    outcome.batch = bExport ? Hands().Export(strPath, moments) : Hands().Import(strPath, moments);
    return outcome;
}

/// @param strFailure  what the faulty camera's row says; empty when the operation succeeds all the same
void tst_WindowFaults::VerifyOutcome(const Outcome &outcome, const QString &strDone,
                                     const QString &strFailure)
{
    const bool bFailed = !strFailure.isEmpty();
    QVERIFY(outcome.bEnabled);
    QCOMPARE(outcome.strCounts, QString(bFailed ? "0, 2, 1" : "0, 3, 0"));
    for (const QString &strSerial : kNeighbours) {
        const Row row = outcome.mapRows.value(strSerial);
        QCOMPARE(row.strText, strDone);
        QCOMPARE(row.strTip, QString());
        QVERIFY(row.bSuccess && !row.bRed);
    }
    const Row row = outcome.mapRows.value(kFaulty);
    QCOMPARE(row.strText, bFailed ? strFailure : strDone);
    QCOMPARE(row.strTip, bFailed ? "The Reasons of Failure :\r\n" + strFailure : QString());
    QCOMPARE(row.bSuccess, !bFailed);
    QVERIFY(!bFailed || row.bRed);
    const qint64 nTook = outcome.batch.nMilliseconds;
    QVERIFY2(nTook >= 0 && nTook <= FaultBatch::kLongestMs, qPrintable(QString("%1 ms").arg(nTook)));

    QTRY_VERIFY(!QApplication::activeModalWidget());
    QVERIFY(m_pTool->Window().isEnabled());
    QTRY_COMPARE(ChildrenOf(QCoreApplication::applicationPid()).size(), m_nChildren);
}

/// Ends the fault; then the camera can be worked on again.
void tst_WindowFaults::EndFault()
{
    QCOMPARE(m_farm.Command("clear *"), QByteArray("ok"));
    m_farm.Command("plug *");
    if (!m_pTool)
        return;
    // What the tree says may be from before; a camera that could not be released is in use for a heartbeat.
    QVERIFY(m_search.WaitForRound());
    QTRY_COMPARE_WITH_TIMEOUT(m_pTool->Window().GetEnabledNum(), kCameras, kFreeAgainMs);
}

/// A file of values that the cameras take and that differ from those of a fresh one.
QByteArray tst_WindowFaults::Changed() const
{
    return WithValue(WithValue(m_reference, "Width", "320"), "Height", "200");
}

void tst_WindowFaults::initTestCase()
{
    if (const QString strWhy = WindowTestObstacle(); !strWhy.isEmpty())
        QSKIP(qPrintable(strWhy));
    QVERIFY2(m_farm.Start({"--count", QString::number(kCameras), "--first-address", "127.63.1.1"}),
             qPrintable(m_farm.Error()));
    init();
    const QTemporaryDir folder;
    const Outcome outcome = Play(true, folder.path(), {});
    QCOMPARE(outcome.strCounts, QString("0, 3, 0"));
    const auto mapFiles = FilesIn(folder.path());
    m_reference = mapFiles.value(NameOf(kFaulty));
    QVERIFY(IsWhole(m_reference));
    QCOMPARE(mapFiles.values(), QList<QByteArray>({m_reference, m_reference, m_reference}));
}

void tst_WindowFaults::init()
{
    if (m_pTool)
        return;
    EndFault();
    m_pTool = std::make_unique<ToolWindow>();
    m_pTool->Show(kCameras);
    m_nChildren = ChildrenOf(QCoreApplication::applicationPid()).size();
}

void tst_WindowFaults::cleanup()
{
    if (QTest::currentTestFailed())
        m_pTool.reset(); // a window of its own for the next case
}

void tst_WindowFaults::cleanupTestCase()
{
    m_pTool.reset(); // before the search that its tree uses
}

void tst_WindowFaults::Export_OneFaultyCamera_CostsItsRowAlone_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<Wanted>("wanted");
    const auto row = [](const char *pName, const char *pFault, Wanted wanted) {
        QTest::newRow(pName) << "set " + kFaulty.toLatin1() + ' ' + pFault << wanted;
    };
    row("silent", "mute 1", Wanted::NoFile);
    row("silent during the features", "mute-after 100", Wanted::Part);
    row("held by another", "control-held 1", Wanted::NoFile);
    row("stolen during the features", "control-stolen-after 100", Wanted::Part);
    row("restart during the features", "reboot-after 100 500", Wanted::Part);
    row("port closed", "port-closed-after 1", Wanted::NoFile);
    row("archive that unpacks to 300 MB", "description zip-bomb", Wanted::NoFile);
    row("nested 200000 deep", "description deep", Wanted::NoFile);
    row("pointer cycle", "description cycle", Wanted::AllButWidth);
    row("busy", "status 0x8007", Wanted::NoFile);
    row("pending for ever", "pending-ack forever", Wanted::NoFile);
    row("5 % lost", "loss 5", Wanted::SameFile);
    row("id of the next", "wrong-id 1", Wanted::NoFile);
    QTest::newRow("unplugged") << "unplug " + kFaulty.toLatin1() << Wanted::NoFile;
}

void tst_WindowFaults::Export_OneFaultyCamera_CostsItsRowAlone()
{
    QFETCH(QByteArray, fault);
    QFETCH(Wanted, wanted);
    const QTemporaryDir folder;
    const Outcome outcome = Play(true, folder.path(), fault);
    VerifyOutcome(outcome, "Exported.", wanted == Wanted::NoFile ? kNotOpened : QString());
    const auto mapFiles = FilesIn(folder.path());
    QCOMPARE(mapFiles.size(), wanted == Wanted::NoFile ? 2 : 3);
    for (const QString &strSerial : kNeighbours)
        QCOMPARE(mapFiles.value(NameOf(strSerial)), m_reference);
    if (wanted != Wanted::NoFile)
        QCOMPARE(CheckFile(mapFiles.value(NameOf(kFaulty)), m_reference, wanted), QString());

    EndFault();
    const QTemporaryDir again;
    QCOMPARE(Play(true, again.path(), {}).strCounts, QString("0, 3, 0"));
    QCOMPARE(FilesIn(again.path()).values(), QList<QByteArray>({m_reference, m_reference, m_reference}));
}

void tst_WindowFaults::Import_OneFaultyCamera_CostsItsRowAlone_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QString>("failure");
    QTest::addColumn<QByteArray>("faulty"); // the camera's file afterwards; empty: some values are set
    const auto row = [](const char *pName, const char *pFault, const QString &strFailure,
                        const QByteArray &faulty) {
        QTest::newRow(pName) << "set " + kFaulty.toLatin1() + ' ' + pFault << strFailure << faulty;
    };
    row("value refused", "write-refused Width", {},
        WithValue(Changed(), "Width", ValueOf(m_reference, "Width")));
    row("silent during the features", "mute-after 60", {}, {});
    row("held by another", "control-held 1", "Failed to import features.Failed to open device.", m_reference);
}

void tst_WindowFaults::Import_OneFaultyCamera_CostsItsRowAlone()
{
    QFETCH(QByteArray, fault);
    QFETCH(QString, failure);
    QFETCH(QByteArray, faulty);
    QCOMPARE(m_farm.Command("reboot *"), QByteArray("ok")); // undoes what the last import has set
    EndFault();
    const QTemporaryDir folder;
    QFile file(folder.filePath("in.kfb"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(Changed()) > 0);
    file.close();
    VerifyOutcome(Play(false, file.fileName(), fault), "Imported.", failure);

    EndFault();
    const QTemporaryDir again;
    QCOMPARE(Play(true, again.path(), {}).strCounts, QString("0, 3, 0"));
    const auto mapFiles = FilesIn(again.path());
    for (const QString &strSerial : kNeighbours)
        QCOMPARE(mapFiles.value(NameOf(strSerial)), Changed());
    const QByteArray found = mapFiles.value(NameOf(kFaulty));
    if (!faulty.isEmpty())
        QCOMPARE(found, faulty);
    const QList<QByteArray> listPossible = RecordsOf(m_reference) + RecordsOf(Changed());
    for (const QByteArray &record : RecordsOf(found))
        QVERIFY2(listPossible.contains(record), record);
    QCOMPARE(RecordsOf(found).size(), RecordsOf(m_reference).size());
}

int main(int argc, char **argv)
{
    return RunWindowTest<tst_WindowFaults>(argc, argv);
}
#include "tst_window_faults.moc"
