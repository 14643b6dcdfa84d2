#include <QTest>

#include "description/description.h"

using namespace kxcc;

namespace {

std::string Repeated(const std::string &strPart, int nTimes)
{
    std::string strText;
    for (int i = 0; i < nTimes; ++i)
        strText += strPart;
    return strText;
}

std::string Nested(int nLevels)
{
    std::string strText = "<?xml version=\"1.0\"?>";
    for (int i = 0; i < nLevels; ++i)
        strText += "<a>";
    for (int i = 0; i < nLevels; ++i)
        strText += "</a>";
    return strText;
}

QByteArray Utf16(const QString &text, bool bBigEndian)
{
    QByteArray bytes = bBigEndian ? QByteArray("\xfe\xff", 2) : QByteArray("\xff\xfe", 2);
    for (const QChar c : text) {
        bytes += static_cast<char>(bBigEndian ? c.row() : c.cell());
        bytes += static_cast<char>(bBigEndian ? c.cell() : c.row());
    }
    return bytes;
}

} // namespace

class tst_Description : public QObject
{
    Q_OBJECT

private slots:
    void ParseUrl_data();
    void ParseUrl();
    void Clean_data();
    void Clean();
    void Judge_data();
    void Judge();
    void Judge_MoreThanTheLongestText_IsTooLong();
};

void tst_Description::ParseUrl_data()
{
    QTest::addColumn<QByteArray>("url");
    QTest::addColumn<bool>("good");
    QTest::addColumn<uint>("address");
    QTest::addColumn<uint>("size");
    QTest::addColumn<bool>("zip");

    QTest::newRow("packed") << QByteArray("Local:cam.zip;10000;1A2B") << true << 0x10000U << 0x1A2BU << true;
    QTest::newRow("plain") << QByteArray("local:cam.xml;C0000000;ff") << true << 0xC0000000U << 0xFFU
                           << false;
    QTest::newRow("slashes") << QByteArray("Local:///cam.XML;10;20") << true << 0x10U << 0x20U << false;
    QTest::newRow("hex prefix") << QByteArray("Local:cam.zip;0x10;0x20") << true << 0x10U << 0x20U << true;
    QTest::newRow("schema version") << QByteArray("Local:a.xml;10;20?SchemaVersion=1.1.0") << true << 0x10U
                                    << 0x20U << false;
    QTest::newRow("rest of the register")
        << QByteArray("Local:a.xml;10;20\0junk;", 23) << true << 0x10U << 0x20U << false;
    for (const char *szBad :
         {"", "Local:", "Local:a.xml", "Local:a.xml;10", "Local:a.xml;;", "Local:a.xml;zz;20",
          "Local:a.xml;10;0", "Local:a.xml;10;-1", "Local:a.xml;10;FFFFFFFF", "Local:a.xml;FFFFFFFF;10",
          "Local:a.xml;10;FFFFFFFFFFFFFFFFFFFF", "File:a.xml;10;20", "http://example/a.xml;1;2",
          "file:///etc/passwd"})
        QTest::newRow(szBad) << QByteArray(szBad) << false << 0U << 0U << false;
}

void tst_Description::ParseUrl()
{
    QFETCH(QByteArray, url);
    const auto parsed = ParseDescriptionUrl(url.toStdString());

    QTEST(parsed.has_value(), "good");
    if (parsed) {
        QTEST(parsed->nAddress, "address");
        QTEST(parsed->nSize, "size");
        QTEST(parsed->bZip, "zip");
    }
}

