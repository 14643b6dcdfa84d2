#include <QtTest>

#include "workerundertest.h"

#include "messagelog.h"
#include "scriptedsdk.h"

class tst_FeatureList : public QObject
{
    Q_OBJECT

private slots:
    void init() { ScriptedSdk::Reset(); }
    void IsFeatureInQList_Name_ComparesExactly();
    void GetFeatureInvalidatorList_FilledMap_GivesKeysWhoseListHoldsTheName();
    void GenerateFeatureXmlMap_TwoChains_SelectsFeatureOnce();
    void GenerateFeatureXmlMap_NamesThatDifferInCase_BothKeptInCodeUnitOrder();
    void GenerateFeatureXmlMap_CommandNotNamed_SelectsNothing();
    void GenerateFeatureXmlMap_CommandReachedThroughPointers_Selects_data();
    void GenerateFeatureXmlMap_CommandReachedThroughPointers_Selects();
    void GenerateFeatureXmlMap_NameOfAnotherElementLast_SelectsThatElement();
    void GenerateFeatureXmlMap_FeatureWithoutName_IsDropped();
    void GenerateFeatureXmlMap_SecondDescription_ReplacesTheMaps();
    void GenerateFeatureXmlMap_MalformedDescription_KeepsMapsAndLogs_data();
    void GenerateFeatureXmlMap_MalformedDescription_KeepsMapsAndLogs();
    void GenerateFeatureXmlMap_Description_TakesOneFetch();

private:
    static QByteArray Description(const char *szNodes)
    {
        return QByteArray("<RegisterDescription><Register Name='Reg'><pInvalidator>UserSetLoad</pInvalidator>"
                          "</Register>") +
               szNodes + "</RegisterDescription>";
    }
    static void Generate(WorkerUnderTest *pWorker, const QByteArray &description);
};

void tst_FeatureList::Generate(WorkerUnderTest *pWorker, const QByteArray &description)
{
    ScriptedSdk::SetDescription(description);
    if (!pWorker->m_hDevice)
        QVERIFY(pWorker->OpenDevice());
    pWorker->GenerateFeatureXmlMap();
}

void tst_FeatureList::IsFeatureInQList_Name_ComparesExactly()
{
    WorkerUnderTest worker;
    QVERIFY(worker.IsFeatureInQList(QStringLiteral("B"), {"A", "B"}));
    QVERIFY(!worker.IsFeatureInQList(QStringLiteral("b"), {"A", "B"}));
    QVERIFY(!worker.IsFeatureInQList(QStringLiteral("A"), {"AB"}));
    QVERIFY(!worker.IsFeatureInQList(QStringLiteral("A"), {}));
}

void tst_FeatureList::GetFeatureInvalidatorList_FilledMap_GivesKeysWhoseListHoldsTheName()
{
    WorkerUnderTest worker;
    worker.m_mapFeatureInvalidator = {{"A", {"X", "N", "N"}}, {"B", {"X"}}, {"C", {"N"}}};

    QStringList found = worker.GetFeatureInvalidatorList(QStringLiteral("N"));

    found.sort();
    QCOMPARE(found, QStringList({"A", "C"}));
}

void tst_FeatureList::GenerateFeatureXmlMap_TwoChains_SelectsFeatureOnce()
{
    WorkerUnderTest worker;
    Generate(&worker, Description("<Integer Name='A'><pValue>Reg</pValue><pMax>Reg</pMax></Integer>"));
    QCOMPARE(worker.m_mapFeatureXml.keys(), QList<QString>({"A"}));
    QCOMPARE(worker.m_mapFeatureXml.first().tagName(), QString("Integer"));
}

void tst_FeatureList::GenerateFeatureXmlMap_NamesThatDifferInCase_BothKeptInCodeUnitOrder()
{
    WorkerUnderTest worker;
    Generate(&worker, Description("<Integer Name='gain'><pValue>Reg</pValue></Integer>"
                                  "<Integer Name='Width'><pValue>Reg</pValue></Integer>"
                                  "<Integer Name='Gain'><pValue>Reg</pValue></Integer>"));
    QCOMPARE(worker.m_mapFeatureXml.keys(), QList<QString>({"Gain", "Width", "gain"}));
}

void tst_FeatureList::GenerateFeatureXmlMap_CommandNotNamed_SelectsNothing()
{
    WorkerUnderTest worker;
    MessageLog log;
    Generate(&worker, "<R><Integer Name='A'><pValue>B</pValue></Integer><IntReg Name='B'/></R>");
    QVERIFY(worker.m_mapFeatureXml.isEmpty());
    QCOMPARE(worker.m_mapDomElement.size(), 2);
    QCOMPARE(log.Entries(), QStringList());
}

