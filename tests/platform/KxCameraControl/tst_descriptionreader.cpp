#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QTest>

#include "description/descriptionreader.h"

using namespace kxcc;

namespace {

constexpr size_t kLongestText = 256 << 10;

QByteArray Root(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<R>" + content + "</R>\n";
}

QByteArray Text(size_t nBytes)
{
    return QByteArray(static_cast<int>(nBytes), 'x');
}

QByteArray Nested(int nLevels)
{
    return QByteArray("<a>").repeated(nLevels) + QByteArray("</a>").repeated(nLevels);
}

} // namespace

class tst_DescriptionReader : public QObject
{
    Q_OBJECT

private slots:
    void Read_Text_GivesVerdict_data();
    void Read_Text_GivesVerdict();
    void Read_WhatFirmwareSends_IsGood_data();
    void Read_WhatFirmwareSends_IsGood();
    void Read_DescriptionOfRealCamera_IsGood();
};

void tst_DescriptionReader::Read_Text_GivesVerdict_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("verdict");
    const auto row = [](const char *szName, const QByteArray &text, DescriptionVerdict verdict) {
        QTest::newRow(szName) << text << static_cast<int>(verdict);
    };
    using V = DescriptionVerdict;

    row("good", Root("<a b='&lt;&#xb0;'>x &amp; y</a><!-- c --><?p i?><![CDATA[<&]]>"), V::Good);
    row("prefixes without a namespace", Root("<x:a y:b=''/>"), V::Good);
    row("256 levels", Nested(256), V::Good);
    row("257 levels", Nested(257), V::TooDeep);
    row("document type", "<!DOCTYPE R [<!ENTITY a \"b\">]><R>&a;</R>", V::DocumentType);
    row("empty", "", V::Empty);
    row("a stray &", Root("Gain & Offset"), V::NotWellFormed);
    row("a stray & in an attribute", Root("<a b='Gain & Offset'/>"), V::NotWellFormed);
    row("undefined entity", Root("50 &deg;C"), V::NotWellFormed);
    row("undefined entity in an attribute", Root("<a b='&deg;'/>"), V::NotWellFormed);
    row("mismatched tags", Root("<a><b></a></b>"), V::NotWellFormed);
    row("tags that differ in case", Root("<a></A>"), V::NotWellFormed);
    row("doubled attribute", Root("<a b='1' b='2'/>"), V::NotWellFormed);
    row("attribute without quotes", Root("<a b=1/>"), V::NotWellFormed);
    row("attributes without a blank", Root("<a b='1'c='2'/>"), V::NotWellFormed);
    row("a < in an attribute", Root("<a b='<'/>"), V::NotWellFormed);
    row("a < in a text", Root("a < b"), V::NotWellFormed);
    row("control character", Root("a\x01"), V::NotWellFormed);
    row("reference to a control character", Root("&#1;"), V::NotWellFormed);
    row("character that is none", Root("\xef\xbf\xbf"), V::NotWellFormed);
    row("two hyphens in a comment", Root("<!-- a -- b -->"), V::NotWellFormed);
    row("end of a section in a text", Root("]]>"), V::NotWellFormed);
    row("second root", Root("") + "<R/>", V::NotWellFormed);
    row("text behind the root", Root("") + "x", V::NotWellFormed);
    row("text before the root", "x<R/>", V::NotWellFormed);
    row("second declaration", Root("<?xml version=\"1.0\"?>"), V::NotWellFormed);
    row("declaration without a version", "<?xml encoding=\"utf-8\"?><R/>", V::NotWellFormed);
    row("element with a foreign name", Root("<\xc3\xa4/>"), V::NotWellFormed);
    row("attribute with a foreign name", Root("<a b='' \xc3\xa4=''/>"), V::NotWellFormed);
    row("instruction with a foreign name", Root("<?\xc3\xa4 ?>"), V::NotWellFormed);
    row("ends inside a tag", "<R><a", V::NotWellFormed);
    row("no root", "<?xml version=\"1.0\"?><!-- -->", V::NotWellFormed);

    row("longest text", Root("<a>" + Text(kLongestText) + "</a>"), V::Good);
    row("text too long", Root("<a>" + Text(kLongestText + 1) + "</a>"), V::TooMuch);
    row("text too long in parts", Root("<a>" + Text(kLongestText - 1) + "<b>y</b>&lt;<![CDATA[z]]></a>"),
        V::TooMuch);
    row("longest texts beside each other", Root("<a>" + Text(kLongestText) + "</a><p>y</p>"), V::Good);
    row("blanks too long", Root("<a>" + QByteArray(kLongestText + 1, ' ') + "</a>"), V::TooMuch);
    const QByteArray pointers = ("<pValue>" + Text(kLongestText) + "</pValue>").repeated(16);
    row("longest text of pointers", Root(pointers + "<a>x</a>"), V::Good);
    row("text of pointers too long", Root(pointers + "<pMin>x</pMin>"), V::TooMuch);
    row("text of nested pointers too long",
        Root(pointers + "<pMin><pMax><a><pInc>x</pInc></a></pMax></pMin>"), V::TooMuch);
}

