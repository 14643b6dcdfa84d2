#include <QtTest>

#include <KxCameraControl/kxcameracontrol.h>

#include <csignal>
#include <random>

#include "faultbatch.h"

// What is left when the program, or the helper process of a camera, is killed at any moment of a batch.
class tst_Faults_Kill : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void Kill_TheProgram_CamerasAreFreeAndFilesWhole_data();
    void Kill_TheProgram_CamerasAreFreeAndFilesWhole();
    void Kill_Helpers_OtherCamerasCompleteAndFilesAreWhole_data();
    void Kill_Helpers_OtherCamerasCompleteAndFilesAreWhole();

private:
    void StartExport(QProcess *pProcess);
    bool Opens(int camera) const;
    void VerifyAllOpen() const;
    static QString Address(int camera) { return QString("127.50.7.%1").arg(camera); }

    CameraFarm m_farm;
    QByteArray m_reference;
    int m_nBatchMs = 0;
    std::mt19937 m_random;
    QScopedPointer<QTemporaryDir> m_folder;
};

namespace {

// Process ids of the children. A helper belongs to the worker thread that started it.
QByteArray HelpersOf(qint64 processId)
{
    QByteArray ids;
    const QString tasks = QString("/proc/%1/task").arg(processId);
    const QStringList threads = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads)
        ids += ReadFile(tasks + '/' + thread + "/children");
    return ids;
}

} // namespace

static const int kCameras = 6;
static const int kProgramKills = 25;
static const int kHelperBatches = 5;
static const int kHelperKills = 5; // per batch

void tst_Faults_Kill::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    const unsigned int seed = qEnvironmentVariableIsSet("KX_TEST_SEED")
                                  ? qEnvironmentVariableIntValue("KX_TEST_SEED")
                                  : std::random_device()();
    qInfo("KX_TEST_SEED=%u", seed);
    m_random.seed(seed);
    // Slow cameras: a batch lasts a second, so that it can be met anywhere.
    QVERIFY2(m_farm.Start({"--count", QString::number(kCameras), "--first-address", Address(1),
                           "--latency-us", "2000"}),
             qPrintable(m_farm.Error()));
    init();
    QElapsedTimer timer;
    timer.start();
    QProcess process;
    StartExport(&process);
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), 0);
    m_nBatchMs = static_cast<int>(timer.elapsed());
    m_reference = ReadFile(m_folder->filePath("SimCam-150_SIM0001.kfb"));
    QVERIFY(IsWhole(m_reference));
}

void tst_Faults_Kill::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(m_folder->isValid());
}

void tst_Faults_Kill::StartExport(QProcess *pProcess)
{
    QStringList arguments = {"export", "--to", m_folder->path(), "--json", "--address"};
    for (int camera = 1; camera <= kCameras; ++camera)
        arguments << Address(camera);
    StartCompanion(*pProcess, arguments);
}

bool tst_Faults_Kill::Opens(int camera) const
{
    KX_CC_DEVICE_INFO info = {};
    void *hDevice = nullptr;
    const bool opened = KX_CC_FindDevice(Address(camera).toLatin1(), 1000, &info) == KX_CC_OK &&
                        KX_CC_CreateHandle(&hDevice, &info) == KX_CC_OK &&
                        KX_CC_OpenDevice(hDevice, KX_CC_ACCESS_MODE_EXCLUSIVE, 0) == KX_CC_OK;
    if (hDevice != nullptr)
        KX_CC_DestroyHandle(hDevice);
    return opened;
}

void tst_Faults_Kill::VerifyAllOpen() const
{
    QElapsedTimer timer;
    timer.start();
    for (int camera = 1; camera <= kCameras; ++camera) {
        // 3 s of heartbeat, and room for a busy machine.
        const int left = qMax(1, 15000 - static_cast<int>(timer.elapsed()));
        QTRY_VERIFY_WITH_TIMEOUT(Opens(camera), left);
    }
}

void tst_Faults_Kill::Kill_TheProgram_CamerasAreFreeAndFilesWhole_data()
{
    QTest::addColumn<int>("permille");
    for (int i = 0; i < kProgramKills; ++i) {
        const int permille = std::uniform_int_distribution<int>(0, 1000)(m_random);
        QTest::addRow("%d after %d/1000 of a batch", i, permille) << permille;
    }
}

void tst_Faults_Kill::Kill_TheProgram_CamerasAreFreeAndFilesWhole()
{
    QFETCH(int, permille);
    QProcess process;
    StartExport(&process);
    process.waitForFinished(m_nBatchMs * permille / 1000 + 1);
    process.kill();
    QVERIFY(process.state() == QProcess::NotRunning || process.waitForFinished(10000));

    VerifyAllOpen();
    const QStringList files = QDir(m_folder->path()).entryList({"*.kfb"}, QDir::Files);
    for (const QString &file : files)
        QCOMPARE(ReadFile(m_folder->filePath(file)), m_reference);
}

void tst_Faults_Kill::Kill_Helpers_OtherCamerasCompleteAndFilesAreWhole_data()
{
    QTest::addColumn<QVector<int>>("pauses"); // before each kill, in milliseconds
    for (int i = 0; i < kHelperBatches; ++i) {
        QVector<int> pauses;
        for (int kill = 0; kill < kHelperKills; ++kill)
            pauses << std::uniform_int_distribution<int>(0, m_nBatchMs / kHelperKills)(m_random);
        QTest::addRow("batch %d", i) << pauses;
    }
}

void tst_Faults_Kill::Kill_Helpers_OtherCamerasCompleteAndFilesAreWhole()
{
    QFETCH(QVector<int>, pauses);
    QProcess process;
    StartExport(&process);
    int nKilled = 0;
    for (const int pause : pauses) {
        process.waitForFinished(pause + 1);
        const QByteArray children = HelpersOf(process.processId());
        const QList<QByteArray> ids = children.simplified().split(' ');
        const int chosen = std::uniform_int_distribution<int>(0, ids.size() - 1)(m_random);
        const pid_t helper = ids.at(chosen).toInt();
        nKilled += helper > 0 && ::kill(helper, SIGKILL) == 0 ? 1 : 0;
    }
    QVERIFY(process.state() == QProcess::NotRunning || process.waitForFinished(30000));
    QVERIFY2(process.exitStatus() == QProcess::NormalExit, "the program crashed");

    const QByteArray rows = process.readAllStandardOutput();
    QVERIFY2(rows.count("\"result\"") == kCameras, rows);
    int nEqual = 0;
    const QStringList files = QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden);
    const QList<QByteArray> all = RecordsOf(m_reference);
    for (const QString &file : files) {
        const QByteArray text = ReadFile(m_folder->filePath(file));
        QVERIFY2(IsWhole(text), qPrintable(file));
        const QList<QByteArray> records = RecordsOf(text);
        for (const QByteArray &record : records)
            QVERIFY2(all.contains(record), record);
        nEqual += text == m_reference ? 1 : 0;
    }
    QVERIFY2(nEqual >= kCameras - nKilled, qPrintable(QString("%1 of %2").arg(nEqual).arg(kCameras)));
    VerifyAllOpen();
}

QTEST_GUILESS_MAIN(tst_Faults_Kill)
#include "tst_faults_kill.moc"
