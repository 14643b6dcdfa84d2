#include "lumointerface.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

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

QByteArray BaseName(const QByteArray &path)
{
    return path.mid(path.lastIndexOf('/') + 1);
}

// At most 4 kB: who started the process could have given it any number of arguments.
QByteArray ReadFile(const QByteArray &path)
{
    QFile file(QFile::decodeName(path));
    return file.open(QIODevice::ReadOnly) ? file.read(4096) : QByteArray();
}

// Empty when the caller may not see it, as with most processes of other users.
QByteArray ExecutableName(const QByteArray &procDir)
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
    return BaseName(path);
}

// By what everybody may see. The kernel keeps 15 bytes of the name; for the rest there is only the first
// argument, which is the path that the program was started by. A process that has ended has none.
bool SeemsToHaveName(const QByteArray &procDir, const QByteArray &name)
{
    const int kept = 15;
    // Nothing at all when the process has gone meanwhile.
    if (ReadFile(procDir + "/comm") != name.left(kept) + '\n') {
        return false;
    }
    const QByteArray arguments = ReadFile(procDir + "/cmdline");
    const QByteArray first = arguments.left(arguments.indexOf('\0'));
    return name.size() <= kept ? !arguments.isEmpty() : BaseName(first) == name;
}

bool HasName(const QByteArray &procDir, const QByteArray &name)
{
    const QByteArray executable = ExecutableName(procDir);
    return executable.isEmpty() ? SeemsToHaveName(procDir, name) : executable == name;
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
        if (isNumber && HasName(procDir, QFile::encodeName(name))) {
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
        Process process(pid);
        if (BelongsToCaller("/proc/" + QByteArray::number(pid))) {
            process.Signal(SIGTERM);
            processes.push_back(std::move(process));
        }
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
