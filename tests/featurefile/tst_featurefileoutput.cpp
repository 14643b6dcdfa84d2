#include <QtTest>

#include <featurefile/featurefileoutput.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

/// A disk that reserves room it does not have, as those do that copy on write or write late.
struct BadDisk
{
    off_t room = -1;        ///< writing beyond fails; negative: the disk is as it is
    bool failsLate = false; ///< says so only when the file is to be safe
    bool vanishes = false;  ///< the old file goes while the new one is put into its place
    bool another = false;   ///< and another one comes
    int writes = 0;         ///< so far
};
BadDisk disk;

} // namespace

// These stand before the C library's.
extern "C" {

int posix_fallocate(int fd, off_t offset, off_t length)
{
    if (disk.room >= 0) {
        return 0;
    }
    return syscall(SYS_fallocate, fd, 0, offset, length) == 0 ? 0 : errno;
}

ssize_t pwrite(int fd, const void *bytes, size_t count, off_t offset)
{
    ++disk.writes;
    if (disk.room >= 0 && offset >= disk.room) {
        errno = ENOSPC;
        return -1;
    }
    const size_t fits = disk.room < 0 ? count : std::min(count, static_cast<size_t>(disk.room - offset));
    return syscall(SYS_pwrite64, fd, bytes, fits, offset);
}

int fsync(int fd)
{
    if (disk.failsLate) {
        errno = ENOSPC;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fsync, fd));
}

int rename(const char *from, const char *to) noexcept
{
    if (disk.vanishes) {
        unlink(to);
        if (disk.another) {
            close(open(to, O_CREAT | O_WRONLY, 0666));
        }
        errno = EPERM;
        return -1;
    }
    return static_cast<int>(syscall(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to));
}

} // extern "C"

class tst_FeatureFileOutput : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { SetMode(m_dir->path(), 0700); }

    void Write_NewFile_HoldsTheTextAsUtf8();
    void Write_ExistingFile_IsReplaced();
    void Write_MissingFolder_IsRefusedAndNothingLeft();
    void Write_PathIsAFolder_IsRefused();
    void Write_ExistingFile_KeepsItsMode();
    void Write_NewFile_HasTheModeOfTheUmask();
    void Write_ExistingFileIsReadOnly_IsRefusedAndKept();
    void Write_DiskFull_KeepsTheOldFileAndLeavesNothingElse();
    void Write_NoFileMayBeReplaced_WritesInPlace_data() { Folders(); }
    void Write_NoFileMayBeReplaced_WritesInPlace();
    void Write_InPlaceOnAFullDisk_KeepsTheOldFile_data() { Folders(); }
    void Write_InPlaceOnAFullDisk_KeepsTheOldFile();
    void Write_DiskFailsAfterReserving_KeepsTheOldFile_data();
    void Write_DiskFailsAfterReserving_KeepsTheOldFile();
    void Write_InPlaceOverUnreadableFile_IsRefused();
    void Write_FolderTakesNoFilesAndHasNone_IsRefused();
    void Write_OldFileVanishes_IsRefused_data();
    void Write_OldFileVanishes_IsRefused();
    void Write_MountPoint_WritesInPlace();
    void Write_LinkInsideTheFolder_WritesTheFileBehindIt();
    void Write_LinkElsewhere_IsRefusedAndNothingTouched_data();
    void Write_LinkElsewhere_IsRefusedAndNothingTouched();
    void Write_NoRegularFile_IsRefusedAtOnceAndStays_data();
    void Write_NoRegularFile_IsRefusedAtOnceAndStays();
    void Close_WhileAnotherThreadWrites_LetsNoFurtherWriteBegin();

