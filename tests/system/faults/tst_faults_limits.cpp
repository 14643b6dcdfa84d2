#include <QtTest>

#include <sys/resource.h>
#include <unistd.h>

#include "faultbatch.h"
#include "manyidentities.h"

// More cameras than the process may serve at once: each takes descriptors, a thread and a helper process.
class tst_Faults_Limits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void Export_FewDescriptors_ServesAllInTurn();
    void Export_NoDescriptors_FailsWithTheReason();
    void Export_SoftLimitOfDescriptors_IsRaised();
    void Export_FewThreads_ServesAllInTurn_data();
    void Export_FewThreads_ServesAllInTurn();
    void Export_NoThread_FailsWithTheReason();
    void Export_DeviceOfManyIdentities_FailsAlone();

private:
    static CompanionRun RunBehind(const QStringList &before, const QStringList &arguments);
    static CompanionRun RunAsSomebody(const QString &processes, const QStringList &arguments);
    QStringList Export(const QStringList &cameras) const;
    QStringList Addresses() const;
    QString CheckFiles(const CompanionRun &run) const;

    static constexpr int kCameras = 20;
    CameraFarm m_farm;
    QByteArray m_reference;
    QScopedPointer<QTemporaryDir> m_folder;

private slots:
    void init();
};

static const char kNetwork[] = "127.50.22.";

void tst_Faults_Limits::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QVERIFY2(m_farm.Start({"--count", QString::number(kCameras), "--first-address", "127.50.22.1"}),
             qPrintable(m_farm.Error()));
    init();
    QCOMPARE(RunCompanion(Export({"--address", "127.50.22.1"})).exitCode, 0);
    m_reference = ReadFile(m_folder->filePath("SimCam-150_SIM0001.kfb"));
    QVERIFY(IsWhole(m_reference));
}

void tst_Faults_Limits::init()
{
    m_folder.reset(new QTemporaryDir);
    QVERIFY(QFile::setPermissions(m_folder->path(), static_cast<QFile::Permissions>(0x7777)));
}

CompanionRun tst_Faults_Limits::RunBehind(const QStringList &before, const QStringList &arguments)
{
    QProcess process;
    process.start(before.first(), before.mid(1) + QStringList(PROJECT_BIN_DIR "/kx-features") + arguments);
    CompanionRun run;
    const bool ended = process.waitForFinished(60000);
    run.exitCode = ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}

// As a user without other processes, most likely: the limit counts those of a user.
CompanionRun tst_Faults_Limits::RunAsSomebody(const QString &processes, const QStringList &arguments)
{
    const QString user = QString::number(1000000000 + getpid());
    return RunBehind({"setpriv", "--reuid=" + user, "--regid=" + user, "--clear-groups", "prlimit",
                      "--nproc=" + processes, "env", "XDG_STATE_HOME=/nowhere"},
                     arguments);
}

QStringList tst_Faults_Limits::Export(const QStringList &cameras) const
{
    return QStringList{"export", "--to", m_folder->path()} + cameras;
}

QStringList tst_Faults_Limits::Addresses() const
{
    QStringList addresses = {"--address"};
    for (int camera = 1; camera <= kCameras; ++camera)
        addresses << kNetwork + QString::number(camera);
    return addresses;
}

// Empty, or why the run did not end with the file of each camera of the farm.
QString tst_Faults_Limits::CheckFiles(const CompanionRun &run) const
{
    const QStringList names = QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names) {
        if (ReadFile(m_folder->filePath(name)) != m_reference)
            return "another file: " + name;
    }
    const bool good = names.size() == kCameras && run.out.count("ok ") == kCameras;
    return good ? QString()
                : QString("exit code %1, %2 files: ").arg(run.exitCode).arg(names.size()) +
                      QString::fromUtf8(run.out + run.err);
}

void tst_Faults_Limits::Export_FewDescriptors_ServesAllInTurn()
{
    const CompanionRun run = RunBehind({"prlimit", "--nofile=48"}, Export({"--all"}));
    QCOMPARE(CheckFiles(run), QString());
    QCOMPARE(run.exitCode, 0);
}

void tst_Faults_Limits::Export_NoDescriptors_FailsWithTheReason()
{
    const CompanionRun run = RunBehind({"prlimit", "--nofile=20"}, Export({"--address", "127.50.22.1"}));
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.out.contains("This computer allows too few open files."), run.out);
}

void tst_Faults_Limits::Export_SoftLimitOfDescriptors_IsRaised()
{
    // Too low for one camera; what is allowed is enough.
    const CompanionRun run = RunBehind({"prlimit", "--nofile=20:1000"}, Export({"--all"}));
    QCOMPARE(CheckFiles(run), QString());
    QCOMPARE(run.exitCode, 0);
}

void tst_Faults_Limits::Export_FewThreads_ServesAllInTurn_data()
{
    QTest::addColumn<QString>("processes");
    QTest::addColumn<QStringList>("cameras");
    QTest::newRow("all") << "12" << QStringList("--all");
    QTest::newRow("asked one by one") << "12" << Addresses();
    // A count that leaves out one thread of each helper comes to light when many run.
    QTest::newRow("half of them at once") << "40" << Addresses();
}

void tst_Faults_Limits::Export_FewThreads_ServesAllInTurn()
{
    QFETCH(QString, processes);
    QFETCH(QStringList, cameras);
    if (RunAsSomebody("20", {"--version"}).exitCode != 0)
        QSKIP("the program cannot be run as another user here");
    const CompanionRun run = RunAsSomebody(processes, Export(cameras));
    QCOMPARE(CheckFiles(run), QString());
    QCOMPARE(run.exitCode, 0);
}

void tst_Faults_Limits::Export_NoThread_FailsWithTheReason()
{
    if (RunAsSomebody("20", {"--version"}).exitCode != 0)
        QSKIP("the program cannot be run as another user here");
    const CompanionRun run = RunAsSomebody("1", Export({"--address", "127.50.22.1", "127.50.22.2"}));
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.out.count("This computer allows no further thread."), 2);
}

void tst_Faults_Limits::Export_DeviceOfManyIdentities_FailsAlone()
{
    constexpr int identities = 60;
    const ManyIdentities device("127.50.23.1", identities);
    QVERIFY(device.IsThere());
    const CompanionRun run = RunBehind({"prlimit", "--nofile=64"}, Export({"--all"}));
    QCOMPARE(CheckFiles(run), QString());
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.out.count("failed  Rogue "), identities);
}

QTEST_GUILESS_MAIN(tst_Faults_Limits)
#include "tst_faults_limits.moc"
