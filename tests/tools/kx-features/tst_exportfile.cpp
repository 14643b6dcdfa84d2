#include <QtTest>

#include <utime.h>

#include "exportfile.h"
#include "testcameras.h"

class tst_ExportFile : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void Problem_FileAppears_IsNone();
    void Problem_FileIsReplaced_IsNone();
    void Problem_FileIsWrittenInPlace_IsNone();
    void Problem_NoFile_IsTold();
    void Problem_FileIsTheOldOne_IsTold();
    void Problem_OldFileWasPutBack_IsTold();
    void Problem_FileIsNotWhole_IsTold_data();
    void Problem_FileIsNotWhole_IsTold();
    void SharedFiles_OwnNames_AreNone();
    void SharedFiles_TwoOfOneName_NameEachOther();
    void SharedFiles_NamesThatMeet_AreFound();
    void SharedFiles_LinkToTheOther_IsFound();
    void SharedFiles_ManyOfOneName_NameSome();

private:
    QString Path() const { return m_dir->filePath("M_S.kfb"); }
    void Write(const QByteArray &text, const QString &path) const;
    void Write(const QByteArray &text) const { Write(text, Path()); }

    QScopedPointer<QTemporaryDir> m_dir;
};

namespace {

const char kWhole[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Features>\r\n</Features>";
const QString kNotWritten = "The file was not written; the disk may be full.";
const QString kNotWhole = "The file is not whole.";

} // namespace

void tst_ExportFile::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
}

void tst_ExportFile::Write(const QByteArray &text, const QString &path) const
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

void tst_ExportFile::Problem_FileAppears_IsNone()
{
    const ExportFile file(Path());
    Write(kWhole);
    QCOMPARE(file.Problem(true), QString());
}

void tst_ExportFile::Problem_FileIsReplaced_IsNone()
{
    Write(kWhole);
    const ExportFile file(Path());
    Write(kWhole, Path() + ".new");
    QCOMPARE(rename(qPrintable(Path() + ".new"), qPrintable(Path())), 0);
    QCOMPARE(file.Problem(true), QString());
}

void tst_ExportFile::Problem_FileIsWrittenInPlace_IsNone()
{
    Write(kWhole);
    const utimbuf longAgo = {1000000000, 1000000000};
    QCOMPARE(utime(qPrintable(Path()), &longAgo), 0);
    const ExportFile file(Path());
    Write(kWhole); // the same text, now
    QCOMPARE(file.Problem(true), QString());
}

void tst_ExportFile::Problem_NoFile_IsTold()
{
    QCOMPARE(ExportFile(Path()).Problem(true), kNotWritten);
}

void tst_ExportFile::Problem_FileIsTheOldOne_IsTold()
{
    Write(kWhole);
    QCOMPARE(ExportFile(Path()).Problem(true), kNotWritten);
}

void tst_ExportFile::Problem_OldFileWasPutBack_IsTold()
{
    Write(kWhole);
    const ExportFile file(Path());
    QFile::remove(Path());
    Write(kWhole); // looks new
    QCOMPARE(file.Problem(false), kNotWritten);
}

void tst_ExportFile::Problem_FileIsNotWhole_IsTold_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArray whole(kWhole);
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("a byte missing") << whole.chopped(1);
    QTest::newRow("another beginning") << 'x' + whole;
    QTest::newRow("a beginning missing") << whole.mid(1);
    QTest::newRow("the end alone") << QByteArray("</Features>");
    QTest::newRow("zeros") << QByteArray(1000, '\0');
}

void tst_ExportFile::Problem_FileIsNotWhole_IsTold()
{
    QFETCH(QByteArray, text);
    const ExportFile file(Path());
    Write(text);
    QCOMPARE(file.Problem(true), kNotWhole);
}

void tst_ExportFile::SharedFiles_OwnNames_AreNone()
{
    const QVector<Camera> cameras = {NetworkCamera("M", "1", 0x0A000001), NetworkCamera("M", "2", 0x0A000002),
                                     NetworkCamera("N", "1", 0x0A000003)};
    QCOMPARE(SharedFiles(cameras, m_dir->path()), QStringList({"", "", ""}));
    QCOMPARE(ExportPaths(cameras, "/d"), QStringList({"/d/M_1.kfb", "/d/M_2.kfb", "/d/N_1.kfb"}));
}

void tst_ExportFile::SharedFiles_TwoOfOneName_NameEachOther()
{
    const QStringList shared =
        SharedFiles({NetworkCamera("M", "1", 0x0A000001), NetworkCamera("M", "2", 0x0A000002),
                     NetworkCamera("M", "1", 0x0A000003)},
                    "/d");
    QCOMPARE(
        shared,
        QStringList(
            {"10.0.0.1 and 10.0.0.3 have the same file, /d/M_1.kfb; with --overwrite the last one stays", "",
             "10.0.0.3 and 10.0.0.1 have the same file, /d/M_1.kfb; with --overwrite the last one "
             "stays"}));
}

void tst_ExportFile::SharedFiles_NamesThatMeet_AreFound()
{
    const QStringList shared =
        SharedFiles({NetworkCamera("A_B", "C", 0x0A000001), NetworkCamera("A", "B_C", 0x0A000002)}, "/d");
    QVERIFY2(shared.at(0).startsWith("10.0.0.1 and 10.0.0.2 "), qPrintable(shared.at(0)));
    QVERIFY2(shared.at(1).startsWith("10.0.0.2 and 10.0.0.1 "), qPrintable(shared.at(1)));
}

void tst_ExportFile::SharedFiles_LinkToTheOther_IsFound()
{
    Write(kWhole, m_dir->filePath("M_1.kfb"));
    QVERIFY(QFile::link("M_1.kfb", m_dir->filePath("M_2.kfb")));
    const QStringList shared = SharedFiles(
        {NetworkCamera("M", "1", 0x0A000001), NetworkCamera("M", "2", 0x0A000002)}, m_dir->path());
    QVERIFY(!shared.at(0).isEmpty() && !shared.at(1).isEmpty());
}

void tst_ExportFile::SharedFiles_ManyOfOneName_NameSome()
{
    QVector<Camera> cameras;
    for (quint32 i = 1; i <= 1000; ++i)
        cameras << NetworkCamera("M", "1", 0x0A000000 + i);
    const QStringList shared = SharedFiles(cameras, "/d");
    QVERIFY2(shared.at(999).startsWith("10.0.3.232, 10.0.0.1, 10.0.0.2 and 997 more have the same file"),
             qPrintable(shared.at(999)));
    QVERIFY(SharedFiles(cameras.mid(0, 3), "/d").at(1).startsWith("10.0.0.2, 10.0.0.1 and 10.0.0.3 have "));
}

QTEST_GUILESS_MAIN(tst_ExportFile)
#include "tst_exportfile.moc"
