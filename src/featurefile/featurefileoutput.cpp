#include "featurefileoutput.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>
#include <QRandomGenerator>
#include <QReadLocker>
#include <QReadWriteLock>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// What became of one way to write a file.
enum class Result
{
    Written,
    Failed,  ///< the disk did not take it; what was there before is there
    Refused, ///< this way is not open here; nothing was changed
};

/// Closes its descriptor, if it has one.
class Descriptor
{
public:
    explicit Descriptor(int nFd = -1)
        : m_nFd(nFd)
    {
    }
    ~Descriptor() { Reset(); }
    Q_DISABLE_COPY(Descriptor)

    void Reset(int nFd = -1)
    {
        if (m_nFd >= 0)
            close(m_nFd);
        m_nFd = nFd;
    }
    int Get() const { return m_nFd; }
    explicit operator bool() const { return m_nFd >= 0; }

private:
    int m_nFd;
};

/// The regular file that is to be written.
struct Target
{
    QByteArray path; ///< of the file itself, never of a link
    /// Open for writing and, where allowed, reading; none when there is no such file yet.
    Descriptor existing;
    struct stat stBefore = {};
};

// Held for reading while a file is written, for writing by the one that closes the output.
QReadWriteLock &Gate()
{
    static QReadWriteLock gate;
    return gate;
}

/// The file that a link leads to inside its own folder; empty when it leads elsewhere or nowhere.
QByteArray FileBehindLink(const QByteArray &link)
{
    const QFileInfo info(QFile::decodeName(link));
    const QString strFolder = QDir(info.path()).canonicalPath();
    const QString strFile = info.canonicalFilePath();
    return strFile.startsWith(strFolder + QLatin1Char('/')) ? QFile::encodeName(strFile) : QByteArray();
}

/// Looks before it opens: opening a device or a FIFO can block, or do something.
bool FindTarget(const QString &strPath, Target *pTarget)
{
    struct stat &st = pTarget->stBefore;
    pTarget->path = QFile::encodeName(strPath);
    if (lstat(pTarget->path.constData(), &st) != 0)
        return errno == ENOENT;
    if (S_ISLNK(st.st_mode)) {
        pTarget->path = FileBehindLink(pTarget->path);
        if (lstat(pTarget->path.constData(), &st) != 0)
            return false;
    }
    if (!S_ISREG(st.st_mode))
        return false;
    // NOFOLLOW and NONBLOCK, and a second look: it may be another file by now.
    const int nFlags = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    pTarget->existing.Reset(open(pTarget->path.constData(), O_RDWR | nFlags));
    if (!pTarget->existing)
        pTarget->existing.Reset(open(pTarget->path.constData(), O_WRONLY | nFlags));
    return pTarget->existing && fstat(pTarget->existing.Get(), &st) == 0 && S_ISREG(st.st_mode);
}

bool WriteAll(int nFd, const QByteArray &bytes)
{
    for (int nDone = 0; nDone < bytes.size();) {
        const ssize_t nWritten =
            pwrite(nFd, bytes.constData() + nDone, static_cast<size_t>(bytes.size() - nDone), nDone);
        if (nWritten < 0 && errno == EINTR)
            continue;
        if (nWritten <= 0)
            return false;
        nDone += static_cast<int>(nWritten);
    }
    return true;
}

/// Reads the first bytes of the file. False when they cannot be had.
bool ReadStart(int nFd, qint64 nSize, QByteArray *pBytes)
{
    pBytes->resize(static_cast<int>(nSize));
    for (int nDone = 0; nDone < pBytes->size();) {
        const ssize_t nRead =
            pread(nFd, pBytes->data() + nDone, static_cast<size_t>(pBytes->size() - nDone), nDone);
        if (nRead < 0 && errno == EINTR)
            continue;
        if (nRead <= 0)
            return false;
        nDone += static_cast<int>(nRead);
    }
    return true;
}

/// Makes a new file beside the path, called like it with more behind. Empty when the folder takes none.
QByteArray MakeTemporary(const QByteArray &path, Descriptor *pFile)
{
    const int kTries = 100;
    for (int i = 0; i < kTries; ++i) {
        const quint32 nNumber = QRandomGenerator::system()->generate();
        QByteArray name = path + '.' + QByteArray::number(nNumber, 36).rightJustified(7, '0');
        pFile->Reset(open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (*pFile)
            return name;
        if (errno != EEXIST)
            break;
    }
    return QByteArray();
}

/// Writes a new file and puts it into the place of the old one.
Result Replace(const Target &target, const QByteArray &bytes)
{
    Descriptor file;
    const QByteArray name = MakeTemporary(target.path, &file);
    if (!file)
        return Result::Refused;
    if (target.existing)
        fchmod(file.Get(), target.stBefore.st_mode & 0777U);
    Result result = Result::Failed;
    // Some file systems find out only here that the disk is full.
    if (WriteAll(file.Get(), bytes) && fsync(file.Get()) == 0)
        result = rename(name.constData(), target.path.constData()) == 0 ? Result::Written : Result::Refused;
    if (result != Result::Written)
        unlink(name.constData());
    return result;
}

bool Reserve(int nFd, qint64 nSize)
{
    int nError = 0;
    do {
        nError = nSize > 0 ? posix_fallocate(nFd, 0, nSize) : 0;
    } while (nError == EINTR);
    return nError == 0;
}

/// Whether the open file is still the one of that path; it may have gone with its folder.
bool IsStillThere(const Target &target, struct stat *pNow)
{
    struct stat stPath = {};
    return target.existing && fstat(target.existing.Get(), pNow) == 0 &&
           lstat(target.path.constData(), &stPath) == 0 && stPath.st_dev == pNow->st_dev &&
           stPath.st_ino == pNow->st_ino;
}

/// Writes over the old content. Shortens last: until then the old content can be put back.
Result Overwrite(const Target &target, const QByteArray &bytes)
{
    static QMutex mutex; // two cameras of one name must not mix their texts
    const QMutexLocker locker(&mutex);
    struct stat st = {};
    if (!IsStillThere(target, &st))
        return Result::Refused;
    const int nFd = target.existing.Get();
    const qint64 nOldSize = st.st_size;
    QByteArray old;
    if (!ReadStart(nFd, std::min<qint64>(nOldSize, bytes.size()), &old))
        return Result::Refused;
    const bool bReserved = Reserve(nFd, bytes.size());
    if (bReserved && WriteAll(nFd, bytes) && fsync(nFd) == 0 && ftruncate(nFd, bytes.size()) == 0)
        return Result::Written;
    if (bReserved)
        WriteAll(nFd, old);
    if (ftruncate(nFd, nOldSize) == 0)
        fsync(nFd);
    return Result::Failed;
}

} // namespace

bool FeatureFileOutput::Write(const QString &strPath, const QString &strText, bool *pWhole)
{
    const QReadLocker open(&Gate());
    const QByteArray bytes = strText.toUtf8(); // as the text declares
    Target target;
    Result result = Result::Refused;
    if (FindTarget(strPath, &target)) {
        result = Replace(target, bytes);
        // A folder that takes no new files, or does not let this one be replaced: it is another user's in a
        // sticky folder, or a mount point.
        if (result == Result::Refused)
            result = Overwrite(target, bytes);
    }
    if (pWhole)
        *pWhole = result == Result::Written;
    return result != Result::Refused;
}

void FeatureFileOutput::Close()
{
    Gate().lockForWrite();
}
