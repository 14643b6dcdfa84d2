#include <QtTest>

#include <atomic>
#include <random>

#include <camerafarm.h>
#include <companion.h>
#include <faultbatch.h>
#include <lanes.h>
#include <ownnetwork.h>
#include <testdesktop.h>

namespace {

const int kLanes = 10;
const int kCameras = 3; // per lane
const int kRounds = 5;  // of one kill per lane
const int kStartLimitMs = 60000;
const int kBatchLimitMs = 60000;

TestDesktop desktop;

QStringList AddressesOf(int nLane)
{
    QStringList listAddresses;
    for (int nCamera = 1; nCamera <= kCameras; ++nCamera)
        listAddresses << QString("127.65.1.%1").arg(nLane * kCameras + nCamera);
    return listAddresses;
}

QStringList SerialsOf(int nLane)
{
    QStringList listSerials;
    for (int nCamera = 1; nCamera <= kCameras; ++nCamera)
        listSerials << QString("SIM%1").arg(nLane * kCameras + nCamera, 4, 10, QLatin1Char('0'));
    return listSerials;
}

/// Waits for a line that the program writes; false when it ends without.
bool WaitForLine(QProcess &process, const QByteArray &line, int nLimitMs)
{
    QElapsedTimer timer;
    timer.start();
    do {
        while (process.canReadLine()) {
            if (process.readLine().trimmed() == line)
                return true;
        }
    } while (process.waitForReadyRead(qMax(1, nLimitMs - static_cast<int>(timer.elapsed()))) ||
             process.canReadLine());
    return false;
}

/// One run of the tool, which exports the cameras of its lane to a folder; killed with the object.
class Tool
{
public:
    explicit Tool(int nLane)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *pName : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"})
            environment.insert(pName, m_home.path());
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(WINDOW_DRIVER,
                        QStringList{m_folder.path(), QString::number(kLanes * kCameras)} + SerialsOf(nLane));
    }
    ~Tool()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY(Tool)

    QProcess &Process() { return m_process; }
    /// What became of the program, for a message.
    QString State() const
    {
        if (m_process.state() != QProcess::NotRunning)
            return "it still runs";
        return QString("it %1 with %2")
            .arg(m_process.exitStatus() == QProcess::NormalExit ? "ended" : "crashed")
            .arg(m_process.exitCode());
    }
    QString Folder() const { return m_folder.path(); }

private:
    QTemporaryDir m_home;
    QTemporaryDir m_folder;
    QProcess m_process;
};

} // namespace

/// The program with the window killed at any moment of a batch. Several of them run side by side, each on
/// cameras of its own.
class tst_WindowKill : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void Kill_TheProgram_CamerasAreFreeAndFilesWhole_data();
    void Kill_TheProgram_CamerasAreFreeAndFilesWhole();
    void cleanupTestCase();

private:
    QString ExportAll(int nLane, QByteArray *pFile, int *pBatchMs) const;
    QString Kill(int nLane, int nPermille);

    CameraFarm m_farm;
    QByteArray m_reference;
    int m_nBatchMs = 0;
    std::atomic_int m_nInTheMiddle{0}; // killed before they were through
    std::mt19937 m_random;
};

/// A whole batch: one camera's file, and how long it took.
QString tst_WindowKill::ExportAll(int nLane, QByteArray *pFile, int *pBatchMs) const
{
    Tool tool(nLane);
    if (!WaitForLine(tool.Process(), "exporting", kStartLimitMs))
        return "no batch begins; " + tool.State();
    QElapsedTimer timer;
    timer.start();
    if (!WaitForLine(tool.Process(), "done", kBatchLimitMs))
        return "the batch does not end; " + tool.State();
    *pBatchMs = static_cast<int>(timer.elapsed());
    *pFile = ReadFile(tool.Folder() + "/SimCam-150_" + SerialsOf(nLane).last() + ".kfb");
    const int nFiles = QDir(tool.Folder()).entryList(QDir::Files | QDir::Hidden).size();
    return nFiles == kCameras ? QString() : QString("%1 files").arg(nFiles);
}

void tst_WindowKill::initTestCase()
{
    if (!desktop.Reason().isEmpty())
        QSKIP(qPrintable(desktop.Reason()));
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    m_random.seed(RandomSeed());
    // Slow cameras: a batch lasts about a second, so that it can be met anywhere.
    QVERIFY2(m_farm.Start({"--count", QString::number(kLanes * kCameras), "--first-address",
                           AddressesOf(0).first(), "--latency-us", "2000"}),
             qPrintable(m_farm.Error()));
    std::array<QByteArray, kLanes> files;
    std::array<int, kLanes> batches{};
    QCOMPARE(RunLanes(kLanes, [&](int nLane) { return ExportAll(nLane, &files[nLane], &batches[nLane]); }),
             QString());
    m_nBatchMs = *std::max_element(batches.begin(), batches.end());
    m_reference = files[0];
    QVERIFY(IsWhole(m_reference));
    for (const QByteArray &file : files)
        QCOMPARE(file, m_reference);
    qInfo("a batch lasts %d ms", m_nBatchMs);
}

void tst_WindowKill::Kill_TheProgram_CamerasAreFreeAndFilesWhole_data()
{
    QTest::addColumn<QVector<int>>("permilles"); // of a batch, by lane
    for (int nRound = 0; nRound < kRounds; ++nRound) {
        QVector<int> vecPermilles;
        for (int nLane = 0; nLane < kLanes; ++nLane)
            vecPermilles << std::uniform_int_distribution<int>(0, 1000)(m_random);
        QTest::addRow("round %d", nRound) << vecPermilles;
    }
}

void tst_WindowKill::Kill_TheProgram_CamerasAreFreeAndFilesWhole()
{
    QFETCH(QVector<int>, permilles);
    QCOMPARE(RunLanes(kLanes, [&](int nLane) { return Kill(nLane, permilles.at(nLane)); }), QString());
}

QString tst_WindowKill::Kill(int nLane, int nPermille)
{
    Tool tool(nLane);
    if (!WaitForLine(tool.Process(), "exporting", kStartLimitMs))
        return "no batch begins; " + tool.State();
    m_nInTheMiddle += WaitForLine(tool.Process(), "done", m_nBatchMs * nPermille / 1000) ? 0 : 1;
    tool.Process().kill();
    if (!tool.Process().waitForFinished(10000) || tool.Process().exitStatus() != QProcess::CrashExit)
        return "the program ended by itself, or cannot be killed";

    QString strError = CheckOpenAgain(AddressesOf(nLane));
    if (!strError.isEmpty())
        return strError;
    const QStringList listFiles = QDir(tool.Folder()).entryList({"*.kfb"}, QDir::Files);
    for (const QString &strFile : listFiles) {
        if (ReadFile(tool.Folder() + '/' + strFile) != m_reference)
            return strFile + " is not whole";
    }
    return {};
}

void tst_WindowKill::cleanupTestCase()
{
    if (m_nBatchMs == 0)
        return; // skipped
    qInfo("%d of %d killed in the middle of their batch", m_nInTheMiddle.load(), kLanes * kRounds);
    QVERIFY2(m_nInTheMiddle > 0, "nothing was killed while it worked");
}

int main(int argc, char **argv)
{
    EnterOwnNetwork();
    desktop.Start();
    QCoreApplication application(argc, argv);
    tst_WindowKill test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_window_kill.moc"