void tst_FeatureList::GenerateFeatureXmlMap_CommandReachedThroughPointers_Selects_data()
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

void tst_FeatureList::GenerateFeatureXmlMap_CommandReachedThroughPointers_Selects()
{
    QFETCH(QString, feature);
    QFETCH(bool, selected);
    WorkerUnderTest worker;
    Generate(&worker, Description("<Command Name='UserSetLoad'/>"
                                  "<Converter Name='ToCommand'><pValue>UserSetLoad</pValue></Converter>"
                                  "<Converter Name='MinToCommand'><pMin>UserSetLoad</pMin></Converter>"
                                  "<Integer Name='A'>" +
                                  feature.toUtf8() + "</Integer>"));
    QCOMPARE(worker.m_mapFeatureXml.contains(QStringLiteral("A")), selected);
}

void tst_FeatureList::GenerateFeatureXmlMap_NameOfAnotherElementLast_SelectsThatElement()
{
    WorkerUnderTest worker;
    Generate(&worker, Description("<Integer Name='A'><pValue>Reg</pValue></Integer><Category Name='A'/>"));
    QCOMPARE(worker.m_mapFeatureXml.value("A").tagName(), QString("Category"));
}

void tst_FeatureList::GenerateFeatureXmlMap_FeatureWithoutName_IsDropped()
{
    WorkerUnderTest worker;
    Generate(&worker, Description("<Integer><pValue>Reg</pValue></Integer>"));
    QVERIFY(worker.m_mapFeatureInvalidator.contains(QString()));
    QVERIFY(worker.m_mapFeatureXml.isEmpty());
}

void tst_FeatureList::GenerateFeatureXmlMap_SecondDescription_ReplacesTheMaps()
{
    WorkerUnderTest worker;
    Generate(&worker, Description("<Integer Name='A'><pValue>Reg</pValue></Integer>"));
    Generate(&worker, Description("<Integer Name='B'><pValue>Reg</pValue></Integer>"));
    QCOMPARE(worker.m_mapDomElement.keys(), QList<QString>({"B", "Reg"}));
    QCOMPARE(worker.m_mapFeatureInvalidator.keys(), QList<QString>({"B"}));
    QCOMPARE(worker.m_mapFeatureXml.keys(), QList<QString>({"B"}));
}

void tst_FeatureList::GenerateFeatureXmlMap_MalformedDescription_KeepsMapsAndLogs_data()
{
    QTest::addColumn<QByteArray>("description");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("end tag missing") << QByteArray("<R><Integer Name='B'/>");
    QTest::newRow("no XML") << QByteArray("Service not available");
    QTest::newRow("nested too deeply") << QByteArray("<a>").repeated(257) + QByteArray("</a>").repeated(257);
    QTest::newRow("entities") << QByteArray("<!DOCTYPE R [<!ENTITY e 'x'>]><R>&e;</R>");
}

void tst_FeatureList::GenerateFeatureXmlMap_MalformedDescription_KeepsMapsAndLogs()
{
    QFETCH(QByteArray, description);
    WorkerUnderTest worker;
    Generate(&worker,
             Description("<Integer Name='A'><Streamable>Yes</Streamable><pValue>Reg</pValue></Integer>"));
    MessageLog log;

    Generate(&worker, description);

    QCOMPARE(worker.m_mapDomElement.keys(), QList<QString>({"A", "Reg"}));
    QCOMPARE(worker.m_mapFeatureInvalidator.keys(), QList<QString>({"A"}));
    QCOMPARE(worker.m_mapFeatureXml.value("A").firstChildElement("Streamable").text(), QString("Yes"));
    QCOMPARE(log.Entries(),
             QStringList({MessageLog::WorkerEntry("GenerateFeatureXmlMap", "Load xml failed.")}));
    QCOMPARE(worker.Events(), QStringList());
    QVERIFY(worker.m_hDevice);
}

void tst_FeatureList::GenerateFeatureXmlMap_Description_TakesOneFetch()
{
    WorkerUnderTest worker;
    Generate(&worker, Description(""));
    QCOMPARE(ScriptedSdk::Calls(), QStringList({"KX_CC_CreateHandle()", "KX_CC_OpenDevice(1, 0)",
                                                "KX_XML_GetGenICamXML(3145728, 4294967295)"}));
}

QTEST_GUILESS_MAIN(tst_FeatureList)
#include "tst_featurelist.moc"
