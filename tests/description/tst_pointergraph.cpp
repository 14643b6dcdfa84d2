#include <QtTest>

#include <ctime>

#include <description/pointergraph.h>

#include "scriptedsdk.h"
#include "workerundertest.h"

/// Descriptions whose number of paths, or length of paths, no recursion survives.
class tst_PointerGraph : public QObject
{
    Q_OBJECT

private slots:
    void Walk_DiamondOfFortyLevels_ListsEveryNameOnceInOrder();
    void Walk_SmallDiamond_ListsEveryPath();
    void Walk_ChainOfHundredThousandNodes_ListsAll();
    void Walk_ChainOfHundredThousandFeatures_AllSelected();
    void Walk_ChainOfHundredThousandFeaturesWithoutTheCommand_NoneSelected();
    void Walk_EverythingPointsToEverything_ListsEveryNameOnce();
    void Walk_RingOfFeatures_AllSelected();
    void Walk_HugeRegister_EveryEntryInheritsWhatStandsBeforeIt();
    void GenerateFeatureXmlMap_NamesOfOneHash_TakeNoLonger();

private:
    static QString Node(const QString &strName, const QString &strChildren)
    {
        return QStringLiteral("<Integer Name='%1'>%2</Integer>").arg(strName, strChildren);
    }
    static QString Number(int n) { return QStringLiteral("N%1").arg(n); }
    static QString Pointer(const char *szTag, const QString &strTarget)
    {
        return QStringLiteral("<%1>%2</%1>").arg(QString::fromLatin1(szTag), strTarget);
    }
    static QString Chain(int nNodes, const char *szTag, const QString &strLast);
    static void Analyse(WorkerUnderTest *pWorker, const QString &strNodes);
    static QStringList Below(WorkerUnderTest *pWorker, const QString &strNode);
};

QString tst_PointerGraph::Chain(int nNodes, const char *szTag, const QString &strLast)
{
    QString strNodes;
    for (int i = 0; i < nNodes - 1; ++i)
        strNodes += Node(Number(i), Pointer(szTag, Number(i + 1)));
    return strNodes + Node(Number(nNodes - 1), strLast);
}

void tst_PointerGraph::Analyse(WorkerUnderTest *pWorker, const QString &strNodes)
{
    QVERIFY(pWorker->m_domDocument.setContent(QStringLiteral("<R>") + strNodes + QStringLiteral("</R>")));
    QDomElement root = pWorker->m_domDocument.documentElement();
    pWorker->GenerateDomElementMap(root);
    pWorker->GenerateFeaturesInvalidatorMap(root);
}

QStringList tst_PointerGraph::Below(WorkerUnderTest *pWorker, const QString &strNode)
{
    QList<QString> listed;
    QList<QString> variables;
    pWorker->GenerateInvalidatorListByProperty(strNode, listed, variables);
    return listed;
}

void tst_PointerGraph::Walk_DiamondOfFortyLevels_ListsEveryNameOnceInOrder()
{
    QString strNodes;
    QStringList expected;
    for (int i = 0; i < 40; ++i) {
        strNodes += Node(Number(i), Pointer("pValue", Number(i + 1)) + Pointer("pVariable", Number(i + 1)));
        expected.append(Number(i + 1));
    }
    strNodes += Node(Number(40), Pointer("pInvalidator", QStringLiteral("UserSetLoad")));
    expected.append(QStringLiteral("UserSetLoad"));
    WorkerUnderTest worker;

    Analyse(&worker, strNodes);

    QCOMPARE(Below(&worker, Number(0)), expected);
    QCOMPARE(worker.GetFeatureInvalidatorList(QStringLiteral("UserSetLoad")).size(), 40);
}

void tst_PointerGraph::Walk_SmallDiamond_ListsEveryPath()
{
    QString strNodes;
    for (int i = 0; i < 8; ++i)
        strNodes += Node(Number(i), Pointer("pMin", Number(i + 1)) + Pointer("pMax", Number(i + 1)));
    strNodes += Node(Number(8), Pointer("pInvalidator", QStringLiteral("I")));
    WorkerUnderTest worker;

    Analyse(&worker, strNodes);

    QCOMPARE(Below(&worker, Number(0)).size(), 256);
}

void tst_PointerGraph::Walk_ChainOfHundredThousandNodes_ListsAll()
{
    const int nNodes = 100000;
    WorkerUnderTest worker;
    Analyse(&worker, Chain(nNodes, "pValue", Pointer("pInvalidator", QStringLiteral("UserSetLoad")))
                         .replace(QStringLiteral("Integer"), QStringLiteral("Converter")));

    const QStringList listed = Below(&worker, Number(0));

    QCOMPARE(listed.size(), nNodes);
    QCOMPARE(listed.first(), Number(1));
    QCOMPARE(listed.last(), QString("UserSetLoad"));
}

