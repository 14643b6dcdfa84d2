#include <QtTest>

#include <atomic>
#include <csignal>
#include <random>

#include "faultbatch.h"
#include "lanes.h"
#include "processuse.h"

// What is left when the program, or the helper process of a camera, is killed at any moment of a batch.
// Several batches run side by side, each on cameras of its own.
class tst_Faults_Kill : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void Kill_TheProgram_CamerasAreFreeAndFilesWhole_data();
    void Kill_TheProgram_CamerasAreFreeAndFilesWhole();
    void Kill_Helpers_OtherCamerasCompleteAndFilesAreWhole_data();
    void Kill_Helpers_OtherCamerasCompleteAndFilesAreWhole();
    void cleanupTestCase();

private:
    QString KillProgram(int lane, int permille);
    QString KillHelpers(int lane, const QVector<int> &pauses);
    QString CheckFiles(const QString &folder, int nKilled) const;
    int Random(int largest) { return std::uniform_int_distribution<int>(0, largest)(m_random); }

    CameraFarm m_farm;
    QByteArray m_reference;
    int m_nBatchMs = 0;
    std::mt19937 m_random;
    std::atomic_int m_nInTheMiddle{0}; // programs killed before they were through
    std::atomic_int m_nHelpers{0};     // helpers killed
};

static const int kLanes = 5;
static const int kCameras = 6;        // per lane
static const int kProgramRounds = 10; // of one kill per lane
static const int kHelperRounds = 3;   // of one batch per lane
static const int kHelperKills = 5;    // per batch

namespace {

QStringList AddressesOf(int lane)
{
    QStringList addresses;
    for (int camera = 1; camera <= kCameras; ++camera)
        addresses << QStringLiteral("127.50.7.%1").arg(lane * kCameras + camera);
    return addresses;
}

void StartExport(QProcess &process, int lane, const QString &folder)
{
    StartCompanion(process, QStringList{"export", "--to", folder, "--json", "--address"} + AddressesOf(lane));
}

// Not every child is one: when a program ends, LeakSanitizer looks at it from a process of its own, and
// without that one it stands still for ever.
QList<qint64> HelpersOf(qint64 processId)
{
    QList<qint64> helpers;
    for (const qint64 child : ChildrenOf(processId)) {
        if (ReadFile(QStringLiteral("/proc/%1/comm").arg(child)).startsWith("kx-camera-sessi"))
            helpers << child;
    }
    return helpers;
}

} // namespace

void tst_Faults_Kill::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    m_random.seed(RandomSeed());
    // Slow cameras: a batch lasts about a second, so that it can be met anywhere.
    QVERIFY2(m_farm.Start({"--count", QString::number(kLanes * kCameras), "--first-address",
                           AddressesOf(0).first(), "--latency-us", "1000"}),
             qPrintable(m_farm.Error()));
    const QTemporaryDir folder;
    QElapsedTimer timer;
    timer.start();
    const QString error = RunLanes(kLanes, [&](int lane) {
        QProcess process;
        StartExport(process, lane, folder.path());
        return process.waitForFinished(60000) && process.exitCode() == 0 ? QString() : QString("failed");
    });
    QCOMPARE(error, QString());
    m_nBatchMs = static_cast<int>(timer.elapsed());
    m_reference = ReadFile(folder.filePath("SimCam-150_SIM0001.kfb"));
    QVERIFY(IsWhole(m_reference));
    qInfo("a batch lasts %d ms", m_nBatchMs);
}

void tst_Faults_Kill::Kill_TheProgram_CamerasAreFreeAndFilesWhole_data()
{
    QTest::addColumn<QVector<int>>("permilles"); // of a batch, by lane
    for (int i = 0; i < kProgramRounds; ++i) {
        QVector<int> permilles;
        for (int lane = 0; lane < kLanes; ++lane)
            permilles << Random(1000);
        QTest::addRow("round %d", i) << permilles;
    }
}

void tst_Faults_Kill::Kill_TheProgram_CamerasAreFreeAndFilesWhole()
{
    QFETCH(QVector<int>, permilles);
    QCOMPARE(RunLanes(kLanes, [&](int lane) { return KillProgram(lane, permilles.at(lane)); }), QString());
}

