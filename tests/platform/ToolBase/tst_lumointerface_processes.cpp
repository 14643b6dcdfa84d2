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
    void processID_AnotherUsers_IsListed_data();
    void processID_AnotherUsers_IsListed();
    void processID_AnotherUsersOfTheSameBegin_IsNotListed();
    void processID_AnotherUsersThatHasEnded_IsNotListed();
    void killProcess_AnotherUsers_Lives();
    void killProcess_OthersOfTheName_End();
    void killProcess_IgnoresTerminate_IsKilled();
    void killProcess_SeveralIgnoreTerminate_AreWaitedForTogether();
    void killProcess_OwnName_SparesTheCaller();

private:
    static QList<long long> Ids(const QString &name);
    /// Starts a copy of an executable under the name; it ends with its QProcess.
    void StartAs(QProcess &process, const QString &executable, const QString &name,
                 const QStringList &arguments);

    /// The same as a user of its own; skips the case when this is not root.
    void StartAsAnother(QProcess &process, const QString &name, const QStringList &arguments);
    /// What a third user finds, a line for each.
    static QByteArray IdsOfThird(const QString &name);

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

static QStringList AsUser(int user)
{
    return {QString("--reuid=%1").arg(user), QString("--regid=%1").arg(user), "--clear-groups"};
}

void tst_LumoInterface_Processes::StartAsAnother(QProcess &process, const QString &name,
                                                 const QStringList &arguments)
{
    const QString copy = m_dir->path() + "/" + name;
    QVERIFY(QFile::setPermissions(m_dir->path(), static_cast<QFile::Permissions>(0x7755)));
    QVERIFY(QFile::copy("/bin/sleep", copy));
    process.start("setpriv", AsUser(1000000001) + QStringList(copy) + arguments);
    QVERIFY(process.waitForStarted());
    QTRY_VERIFY(Ids(name).contains(process.processId())); // root sees every executable
}

QByteArray tst_LumoInterface_Processes::IdsOfThird(const QString &name)
{
    QProcess process;
    process.start("setpriv",
                  AsUser(1000000002) + QStringList{QCoreApplication::applicationFilePath(), "--list", name});
    process.waitForFinished();
    return process.exitCode() == 0 ? process.readAllStandardOutput() : "it could not be run";
}

// Root sees every executable, so the looking has to be done by somebody else.
#define SKIP_UNLESS_OTHER_USERS_CAN_RUN()                                                                    \
    if (geteuid() != 0 || IdsOfThird(QString()) != "")                                                       \
    QSKIP("this program cannot be run as another user here")

void tst_LumoInterface_Processes::processID_AnotherUsers_IsListed_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("short") << QString("lumo-%1").arg(getpid());
    QTest::newRow("15 bytes") << QString("lumo-%1").arg(getpid(), 10, 10, QChar('0'));
    QTest::newRow("16 bytes") << QString("lumo-%1").arg(getpid(), 11, 10, QChar('0'));
    QTest::newRow("long") << QString("lumo-%1-ImportExportFeatures").arg(getpid());
}

void tst_LumoInterface_Processes::processID_AnotherUsers_IsListed()
{
    SKIP_UNLESS_OTHER_USERS_CAN_RUN();
    QFETCH(QString, name);
    QProcess process;
    StartAsAnother(process, name, {"60"});
    QCOMPARE(IdsOfThird(name), QByteArray::number(process.processId()) + '\n');
    process.kill();
    QVERIFY(process.waitForFinished());
}

void tst_LumoInterface_Processes::processID_AnotherUsersOfTheSameBegin_IsNotListed()
{
    SKIP_UNLESS_OTHER_USERS_CAN_RUN();
    const QString begin = QString("lumo-%1").arg(getpid(), 10, 10, QChar('0'));
    QProcess process;
    StartAsAnother(process, begin + "-one", {"60"});
    QCOMPARE(IdsOfThird(begin + "-two"), QByteArray());
    QCOMPARE(IdsOfThird(begin.chopped(1)), QByteArray());
    process.kill();
    QVERIFY(process.waitForFinished());
}

void tst_LumoInterface_Processes::processID_AnotherUsersThatHasEnded_IsNotListed()
{
    SKIP_UNLESS_OTHER_USERS_CAN_RUN();
    QVERIFY(QFile::setPermissions(m_dir->path(), static_cast<QFile::Permissions>(0x7755)));
    const QString name = QString("lumo-%1").arg(getpid());
    QVERIFY(QFile::copy("/bin/sleep", m_dir->path() + "/" + name));
    QProcess parent; // does not take note of its child's end
    parent.start("setpriv", AsUser(1000000001) + QStringList{"sh", "-c", "\"$1\" 0 & echo $!; exec sleep 60",
                                                             "sh", m_dir->path() + "/" + name});
    QVERIFY(parent.waitForReadyRead());
    const QString stat = "/proc/" + parent.readLine().trimmed() + "/stat";
    const auto hasEnded = [&stat] {
        QFile file(stat);
        return file.open(QIODevice::ReadOnly) && file.readAll().contains(") Z ");
    };
    QTRY_VERIFY(hasEnded());
    QCOMPARE(IdsOfThird(name), QByteArray());
    parent.kill();
    QVERIFY(parent.waitForFinished());
}

void tst_LumoInterface_Processes::killProcess_AnotherUsers_Lives()
{
    SKIP_UNLESS_OTHER_USERS_CAN_RUN();
    // This process may do what it likes with any other; the owner alone must count.
    QProcess other;
    StartAsAnother(other, m_name, {"60"});
    QProcess own;
    StartAs(own, "/bin/sleep", m_name, {"60"});
    LumoInterface::killProcess(m_name);
    QVERIFY(own.waitForFinished());
    QCOMPARE(other.state(), QProcess::Running);
    QCOMPARE(Ids(m_name), QList<long long>({other.processId()}));
    other.kill();
    QVERIFY(other.waitForFinished());
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
    LumoInterface::processID(QFileInfo(QCoreApplication::applicationFilePath()).fileName(), nullptr);
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

void tst_LumoInterface_Processes::killProcess_SeveralIgnoreTerminate_AreWaitedForTogether()
{
    QProcess deaf[4];
    for (QProcess &process : deaf) {
        StartAs(process, "/bin/dash", m_name, {"-c", "trap '' TERM; echo deaf; while :; do read line; done"});
        QVERIFY(process.waitForReadyRead());
    }
    QElapsedTimer timer;
    timer.start();
    LumoInterface::killProcess(m_name);
    QVERIFY2(timer.elapsed() < 6000, qPrintable(QString::number(timer.elapsed()))); // 1 s, and a busy machine
    for (QProcess &process : deaf) {
        QVERIFY(process.waitForFinished());
    }
}

void tst_LumoInterface_Processes::killProcess_OwnName_SparesTheCaller()
{
    LumoInterface::killProcess(QFileInfo(QCoreApplication::applicationFilePath()).fileName());
    QVERIFY(Ids(QFileInfo(QCoreApplication::applicationFilePath()).fileName()).contains(getpid()));
}

// What another user's program would get.
static int PrintIds(const QString &name)
{
    QList<long long> ids;
    LumoInterface::processID(name, &ids);
    for (const long long id : qAsConst(ids)) {
        printf("%lld\n", id);
    }
    return 0;
}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--list") {
        return PrintIds(arguments.value(2));
    }
    tst_LumoInterface_Processes test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_lumointerface_processes.moc"
