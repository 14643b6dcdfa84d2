#include <QtTest>

#include <worker/featurefileoutput.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

class tst_FeatureFileOutput : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void Write_NewFile_HoldsTheTextAsUtf8();
    void Write_ExistingFile_IsReplaced();
    void Write_MissingFolder_IsRefusedAndNothingLeft();
    void Write_PathIsAFolder_IsRefused();
    void Write_ExistingFileIsReadOnly_IsRefusedAndKept();
    void Write_DiskFull_KeepsTheOldFileAndLeavesNothingElse();
    void Close_WhileAnotherThreadWrites_LetsNoFurtherWriteBegin();

private:
    QString Path(const QString &name) const { return m_dir->path() + "/" + name; }
    QStringList Entries() const { return QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden); }
    static QByteArray ReadAll(const QString &path);
    void MakeFile(const QString &path, const QByteArray &content);

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

void tst_FeatureFileOutput::Write_NewFile_HoldsTheTextAsUtf8()
{
    QVERIFY(FeatureFileOutput::Write(Path("a.kfb"), QStringLiteral("Größe 相机\r\nend")));
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

void tst_FeatureFileOutput::Write_ExistingFileIsReadOnly_IsRefusedAndKept()
{
    if (geteuid() == 0) {
        QSKIP("root may write read-only files");
    }
    MakeFile(Path("a.kfb"), "old");
    QVERIFY(QFile::setPermissions(Path("a.kfb"), QFile::ReadOwner));
    QVERIFY(!FeatureFileOutput::Write(Path("a.kfb"), "text"));
    QCOMPARE(ReadAll(Path("a.kfb")), QByteArray("old"));
}

void tst_FeatureFileOutput::Write_DiskFull_KeepsTheOldFileAndLeavesNothingElse()
{
    MakeFile(Path("a.kfb"), "old");
    // A limit on the size of files stands in for a full disk: writing beyond it fails in the same place.
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small = {1000, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    FeatureFileOutput::Write(Path("a.kfb"), QString(100000, 'x'));
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, oldHandler);
    QCOMPARE(ReadAll(Path("a.kfb")), QByteArray("old"));
    QCOMPARE(Entries(), QStringList("a.kfb"));
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
