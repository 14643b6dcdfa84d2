#include <QtTest>

#include <QProcess>

#include <ToolBase/lumointerface.h>

#include <csignal>

/// Two real processes of the tool.
class tst_SingleInstance : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void Start_WhileAnotherRuns_EndsWithZeroAndLeavesItAlone();
    void Start_WhileAnotherUsersRuns_EndsWithZero();
    void Start_AfterTheOtherEnded_Runs();

private:
    static QList<long long> Running();
    /// @param before  a command that runs the one behind it, as another user for example
    void Start(QProcess &process, const QStringList &before = {});
    /// Waits until the process has built its window: then its camera search runs.
    static bool WaitForWindow(const QProcess &process);

    std::unique_ptr<QTemporaryDir> m_pHome;
};

QList<long long> tst_SingleInstance::Running()
{
    QList<long long> listIDs;
    LumoInterface::processID("Lumo_ImportExportFeatures", &listIDs);
    return listIDs;
}

void tst_SingleInstance::initTestCase()
{
    // One that somebody works with, or another test's: ours would end at once, or end it.
    QDeadlineTimer deadline(30000);
    while (!Running().isEmpty() && !deadline.hasExpired())
        QTest::qWait(100);
    if (!Running().isEmpty())
        QSKIP("the tool is running on this computer already");
}

void tst_SingleInstance::init()
{
    m_pHome = std::make_unique<QTemporaryDir>();
}

void tst_SingleInstance::cleanup()
{
    m_pHome.reset();
}

void tst_SingleInstance::Start(QProcess &process, const QStringList &before)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", m_pHome->path());
    environment.insert("XDG_STATE_HOME", m_pHome->path());
    environment.insert("XDG_RUNTIME_DIR", m_pHome->path());
    process.setProcessEnvironment(environment);
    const QStringList command = before + QStringList(PROJECT_BIN_DIR "/Lumo_ImportExportFeatures");
    process.start(command.first(), command.mid(1));
    QVERIFY2(process.waitForStarted(), qPrintable(process.errorString()));
}

bool tst_SingleInstance::WaitForWindow(const QProcess &process)
{
    const QDir tasks(QString("/proc/%1/task").arg(process.processId()));
    const QDeadlineTimer deadline(30000);
    while (!deadline.hasExpired()) {
        for (const QString &strTask : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QFile file(tasks.filePath(strTask + "/comm"));
            if (file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == "camera search")
                return true;
        }
        QTest::qWait(20);
    }
    return false;
}

void tst_SingleInstance::Start_WhileAnotherRuns_EndsWithZeroAndLeavesItAlone()
{
    QProcess first;
    Start(first);
    QVERIFY(WaitForWindow(first));

    QProcess second;
    Start(second);
    QVERIFY(second.waitForFinished());
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(second.readAllStandardOutput() + second.readAllStandardError(), QByteArray());
    QCOMPARE(first.state(), QProcess::Running);
    QCOMPARE(Running(), QList<long long>{first.processId()});

    first.terminate();
    QVERIFY(first.waitForFinished());
}

void tst_SingleInstance::Start_WhileAnotherUsersRuns_EndsWithZero()
{
    const QStringList asNobody{"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    if (QProcess::execute("setpriv", asNobody.mid(1) + QStringList{"test", "-x", PROJECT_BIN_DIR}) != 0)
        QSKIP("the tool cannot be run as another user here");
    QVERIFY(QFile::setPermissions(m_pHome->path(), static_cast<QFile::Permissions>(0x7777)));
    QProcess first;
    Start(first);
    QVERIFY(WaitForWindow(first));

    QProcess second;
    Start(second, asNobody);
    QVERIFY(second.waitForFinished());
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(second.readAllStandardOutput(), QByteArray());
    QCOMPARE(Running(), QList<long long>{first.processId()});

    first.terminate();
    QVERIFY(first.waitForFinished());
}

void tst_SingleInstance::Start_AfterTheOtherEnded_Runs()
{
    for (int nRun = 0; nRun < 2; ++nRun) {
        QProcess process;
        Start(process);
        QVERIFY(WaitForWindow(process));
        process.terminate();
        QVERIFY(process.waitForFinished());
    }
}

QTEST_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"
