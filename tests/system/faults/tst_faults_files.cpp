#include <QtTest>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <random>

#include "faultbatch.h"

// Bad files to import, and bad places to export to.
class tst_Faults_Files : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void Import_BadFile_IsReportedAndNothingIsSet_data();
    void Import_BadFile_IsReportedAndNothingIsSet();
    void Import_RandomFile_EndsAndChangesNoText();
    void Import_HugeFile_TakesLittleMemory_data();
    void Import_HugeFile_TakesLittleMemory();
    void Export_ImpossibleFolder_IsReported_data();
    void Export_ImpossibleFolder_IsReported();
    void Export_FolderOfAnotherUser_IsReported();
    void Export_OverAReadOnlyFile_LeavesIt();
    void Export_NameIsNoRegularFile_FailsAloneAndStays_data();
    void Export_NameIsNoRegularFile_FailsAloneAndStays();
    void Export_StickyFolderWithAnothersFile_WritesIt();
    void Export_FolderVanishes_IsReported();
    void Export_DiskIsFull_LeavesWhatWasThere();
    void Export_FileSizeIsLimited_LeavesWhatWasThere();
    void Export_FileSizeIsLimitedInPlace_PutsBackWhatWasThere();

private:
    CompanionRun RunAs(const QStringList &before, const QStringList &arguments) const;
    CompanionRun RunAsNobody(const QStringList &arguments) const;
    QString Unprivileged() const;

    FaultBatch m_batch{"127.50.9."};
};

namespace {

const char kOpenFile[] = "Failed to export features.Failed to open File.";
const char kNotWritten[] = "The file was not written; the disk may be full.";
const char kFileName[] = "/SimCam-150_SIM0001.kfb";

QByteArray Utf16(const QByteArray &text)
{
    const QString wide = QChar(0xFEFF) + QString::fromUtf8(text);
    return QByteArray(reinterpret_cast<const char *>(wide.utf16()), wide.size() * 2);
}

bool WriteFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

} // namespace

void tst_Faults_Files::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QCOMPARE(m_batch.Prepare(), QString());
}

void tst_Faults_Files::Import_BadFile_IsReportedAndNothingIsSet_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("message");
    const QString open = "Failed to import features.Failed to open xml.";
    const QString load = "Failed to import features.Failed to load xml.";
    const QByteArray good = WithValue(m_batch.Reference(), "Width", "320");
    const auto withPrologue = [&good](const QByteArray &prologue) {
        return QByteArray(good).replace("<Features>", prologue + "<Features>");
    };
    QTest::newRow("empty") << QByteArray() << open;
    QTest::newRow("NULs") << QByteArray(1000, '\0') << open;
    QTest::newRow("one byte missing") << good.chopped(1) << load;
    QTest::newRow("half") << good.left(good.size() / 2) << load;
    QTest::newRow("the declaration alone") << good.left(38) << load;
    QTest::newRow("UTF-16") << Utf16(good) << load;
    QTest::newRow("no XML") << QByteArray("Width=320\n") << load;
    QTest::newRow("deeply nested") << QByteArray("<a>").repeated(100000) + QByteArray("</a>").repeated(100000)
                                   << load;
    QTest::newRow("DTD") << withPrologue("<!DOCTYPE Features>") << load;
    QTest::newRow("entities") << withPrologue("<!DOCTYPE Features [<!ENTITY a \"320\">]>") << load;
    QTest::newRow("Latin-1 in the model") << QByteArray(good).replace("SimCam-150<", "SimCam-150\xE9<")
                                          << "Failed to import features. Camera models mismatch.";
}

void tst_Faults_Files::Import_BadFile_IsReportedAndNothingIsSet()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, message);
    QCOMPARE(m_batch.StartFarm(), QString());
    const FaultBatch::Outcome outcome = m_batch.Import(file);
    QCOMPARE(outcome.run.exitCode, 1);
    for (int camera = 1; camera <= 3; ++camera)
        QCOMPARE(outcome.run.Camera(m_batch.Address(camera)).value("message").toString(), message);
    QCOMPARE(m_batch.CheckLeftovers(outcome), QString());
    const FaultBatch::Outcome after = m_batch.Export();
    QCOMPARE(after.files.value("SimCam-150_SIM0002.kfb"), m_batch.Reference());
    QCOMPARE(m_batch.CheckNeighbours(after), QString());
}

