#include "processroom.h"

#include <QDir>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const int kDescriptorsPerWorker = 4; // event dispatcher, socket of its helper, the socket's other end, a file
const int kProcessesPerWorker = 4;   // its thread, and three of its helper

// For what is not a worker: the log and its rotation, the search, a lookup of the user's name.
const int kSpareDescriptors = 16;
const int kSpareProcesses = 4;

const int kManyDescriptors = 16384; // enough not to count on

int ToRoom(qulonglong limit, int used)
{
    const qulonglong room = limit - qMin(limit, static_cast<qulonglong>(used));
    return static_cast<int>(qMin<qulonglong>(room, INT_MAX));
}

int EntryCount(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

// The limit counts threads, of all processes of the user that started this one.
int ThreadsOfUser(uid_t user)
{
    int threads = 0;
    const QStringList names = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const QString folder = QStringLiteral("/proc/") + name;
        struct stat info = {};
        const bool isOfUser = name.at(0).isDigit() &&
                              stat(QFile::encodeName(folder).constData(), &info) == 0 && info.st_uid == user;
        if (isOfUser) {
            threads += EntryCount(folder + QStringLiteral("/task"));
        }
    }
    return threads;
}

QString ReadText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

// From the group up to the root: each of them limits what is below it.
int FreeInBranch(const QString &strRoot, QString group)
{
    int room = INT_MAX;
    for (bool isRoot = false; !isRoot;) {
        isRoot = group.isEmpty();
        const QString folder = strRoot + group + QLatin1Char('/');
        bool isLimited = false; // "max" is no number
        const qulonglong limit =
            ReadText(folder + QStringLiteral("pids.max")).trimmed().toULongLong(&isLimited);
        if (isLimited) {
            const int used = ReadText(folder + QStringLiteral("pids.current")).trimmed().toInt();
            room = qMin(room, ToRoom(limit, used));
        }
        group.truncate(group.lastIndexOf(QLatin1Char('/')));
    }
    return room;
}

} // namespace

int ProcessRoom::ForWorkers()
{
    const int byDescriptors = (FreeDescriptors() - kSpareDescriptors) / kDescriptorsPerWorker;
    // One worker is worth the try: its thread can be refused without harm.
    const int byProcesses = qMax(1, (FreeProcesses() - kSpareProcesses) / kProcessesPerWorker);
    return std::clamp(qMin(byDescriptors, byProcesses), 0, kMostWorkers);
}

bool ProcessRoom::Start(QThread *pThread)
{
    pThread->start();
    // In this order: it can end between the two questions.
    return pThread->isRunning() || pThread->isFinished();
}

int ProcessRoom::FreeDescriptors()
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return 0;
    }
    // Not a list of /proc/self/fd: that takes a descriptor, and tells of numbers beyond the limit, too.
    int room = 0;
    for (rlim_t number = 0; number < limit.rlim_cur && room < kManyDescriptors; ++number) {
        const bool isFree = fcntl(static_cast<int>(number), F_GETFD) == -1;
        room += isFree ? 1 : 0;
    }
    return room;
}

int ProcessRoom::FreeProcesses()
{
    const int inGroups =
        FreeInControlGroups(ReadText(QStringLiteral("/proc/self/cgroup")), QStringLiteral("/sys/fs/cgroup"));
    rlimit limit = {};
    // The limit does not hold for root.
    if (getuid() == 0 || getrlimit(RLIMIT_NPROC, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) {
        return inGroups;
    }
    return qMin(inGroups, ToRoom(limit.rlim_cur, ThreadsOfUser(getuid())));
}

int ProcessRoom::FreeInControlGroups(const QString &strMembership, const QString &strRoot)
{
    int room = INT_MAX;
    // "0::/a/b" in version 2, "8:pids:/a/b" in version 1, which has a hierarchy for each kind of limit.
    const QStringList lines = strMembership.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QString kinds = line.section(QLatin1Char(':'), 1, 1);
        const QString group = line.section(QLatin1Char(':'), 2);
        if (kinds.isEmpty()) {
            room = qMin(room, FreeInBranch(strRoot, group));
        } else if (kinds.split(QLatin1Char(',')).contains(QLatin1String("pids"))) {
            room = qMin(room, FreeInBranch(strRoot + QStringLiteral("/pids"), group));
        }
    }
    return room;
}
