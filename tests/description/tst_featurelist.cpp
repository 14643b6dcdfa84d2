#include <QtTest>

#include "analysed.h"

class tst_FeatureList : public QObject
{
    Q_OBJECT

private slots:
    void Generate_TwoChains_SelectsFeatureOnce();
    void Generate_NamesThatDifferInCase_BothKeptInCodeUnitOrder();
    void Generate_CommandNotNamed_SelectsNothing();
    void Generate_CommandReachedThroughPointers_Selects_data();
    void Generate_CommandReachedThroughPointers_Selects();
    void Generate_NameOfAnotherElementLast_SelectsThatElement();
    void Generate_FeatureWithoutName_IsDropped();
    void Generate_SecondDescription_ReplacesTheMaps();
    void Generate_MalformedDescription_FailsAndKeepsMaps_data();
    void Generate_MalformedDescription_FailsAndKeepsMaps();

private:
    static QString Description(const QString &strNodes)
    {
        return QStringLiteral(
                   "<R><Register Name='Reg'><pInvalidator>UserSetLoad</pInvalidator></Register>%1</R>")
            .arg(strNodes);
    }
};

void tst_FeatureList::Generate_TwoChains_SelectsFeatureOnce()
{
    Analysed analysed;
    QVERIFY(
        analysed.Generate(Description("<Integer Name='A'><pValue>Reg</pValue><pMax>Reg</pMax></Integer>")));
    QCOMPARE(analysed.features.keys(), QList<QString>({"A"}));
    QCOMPARE(analysed.features.first().tagName(), QString("Integer"));
}

void tst_FeatureList::Generate_NamesThatDifferInCase_BothKeptInCodeUnitOrder()
{
    Analysed analysed;
    QVERIFY(analysed.Generate(Description("<Integer Name='gain'><pValue>Reg</pValue></Integer>"
                                          "<Integer Name='Width'><pValue>Reg</pValue></Integer>"
                                          "<Integer Name='Gain'><pValue>Reg</pValue></Integer>")));
    QCOMPARE(analysed.features.keys(), QList<QString>({"Gain", "Width", "gain"}));
}

void tst_FeatureList::Generate_CommandNotNamed_SelectsNothing()
{
    Analysed analysed;
    QVERIFY(analysed.Generate(
        QStringLiteral("<R><Integer Name='A'><pValue>B</pValue></Integer><IntReg Name='B'/></R>")));
    QVERIFY(analysed.features.isEmpty());
    QCOMPARE(analysed.elements.size(), 2);
}

void tst_FeatureList::Generate_CommandReachedThroughPointers_Selects_data()
{
    QTest::addColumn<QString>("feature");
    QTest::addColumn<bool>("selected");
    QTest::newRow("invalidator below") << "<pValue>Reg</pValue>" << true;
    QTest::newRow("own invalidator") << "<pInvalidator>UserSetLoad</pInvalidator>" << false;
    QTest::newRow("pValue at the feature") << "<pValue>UserSetLoad</pValue>" << false;
    QTest::newRow("pValue below") << "<pValue>ToCommand</pValue>" << true;
    QTest::newRow("pVariable at the feature") << "<pVariable>UserSetLoad</pVariable>" << true;
    QTest::newRow("pMin below") << "<pMin>MinToCommand</pMin>" << false;
}

void tst_FeatureList::Generate_CommandReachedThroughPointers_Selects()
{
    QFETCH(QString, feature);
    QFETCH(bool, selected);
    Analysed analysed;
    QVERIFY(
        analysed.Generate(Description("<Command Name='UserSetLoad'/>"
                                      "<Converter Name='ToCommand'><pValue>UserSetLoad</pValue></Converter>"
                                      "<Converter Name='MinToCommand'><pMin>UserSetLoad</pMin></Converter>"
                                      "<Integer Name='A'>" +
                                      feature + "</Integer>")));
    QCOMPARE(analysed.features.contains(QStringLiteral("A")), selected);
}

void tst_FeatureList::Generate_NameOfAnotherElementLast_SelectsThatElement()
{
    Analysed analysed;
    QVERIFY(analysed.Generate(
        Description("<Integer Name='A'><pValue>Reg</pValue></Integer><Category Name='A'/>")));
    QCOMPARE(analysed.features.value("A").tagName(), QString("Category"));
}

void tst_FeatureList::Generate_FeatureWithoutName_IsDropped()
{
    Analysed analysed;
    QVERIFY(analysed.Generate(Description("<Integer><pValue>Reg</pValue></Integer>")));
    QVERIFY(analysed.invalidators.contains(QString()));
    QVERIFY(analysed.features.isEmpty());
}

void tst_FeatureList::Generate_SecondDescription_ReplacesTheMaps()
{
    Analysed analysed;
    QVERIFY(analysed.Generate(Description("<Integer Name='A'><pValue>Reg</pValue></Integer>")));
    QVERIFY(analysed.Generate(Description("<Integer Name='B'><pValue>Reg</pValue></Integer>")));
    QCOMPARE(analysed.elements.keys(), QList<QString>({"B", "Reg"}));
    QCOMPARE(analysed.invalidators.keys(), QList<QString>({"B"}));
    QCOMPARE(analysed.features.keys(), QList<QString>({"B"}));
}

void tst_FeatureList::Generate_MalformedDescription_FailsAndKeepsMaps_data()
{
    QTest::addColumn<QString>("description");
    QTest::newRow("empty") << QString();
    QTest::newRow("end tag missing") << QStringLiteral("<R><Integer Name='B'/>");
    QTest::newRow("no XML") << QString("Service not available");
    QTest::newRow("nested too deeply") << QString("<a>").repeated(257) + QString("</a>").repeated(257);
    QTest::newRow("entities") << QString("<!DOCTYPE R [<!ENTITY e 'x'>]><R>&e;</R>");
}

void tst_FeatureList::Generate_MalformedDescription_FailsAndKeepsMaps()
{
    QFETCH(QString, description);
    Analysed analysed;
    QVERIFY(analysed.Generate(
        Description("<Integer Name='A'><Streamable>Yes</Streamable><pValue>Reg</pValue></Integer>")));

    QVERIFY(!analysed.Generate(description));

    QCOMPARE(analysed.elements.keys(), QList<QString>({"A", "Reg"}));
    QCOMPARE(analysed.invalidators.keys(), QList<QString>({"A"}));
    QCOMPARE(analysed.features.value("A").firstChildElement("Streamable").text(), QString("Yes"));
}

QTEST_GUILESS_MAIN(tst_FeatureList)
#include "tst_featurelist.moc"