void tst_Faults_Files::Import_RandomFile_EndsAndChangesNoText()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    std::mt19937 random(20); // the same bytes in every run
    for (int round = 0; round < 10; ++round) {
        QByteArray file(1 + static_cast<int>(random() % 20000), 0);
        for (char &byte : file)
            byte = static_cast<char>(random() & 0xFFU);
        const FaultBatch::Outcome outcome = m_batch.Import(file);
        QCOMPARE(outcome.run.exitCode, 1);
        QVERIFY2(outcome.run.out.count("Failed to import features.Failed to ") == 3, outcome.run.out);
    }
    QCOMPARE(m_batch.CheckNeighbours(m_batch.Export()), QString());
}

void tst_Faults_Files::Import_HugeFile_TakesLittleMemory_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("filling"); // repeated up to the size; none: zeros
    QTest::newRow("zeros") << QByteArray() << QByteArray();
    QTest::newRow("blanks") << QByteArray("<Features>") << QByteArray(1 << 20, ' ');
    QTest::newRow("records") << QByteArray("<Features><M>SimCam-150</M>")
                             << QByteArray("<Feature><Name>Width</Name></Feature>").repeated(1 << 15);
}

void tst_Faults_Files::Import_HugeFile_TakesLittleMemory()
{
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, filling);
    constexpr qint64 size = qint64{500} << 20;
    const QTemporaryDir folder;
    if (!filling.isEmpty() && QStorageInfo(folder.path()).bytesAvailable() < 2 * size)
        QSKIP("too little room for a file of 500 MB");
    QFile file(folder.filePath("huge.kfb"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(begin);
    while (!filling.isEmpty() && file.pos() < size)
        QCOMPARE(file.write(filling), qint64{filling.size()});
    QVERIFY(file.flush() && file.resize(qMax(size, file.size())));

    QCOMPARE(m_batch.StartFarm(), QString());
    rusage before = {};
    getrusage(RUSAGE_CHILDREN, &before);
    const CompanionRun run = RunCompanion({"import", file.fileName(), "--json", "--address",
                                           m_batch.Address(1), m_batch.Address(2), m_batch.Address(3)});
    rusage after = {};
    getrusage(RUSAGE_CHILDREN, &after);
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.out.count("Failed to import features.Failed to ") == 3, run.out);
#if !defined(__SANITIZE_ADDRESS__)
    // The largest child so far, in kB: 4 MB of file and 8 of text for the check beforehand and each camera.
    QVERIFY2(after.ru_maxrss < 120L * 1024, qPrintable(QString("%1 kB").arg(after.ru_maxrss)));
#endif
}

void tst_Faults_Files::Export_ImpossibleFolder_IsReported_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("none") << QString("/nowhere/at/all");
    QTest::newRow("a file") << QString("/etc/passwd");
    QTest::newRow("below a file") << QString("/etc/passwd/folder");
    QTest::newRow("/proc") << QString("/proc");
    QTest::newRow("/dev/full") << QString("/dev/full");
    QTest::newRow("a name too long") << QString("/tmp/") + QString(300, 'x');
}

void tst_Faults_Files::Export_ImpossibleFolder_IsReported()
{
    QFETCH(QString, folder);
    QCOMPARE(m_batch.StartFarm(), QString());
    const CompanionRun run = RunCompanion({"export", "--to", folder, "--json", "--address",
                                           m_batch.Address(1), m_batch.Address(2), m_batch.Address(3)});
    QCOMPARE(run.exitCode, 1);
    for (int camera = 1; camera <= 3; ++camera)
        QCOMPARE(run.Camera(m_batch.Address(camera)).value("message").toString(), QString(kOpenFile));
    QCOMPARE(m_batch.CheckFreeAgain(), QString());
}

// Runs the companion behind another command, e.g. one that changes the user.
CompanionRun tst_Faults_Files::RunAs(const QStringList &before, const QStringList &arguments) const
{
    QProcess process;
    process.start(before.first(), before.mid(1) + QStringList(PROJECT_BIN_DIR "/kx-features") + arguments);
    CompanionRun run;
    const bool ended = process.waitForFinished(60000);
    run.exitCode = ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}