private:
    QString Path(const QString &name) const { return m_dir->path() + "/" + name; }
    QStringList Entries() const { return QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden); }
    static QByteArray ReadAll(const QString &path);
    static void MakeFile(const QString &path, const QByteArray &content);
    static mode_t ModeOf(const QString &path);
    static void SetMode(const QString &path, mode_t mode);
    static bool InChild(const std::function<bool()> &check);
    static bool AsNobody(const std::function<bool()> &check);
    static void LimitFileSize(rlim_t bytes);
    static void Folders();
    void ForbidReplacing(bool sticky);

    QScopedPointer<QTemporaryDir> m_dir;
};

void tst_FeatureFileOutput::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
}

QByteArray tst_FeatureFileOutput::ReadAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

void tst_FeatureFileOutput::MakeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

mode_t tst_FeatureFileOutput::ModeOf(const QString &path)
{
    struct stat st = {};
    return stat(QFile::encodeName(path).constData(), &st) == 0 ? st.st_mode & 07777U : 0;
}

void tst_FeatureFileOutput::SetMode(const QString &path, mode_t mode)
{
    QCOMPARE(chmod(QFile::encodeName(path).constData(), mode), 0);
}

// Whether the check holds in a process of its own, which may change its user, limits and mounts.
bool tst_FeatureFileOutput::InChild(const std::function<bool()> &check)
{
    const pid_t child = fork();
    if (child == 0) {
        _exit(check() ? 0 : 1);
    }
    int status = -1;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

// Root may write everywhere.
bool tst_FeatureFileOutput::AsNobody(const std::function<bool()> &check)
{
    const uid_t nobody = 65534;
    return InChild([&check, nobody] {
        return (geteuid() != 0 || (setgroups(0, nullptr) == 0 && setresgid(nobody, nobody, nobody) == 0 &&
                                   setresuid(nobody, nobody, nobody) == 0)) &&
               check();
    });
}

// Stands in for a full disk: writing beyond it fails in the same place.
void tst_FeatureFileOutput::LimitFileSize(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}

void tst_FeatureFileOutput::Folders()
{
    QTest::addColumn<bool>("sticky");
    QTest::newRow("takes no new file") << false;
    QTest::newRow("sticky, with another user's file") << true;
}

// Makes a file that may be written, but not replaced, by nobody.
void tst_FeatureFileOutput::ForbidReplacing(bool sticky)
{
    if (sticky && geteuid() != 0) {
        QSKIP("a file of another user cannot be made here");
    }
    MakeFile(Path("a.kfb"), QByteArray(5000, 'o'));
    SetMode(Path("a.kfb"), 0666);
    SetMode(m_dir->path(), sticky ? 01777 : 0555);
}

void tst_FeatureFileOutput::Write_NewFile_HoldsTheTextAsUtf8()
{
    bool whole = false;
    QVERIFY(FeatureFileOutput::Write(Path("a.kfb"), QStringLiteral("Größe 相机\r\nend"), &whole));
    QVERIFY(whole);
    QCOMPARE(ReadAll(Path("a.kfb")), QByteArray("Gr\xC3\xB6\xC3\x9F"
                                                "e \xE7\x9B\xB8\xE6\x9C\xBA\r\nend"));
    QCOMPARE(Entries(), QStringList("a.kfb"));
}

void tst_FeatureFileOutput::Write_ExistingFile_IsReplaced()
{
    MakeFile(Path("a.kfb"), QByteArray(5000, 'x'));
    QVERIFY(FeatureFileOutput::Write(Path("a.kfb"), "short"));
    QCOMPARE(ReadAll(Path("a.kfb")), QByteArray("short"));
}

void tst_FeatureFileOutput::Write_MissingFolder_IsRefusedAndNothingLeft()
{
    QVERIFY(!FeatureFileOutput::Write(Path("none/a.kfb"), "text"));
    QVERIFY(!QFileInfo::exists(Path("none")));
}

void tst_FeatureFileOutput::Write_PathIsAFolder_IsRefused()
{
    QVERIFY(QDir().mkpath(Path("a.kfb")));
    QVERIFY(!FeatureFileOutput::Write(Path("a.kfb"), "text"));
}

void tst_FeatureFileOutput::Write_ExistingFile_KeepsItsMode()
{
    MakeFile(Path("a.kfb"), "old");
    SetMode(Path("a.kfb"), 0640);
    QVERIFY(FeatureFileOutput::Write(Path("a.kfb"), "text"));
    QCOMPARE(ReadAll(Path("a.kfb")), QByteArray("text"));
    QCOMPARE(ModeOf(Path("a.kfb")), mode_t{0640});
}

void tst_FeatureFileOutput::Write_NewFile_HasTheModeOfTheUmask()
{
    const mode_t before = umask(027);
    FeatureFileOutput::Write(Path("a.kfb"), "text");
    umask(before);
    QCOMPARE(ModeOf(Path("a.kfb")), mode_t{0640});
}

void tst_FeatureFileOutput::Write_ExistingFileIsReadOnly_IsRefusedAndKept()
{
    SetMode(m_dir->path(), 0777);
    MakeFile(Path("a.kfb"), "old");
    SetMode(Path("a.kfb"), 0444);
    QVERIFY(AsNobody([this] {
        bool whole = true;
        return !FeatureFileOutput::Write(Path("a.kfb"), "text", &whole) && !whole;
    }));
    QCOMPARE(ReadAll(Path("a.kfb")), QByteArray("old"));
    QCOMPARE(Entries(), QStringList("a.kfb"));
}

void tst_FeatureFileOutput::Write_DiskFull_KeepsTheOldFileAndLeavesNothingElse()
{
    MakeFile(Path("a.kfb"), "old");
    QVERIFY(InChild([this] {
        LimitFileSize(1000);
        bool whole = true;
        // It could be opened; that the rest failed is not told by the result.
        return FeatureFileOutput::Write(Path("a.kfb"), QString(100000, 'x'), &whole) && !whole;
    }));
    QCOMPARE(ReadAll(Path("a.kfb")), QByteArray("old"));
    QCOMPARE(Entries(), QStringList("a.kfb"));
}

void tst_FeatureFileOutput::Write_NoFileMayBeReplaced_WritesInPlace()
{
    QFETCH(bool, sticky);
    ForbidReplacing(sticky);
    for (const QByteArray &text : {QByteArray(7000, 'n'), QByteArray("short")}) {
        QVERIFY(AsNobody([this, text] {
            bool whole = false;
            return FeatureFileOutput::Write(Path("a.kfb"), text, &whole) && whole;
        }));
        QCOMPARE(ReadAll(Path("a.kfb")), text);
    }
    QCOMPARE(Entries(), QStringList("a.kfb"));
}

void tst_FeatureFileOutput::Write_InPlaceOnAFullDisk_KeepsTheOldFile()
{
    QFETCH(bool, sticky);
    ForbidReplacing(sticky);
    QVERIFY(AsNobody([this, sticky] {
        LimitFileSize(6000);
        disk.writes = 0;
        bool whole = true;
        // The room is refused, so nothing is touched; the sticky folder takes a part of a new file.
        return FeatureFileOutput::Write(Path("a.kfb"), QString(100000, 'x'), &whole) && !whole &&
               (sticky || disk.writes == 0);
    }));
    QCOMPARE(ReadAll(Path("a.kfb")), QByteArray(5000, 'o'));
    QCOMPARE(Entries(), QStringList("a.kfb"));
}

void tst_FeatureFileOutput::Write_DiskFailsAfterReserving_KeepsTheOldFile_data()
{
    QTest::addColumn<bool>("mayBeReplaced");
    QTest::addColumn<int>("room");
    QTest::addColumn<bool>("failsLate");
    for (const bool replaced : {true, false}) {
        const char *way = replaced ? "replaced" : "in place";
        QTest::addRow("%s, fails behind the old end", way) << replaced << 6000 << false;
        QTest::addRow("%s, fails at the old end", way) << replaced << 5000 << false;
        QTest::addRow("%s, fails late", way) << replaced << 1000000 << true;
    }
}

void tst_FeatureFileOutput::Write_DiskFailsAfterReserving_KeepsTheOldFile()
{
    QFETCH(bool, mayBeReplaced);
    QFETCH(int, room);
    QFETCH(bool, failsLate);
    ForbidReplacing(false);
    SetMode(m_dir->path(), mayBeReplaced ? 0777 : 0555);
    QVERIFY(AsNobody([this, room, failsLate] {
        disk.room = room;
        disk.failsLate = failsLate;
        bool whole = true;
        return FeatureFileOutput::Write(Path("a.kfb"), QString(100000, 'x'), &whole) && !whole;
    }));
    QCOMPARE(ReadAll(Path("a.kfb")), QByteArray(5000, 'o'));
    QCOMPARE(Entries(), QStringList("a.kfb"));
}

void tst_FeatureFileOutput::Write_InPlaceOverUnreadableFile_IsRefused()
{
    ForbidReplacing(false);
    SetMode(Path("a.kfb"), 0222); // what was there could not be put back
    QVERIFY(AsNobody([this] { return !FeatureFileOutput::Write(Path("a.kfb"), "text"); }));
    SetMode(Path("a.kfb"), 0666);
    QCOMPARE(ReadAll(Path("a.kfb")), QByteArray(5000, 'o'));
}

void tst_FeatureFileOutput::Write_FolderTakesNoFilesAndHasNone_IsRefused()
{
    ForbidReplacing(false);
    QVERIFY(AsNobody([this] { return !FeatureFileOutput::Write(Path("b.kfb"), "text"); }));
    QCOMPARE(Entries(), QStringList("a.kfb"));
}

void tst_FeatureFileOutput::Write_OldFileVanishes_IsRefused_data()
{
    QTest::addColumn<bool>("another");
    QTest::newRow("gone") << false;
    QTest::newRow("another file in its place") << true;
}

void tst_FeatureFileOutput::Write_OldFileVanishes_IsRefused()
{
    QFETCH(bool, another);
    // Written in place, the text would be in a file that nobody can open any more.
    MakeFile(Path("a.kfb"), "old");
    QVERIFY(InChild([this, another] {
        disk.vanishes = true;
        disk.another = another;
        return !FeatureFileOutput::Write(Path("a.kfb"), "text");
    }));
    QCOMPARE(Entries(), another ? QStringList("a.kfb") : QStringList());
}

void tst_FeatureFileOutput::Write_MountPoint_WritesInPlace()
{
    MakeFile(Path("a.kfb"), "old");
    MakeFile(Path("mounted"), "old");
    if (!InChild([] { return unshare(CLONE_NEWNS) == 0; })) {
        QSKIP("nothing can be mounted here");
    }
    QVERIFY(InChild([this] { // which takes the mount with it
        const QByteArray from = QFile::encodeName(Path("mounted"));
        const QByteArray to = QFile::encodeName(Path("a.kfb"));
        bool whole = false;
        return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount(from.constData(), to.constData(), nullptr, MS_BIND, nullptr) == 0 &&
               FeatureFileOutput::Write(Path("a.kfb"), "text", &whole) && whole;
    }));
    QCOMPARE(ReadAll(Path("mounted")), QByteArray("text"));
    QCOMPARE(ReadAll(Path("a.kfb")), QByteArray("old"));
    QCOMPARE(Entries(), QStringList({"a.kfb", "mounted"}));
}

void tst_FeatureFileOutput::Write_LinkInsideTheFolder_WritesTheFileBehindIt()
{
    MakeFile(Path("real"), "old");
    QVERIFY(QFile::link("real", Path("a.kfb")));
    QVERIFY(FeatureFileOutput::Write(Path("a.kfb"), "text"));
    QCOMPARE(ReadAll(Path("real")), QByteArray("text"));
    QCOMPARE(QFileInfo(Path("a.kfb")).symLinkTarget(), Path("real"));
    QCOMPARE(Entries(), QStringList({"a.kfb", "real"}));
}

void tst_FeatureFileOutput::Write_LinkElsewhere_IsRefusedAndNothingTouched_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("a file outside") << "../outside";
    QTest::newRow("outside, whose name begins like the folder's") << "../folder2";
    QTest::newRow("outside, by way of a link inside") << "link";
    QTest::newRow("nothing") << "none";
    QTest::newRow("itself") << "a.kfb";
    QTest::newRow("a folder inside") << "sub";
    QTest::newRow("a FIFO inside") << "fifo";
}

