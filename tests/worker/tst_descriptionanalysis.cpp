#include <QtTest>

#include "messagelog.h"
#include "scriptedsdk.h"
#include "workerundertest.h"

/// That the worker's members for the analysis work on its maps, and what the worker adds to the analysis.
/// What the rules are is tested where they are.
class tst_DescriptionAnalysis : public QObject
{
    Q_OBJECT

private slots:
    void init() { ScriptedSdk::Reset(); }
    void GenerateDomElementMap_FilledIndex_IsAddedTo();
    void GetDomElementNode_KnownAndUnknownName_GivesElementOrFails();
    void GenerateFeaturesInvalidatorMap_Element_AddsFeaturesAtAndBelow();
    void InsertFeatureInvalidator_Feature_AddsItAlone();
    void GenerateInvalidatorListByProperty_Node_AppendsToBothLists();
    void IsFeatureInQList_Name_ComparesExactly();
    void GetFeatureInvalidatorList_FilledMap_GivesKeysWhoseListHoldsTheName();
    void GenerateFeatureXmlMap_SecondDescription_ReplacesTheMaps();
    void GenerateFeatureXmlMap_CommandNotNamed_SelectsNothingAndLogsNothing();
    void GenerateFeatureXmlMap_MalformedDescription_KeepsMapsAndLogs();

private:
    static void SetDocument(WorkerUnderTest *pWorker)
    {
        QVERIFY(pWorker->m_domDocument.setContent(
            QStringLiteral("<Root><Integer Name='F'><pValue>K</pValue><Float Name='G'><pMin>R</pMin></Float>"
                           "</Integer><SwissKnife Name='K'><pVariable>R</pVariable></SwissKnife>"
                           "<Register Name='R'><pInvalidator>I</pInvalidator></Register></Root>")));
        QDomElement root = pWorker->m_domDocument.documentElement();
        pWorker->GenerateDomElementMap(root);
    }
    static void Generate(WorkerUnderTest *pWorker, const QByteArray &description);
};

void tst_DescriptionAnalysis::Generate(WorkerUnderTest *pWorker, const QByteArray &description)
{
    ScriptedSdk::SetDescription(
        "<R><Register Name='Reg'><pInvalidator>UserSetLoad</pInvalidator></Register>" + description + "</R>");
    if (!pWorker->m_hDevice)
        QVERIFY(pWorker->OpenDevice());
    pWorker->GenerateFeatureXmlMap();
}

void tst_DescriptionAnalysis::GenerateDomElementMap_FilledIndex_IsAddedTo()
{
    WorkerUnderTest worker;
    worker.m_mapDomElement.insert(QStringLiteral("Old"), QDomElement());

    SetDocument(&worker);

    QCOMPARE(worker.m_mapDomElement.keys(), QList<QString>({"F", "G", "K", "Old", "R"}));
    QCOMPARE(worker.m_mapDomElement.value("K").tagName(), QString("SwissKnife"));
}

void tst_DescriptionAnalysis::GetDomElementNode_KnownAndUnknownName_GivesElementOrFails()
{
    WorkerUnderTest worker;
    SetDocument(&worker);
    QDomElement element;

    QVERIFY(worker.GetDomElementNode(QStringLiteral("G"), element));
    QCOMPARE(element.tagName(), QString("Float"));
    QVERIFY(!worker.GetDomElementNode(QStringLiteral("g"), element));
    QCOMPARE(element.tagName(), QString("Float"));
}

void tst_DescriptionAnalysis::GenerateFeaturesInvalidatorMap_Element_AddsFeaturesAtAndBelow()
{
    WorkerUnderTest worker;
    SetDocument(&worker);
    worker.m_mapFeatureInvalidator = {{"Old", {"X"}}};
    QDomElement feature = worker.m_domDocument.documentElement().firstChildElement();

    worker.GenerateFeaturesInvalidatorMap(feature);

    const QMap<QString, QList<QString>> expected({{"F", {"R", "I"}}, {"G", {"I"}}, {"Old", {"X"}}});
    QCOMPARE(worker.m_mapFeatureInvalidator, expected);
}