CompanionRun tst_Faults_Files::RunAsNobody(const QStringList &arguments) const
{
    return geteuid() == 0 ? RunAs({"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"}, arguments)
                          : RunCompanion(arguments);
}

// Why no unprivileged run is possible; empty when one is.
QString tst_Faults_Files::Unprivileged() const
{
    return RunAsNobody({"--version"}).exitCode == 0 ? QString()
                                                    : "the program cannot be run as another user here";
}

void tst_Faults_Files::Export_FolderOfAnotherUser_IsReported()
{
    if (const QString why = Unprivileged(); !why.isEmpty())
        QSKIP(qPrintable(why));
    QCOMPARE(m_batch.StartFarm(), QString());
    const QTemporaryDir folder;
    QVERIFY(QFile::setPermissions(folder.path(),
                                  QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther));
    const CompanionRun run =
        RunAsNobody({"export", "--to", folder.path(), "--json", "--address", m_batch.Address(1)});
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.Camera(m_batch.Address(1)).value("message").toString(), QString(kOpenFile));
    QVERIFY(QDir(folder.path()).isEmpty());
}

void tst_Faults_Files::Export_OverAReadOnlyFile_LeavesIt()
{
    if (const QString why = Unprivileged(); !why.isEmpty())
        QSKIP(qPrintable(why));
    QCOMPARE(m_batch.StartFarm(), QString());
    const QTemporaryDir folder;
    QVERIFY(QFile::setPermissions(folder.path(), static_cast<QFile::Permissions>(0x7777)));
    const QString file = folder.path() + kFileName;
    QVERIFY(WriteFile(file, "old"));
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadOther));
    const CompanionRun run =
        RunAsNobody({"export", "--to", folder.path(), "--json", "--address", m_batch.Address(1)});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.Camera(m_batch.Address(1)).value("message").toString(), QString(kOpenFile));
    QCOMPARE(ReadFile(file), QByteArray("old"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void tst_Faults_Files::Export_NameIsNoRegularFile_FailsAloneAndStays_data()
{
    QTest::addColumn<unsigned int>("type");
    QTest::addColumn<bool>("linked");
    QTest::newRow("FIFO") << unsigned{S_IFIFO} << false;
    QTest::newRow("socket") << unsigned{S_IFSOCK} << false;
    QTest::newRow("device") << unsigned{S_IFCHR} << false;
    QTest::newRow("link to a FIFO") << unsigned{S_IFIFO} << true;
    QTest::newRow("link to a device") << unsigned{S_IFCHR} << true;
    QTest::newRow("link to a file outside") << unsigned{S_IFREG} << true;
}

void tst_Faults_Files::Export_NameIsNoRegularFile_FailsAloneAndStays()
{
    QFETCH(unsigned int, type);
    QFETCH(bool, linked);
    const QTemporaryDir outside;
    const QTemporaryDir folder;
    const QString name = folder.path() + QString(kFileName).replace("SIM0001", "SIM0002");
    const QByteArray node = QFile::encodeName(linked ? outside.filePath("node") : name);
    // A device of its own, of the kind that takes everything; elsewhere mknod() is root's alone.
    if (mknod(node.constData(), type | 0666U, type == S_IFCHR ? makedev(1, 3) : 0) != 0)
        QSKIP("such a file cannot be made here");
    if (linked)
        QVERIFY(QFile::link(outside.filePath("node"), name));
    QCOMPARE(m_batch.StartFarm(), QString());
    const CompanionRun run = RunCompanion({"export", "--to", folder.path(), "--json", "--address",
                                           m_batch.Address(1), m_batch.Address(2), m_batch.Address(3)});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.Camera(m_batch.Address(2)).value("message").toString(), QString(kOpenFile));
    struct stat now = {};
    QCOMPARE(lstat(node.constData(), &now), 0);
    QCOMPARE(now.st_mode & S_IFMT, type);
    QCOMPARE(now.st_size, off_t{0});
    QCOMPARE(QFileInfo(name).isSymLink(), linked);
    QCOMPARE(ReadFile(folder.path() + kFileName), m_batch.Reference());
    QCOMPARE(ReadFile(folder.path() + QString(kFileName).replace("SIM0001", "SIM0003")), m_batch.Reference());
}

void tst_Faults_Files::Export_StickyFolderWithAnothersFile_WritesIt()
{
    if (geteuid() != 0 || !Unprivileged().isEmpty())
        QSKIP("the program cannot be run as another user here");
    QCOMPARE(m_batch.StartFarm(), QString());
    const QTemporaryDir folder;
    const QString file = folder.path() + kFileName;
    QVERIFY(WriteFile(file, "old"));
    QCOMPARE(chmod(QFile::encodeName(file).constData(), 0666), 0);
    QCOMPARE(chmod(QFile::encodeName(folder.path()).constData(), 01777), 0);
    const CompanionRun run =
        RunAsNobody({"export", "--to", folder.path(), "--json", "--address", m_batch.Address(1)});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(ReadFile(file), m_batch.Reference());
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void tst_Faults_Files::Export_FolderVanishes_IsReported()
{
    QCOMPARE(m_batch.StartFarm({"--latency-us", "5000"}), QString());
    QTemporaryDir folder;
    QProcess process;
    StartCompanion(process, {"export", "--to", folder.path(), "--json", "--address", m_batch.Address(1)});
    QVERIFY(folder.remove()); // long before some hundred accesses of 5 ms are through
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), 1);
    QVERIFY(process.readAllStandardOutput().contains(kOpenFile));
    QVERIFY(!QFile::exists(folder.path()));
}

