#include "lumointerface.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <csignal>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

extern "C" {
// The header of glibc 2.36 forgets that C++ may include it.
#include <sys/pidfd.h>
}

namespace {

const int kTerminateWaitMs = 1000;

bool BelongsToCaller(const QByteArray &procDir)
{
    struct stat info = {};
    return stat(procDir.constData(), &info) == 0 && info.st_uid == getuid();
}

QString ExecutableName(const QByteArray &procDir)
{
    // Not QFile::symLinkTarget(): it resolves against the file system, and the executable may be gone.
    char target[4096];
    const ssize_t size = readlink((procDir + "/exe").constData(), target, sizeof target);
    if (size <= 0) {
        return {};
    }
    QByteArray path(target, static_cast<int>(size));
    // What the kernel appends when the file was replaced under a running process, as an update does.
    const QByteArray deleted(" (deleted)");
    if (path.endsWith(deleted)) {
        path.chop(deleted.size());
    }
    return QFileInfo(QFile::decodeName(path)).fileName();
}

// A process held by descriptor: unlike its number, which the system may give to another process between
// two calls.
class Process
{
public:
    explicit Process(long long pid)
        : m_fd(pidfd_open(static_cast<pid_t>(pid), 0))
    {
    }
    Process(Process &&other) noexcept
        : m_fd(other.m_fd)
    {
        other.m_fd = -1;
    }
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;
    Process &operator=(Process &&) = delete;
    ~Process()
    {
        if (m_fd >= 0) {
            close(m_fd);
        }
    }

    void Signal(int number) const
    {
        if (m_fd >= 0) {
            pidfd_send_signal(m_fd, number, nullptr, 0);
        }
    }

    // True when it ended within the time; a process that could not be held has ended.
    bool WaitForEnd(int timeoutMs) const
    {
        pollfd ended = {m_fd, POLLIN, 0};
        return m_fd < 0 || poll(&ended, 1, timeoutMs) == 1;
    }

private:
    int m_fd;
};

} // namespace

void LumoInterface::processID(const QString &name, QList<long long> *ids)
{
    if (ids == nullptr || name.isEmpty()) {
        return;
    }
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        bool isNumber = false;
        const long long pid = entry.toLongLong(&isNumber);
        const QByteArray procDir = "/proc/" + entry.toLatin1();
        if (isNumber && BelongsToCaller(procDir) && ExecutableName(procDir) == name) {
            ids->append(pid);
        }
    }
}

void LumoInterface::killProcess(const QString &name)
{
    QList<long long> ids;
    processID(name, &ids);
    ids.removeAll(getpid());

    std::vector<Process> processes;
    for (const long long pid : qAsConst(ids)) {
        processes.emplace_back(pid);
        processes.back().Signal(SIGTERM);
    }
    QElapsedTimer waited;
    waited.start();
    for (const Process &process : processes) {
        const int left = qMax(0, kTerminateWaitMs - static_cast<int>(waited.elapsed()));
        if (!process.WaitForEnd(left)) {
            process.Signal(SIGKILL);
            process.WaitForEnd(kTerminateWaitMs);
        }
    }
}
