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
    void Start_AfterTheOtherEnded_Runs();

private:
    static QList<long long> Running();
    void Start(QProcess &process);
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

void tst_SingleInstance::Start(QProcess &process)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", m_pHome->path());
    environment.insert("XDG_STATE_HOME", m_pHome->path());
    environment.insert("XDG_RUNTIME_DIR", m_pHome->path());
    process.setProcessEnvironment(environment);
    process.start(PROJECT_BIN_DIR "/Lumo_ImportExportFeatures", QStringList());
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