// The worker does not report it, so the program looks at the file; the one that was there stays as it was.
void tst_Faults_Files::Export_DiskIsFull_LeavesWhatWasThere()
{
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.path());
    if (mount("none", path.constData(), "tmpfs", 0, "size=8k") != 0)
        QSKIP("a small disk cannot be mounted here");
    const bool written = WriteFile(folder.path() + kFileName, "old");
    const QString error = m_batch.StartFarm();
    const CompanionRun run =
        RunCompanion({"export", "--to", folder.path(), "--json", "--address", m_batch.Address(1)});
    const QByteArray old = ReadFile(folder.path() + kFileName);
    const int nFiles = QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size();
    umount2(path.constData(), MNT_DETACH); // before anything can fail
    QVERIFY(written);
    QCOMPARE(error, QString());
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.Camera(m_batch.Address(1)).value("message").toString(), QString(kNotWritten));
    QCOMPARE(old, QByteArray("old"));
    QCOMPARE(nFiles, 1);
    QCOMPARE(m_batch.CheckFreeAgain(), QString());
}

void tst_Faults_Files::Export_FileSizeIsLimited_LeavesWhatWasThere()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    const QTemporaryDir folder;
    QVERIFY(WriteFile(folder.path() + kFileName, "old"));
    const CompanionRun run =
        RunAs({"sh", "-c", "trap '' XFSZ; ulimit -f 8; exec \"$@\"", "sh"},
              {"export", "--to", folder.path(), "--json", "--address", m_batch.Address(1)});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.Camera(m_batch.Address(1)).value("message").toString(), QString(kNotWritten));
    QCOMPARE(ReadFile(folder.path() + kFileName), QByteArray("old"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void tst_Faults_Files::Export_FileSizeIsLimitedInPlace_PutsBackWhatWasThere()
{
    if (geteuid() != 0 || !Unprivileged().isEmpty())
        QSKIP("the program cannot be run as another user here");
    QCOMPARE(m_batch.StartFarm(), QString());
    const QTemporaryDir folder;
    const QString file = folder.path() + kFileName;
    // Whole, and touched when it is put back: the file itself does not show that it is the old one.
    const QByteArray old = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Features>\r\n</Features>";
    QVERIFY(WriteFile(file, old));
    QCOMPARE(chmod(QFile::encodeName(file).constData(), 0666), 0);
    QCOMPARE(chmod(QFile::encodeName(folder.path()).constData(), 0555), 0);
    const CompanionRun run =
        RunAs({"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "sh", "-c",
               "ulimit -f 8; exec \"$@\"", "sh"},
              {"export", "--to", folder.path(), "--json", "--address", m_batch.Address(1)});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.Camera(m_batch.Address(1)).value("message").toString(), QString(kNotWritten));
    QCOMPARE(ReadFile(file), old);
}

QTEST_GUILESS_MAIN(tst_Faults_Files)
#include "tst_faults_files.moc"
