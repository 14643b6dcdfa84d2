#include <QtTest>

#include <description/featureselector.h>

class tst_FeatureSelector : public QObject
{
    Q_OBJECT

private slots:
    void Holds_Name_ComparesExactly();
    void InvalidatedBy_FilledMap_GivesKeysWhoseListHoldsTheName();
    void Select_FeatureUnknownToTheIndex_IsLeftOut();
};

void tst_FeatureSelector::Holds_Name_ComparesExactly()
{
    QVERIFY(FeatureSelector::Holds({"A", "B"}, QStringLiteral("B")));
    QVERIFY(!FeatureSelector::Holds({"A", "B"}, QStringLiteral("b")));
    QVERIFY(!FeatureSelector::Holds({"AB"}, QStringLiteral("A")));
    QVERIFY(!FeatureSelector::Holds({}, QStringLiteral("A")));
}

void tst_FeatureSelector::InvalidatedBy_FilledMap_GivesKeysWhoseListHoldsTheName()
{
    const InvalidatorLists lists({{"A", {"X", "N", "N"}}, {"B", {"X"}}, {"C", {"N"}}});

    QStringList found = FeatureSelector(lists).InvalidatedBy(QStringLiteral("N"));

    found.sort();
    QCOMPARE(found, QStringList({"A", "C"}));
}

void tst_FeatureSelector::Select_FeatureUnknownToTheIndex_IsLeftOut()
{
    const InvalidatorLists lists({{"A", {"N"}}, {"B", {"N"}}, {"C", {"X"}}, {"D", {"N"}}});
    QDomDocument document;
    const QDomElement element = document.createElement(QStringLiteral("Integer"));
    ElementMap elements({{"A", element}, {"C", element}, {"D", QDomElement()}});
    ElementMap features({{"Kept", element}});

    FeatureSelector(lists).Select(QStringLiteral("N"), ElementIndex(&elements), &features);

    QCOMPARE(features.keys(), QList<QString>({"A", "Kept"}));
    QCOMPARE(features.value("A"), element);
}

QTEST_GUILESS_MAIN(tst_FeatureSelector)
#include "tst_featureselector.moc"