QString tst_Faults_Kill::KillProgram(int lane, int permille)
{
    const QTemporaryDir folder;
    QProcess process;
    StartExport(process, lane, folder.path());
    process.waitForFinished(m_nBatchMs * permille / 1000 + 1);
    m_nInTheMiddle += process.state() == QProcess::NotRunning ? 0 : 1;
    process.kill();
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(10000))
        return "the program cannot be killed";

    QString error = CheckOpenAgain(AddressesOf(lane));
    if (!error.isEmpty())
        return error;
    const QStringList files = QDir(folder.path()).entryList({"*.kfb"}, QDir::Files);
    for (const QString &file : files) {
        if (ReadFile(folder.filePath(file)) != m_reference)
            return file + " is not whole";
    }
    return {};
}

void tst_Faults_Kill::Kill_Helpers_OtherCamerasCompleteAndFilesAreWhole_data()
{
    QTest::addColumn<QVector<QVector<int>>>("pauses"); // by lane: before each kill, in milliseconds
    for (int i = 0; i < kHelperRounds; ++i) {
        QVector<QVector<int>> pauses(kLanes);
        for (QVector<int> &ofLane : pauses) {
            for (int kill = 0; kill < kHelperKills; ++kill)
                ofLane << Random(m_nBatchMs / kHelperKills);
        }
        QTest::addRow("round %d", i) << pauses;
    }
}

void tst_Faults_Kill::Kill_Helpers_OtherCamerasCompleteAndFilesAreWhole()
{
    QFETCH(QVector<QVector<int>>, pauses);
    QCOMPARE(RunLanes(kLanes, [&](int lane) { return KillHelpers(lane, pauses.at(lane)); }), QString());
}

QString tst_Faults_Kill::KillHelpers(int lane, const QVector<int> &pauses)
{
    const QTemporaryDir folder;
    QProcess process;
    StartExport(process, lane, folder.path());
    int nKilled = 0;
    std::mt19937 random(static_cast<unsigned int>(pauses.first()));
    for (const int pause : pauses) {
        process.waitForFinished(pause + 1);
        const QList<qint64> helpers = HelpersOf(process.processId());
        if (helpers.isEmpty())
            continue;
        const qint64 helper = helpers.at(static_cast<int>(random() % unsigned(helpers.size())));
        nKilled += ::kill(static_cast<pid_t>(helper), SIGKILL) == 0 ? 1 : 0;
    }
    m_nHelpers += nKilled;
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(30000))
        return "the program does not end";
    if (process.exitStatus() != QProcess::NormalExit)
        return "the program crashed";
    const QByteArray rows = process.readAllStandardOutput();
    if (rows.count("\"result\"") != kCameras)
        return "rows: " + QString::fromUtf8(rows);
    const QString error = CheckFiles(folder.path(), nKilled);
    return error.isEmpty() ? CheckOpenAgain(AddressesOf(lane)) : error;
}

// Every file is whole, and only cameras whose helper was killed lack something.
QString tst_Faults_Kill::CheckFiles(const QString &folder, int nKilled) const
{
    int nEqual = 0;
    const QStringList files = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    for (const QString &file : files) {
        const QByteArray text = ReadFile(folder + '/' + file);
        const QString error = CheckFile(text, m_reference, FaultBatch::Wanted::Part);
        if (!error.isEmpty())
            return file + ": " + error;
        nEqual += text == m_reference ? 1 : 0;
    }
    return nEqual >= kCameras - nKilled
               ? QString()
               : QStringLiteral("%1 complete files after %2 kills").arg(nEqual).arg(nKilled);
}

void tst_Faults_Kill::cleanupTestCase()
{
    if (m_nBatchMs == 0)
        return; // skipped
    qInfo("%d of %d programs killed in the middle of their batch, %d helpers", m_nInTheMiddle.load(),
          kLanes * kProgramRounds, m_nHelpers.load());
    QVERIFY2(m_nInTheMiddle > 0 && m_nHelpers > 0, "nothing was killed while it worked");
}

QTEST_GUILESS_MAIN(tst_Faults_Kill)
#include "tst_faults_kill.moc"
