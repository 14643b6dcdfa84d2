#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <zip.h>

#include "opencamera.h"
#include "scriptedcamera.h"

// What a camera may say that must cost its own handle only.
class tst_HostileCamera : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void Open_Description_data();
    void Open_Description();
    void Open_Url_data();
    void Open_Url();
    void Open_PackedDescription_Works();
    void Open_DescriptionWithALatin1Byte_GivesTheRepairedText();
    void Open_PackedDescriptionThatUnpacksTooFar_IsRefused();
    void Open_CameraAsksForMoreTimeForEver_TimesOut();
    void Get_BrokenFeatures_LeaveTheHandleOpen();
    void Get_RegisterOfImpossibleLength_CostsThisHandleAtTheMost_data();
    void Get_RegisterOfImpossibleLength_CostsThisHandleAtTheMost();

private:
    static QByteArray GoodDescription();
    static QByteArray UrlFor(const QByteArray &description, const char *szName = "a.xml");

    QList<int> m_childrenBefore;
    int m_nDescriptorsBefore = 0;
};

namespace {

const char *const kAddress = TestAddress(1);

QByteArray Zip(const QByteArray &content)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("a.zip");
    zip_t *pZip = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE, nullptr);
    zip_file_add(pZip, "a.xml",
                 zip_source_buffer(pZip, content.constData(), static_cast<zip_uint64_t>(content.size()), 0),
                 0);
    zip_close(pZip);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QByteArray tst_HostileCamera::GoodDescription()
{
    QFile file(QFINDTESTDATA("data/access.xml"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

QByteArray tst_HostileCamera::UrlFor(const QByteArray &description, const char *szName)
{
    return QByteArray("Local:") + szName + ";100000;" + QByteArray::number(description.size(), 16);
}

void tst_HostileCamera::init()
{
    m_childrenBefore = ChildProcesses();
    m_nDescriptorsBefore = OpenDescriptors();
}

void tst_HostileCamera::cleanup()
{
    QCOMPARE(ChildProcesses(), m_childrenBefore);
    QCOMPARE(OpenDescriptors(), m_nDescriptorsBefore);
}

void tst_HostileCamera::Open_Description_data()
{
    QTest::addColumn<QByteArray>("description");
    QTest::addColumn<int>("code");
    const QByteArray good = GoodDescription();
    QVERIFY(!good.isEmpty());
    QTest::newRow("good") << good << KX_CC_OK;
    QTest::newRow("byte-order mark") << QByteArray("\xef\xbb\xbf") + good << KX_CC_OK;
    QTest::newRow("text before and NULs behind")
        << QByteArray("\r\n junk ") + good + QByteArray(9, '\0') << KX_CC_OK;
    QTest::newRow("document type") << QByteArray(good).replace("?>", "?><!DOCTYPE R [<!ENTITY a \"b\">]>")
                                   << KX_CC_E_DESCRIPTION;
    QTest::newRow("100000 levels") << QByteArray("<?xml version=\"1.0\"?>") +
                                          QByteArray("<a>").repeated(100000)
                                   << KX_CC_E_DESCRIPTION;
    QTest::newRow("cut off") << good.left(good.size() / 2) << KX_CC_E_DESCRIPTION;
    QTest::newRow("not well-formed at its end")
        << QByteArray(good).insert(good.lastIndexOf("</"), "<a b='' b=''/>") << KX_CC_E_DESCRIPTION;
    QTest::newRow("other XML") << QByteArray("<?xml version=\"1.0\"?><html/>") << KX_CC_E_DESCRIPTION;
    QTest::newRow("no XML") << QByteArray("hello, world") << KX_CC_E_DESCRIPTION;
    QTest::newRow("zip that is none") << QByteArray("PK\x03\x04 and nothing more") << KX_CC_E_DESCRIPTION;
}

void tst_HostileCamera::Open_Description()
{
    QFETCH(QByteArray, description);
    const ScriptedCamera scripted(kAddress, UrlFor(description), description);
    QVERIFY(scripted.IsThere());
    QTEST(OpenCamera(kAddress).Code(), "code");
}

void tst_HostileCamera::Open_Url_data()
{
    QTest::addColumn<QByteArray>("url");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("4 GB") << QByteArray("Local:a.xml;100000;FFFFFFFF");
    QTest::newRow("more than 64 bits") << QByteArray("Local:a.xml;100000;FFFFFFFFFFFFFFFFFFFFFFFF");
    QTest::newRow("negative") << QByteArray("Local:a.xml;100000;-1");
    QTest::newRow("a file of this machine") << QByteArray("File:///etc/hostname");
    QTest::newRow("no end") << QByteArray(512, 'x');
}

void tst_HostileCamera::Open_Url()
{
    QFETCH(QByteArray, url);
    const ScriptedCamera scripted(kAddress, url, GoodDescription());
    QVERIFY(scripted.IsThere());
    QCOMPARE(OpenCamera(kAddress).Code(), KX_CC_E_DESCRIPTION);
}

void tst_HostileCamera::Open_PackedDescription_Works()
{
    const QByteArray packed = Zip(GoodDescription());
    const ScriptedCamera scripted(kAddress, UrlFor(packed, "a.zip"), packed);
    const OpenCamera camera(kAddress);
    QCOMPARE(camera.Code(), KX_CC_OK);
    std::vector<unsigned char> text(1 << 20);
    unsigned int nSize = 0;
    QCOMPARE(KX_XML_GetGenICamXML(camera.Handle(), text.data(), 1 << 20, &nSize), KX_CC_OK);
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(text.data())), GoodDescription());
}

void tst_HostileCamera::Open_DescriptionWithALatin1Byte_GivesTheRepairedText()
{
    const QByteArray comment = "<!-- 50 \xb0 -->";
    const QByteArray description = GoodDescription() + comment;
    const ScriptedCamera scripted(kAddress, UrlFor(description), description);
    const OpenCamera camera(kAddress);
    QCOMPARE(camera.Code(), KX_CC_OK);
    std::vector<unsigned char> text(1 << 20);
    unsigned int nSize = 0;
    QCOMPARE(KX_XML_GetGenICamXML(camera.Handle(), text.data(), 1 << 20, &nSize), KX_CC_OK);
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(text.data())),
             GoodDescription() + QByteArray(comment).replace('\xb0', "\xef\xbf\xbd"));
}

