#include <QtTest>

#include <QProcess>

#include <ToolBase/lumointerface.h>

#include <csignal>
#include <unistd.h>

// Finding and ending processes by name, with real processes: copies of the system's shell and sleep.
class tst_LumoInterface_Processes : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void processID_OwnName_HoldsTheCaller();
    void processID_TwoOfTheName_HoldsBoth();
    void processID_NameIsOnlyAPrefix_FindsNothing();
    void processID_ExecutableReplacedMeanwhile_IsStillFound();
    void processID_NoListGiven_DoesNothing();
    void processID_ListWithEntries_Appends();
    void killProcess_OthersOfTheName_End();
    void killProcess_IgnoresTerminate_IsKilled();
    void killProcess_OwnName_SparesTheCaller();

private:
    static QList<long long> Ids(const QString &name);
    /// Starts a copy of an executable under the name; it ends with its QProcess.
    void StartAs(QProcess &process, const QString &executable, const QString &name,
                 const QStringList &arguments);

    QScopedPointer<QTemporaryDir> m_dir;
    QString m_name; // unique to this process, so that tests running side by side do not meet
};

void tst_LumoInterface_Processes::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
    m_name = QString("lumo-test-%1").arg(getpid());
}

QList<long long> tst_LumoInterface_Processes::Ids(const QString &name)
{
    QList<long long> ids;
    LumoInterface::processID(name, &ids);
    return ids;
}

void tst_LumoInterface_Processes::StartAs(QProcess &process, const QString &executable, const QString &name,
                                          const QStringList &arguments)
{
    const QString copy = m_dir->path() + "/" + name;
    if (!QFile::exists(copy)) {
        QVERIFY(QFile::copy(executable, copy));
    }
    process.start(copy, arguments);
    QVERIFY(process.waitForStarted());
    QTRY_VERIFY(Ids(name).contains(process.processId())); // forked already, but not yet the new program
}

void tst_LumoInterface_Processes::processID_OwnName_HoldsTheCaller()
{
    const QString own = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    QVERIFY(Ids(own).contains(getpid()));
}

void tst_LumoInterface_Processes::processID_TwoOfTheName_HoldsBoth()
{
    QProcess first;
    QProcess second;
    StartAs(first, "/bin/sleep", m_name, {"60"});
    StartAs(second, "/bin/sleep", m_name, {"60"});
    QCOMPARE(Ids(m_name).size(), 2);
    LumoInterface::killProcess(m_name);
    QVERIFY(first.waitForFinished() && second.waitForFinished());
}

void tst_LumoInterface_Processes::processID_NameIsOnlyAPrefix_FindsNothing()
{
    QProcess process;
    StartAs(process, "/bin/sleep", m_name, {"60"});
    QCOMPARE(Ids(m_name.left(m_name.size() - 1)), QList<long long>());
    process.kill();
    QVERIFY(process.waitForFinished());
}

void tst_LumoInterface_Processes::processID_ExecutableReplacedMeanwhile_IsStillFound()
{
    QProcess process;
    StartAs(process, "/bin/sleep", m_name, {"60"});
    QVERIFY(QFile::remove(m_dir->path() + "/" + m_name));
    QCOMPARE(Ids(m_name), QList<long long>({process.processId()}));
    process.kill();
    QVERIFY(process.waitForFinished());
}

void tst_LumoInterface_Processes::processID_NoListGiven_DoesNothing()
{
    LumoInterface::processID(m_name, nullptr);
}

void tst_LumoInterface_Processes::processID_ListWithEntries_Appends()
{
    QList<long long> ids = {-5};
    LumoInterface::processID(QFileInfo(QCoreApplication::applicationFilePath()).fileName(), &ids);
    QCOMPARE(ids.first(), -5LL);
    QVERIFY(ids.size() >= 2);
}

void tst_LumoInterface_Processes::killProcess_OthersOfTheName_End()
{
    QProcess process;
    StartAs(process, "/bin/sleep", m_name, {"60"});
    LumoInterface::killProcess(m_name);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QCOMPARE(process.exitCode(), SIGTERM);
}

void tst_LumoInterface_Processes::killProcess_IgnoresTerminate_IsKilled()
{
    QProcess process;
    StartAs(process, "/bin/dash", m_name, {"-c", "trap '' TERM; echo deaf; while :; do read line; done"});
    QVERIFY(process.waitForReadyRead());
    LumoInterface::killProcess(m_name);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), SIGKILL);
}

void tst_LumoInterface_Processes::killProcess_OwnName_SparesTheCaller()
{
    LumoInterface::killProcess(QFileInfo(QCoreApplication::applicationFilePath()).fileName());
    QVERIFY(Ids(QFileInfo(QCoreApplication::applicationFilePath()).fileName()).contains(getpid()));
}

QTEST_GUILESS_MAIN(tst_LumoInterface_Processes)
#include "tst_lumointerface_processes.moc"
