#include <QtTest>

#include <climits>

#include "analysed.h"
#include "realdescriptions.h"
#include "referencewalk.h"

/// The whole analysis over descriptions that cameras of several makers publish.
class tst_RealDescriptions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void Generate_RealDescription_SelectsTheListedFeatures_data() { Rows(); }
    void Generate_RealDescription_SelectsTheListedFeatures();
    void Generate_RealDescription_EqualsPlainRecursion_data() { Rows(); }
    void Generate_RealDescription_EqualsPlainRecursion();

private:
    static void CollectPlainly(const QDomElement &element, ReferenceWalk *pWalk, InvalidatorLists *pLists);
    static void Rows();
    static QString Text(const QString &strName)
    {
        return QString::fromUtf8(RealDescriptions::Bytes(strName + QStringLiteral(".xml")));
    }
};

void tst_RealDescriptions::initTestCase()
{
    if (RealDescriptions::Names().isEmpty())
        QSKIP("No descriptions in " PROJECT_DESCRIPTIONS_DIR "; set PROJECT_DESCRIPTIONS_DIR");
}

void tst_RealDescriptions::Rows()
{
    QTest::addColumn<QString>("name");
    for (const QString &strName : RealDescriptions::Names())
        QTest::newRow(qUtf8Printable(strName)) << strName;
}

void tst_RealDescriptions::Generate_RealDescription_SelectsTheListedFeatures()
{
    QFETCH(QString, name);
    Analysed analysed;

    QVERIFY(analysed.Generate(Text(name)));

    QStringList selected;
    for (const QDomElement &feature : qAsConst(analysed.features))
        selected.append(feature.tagName() + QLatin1Char(' ') + feature.attribute(QStringLiteral("Name")));
    QVERIFY(!analysed.elements.isEmpty());
    QCOMPARE(selected, RealDescriptions::Lines(name + QStringLiteral(".selected")));
}

void tst_RealDescriptions::CollectPlainly(const QDomElement &element, ReferenceWalk *pWalk,
                                          InvalidatorLists *pLists)
{
    static const QStringList tags = {"Enumeration", "Integer", "IntReg", "Boolean", "Float"};
    QStringList listed;
    if (tags.contains(element.tagName()))
        QVERIFY(pWalk->ListFeature(element, INT_MAX, &listed));
    if (!listed.isEmpty())
        pLists->insert(element.attribute(QStringLiteral("Name")), listed);
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        CollectPlainly(child, pWalk, pLists);
}

void tst_RealDescriptions::Generate_RealDescription_EqualsPlainRecursion()
{
    QFETCH(QString, name);
    Analysed analysed;

    QVERIFY(analysed.Generate(Text(name)));

    ReferenceWalk walk(analysed.elements);
    InvalidatorLists expected;
    CollectPlainly(analysed.document.documentElement(), &walk, &expected);
    QCOMPARE(analysed.invalidators, expected);
}

QTEST_GUILESS_MAIN(tst_RealDescriptions)
#include "tst_realdescriptions.moc"
