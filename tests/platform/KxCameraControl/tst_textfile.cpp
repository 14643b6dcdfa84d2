#include "features/textfile.h"

#include <QtTest>

#include <QTemporaryDir>

#include <sys/stat.h>

#include <KxCameraControl/kxerrors.h>

#include "ipc/frame.h"

using namespace kxcc;

class tst_TextFile : public QObject
{
    Q_OBJECT

private slots:
    void Replace_Existing_IsReplacedWhole();
    void Replace_FolderIsMissing_CannotBeOpened();
    void Replace_NoRegularFile_IsLeftAlone_data();
    void Replace_NoRegularFile_IsLeftAlone();
    void Read_NoRegularFile_CannotBeOpened_data();
    void Read_NoRegularFile_CannotBeOpened();
    void Read_LongerThanAnyText_IsNoneOfOurs();

private:
    QByteArray Path(const char *szName) const { return QFile::encodeName(m_folder.filePath(szName)); }
    void AddRowsOfOtherThings();

    const QTemporaryDir m_folder;
};

void tst_TextFile::AddRowsOfOtherThings()
{
    QTest::addColumn<QByteArray>("path");
    QDir(m_folder.path()).mkdir("folder");
    mkfifo(Path("pipe"), 0600);
    QTest::newRow("folder") << Path("folder");
    QTest::newRow("pipe that nobody writes") << Path("pipe");
}

void tst_TextFile::Replace_Existing_IsReplacedWhole()
{
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath("f"));
    std::vector<std::uint8_t> bytes;
    QCOMPARE(ReplaceFile(path, std::vector<std::uint8_t>(1000, 'a')), KX_CC_OK);
    QCOMPARE(ReplaceFile(path, {'b'}), KX_CC_OK);
    QCOMPARE(ReadWholeFile(path, bytes), KX_CC_OK);
    QCOMPARE(bytes, std::vector<std::uint8_t>{'b'});
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);
}

void tst_TextFile::Replace_FolderIsMissing_CannotBeOpened()
{
    QCOMPARE(ReplaceFile(Path("nowhere/at/all"), {'b'}), KX_CC_E_FILE_OPEN);
}

void tst_TextFile::Replace_NoRegularFile_IsLeftAlone_data()
{
    AddRowsOfOtherThings();
}

void tst_TextFile::Replace_NoRegularFile_IsLeftAlone()
{
    QFETCH(QByteArray, path);
    struct stat before = {};
    QCOMPARE(stat(path, &before), 0);

    QCOMPARE(ReplaceFile(path, {'b'}), KX_CC_E_FILE_OPEN);

    struct stat after = {};
    QCOMPARE(stat(path, &after), 0);
    QCOMPARE(after.st_ino, before.st_ino);
    QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files).size(), 0);
}

void tst_TextFile::Read_NoRegularFile_CannotBeOpened_data()
{
    AddRowsOfOtherThings();
}

void tst_TextFile::Read_NoRegularFile_CannotBeOpened()
{
    QFETCH(QByteArray, path);
    std::vector<std::uint8_t> bytes;
    QCOMPARE(ReadWholeFile(path, bytes), KX_CC_E_FILE_OPEN);
    QVERIFY(bytes.empty());
}

void tst_TextFile::Read_LongerThanAnyText_IsNoneOfOurs()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("f"));
    QVERIFY(file.open(QIODevice::WriteOnly) &&
            file.resize(qint64(kMaxText) + 1)); // takes no room on the disk
    std::vector<std::uint8_t> bytes;
    QCOMPARE(ReadWholeFile(QFile::encodeName(file.fileName()), bytes), KX_CC_E_FILE_FORMAT);
}

QTEST_APPLESS_MAIN(tst_TextFile)
#include "tst_textfile.moc"
