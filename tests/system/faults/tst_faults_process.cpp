#include <QtTest>

#include <csignal>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include "faultbatch.h"

// What the system does to the program itself: signals, streams that are closed or full.
class tst_Faults_Process : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void Export_StandardStreamClosed_IsNoOtherFile_data();
    void Export_StandardStreamClosed_IsNoOtherFile();
    void Export_OutputFull_SaysSoAndKeepsTheFiles();
    void Import_ReaderGoesAway_SetsEveryCamera();
    void Export_SignalsIgnoredAtStart_StayIgnored_data();
    void Export_SignalsIgnoredAtStart_StayIgnored();
    void Import_LogCannotBeWritten_FailsNoCamera_data();
    void Import_LogCannotBeWritten_FailsNoCamera();

private:
    void StartInShell(QProcess &process, const QString &script, const QStringList &arguments);
    CompanionRun RunInShell(const QString &script, const QStringList &arguments);
    QStringList Addresses() const;
    QString CheckFiles(const QString &folder) const;
    QString WriteImport(const QString &folder) const;
    QByteArrayList Widths();

    FaultBatch m_batch{"127.50.21."};
    QTemporaryDir m_state; // where the log is
};

void tst_Faults_Process::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    qputenv("XDG_STATE_HOME", QFile::encodeName(m_state.path()));
    QCOMPARE(m_batch.Prepare(), QString());
}

// The script runs the program as "$@".
void tst_Faults_Process::StartInShell(QProcess &process, const QString &script, const QStringList &arguments)
{
    process.start("sh", QStringList{"-c", script, "sh", PROJECT_BIN_DIR "/kx-features"} + arguments);
    process.waitForStarted();
}

CompanionRun tst_Faults_Process::RunInShell(const QString &script, const QStringList &arguments)
{
    QProcess process;
    StartInShell(process, script, arguments);
    CompanionRun run;
    const bool ended = process.waitForFinished(60000);
    run.exitCode = ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}

QStringList tst_Faults_Process::Addresses() const
{
    return {"--address", m_batch.Address(1), m_batch.Address(2), m_batch.Address(3)};
}

// Empty, or what is wrong with the three files.
QString tst_Faults_Process::CheckFiles(const QString &folder) const
{
    for (int camera = 1; camera <= 3; ++camera) {
        const QString name = QString("/SimCam-150_SIM000%1.kfb").arg(camera);
        if (ReadFile(folder + name) != m_batch.Reference())
            return "another file: " + name;
    }
    const QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    return names.size() == 3 ? QString() : "files: " + names.join(' ');
}

// The path of a file that sets a width of 320.
QString tst_Faults_Process::WriteImport(const QString &folder) const
{
    const QByteArray text = WithValue(m_batch.Reference(), "Width", "320");
    QFile file(folder + "/import.kfb");
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? file.fileName() : QString();
}

QByteArrayList tst_Faults_Process::Widths()
{
    QByteArrayList widths;
    const QMap<QString, QByteArray> files = m_batch.Export().files;
    for (const QByteArray &file : files)
        widths << ValueOf(file, "Width");
    return widths;
}

void tst_Faults_Process::Export_StandardStreamClosed_IsNoOtherFile_data()
{
    QTest::addColumn<QString>("closing");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("input") << "exec \"$@\" <&-" << 0;
    QTest::newRow("output") << "exec \"$@\" >&-" << 1;
    QTest::newRow("error output") << "exec \"$@\" 2>&-" << 0;
    QTest::newRow("all") << "exec \"$@\" <&- >&- 2>&-" << 1;
}

void tst_Faults_Process::Export_StandardStreamClosed_IsNoOtherFile()
{
    QFETCH(QString, closing);
    QFETCH(int, exitCode);
    QCOMPARE(m_batch.StartFarm(), QString());
    const QTemporaryDir folder;
    const CompanionRun run = RunInShell(closing, QStringList{"export", "--to", folder.path()} + Addresses());
    QCOMPARE(run.exitCode, exitCode);
    QCOMPARE(CheckFiles(folder.path()), QString());
    QCOMPARE(run.out.count("ok "), exitCode == 0 ? 3 : 0);
    const QByteArray log = ReadFile(m_state.path() + "/lumo/ImportExportFeatures.log");
    QVERIFY2(!log.contains("SimCam-150"), log.constData());
}

