#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <zip.h>

#include "KxCameraControl/kxerrors.h"
#include "description/unpack.h"
#include "helper/usblist.h"
#include "ipc/frame.h"

using namespace kxcc;

namespace {

std::string Zip(const QString &strPath, const QByteArray &content)
{
    zip_t *pZip = zip_open(QFile::encodeName(strPath).constData(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    zip_source_t *pSource =
        zip_source_buffer(pZip, content.constData(), static_cast<zip_uint64_t>(content.size()), 0);
    zip_file_add(pZip, "camera.xml", pSource, 0);
    zip_close(pZip);
    QFile file(strPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

} // namespace

class tst_HelperParts : public QObject
{
    Q_OBJECT

private slots:
    void Unpack_GoodArchive_GivesItsFirstFile();
    void Unpack_DamagedAnywhere_GivesNothingOrTheText();
    void Unpack_MoreThanTheLongestText_GivesNothing();
    void ListUsbCameras_NoCamera_IsEmpty();
};

void tst_HelperParts::Unpack_GoodArchive_GivesItsFirstFile()
{
    const QTemporaryDir folder;
    const QByteArray text = "<R>" + QByteArray(100000, 'x') + "</R>";
    QCOMPARE(UnpackFirstFile(Zip(folder.filePath("a.zip"), text)), text.toStdString());
}

void tst_HelperParts::Unpack_DamagedAnywhere_GivesNothingOrTheText()
{
    const QTemporaryDir folder;
    const QByteArray text = "<R>one two three one two three</R>";
    const std::string strGood = Zip(folder.filePath("a.zip"), text);
    for (size_t i = 0; i < strGood.size(); ++i) {
        std::string strBad = strGood;
        strBad[i] = static_cast<char>(strBad[i] ^ 0x5A);
        const std::string strGot = UnpackFirstFile(strBad);
        QVERIFY2(strGot.empty() || strGot == text.toStdString(), qPrintable(QString::number(i)));
        QVERIFY(UnpackFirstFile(strGood.substr(0, i)).empty());
    }
}

void tst_HelperParts::Unpack_MoreThanTheLongestText_GivesNothing()
{
    const QTemporaryDir folder;
    const QByteArray text(static_cast<int>(kMaxText) + 1, ' ');
    QVERIFY(UnpackFirstFile(Zip(folder.filePath("a.zip"), text)).empty());
}

void tst_HelperParts::ListUsbCameras_NoCamera_IsEmpty()
{
    const std::vector<KX_CC_DEVICE_INFO> records = ListUsbCameras();
    if (!records.empty())
        QSKIP("a USB camera is connected");
    QVERIFY(records.empty());
}

QTEST_APPLESS_MAIN(tst_HelperParts)
#include "tst_helperparts.moc"
