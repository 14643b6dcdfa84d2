#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <thread>
#include <unistd.h>

#include <featurefile/featurefilereader.h>

#include "importfile.h"

class tst_ImportFile : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void Read_RegularFile_GivesItsBytesToEachReader();
    void Read_FileChangesLater_WorkersReadWhatWasThere();
    void WorkerPath_AnyProcess_CannotBeChanged();
    void Read_FileCannotBeRead_CountsAsEmpty_data();
    void Read_FileCannotBeRead_CountsAsEmpty();
    void Read_NeitherFileNorPipe_IsRefusedUnopened_data();
    void Read_NeitherFileNorPipe_IsRefusedUnopened();
    void Read_Pipe_IsReadToItsEnd();
    void Read_PipeWithoutEnd_IsGivenUp();
    void Read_EndlessPipe_IsReadInPart();
    void Read_RecordNotStreamable_IsNamed();

private:
    QString Path() const { return m_dir->filePath("f.kfb"); }
    void Write(const QByteArray &text) const;
    static QByteArray Content(const QString &path);

    QScopedPointer<QTemporaryDir> m_dir;
};

namespace {

// What a shell gives for "<(...)".
class Pipe
{
public:
    Pipe() { m_bMade = pipe2(m_fds, O_CLOEXEC) == 0; }
    ~Pipe()
    {
        close(m_fds[0]);
        CloseEnd();
    }
    Q_DISABLE_COPY(Pipe)

    QString Path() const { return QStringLiteral("/dev/fd/%1").arg(m_bMade ? m_fds[0] : -1); }
    bool Write(const QByteArray &text) const
    {
        return write(m_fds[1], text.constData(), static_cast<size_t>(text.size())) == text.size();
    }
    void CloseEnd()
    {
        if (m_fds[1] >= 0)
            close(m_fds[1]);
        m_fds[1] = -1;
    }

private:
    int m_fds[2] = {-1, -1};
    bool m_bMade = false;
};

} // namespace

void tst_ImportFile::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
}

void tst_ImportFile::Write(const QByteArray &text) const
{
    QFile file(Path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

QByteArray tst_ImportFile::Content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

void tst_ImportFile::Read_RegularFile_GivesItsBytesToEachReader()
{
    Write("<F><M>a</M></F>");
    ImportFile file;
    QCOMPARE(file.Read(Path()), QString());
    QCOMPARE(Content(file.WorkerPath()), QByteArray("<F><M>a</M></F>"));
    QCOMPARE(FeatureFile::ReadText(file.WorkerPath()), QString("<F><M>a</M></F>"));
}

void tst_ImportFile::Read_FileChangesLater_WorkersReadWhatWasThere()
{
    Write("before");
    ImportFile file;
    QCOMPARE(file.Read(Path()), QString());
    Write("after");
    QCOMPARE(Content(file.WorkerPath()), QByteArray("before"));
    QVERIFY(QFile::remove(Path()));
    QCOMPARE(Content(file.WorkerPath()), QByteArray("before"));
}

void tst_ImportFile::WorkerPath_AnyProcess_CannotBeChanged()
{
    Write("text");
    ImportFile file;
    QCOMPARE(file.Read(Path()), QString());
    QFile again(file.WorkerPath());
    if (again.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
        QCOMPARE(again.write("x"), -1LL);
        QVERIFY(!again.resize(0));
        QVERIFY(!again.resize(100));
    }
    QCOMPARE(Content(file.WorkerPath()), QByteArray("text"));
}

void tst_ImportFile::Read_FileCannotBeRead_CountsAsEmpty_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no file") << QString("/nowhere/at/all");
    QTest::newRow("a file that fails while it is read") << QString("/proc/self/mem");
    QTest::newRow("below a file") << QString("/etc/passwd/none");
}

void tst_ImportFile::Read_FileCannotBeRead_CountsAsEmpty()
{
    QFETCH(QString, path);
    ImportFile file;
    QCOMPARE(file.Read(path), QString());
    QCOMPARE(Content(file.WorkerPath()), QByteArray());
}

void tst_ImportFile::Read_NeitherFileNorPipe_IsRefusedUnopened_data()
{
    QTest::addColumn<unsigned int>("type");
    QTest::addColumn<QString>("refusal");
    QTest::newRow("folder") << unsigned{S_IFDIR} << "it is a folder";
    QTest::newRow("FIFO") << unsigned{S_IFIFO} << "it is a FIFO";
    QTest::newRow("socket") << unsigned{S_IFSOCK} << "it is a device or a socket";
    QTest::newRow("device") << unsigned{S_IFCHR} << "it is a device or a socket";
}

void tst_ImportFile::Read_NeitherFileNorPipe_IsRefusedUnopened()
{
    QFETCH(unsigned int, type);
    QFETCH(QString, refusal);
    const QByteArray path = QFile::encodeName(Path());
    // A device of its own, of the kind that gives zeros without end; elsewhere mknod() is root's alone.
    if (type == S_IFDIR)
        QVERIFY(QDir().mkdir(Path()));
    else if (mknod(path.constData(), type | 0600U, type == S_IFCHR ? makedev(1, 5) : 0) != 0)
        QSKIP("such a file cannot be made here");
    QVERIFY(QFile::link(Path(), m_dir->filePath("link")));
    QCOMPARE(ImportFile().Read(Path()), refusal);
    QCOMPARE(ImportFile().Read(m_dir->filePath("link")), refusal);
}

void tst_ImportFile::Read_Pipe_IsReadToItsEnd()
{
    Pipe pipe;
    const QByteArray begin = "<F><M>" + QByteArray(3000, 'a');
    const QByteArray end = QByteArray(200000, 'b') + "</M></F>";
    QVERIFY(pipe.Write(begin));
    // The rest comes later, and is more than a pipe holds.
    bool written = false;
    std::thread writer([&] {
        QThread::msleep(50);
        written = pipe.Write(end);
        pipe.CloseEnd();
    });
    ImportFile file;
    const QString refusal = file.Read(pipe.Path());
    writer.join();
    QCOMPARE(refusal, QString());
    QVERIFY(written);
    QVERIFY(Content(file.WorkerPath()) == begin + end);
}

void tst_ImportFile::Read_PipeWithoutEnd_IsGivenUp()
{
    Pipe pipe;
    QVERIFY(pipe.Write("<F>"));
    ImportFile file;
    QCOMPARE(file.Read(pipe.Path(), 20), QString("it did not come to its end within 0 s"));
}

void tst_ImportFile::Read_EndlessPipe_IsReadInPart()
{
    Pipe pipe;
    const QByteArray blanks(60000, ' ');
    std::thread writer([&] {
        // A little more than is read, so that it ends by itself; the rest fits into the pipe.
        for (int size = 0; size <= FeatureFile::kLongestFile; size += blanks.size())
            pipe.Write(blanks);
    });
    ImportFile file;
    const QString refusal = file.Read(pipe.Path()); // without waiting for the end
    writer.join();
    QCOMPARE(refusal, QString());
    QCOMPARE(Content(file.WorkerPath()).size(), FeatureFile::kLongestFile + 1);
}

void tst_ImportFile::Read_RecordNotStreamable_IsNamed()
{
    Write("<F><M>m</M><R><Name>Width</Name><Streamable>No</Streamable></R></F>");
    ImportFile file;
    QCOMPARE(file.Read(Path()), QString("the record \"Width\" is not streamable"));
}

QTEST_GUILESS_MAIN(tst_ImportFile)
#include "tst_importfile.moc"