void tst_HostileCamera::Open_PackedDescriptionThatUnpacksTooFar_IsRefused()
{
    const QByteArray packed = Zip("<?xml version=\"1.0\"?><R>" + QByteArray(70 << 20, ' ') + "</R>");
    const ScriptedCamera scripted(kAddress, UrlFor(packed, "a.zip"), packed);
    QCOMPARE(OpenCamera(kAddress).Code(), KX_CC_E_DESCRIPTION);
}

void tst_HostileCamera::Open_CameraAsksForMoreTimeForEver_TimesOut()
{
    ScriptedCamera scripted(kAddress, UrlFor("x"), "x");
    QVERIFY(scripted.IsThere());
    scripted.AskForTimeForEver();
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(OpenCamera(kAddress).Code(), KX_CC_E_TIMEOUT);
    QVERIFY(timer.elapsed() < 20000); // 3 s of waiting, and what a busy machine adds
}

void tst_HostileCamera::Get_BrokenFeatures_LeaveTheHandleOpen()
{
    const QByteArray description = GoodDescription();
    const ScriptedCamera scripted(kAddress, UrlFor(description), description);
    const OpenCamera camera(kAddress);
    QCOMPARE(camera.Code(), KX_CC_OK);
    for (const char *szName : {"Dangling", "CycleA", "Self", "CycleKnife"})
        QCOMPARE(camera.Get(szName), KX_CC_E_FEATURE_BROKEN);
    QCOMPARE(camera.Set("Width", 100), KX_CC_OK);
}

void tst_HostileCamera::Get_RegisterOfImpossibleLength_CostsThisHandleAtTheMost_data()
{
    QTest::addColumn<QByteArray>("length");
    QTest::newRow("negative") << QByteArray("-4");
    QTest::newRow("none") << QByteArray("0");
    QTest::newRow("2 GB") << QByteArray("0x7FFFFFFF");
    QTest::newRow("no 64-bit number") << QByteArray("0x7FFFFFFFFFFFFFFF");
}

void tst_HostileCamera::Get_RegisterOfImpossibleLength_CostsThisHandleAtTheMost()
{
    QFETCH(QByteArray, length);
    QByteArray description = GoodDescription();
    const int nAt = description.indexOf("<Length>4", description.indexOf("Name=\"WidthReg\""));
    description.replace(nAt, 9, "<Length>" + length);
    const ScriptedCamera scripted(kAddress, UrlFor(description), description);
    const OpenCamera camera(kAddress);
    QCOMPARE(camera.Code(), KX_CC_OK);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(camera.Get("Width") != KX_CC_OK);
    QVERIFY(timer.elapsed() < 20000);
}

QTEST_GUILESS_MAIN(tst_HostileCamera)
#include "tst_hostilecamera.moc"
