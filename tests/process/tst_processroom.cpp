#include <QtTest>

#include <climits>
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>

#include <process/processroom.h>

#include "inchild.h"

// Limits of the system, each case in a process of its own.
class tst_ProcessRoom : public QObject
{
    Q_OBJECT

private slots:
    void FreeDescriptors_LowLimit_AreWhatCanBeOpened();
    void FreeProcesses_OtherUserWithALimit_CountsItsThreads();
    void FreeProcesses_Root_HasNoLimitOfItsOwn();
    void ForWorkers_Descriptors_GiveTheNumber_data();
    void ForWorkers_Descriptors_GiveTheNumber();
    void ForWorkers_Processes_GiveTheNumber_data();
    void ForWorkers_Processes_GiveTheNumber();
    void Start_ThreadThatEndsAtOnce_HasRun();
    void Start_NoThreadAllowed_SaysSo();
    void FreeInControlGroups_Hierarchies_TightestCounts_data();
    void FreeInControlGroups_Hierarchies_TightestCounts();
};

namespace {

void LimitTo(__rlimit_resource_t resource, rlim_t value)
{
    rlimit limit = {};
    getrlimit(resource, &limit);
    limit.rlim_cur = value;
    setrlimit(resource, &limit);
}

// A user without other processes, most likely. False when this process cannot change its user.
bool BecomeAnotherUser()
{
    const uid_t user = 1000000000U + static_cast<uid_t>(getpid());
    return geteuid() == 0 && setgroups(0, nullptr) == 0 && setgid(user) == 0 && setuid(user) == 0;
}

const int kNotPossible = 100;

class Nothing : public QThread
{
    void run() override {}
};

bool WriteText(const QString &path, const QByteArray &text)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(text) == text.size();
}

} // namespace

void tst_ProcessRoom::FreeDescriptors_LowLimit_AreWhatCanBeOpened()
{
    QCOMPARE(InChild([] {
                 LimitTo(RLIMIT_NOFILE, 64);
                 const int told = ProcessRoom::FreeDescriptors();
                 int opened = 0;
                 while (open("/dev/null", O_RDONLY) >= 0) {
                     ++opened;
                 }
                 return told > 0 && told == opened ? 0 : 1;
             }),
             0);
}

void tst_ProcessRoom::FreeProcesses_OtherUserWithALimit_CountsItsThreads()
{
    const int result = InChild([] {
        if (!BecomeAnotherUser()) {
            return kNotPossible;
        }
        LimitTo(RLIMIT_NPROC, 50);
        const int alone = ProcessRoom::FreeProcesses();
        const pid_t child = fork();
        if (child == 0) {
            pause();
        }
        const int beside = ProcessRoom::FreeProcesses();
        kill(child, SIGKILL);
        return alone == 49 && beside == 48 ? 0 : 1;
    });
    if (result == kNotPossible) {
        QSKIP("only root can become another user");
    }
    QCOMPARE(result, 0);
}

void tst_ProcessRoom::FreeProcesses_Root_HasNoLimitOfItsOwn()
{
    if (getuid() != 0) {
        QSKIP("this is for root");
    }
    const int before = ProcessRoom::FreeProcesses();
    const int result = InChild([before] {
        LimitTo(RLIMIT_NPROC, 1);
        return before == INT_MAX && ProcessRoom::FreeProcesses() != INT_MAX ? 1 : 0;
    });
    QCOMPARE(result, 0);
}

void tst_ProcessRoom::ForWorkers_Descriptors_GiveTheNumber_data()
{
    QTest::addColumn<int>("free");
    QTest::addColumn<int>("workers");
    QTest::newRow("none") << 3 << 0;
    QTest::newRow("too few for one") << 19 << 0;
    QTest::newRow("enough for one") << 20 << 1;
    QTest::newRow("for eleven") << 63 << 11;
    QTest::newRow("more than is good") << 4000 << 512;
}

void tst_ProcessRoom::ForWorkers_Descriptors_GiveTheNumber()
{
    QFETCH(int, free);
    QFETCH(int, workers);
    QCOMPARE(InChild([=] {
                 // Descriptors inherited from whoever runs the test may have high numbers.
                 int limit = free;
                 LimitTo(RLIMIT_NOFILE, static_cast<rlim_t>(limit));
                 while (ProcessRoom::FreeDescriptors() != free) {
                     limit += free - ProcessRoom::FreeDescriptors();
                     LimitTo(RLIMIT_NOFILE, static_cast<rlim_t>(limit));
                 }
                 return ProcessRoom::ForWorkers() == workers ? 0 : 1;
             }),
             0);
}

