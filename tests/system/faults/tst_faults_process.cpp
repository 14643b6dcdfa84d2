#include <QtTest>

#include <csignal>

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

private:
    void StartInShell(QProcess &process, const QString &script, const QStringList &arguments);
    CompanionRun RunInShell(const QString &script, const QStringList &arguments);
    QStringList Addresses() const;
    QString CheckFiles(const QString &folder) const;

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
    const QByteArray wanted = WithValue(m_batch.Reference(), "Width", "320");
    QFile file(folder.filePath("import.kfb"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(wanted) == wanted.size());
    file.close();

    const CompanionRun run = RunInShell("{ \"$@\"; echo exit code $? >&2; } | :",
                                        QStringList{"import", file.fileName()} + Addresses());
    QCOMPARE(run.err, QByteArray("kx-features: standard output could not be written\nexit code 1\n"));
    for (const QByteArray &exported : m_batch.Export().files)
        QCOMPARE(ValueOf(exported, "Width"), QByteArray("320"));
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

QTEST_GUILESS_MAIN(tst_Faults_Process)
#include "tst_faults_process.moc"