void tst_Faults_Process::Export_OutputFull_SaysSoAndKeepsTheFiles()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    const QTemporaryDir folder;
    const CompanionRun run =
        RunInShell("exec \"$@\" >/dev/full", QStringList{"export", "--to", folder.path()} + Addresses());
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.err, QByteArray("kx-features: standard output could not be written\n"));
    QCOMPARE(CheckFiles(folder.path()), QString());
}

// As in "kx-features import ... | grep -q ok".
void tst_Faults_Process::Import_ReaderGoesAway_SetsEveryCamera()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    const QTemporaryDir folder;
    const CompanionRun run = RunInShell("{ \"$@\"; echo exit code $? >&2; } | :",
                                        QStringList{"import", WriteImport(folder.path())} + Addresses());
    QCOMPARE(run.err, QByteArray("kx-features: standard output could not be written\nexit code 1\n"));
    QCOMPARE(Widths(), QByteArrayList({"320", "320", "320"}));
}

void tst_Faults_Process::Export_SignalsIgnoredAtStart_StayIgnored_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("signal");
    QTest::newRow("nohup") << "HUP" << SIGHUP;
    QTest::newRow("in the background of a script") << "INT" << SIGINT;
    QTest::newRow("terminate") << "TERM" << SIGTERM;
}

void tst_Faults_Process::Export_SignalsIgnoredAtStart_StayIgnored()
{
    QFETCH(QString, name);
    QFETCH(int, signal);
    QCOMPARE(m_batch.StartFarm({"--latency-us", "2000"}), QString());
    const QTemporaryDir folder;
    QProcess process;
    StartInShell(process, QString("trap '' %1; exec \"$@\"").arg(name),
                 QStringList{"export", "--to", folder.path()} + Addresses());
    // From before its handlers until its end, however long each takes.
    while (!process.waitForFinished(20))
        kill(static_cast<pid_t>(process.processId()), signal);
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(CheckFiles(folder.path()), QString());
}

void tst_Faults_Process::Import_LogCannotBeWritten_FailsNoCamera_data()
{
    QTest::addColumn<bool>("full");
    QTest::newRow("disk full") << true;
    QTest::newRow("file size limited") << false;
}

// A camera that cannot be opened is told in the log.
void tst_Faults_Process::Import_LogCannotBeWritten_FailsNoCamera()
{
    QFETCH(bool, full);
    const QTemporaryDir state;
    QVERIFY(QDir(state.path()).mkdir("lumo"));
    const QString log = state.path() + "/lumo/ImportExportFeatures.log";
    if (full && mknod(QFile::encodeName(log).constData(), S_IFCHR | 0600, makedev(1, 7)) != 0)
        QSKIP("a device cannot be made here");
    QFile file(log);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Append)); // no node of a device that cannot be used
    if (!full)
        QVERIFY(file.write(QByteArray(512 * 1024, '\n')) > 0);
    file.close();

    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault("control-held 1"), QString());
    const QTemporaryDir folder;
    const QString import = WriteImport(folder.path());
    const CompanionRun run =
        RunInShell(QString("ulimit -f 1024; export XDG_STATE_HOME=%1; exec \"$@\"").arg(state.path()),
                   QStringList{"import", import} + Addresses());
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.out.count("ok "), 2);
    QCOMPARE(run.err.count("The log cannot be written"), 1);
    QVERIFY2(run.err.contains("OpenDevice failed."), run.err.constData());
    QCOMPARE(m_batch.CheckFreeAgain(), QString());
    QCOMPARE(Widths(), QByteArrayList({"320", ValueOf(m_batch.Reference(), "Width"), "320"}));
}

QTEST_GUILESS_MAIN(tst_Faults_Process)
#include "tst_faults_process.moc"