void tst_Description::Clean_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray good = "<?xml version=\"1.0\"?><R/>";

    QTest::newRow("good") << good << good;
    QTest::newRow("byte-order mark") << QByteArray("\xef\xbb\xbf") + good << good;
    QTest::newRow("text before") << QByteArray("  \r\nfoo <!-- ") + good << good;
    QTest::newRow("trailing NULs") << good + QByteArray(7, '\0') << good;
    QTest::newRow("text behind a NUL") << good + QByteArray("\0<junk>", 8) << good;
    QTest::newRow("UTF-16 without a mark") << QByteArray("<\0R\0/\0>\0", 8) << QByteArray("<");
    QTest::newRow("no declaration") << QByteArray("\n<R/>") << QByteArray("<R/>");
    QTest::newRow("UTF-16 little") << Utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?><R>\u00b5</R>", false)
                                   << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?><R>\xc2\xb5</R>");
    QTest::newRow("UTF-16 big") << Utf16("<R/>", true) << QByteArray("<R/>");
    QTest::newRow("half a UTF-16 character") << QByteArray("\xff\xfe<") << QByteArray();
    const QByteArray utf8 = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
    QTest::newRow("UTF-8 that says so")
        << QByteArray("<?xml version='1.0' encoding = 'utf-8' standalone='yes'?><R/>")
        << QByteArray("<?xml version='1.0' encoding = 'utf-8' standalone='yes'?><R/>");
    QTest::newRow("Latin-1") << QByteArray("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><R>\xb5</R>")
                             << utf8 + "<R>\xc2\xb5</R>";
    QTest::newRow("document type hidden in UTF-7")
        << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-7\"?>+ADw-!DOCTYPE R+AD4-<R/>")
        << utf8 + "<!DOCTYPE R><R/>";
    QTest::newRow("end of the declaration in UTF-7")
        << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-7\" +AD8-+AD4-<R/><?p ?>") << utf8 + "<R/><?p ?>";
    QTest::newRow("encoding named twice")
        << QByteArray("<?xml version=\"encoding='UTF-8'\" encoding=\"UTF-7\"?><R/>") << utf8 + "<R/>";
    QTest::newRow("UTF-16 that is none")
        << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-16\"?><R>\xc2\xb5</R>")
        << utf8 + "<R>\xc2\xb5</R>";
    QTest::newRow("unknown encoding")
        << QByteArray("<?xml version=\"1.0\" encoding=\"Klingon\"?><R/>") << utf8 + "<R/>";
    QTest::newRow("encoding without a name")
        << QByteArray("<?xml version=\"1.0\" encoding=?><R/>") << utf8 + "<R/>";
    QTest::newRow("a Latin-1 byte") << utf8 + "<R a='\xb0'>50 \xb0"
                                              "C</R>"
                                    << utf8 + "<R a='\xef\xbf\xbd'>50 \xef\xbf\xbd"
                                              "C</R>";
    QTest::newRow("bytes that are no UTF-8, each one")
        << QByteArray("<R>\xff\xc0\xaf\xed\xa0\x80\xe4\xb8</R>")
        << "<R>" + QByteArray("\xef\xbf\xbd").repeated(8) + "</R>";
    QTest::newRow("a byte that is none of the encoding either")
        << QByteArray("<?xml version=\"1.0\" encoding=\"US-ASCII\"?><R>\xb5</R>")
        << utf8 + "<R>\xef\xbf\xbd</R>";
    QTest::newRow("UTF-8 of every length is kept")
        << QByteArray("<R>\xc2\xb5\xe4\xb8\xad\xf0\x9f\x98\x80</R>")
        << QByteArray("<R>\xc2\xb5\xe4\xb8\xad\xf0\x9f\x98\x80</R>");
    QTest::newRow("NUL hidden in UTF-7")
        << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-7\"?><R>+AAA-</R>")
        << utf8 + "<R>\xef\xbf\xbd</R>";
    QTest::newRow("nothing") << QByteArray() << QByteArray();
    QTest::newRow("no XML") << QByteArray("hello") << QByteArray();
}

void tst_Description::Clean()
{
    QFETCH(QByteArray, sent);
    QTEST(QByteArray::fromStdString(CleanDescription(sent.toStdString())), "expected");
}

void tst_Description::Judge_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("verdict");
    const auto row = [](const char *szName, const std::string &strText, DescriptionVerdict verdict) {
        QTest::newRow(szName) << QByteArray::fromStdString(strText) << static_cast<int>(verdict);
    };
    using V = DescriptionVerdict;

    row("good", "<?xml version=\"1.0\"?><R a='>'><b/><c>x</c></R>", V::Good);
    row("empty", "", V::Empty);
    row("256 levels", Nested(256), V::Good);
    row("257 levels", Nested(257), V::TooDeep);
    row("100000 levels, never closed", Nested(100000).substr(0, 300000), V::TooDeep);
    row("document type", "<!DOCTYPE R [<!ENTITY a \"b\">]><R>&a;</R>", V::DocumentType);
    row("document type in a comment", "<!-- <!DOCTYPE R> --><R/>", V::Good);
    row("document type in CDATA", "<R><![CDATA[<!DOCTYPE R><a>]]></R>", V::Good);
    row("document type after the root", "<R/><!DOCTYPE R>", V::DocumentType);
    row("tags in an attribute", "<R a=\"<b><b><b>\"/>", V::Good);
    row("tags in a processing instruction", "<?p <a><a> ?><R/>", V::Good);
    row("ends inside a tag", "<R><a", V::NotWellFormed);
    row("ends inside a comment", "<R><!-- ", V::NotWellFormed);
    row("ends inside a comment behind the root", "<R/><!-- ", V::NotWellFormed);
    row("closed before it is opened", "</R><R>", V::NotWellFormed);
    row("never closed", "<R><a></a>", V::NotWellFormed);
    row("closed too often", "<R></R></R>", V::NotWellFormed);
    row("a lone bracket", "<", V::NotWellFormed);
    const std::string strNodes = "<R><?p?>" + Repeated("<a></a><b/><!-- --><![CDATA[]]>", 49999) + "<c/><d/>";
    row("most nodes", strNodes + "</R>", V::Good);
    row("a node too many", strNodes + "<!----></R>", V::TooMuch);
    row("most attributes", "<R>" + Repeated("<a b='>' c=\"'\"/>", 100000) + "</R>", V::Good);
    row("an attribute too many", "<R>" + Repeated("<a b='>' c=\"'\"/>", 100000) + "<a b=''/></R>",
        V::TooMuch);
    row("most attributes of an element", "<R " + Repeated("a=\"\" ", 100) + "/>", V::Good);
    row("an attribute of an element too many", "<R " + Repeated("a=\"\" ", 101) + "/>", V::TooMuch);
}

void tst_Description::Judge()
{
    QFETCH(QByteArray, text);
    QTEST(static_cast<int>(JudgeDescription(text.toStdString())), "verdict");
}

void tst_Description::Judge_MoreThanTheLongestText_IsTooLong()
{
    const std::string strText = "<R>" + std::string((16 << 20) - 7, ' ') + "</R>";
    QVERIFY(JudgeDescription(strText) == DescriptionVerdict::Good);
    QVERIFY(JudgeDescription(strText + ' ') == DescriptionVerdict::TooLong);
}

QTEST_APPLESS_MAIN(tst_Description)
#include "tst_description.moc"
