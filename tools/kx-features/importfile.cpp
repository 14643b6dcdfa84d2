#include "importfile.h"

#include <QDeadlineTimer>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <linux/magic.h>
#include <optional>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <featurefile/featurefilereader.h>

namespace {

// Why a file of this kind is not read; empty for a regular file and a pipe. Looks, and opens nothing: opening
// a device can do something, and opening a FIFO takes it from the one that waits for it.
QString Refusal(const QByteArray &path)
{
    struct stat st = {};
    struct statfs fileSystem = {};
    if (stat(path.constData(), &st) != 0 || S_ISREG(st.st_mode)) {
        return {};
    }
    if (S_ISDIR(st.st_mode)) {
        return QStringLiteral("it is a folder");
    }
    if (!S_ISFIFO(st.st_mode)) {
        return QStringLiteral("it is a device or a socket");
    }
    const bool hasName = statfs(path.constData(), &fileSystem) != 0 || fileSystem.f_type != PIPEFS_MAGIC;
    return hasName ? QStringLiteral("it is a FIFO") : QString();
}

// Reads up to the end or the longest that a file may be. None when the time is over; empty after an error.
std::optional<QByteArray> ReadAll(int fd, int waitMs)
{
    const QDeadlineTimer deadline(waitMs);
    QByteArray bytes(FeatureFile::kLongestFile + 1, Qt::Uninitialized);
    int size = 0;
    while (size < bytes.size()) {
        const ssize_t count = read(fd, bytes.data() + size, static_cast<size_t>(bytes.size() - size));
        if (count > 0) {
            size += static_cast<int>(count);
        } else if (count == 0) {
            break;
        } else if (errno == EAGAIN) {
            pollfd readable = {fd, POLLIN, 0};
            poll(&readable, 1, static_cast<int>(deadline.remainingTime()));
            if (deadline.hasExpired()) {
                return std::nullopt;
            }
        } else if (errno != EINTR) {
            return QByteArray();
        }
    }
    bytes.truncate(size);
    return bytes;
}

std::optional<QByteArray> ReadFile(const QByteArray &path, int waitMs)
{
    // NONBLOCK: no wait but our own, should it have become something else since it was looked at.
    const int fd = open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        return QByteArray();
    }
    std::optional<QByteArray> bytes = ReadAll(fd, waitMs);
    close(fd);
    return bytes;
}

} // namespace

ImportFile::~ImportFile()
{
    if (m_nFd >= 0) {
        close(m_nFd);
    }
}

QString ImportFile::Read(const QString &path, int waitMs)
{
    const QByteArray name = QFile::encodeName(path);
    QString refusal = Refusal(name);
    if (!refusal.isEmpty()) {
        return refusal;
    }
    const std::optional<QByteArray> bytes = ReadFile(name, waitMs);
    if (!bytes) {
        return QStringLiteral("it did not come to its end within %1 s").arg(waitMs / 1000);
    }
    const std::optional<QString> endless = FeatureFile::FindEndlessRecord(FeatureFile::DecodeText(*bytes));
    if (endless) {
        return QStringLiteral("the record \"%1\" is not streamable").arg(*endless);
    }
    return Keep(*bytes) ? QString() : QStringLiteral("there is no memory for it");
}

QString ImportFile::WorkerPath() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(m_nFd);
}

bool ImportFile::Keep(const QByteArray &bytes)
{
    m_nFd = memfd_create("import", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    QFile file;
    return m_nFd >= 0 && file.open(m_nFd, QIODevice::WriteOnly) && file.write(bytes) == bytes.size() &&
           file.flush() &&
           fcntl(m_nFd, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL) == 0;
}
