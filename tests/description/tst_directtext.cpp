#include <QDomDocument>
#include <QtTest>

#include <description/directtext.h>

class tst_DirectText : public QObject
{
    Q_OBJECT

private slots:
    void DirectText_Element_GivesItsOwnText_data();
    void DirectText_Element_GivesItsOwnText();
    void DirectText_NullElement_IsEmpty() { QCOMPARE(DirectText(QDomElement()), QString()); }
};

void tst_DirectText::DirectText_Element_GivesItsOwnText_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << "<a/>" << QString();
    QTest::newRow("plain") << "<a>Width</a>"
                           << "Width";
    QTest::newRow("untrimmed") << "<a> Width\n</a>"
                               << " Width\n";
    QTest::newRow("references") << "<a>&lt;&#x57;&amp;</a>"
                                << "<W&";
    QTest::newRow("section") << "<a>x<![CDATA[<y>]]>z</a>"
                             << "x<y>z";
    QTest::newRow("comment, instruction") << "<a>x<!-- c --><?p i?>y</a>"
                                          << "xy";
    QTest::newRow("elements inside") << "<a>x<b>1<c>2</c></b>y<b>3</b></a>"
                                     << "xy";
}

void tst_DirectText::DirectText_Element_GivesItsOwnText()
{
    QFETCH(QString, xml);
    QDomDocument document;
    QVERIFY(document.setContent(xml));
    QTEST(DirectText(document.documentElement()), "text");
}

QTEST_GUILESS_MAIN(tst_DirectText)
#include "tst_directtext.moc"