void tst_PointerGraph::Walk_ChainOfHundredThousandFeatures_AllSelected()
{
    const int nNodes = 100000;
    WorkerUnderTest worker;

    Analyse(&worker, Chain(nNodes, "pMin", Pointer("pInvalidator", QStringLiteral("UserSetLoad"))));

    // The last one has no pointer to a node that lists the command.
    QCOMPARE(worker.GetFeatureInvalidatorList(QStringLiteral("UserSetLoad")).size(), nNodes - 1);
}

void tst_PointerGraph::Walk_ChainOfHundredThousandFeaturesWithoutTheCommand_NoneSelected()
{
    WorkerUnderTest worker;
    Analyse(&worker, Chain(100000, "pValue", Pointer("pInvalidator", QStringLiteral("Other"))));
    QCOMPARE(worker.GetFeatureInvalidatorList(QStringLiteral("UserSetLoad")), QList<QString>());
}

void tst_PointerGraph::Walk_EverythingPointsToEverything_ListsEveryNameOnce()
{
    const int nNodes = 60;
    QString strNodes;
    for (int i = 0; i < nNodes; ++i) {
        QString strPointers;
        for (int j = 0; j < nNodes; ++j)
            strPointers += Pointer("pValue", Number(j));
        strNodes += Node(Number(i), strPointers);
    }
    WorkerUnderTest worker;

    Analyse(&worker, strNodes);

    QStringList listed = Below(&worker, Number(3));
    QCOMPARE(listed.size(), nNodes);
    QCOMPARE(listed.removeDuplicates(), 0);
}

void tst_PointerGraph::Walk_RingOfFeatures_AllSelected()
{
    const int nNodes = 3000; // beyond the bound of all walks together
    WorkerUnderTest worker;

    Analyse(&worker,
            Chain(nNodes, "pValue",
                  Pointer("pInvalidator", QStringLiteral("UserSetLoad")) + Pointer("pMin", Number(0))));

    QCOMPARE(worker.GetFeatureInvalidatorList(QStringLiteral("UserSetLoad")).size(), nNodes);
}

void tst_PointerGraph::Walk_HugeRegister_EveryEntryInheritsWhatStandsBeforeIt()
{
    const int nEntries = 20000;
    QString strRegister;
    QString strFeatures;
    for (int i = 0; i < nEntries; ++i) {
        strRegister +=
            QStringLiteral("<StructEntry Name='%1'/>").arg(Number(i)) +
            Pointer("pInvalidator", i == nEntries / 2 ? QStringLiteral("UserSetLoad") : QStringLiteral("X"));
        strFeatures += Node(QStringLiteral("F%1").arg(i), Pointer("pValue", Number(i)));
    }
    WorkerUnderTest worker;

    Analyse(&worker, QStringLiteral("<StructReg>%1</StructReg>%2").arg(strRegister, strFeatures));

    QStringList selected = worker.GetFeatureInvalidatorList(QStringLiteral("UserSetLoad"));
    QCOMPARE(selected.size(), nEntries / 2 - 1);
    QVERIFY(selected.contains(QStringLiteral("F%1").arg(nEntries / 2 + 1)));
    QVERIFY(!selected.contains(QStringLiteral("F%1").arg(nEntries / 2)));
}

/// A camera that knows the hash function can give names that all have one hash.
void tst_PointerGraph::GenerateFeatureXmlMap_NamesOfOneHash_TakeNoLonger()
{
    const int nNames = 1 << 15;
    QByteArray nodes("<Register Name='R'><pInvalidator>UserSetLoad</pInvalidator></Register>");
    for (int i = 0; i < nNames; ++i) {
        QByteArray name;
        for (int nBit = 0; nBit < 15; ++nBit)
            name += (i >> nBit & 1) != 0 ? "Aa" : "BB"; // 31 * 'A' + 'a' == 31 * 'B' + 'B'
        nodes += "<Float Name='" + name + "'><pMin>R</pMin><pMax>" + name + "</pMax></Float>";
    }
    ScriptedSdk::Reset();
    ScriptedSdk::SetDescription("<R>" + nodes + "</R>");
    const int nSeed = qGlobalQHashSeed();
    qSetGlobalQHashSeed(0);
    WorkerUnderTest worker;
    QVERIFY(worker.OpenDevice());
    const std::clock_t nStart = std::clock();

    worker.GenerateFeatureXmlMap();

    qSetGlobalQHashSeed(nSeed == 0 ? 0 : -1);
    QCOMPARE(worker.m_mapFeatureXml.size(), nNames);
    // 0.5 s; comparing every name with every other one takes half a minute.
    const auto nSeconds = (std::clock() - nStart) / CLOCKS_PER_SEC;
    QVERIFY2(nSeconds < 8, qPrintable(QStringLiteral("%1 s of processor time").arg(nSeconds)));
}

QTEST_GUILESS_MAIN(tst_PointerGraph)
#include "tst_pointergraph.moc"