void tst_FeatureFileOutput::Write_LinkElsewhere_IsRefusedAndNothingTouched()
{
    QFETCH(QString, target);
    QVERIFY(QDir().mkpath(Path("folder/sub")));
    MakeFile(Path("outside"), "old");
    MakeFile(Path("folder2"), "old");
    QVERIFY(QFile::link("../outside", Path("folder/link")));
    QCOMPARE(mkfifo(QFile::encodeName(Path("folder/fifo")).constData(), 0666), 0);
    // Not QFile::link(), which refuses a link to itself.
    QCOMPARE(
        symlink(QFile::encodeName(target).constData(), QFile::encodeName(Path("folder/a.kfb")).constData()),
        0);
    QVERIFY(!FeatureFileOutput::Write(Path("folder/a.kfb"), "text"));
    QVERIFY(QFileInfo(Path("folder/a.kfb")).isSymLink());
    QCOMPARE(ReadAll(Path("outside")), QByteArray("old"));
    QCOMPARE(ReadAll(Path("folder2")), QByteArray("old"));
    QCOMPARE(QDir(Path("folder")).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size(),
             4);
}

void tst_FeatureFileOutput::Write_NoRegularFile_IsRefusedAtOnceAndStays_data()
{
    QTest::addColumn<unsigned int>("type");
    QTest::newRow("FIFO") << unsigned{S_IFIFO};
    QTest::newRow("socket") << unsigned{S_IFSOCK};
    QTest::newRow("device") << unsigned{S_IFCHR};
}

