#include <QDomDocument>
#include <QtTest>

#include <xml/xmlguard.h>

class tst_XmlGuard : public QObject
{
    Q_OBJECT

private slots:
    void IsXmlSafeToParse_Text_IsJudged_data();
    void IsXmlSafeToParse_Text_IsJudged();
    void IsXmlSafeToParse_MillionLevels_IsRefused();
    void IsXmlSafeToParse_Limits_Count_data();
    void IsXmlSafeToParse_Limits_Count();

private:
    static QString Nested(int nLevels, const QString &strInside = QString())
    {
        return QStringLiteral("<a>").repeated(nLevels) + strInside + QStringLiteral("</a>").repeated(nLevels);
    }
};

void tst_XmlGuard::IsXmlSafeToParse_Text_IsJudged_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("safe");
    const QString strTags = QStringLiteral("<a>").repeated(300);

    QTest::newRow("256 levels") << Nested(256) << true;
    QTest::newRow("257 levels") << Nested(257) << false;
    QTest::newRow("empty element as level 256") << Nested(255, "<b/>") << true;
    QTest::newRow("empty element as level 257") << Nested(256, "<b/>") << false;
    QTest::newRow("300 levels without end tags") << strTags << false;
    QTest::newRow("many siblings") << Nested(1, QStringLiteral("<b></b><c x='1'/>").repeated(1000)) << true;
    QTest::newRow("tags in a comment") << Nested(1, "<!--" + strTags + "-->") << true;
    QTest::newRow("tags in CDATA") << Nested(1, "<![CDATA[" + strTags + "]]>") << true;
    QTest::newRow("tags in an instruction") << Nested(1, "<?p " + strTags + "?>") << true;
    QTest::newRow("'<' at the end of a comment")
        << Nested(1, QStringLiteral("<!--x<-->").repeated(300)) << true;
    QTest::newRow("'<' at the end of CDATA")
        << Nested(1, QStringLiteral("<![CDATA[x<]]>").repeated(300)) << true;
    QTest::newRow("tags behind a comment") << Nested(1, "<!-- - -->" + Nested(256)) << false;
    QTest::newRow("tags behind a short comment") << Nested(1, "<!---->" + Nested(256)) << false;
    QTest::newRow("comment that never ends") << "<a><!-- " + strTags << true; // setContent() refuses it
    QTest::newRow("'>' and '/' in a quoted value")
        << Nested(1, QStringLiteral("<b x='/>' y=\"'>\"></b>").repeated(300)) << true;
    QTest::newRow("unclosed tags behind a value with '/>'")
        << QStringLiteral("<b x='/>'>").repeated(300) << false;
    QTest::newRow("tag that never ends") << "<a x='" + strTags << true;
    QTest::newRow("document type") << "<!DOCTYPE a><a/>" << false;
    QTest::newRow("entities") << "<?xml version='1.0'?><!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>" << false;
    QTest::newRow("document type in a comment") << "<!-- <!DOCTYPE a> --><a/>" << true;
    QTest::newRow("empty") << "" << true;
    QTest::newRow("no markup") << "text" << true;
    QTest::newRow("ends in a bracket") << "<a/><" << true;
}

void tst_XmlGuard::IsXmlSafeToParse_Text_IsJudged()
{
    QFETCH(QString, text);
    QFETCH(bool, safe);
    QCOMPARE(IsXmlSafeToParse(text), safe);
}

void tst_XmlGuard::IsXmlSafeToParse_MillionLevels_IsRefused()
{
    QVERIFY(!IsXmlSafeToParse(Nested(1000000)));
}

void tst_XmlGuard::IsXmlSafeToParse_Limits_Count_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("nodes");
    QTest::addColumn<int>("children"); // of the root

    QTest::newRow("root") << "<a/>" << 1 << 0;
    QTest::newRow("elements") << "<a><b/><c><d/><e></e></c></a>" << 5 << 2;
    QTest::newRow("attributes") << "<a x='1' y=\"2\"><b z='='/></a>" << 5 << 1;
    QTest::newRow("other quotes in an attribute") << "<a x='\"\"' y=\"''\"/>" << 3 << 0;
    QTest::newRow("all kinds") << "<?xml version='1.0'?><a><!--c--><![CDATA[t]]><?p?><b/></a><!--c-->" << 7
                               << 1;
    QTest::newRow("end tags and texts") << "<a>t<b>t</b>t</a>" << 2 << 1;
}

void tst_XmlGuard::IsXmlSafeToParse_Limits_Count()
{
    QFETCH(QString, text);
    QFETCH(int, nodes);
    QFETCH(int, children);
    QVERIFY(QDomDocument().setContent(text));
    QVERIFY(IsXmlSafeToParse(text, {nodes, children}));
    QVERIFY(!IsXmlSafeToParse(text, {nodes - 1, 1000}));
    QVERIFY(!IsXmlSafeToParse(text, {1000, children - 1}));
    QVERIFY(IsXmlSafeToParse(text)); // none by themselves
}

QTEST_GUILESS_MAIN(tst_XmlGuard)
#include "tst_xmlguard.moc"