void tst_DescriptionReader::Read_Text_GivesVerdict()
{
    QFETCH(QByteArray, text);
    QFETCH(int, verdict);
    QCOMPARE(static_cast<int>(ReadDescription(text.toStdString())), verdict);
    // The tool parses again what is good, and exports no features of what it cannot parse.
    if (verdict == static_cast<int>(DescriptionVerdict::Good))
        QVERIFY(QDomDocument().setContent(QString::fromUtf8(text)));
}

void tst_DescriptionReader::Read_WhatFirmwareSends_IsGood_data()
{
    QTest::addColumn<QByteArray>("sent");
    const QByteArray text = Root("<ToolTip>50 \xc2\xb0"
                                 "C</ToolTip>");

    QTest::newRow("byte-order mark") << "\xef\xbb\xbf" + text;
    QTest::newRow("text before the declaration") << "garbage\r\n" + text;
    QTest::newRow("NULs at the end") << text + QByteArray(100, '\0');
    QTest::newRow("blanks at the end") << text + "\r\n\t ";
    QTest::newRow("no declaration") << QByteArray("<R/>");
    QTest::newRow("a Latin-1 byte in a tool tip") << Root("<ToolTip>50 \xb0"
                                                          "C</ToolTip>");
    QTest::newRow("half a character at the end of a text") << Root("<ToolTip>\xe4\xb8</ToolTip>");
    QTest::newRow("a Latin-1 byte in an attribute and a comment") << Root("<a b='\xb5'/><!-- \xb5 -->");
    const QString utf16 = QChar(0xFEFF) + QString::fromUtf8(text).replace("utf-8", "utf-16");
    QTest::newRow("UTF-16") << QByteArray(reinterpret_cast<const char *>(utf16.utf16()), utf16.size() * 2);
}

void tst_DescriptionReader::Read_WhatFirmwareSends_IsGood()
{
    QFETCH(QByteArray, sent);
    const std::string strText = CleanDescription(sent.toStdString());
    QVERIFY2(ReadDescription(strText) == DescriptionVerdict::Good, strText.c_str());
    QVERIFY(QDomDocument().setContent(QString::fromStdString(strText)));
}

void tst_DescriptionReader::Read_DescriptionOfRealCamera_IsGood()
{
    const QDir folder(QStringLiteral(PROJECT_DESCRIPTIONS_DIR));
    const QStringList names = folder.entryList({QStringLiteral("*.xml")});
    if (names.isEmpty())
        QSKIP("No descriptions in " PROJECT_DESCRIPTIONS_DIR "; set PROJECT_DESCRIPTIONS_DIR");
    for (const QString &strName : names) {
        QFile file(folder.filePath(strName));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const std::string strText = CleanDescription(file.readAll().toStdString());
        QVERIFY2(ReadDescription(strText) == DescriptionVerdict::Good, qPrintable(strName));
    }
}

QTEST_APPLESS_MAIN(tst_DescriptionReader)
#include "tst_descriptionreader.moc"