void tst_FeatureFileOutput::Write_NoRegularFile_IsRefusedAtOnceAndStays()
{
    QFETCH(unsigned int, type);
    const QByteArray path = QFile::encodeName(Path("a.kfb"));
    // A device of its own, of the kind that takes everything; elsewhere mknod() is root's alone.
    if (mknod(path.constData(), type | 0666U, type == S_IFCHR ? makedev(1, 3) : 0) != 0) {
        QSKIP("such a file cannot be made here");
    }
    bool whole = true;
    QVERIFY(!FeatureFileOutput::Write(Path("a.kfb"), "text", &whole));
    QVERIFY(!whole);
    struct stat st = {};
    QCOMPARE(lstat(path.constData(), &st), 0);
    QCOMPARE(st.st_mode & S_IFMT, type);
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             QStringList("a.kfb"));
}

void tst_FeatureFileOutput::Close_WhileAnotherThreadWrites_LetsNoFurtherWriteBegin()
{
    // In a process of its own: there is no way back. It writes without end, closes the output, looks
    // whether another file appears, and exits as a program that is interrupted does.
    const pid_t child = fork();
    QVERIFY(child >= 0);
    if (child == 0) {
        std::thread writer([this] {
            for (int i = 0;; ++i) {
                FeatureFileOutput::Write(Path(QString::number(i)), QString(1000, 'x'));
            }
        });
        while (Entries().size() < 5) {
            std::this_thread::yield();
        }
        FeatureFileOutput::Close();
        const QStringList atClose = Entries();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        _exit(Entries() == atClose ? 0 : 1);
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QCOMPARE(status, 0);
    const QStringList files = Entries();
    for (const QString &name : files) {
        QCOMPARE(QFileInfo(Path(name)).size(), 1000LL);
    }
}

QTEST_GUILESS_MAIN(tst_FeatureFileOutput)
#include "tst_featurefileoutput.moc"