void tst_DescriptionAnalysis::InsertFeatureInvalidator_Feature_AddsItAlone()
{
    WorkerUnderTest worker;
    SetDocument(&worker);
    QDomElement feature = worker.m_domDocument.documentElement().firstChildElement();

    worker.InsertFeatureInvalidator(feature);

    const QMap<QString, QList<QString>> expected({{"F", {"R", "I"}}});
    QCOMPARE(worker.m_mapFeatureInvalidator, expected);
}

void tst_DescriptionAnalysis::GenerateInvalidatorListByProperty_Node_AppendsToBothLists()
{
    WorkerUnderTest worker;
    SetDocument(&worker);
    QList<QString> listed({"Before"});
    QList<QString> variables({"Kept"});

    worker.GenerateInvalidatorListByProperty(QStringLiteral("K"), listed, variables);

    QCOMPARE(QStringList(listed), QStringList({"Before", "R", "I"}));
    QCOMPARE(QStringList(variables), QStringList({"Kept", "R"}));
}

void tst_DescriptionAnalysis::IsFeatureInQList_Name_ComparesExactly()
{
    WorkerUnderTest worker;
    QVERIFY(worker.IsFeatureInQList(QStringLiteral("B"), {"A", "B"}));
    QVERIFY(!worker.IsFeatureInQList(QStringLiteral("b"), {"A", "B"}));
}

void tst_DescriptionAnalysis::GetFeatureInvalidatorList_FilledMap_GivesKeysWhoseListHoldsTheName()
{
    WorkerUnderTest worker;
    worker.m_mapFeatureInvalidator = {{"A", {"X", "N", "N"}}, {"B", {"X"}}, {"C", {"N"}}};

    QStringList found = worker.GetFeatureInvalidatorList(QStringLiteral("N"));

    found.sort();
    QCOMPARE(found, QStringList({"A", "C"}));
}

void tst_DescriptionAnalysis::GenerateFeatureXmlMap_SecondDescription_ReplacesTheMaps()
{
    WorkerUnderTest worker;
    Generate(&worker, "<Integer Name='A'><pValue>Reg</pValue></Integer>");
    Generate(&worker, "<Integer Name='B'><pValue>Reg</pValue></Integer><Float Name='C'/>");
    QCOMPARE(worker.m_mapDomElement.keys(), QList<QString>({"B", "C", "Reg"}));
    QCOMPARE(worker.m_mapFeatureInvalidator.keys(), QList<QString>({"B"}));
    QCOMPARE(worker.m_mapFeatureXml.keys(), QList<QString>({"B"}));
    QCOMPARE(worker.m_mapFeatureXml.first().ownerDocument(), worker.m_domDocument);
}

void tst_DescriptionAnalysis::GenerateFeatureXmlMap_CommandNotNamed_SelectsNothingAndLogsNothing()
{
    ScriptedSdk::SetDescription("<R><Integer Name='A'><pValue>B</pValue></Integer><IntReg Name='B'/></R>");
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());
    MessageLog log;

    worker.GenerateFeatureXmlMap();

    QVERIFY(worker.m_mapFeatureXml.isEmpty());
    QCOMPARE(worker.m_mapDomElement.size(), 2);
    QCOMPARE(log.Entries(), QStringList());
}

void tst_DescriptionAnalysis::GenerateFeatureXmlMap_MalformedDescription_KeepsMapsAndLogs()
{
    WorkerUnderTest worker;
    Generate(&worker, "<Integer Name='A'><Streamable>Yes</Streamable><pValue>Reg</pValue></Integer>");
    MessageLog log;

    Generate(&worker, "<Integer Name='B'>");

    QCOMPARE(worker.m_mapDomElement.keys(), QList<QString>({"A", "Reg"}));
    QCOMPARE(worker.m_mapFeatureInvalidator.keys(), QList<QString>({"A"}));
    QCOMPARE(worker.m_mapFeatureXml.value("A").firstChildElement("Streamable").text(), QString("Yes"));
    QCOMPARE(log.Entries(),
             QStringList({MessageLog::WorkerEntry("GenerateFeatureXmlMap", "Load xml failed.")}));
    QCOMPARE(worker.Events(), QStringList());
    QVERIFY(worker.m_hDevice);
}

QTEST_GUILESS_MAIN(tst_DescriptionAnalysis)
#include "tst_descriptionanalysis.moc"