void tst_ProcessRoom::ForWorkers_Processes_GiveTheNumber_data()
{
    QTest::addColumn<int>("limit"); // one of them is the test's
    QTest::addColumn<int>("workers");
    QTest::newRow("none, but one is tried") << 1 << 1;
    QTest::newRow("one") << 12 << 1;
    QTest::newRow("two") << 13 << 2;
    QTest::newRow("twenty") << 85 << 20;
}

void tst_ProcessRoom::ForWorkers_Processes_GiveTheNumber()
{
    QFETCH(int, limit);
    QFETCH(int, workers);
    const int result = InChild([=] {
        if (!BecomeAnotherUser()) {
            return kNotPossible;
        }
        LimitTo(RLIMIT_NPROC, static_cast<rlim_t>(limit));
        return ProcessRoom::ForWorkers() == workers ? 0 : 1;
    });
    if (result == kNotPossible) {
        QSKIP("only root can become another user");
    }
    QCOMPARE(result, 0);
}

void tst_ProcessRoom::Start_ThreadThatEndsAtOnce_HasRun()
{
    for (int round = 0; round < 200; ++round) {
        Nothing thread;
        const bool isStarted = ProcessRoom::Start(&thread);
        thread.wait();
        QVERIFY(isStarted);
    }
}

void tst_ProcessRoom::Start_NoThreadAllowed_SaysSo()
{
    const int result = InChild([] {
        if (geteuid() == 0 && !BecomeAnotherUser()) {
            return kNotPossible;
        }
        LimitTo(RLIMIT_NPROC, 1);
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        Nothing thread;
        return ProcessRoom::Start(&thread) ? 1 : 0;
    });
    if (result == kNotPossible) {
        QSKIP("the user cannot be changed");
    }
    QCOMPARE(result, 0);
}

void tst_ProcessRoom::FreeInControlGroups_Hierarchies_TightestCounts_data()
{
    QTest::addColumn<QString>("membership");
    QTest::addColumn<int>("room");
    QTest::newRow("no limit") << "0::/free\n" << INT_MAX;
    QTest::newRow("own limit") << "0::/own\n" << 88;
    QTest::newRow("limit of the group above") << "0::/own/child\n" << 88;
    QTest::newRow("tighter than the one above") << "0::/own/tight\n" << 3;
    QTest::newRow("looser than the one above") << "0::/own/loose\n" << 88;
    QTest::newRow("used up") << "0::/full\n" << 0;
    QTest::newRow("version 1") << "9:cpu:/own\n8:pids:/old\n0::/free\n" << 17;
    QTest::newRow("version 1, with another kind") << "8:misc,pids:/old\n" << 17;
    QTest::newRow("other kinds of version 1") << "9:cpu:/own\n" << INT_MAX;
    QTest::newRow("none told") << "" << INT_MAX;
}

void tst_ProcessRoom::FreeInControlGroups_Hierarchies_TightestCounts()
{
    QFETCH(QString, membership);
    QFETCH(int, room);
    QTemporaryDir root;
    const auto limit = [&root](const QString &group, const QByteArray &max, const QByteArray &current) {
        return WriteText(root.path() + group + "/pids.max", max + '\n') &&
               WriteText(root.path() + group + "/pids.current", current + '\n');
    };
    QVERIFY(limit("/free", "max", "5") && limit("/own", "100", "12") && limit("/own/child", "max", "2") &&
            limit("/own/tight", "5", "2") && limit("/own/loose", "1000", "2") && limit("/full", "5", "9") &&
            limit("/pids/old", "20", "3"));
    QCOMPARE(ProcessRoom::FreeInControlGroups(membership, root.path()), room);

    QVERIFY(limit("", "2", "1")); // what a program in a container sees of its own group
    QCOMPARE(ProcessRoom::FreeInControlGroups("0::/\n", root.path()), 1);
}

QTEST_GUILESS_MAIN(tst_ProcessRoom)
#include "tst_processroom.moc"
