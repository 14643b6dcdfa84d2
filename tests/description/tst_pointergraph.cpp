#include <QtTest>

#include <ctime>

#include <description/featurelist.h>
#include <description/featureselector.h>
#include <description/pointergraph.h>

#include "analysed.h"

/// Descriptions whose number of paths, or length of paths, no recursion survives.
class tst_PointerGraph : public QObject
{
    Q_OBJECT

private slots:
    void Walk_DiamondOfFortyLevels_ListsEveryNameOnceInOrder();
    void Walk_DiamondOfFortyLevels_GivesEveryVariableOnceBehindTheOldOnes();
    void Walk_SmallDiamond_ListsEveryPath();
    void Walk_ChainOfHundredThousandNodes_ListsAll();
    void Walk_ChainOfHundredThousandFeatures_AllSelected();
    void Walk_ChainOfHundredThousandFeaturesWithoutTheCommand_NoneSelected();
    void Walk_EverythingPointsToEverything_ListsEveryNameOnce();
    void Walk_RingOfFeatures_AllSelected();
    void Walk_HugeRegister_EveryEntryInheritsWhatStandsBeforeIt();
    void Walk_BudgetUsedUp_FindsWhatLeadsToTheCommandAndNothingElse();
    void Walk_Variables_AreGivenToo();
    void Walk_FilledLists_AreAppendedTo();
    void Walk_NamesOfOneHash_TakeNoLonger();

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
    static Analysed Analyse(const QString &strNodes);
    static QStringList Below(const Analysed &analysed, const QString &strNode);
    static QStringList Selected(const Analysed &analysed);
};

QString tst_PointerGraph::Chain(int nNodes, const char *szTag, const QString &strLast)
{
    QString strNodes;
    for (int i = 0; i < nNodes - 1; ++i)
        strNodes += Node(Number(i), Pointer(szTag, Number(i + 1)));
    return strNodes + Node(Number(nNodes - 1), strLast);
}

Analysed tst_PointerGraph::Analyse(const QString &strNodes)
{
    Analysed analysed;
    [&] { QVERIFY(analysed.Generate(QStringLiteral("<R>") + strNodes + QStringLiteral("</R>"))); }();
    return analysed;
}

QStringList tst_PointerGraph::Below(const Analysed &analysed, const QString &strNode)
{
    QList<QString> listed;
    QList<QString> variables;
    PointerGraph(analysed.elements, QLatin1String(kUserSetCommand)).Walk(strNode, &listed, &variables);
    return listed;
}

QStringList tst_PointerGraph::Selected(const Analysed &analysed)
{
    return FeatureSelector(analysed.invalidators).InvalidatedBy(QLatin1String(kUserSetCommand));
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
    const Analysed analysed = Analyse(strNodes);

    QCOMPARE(Below(analysed, Number(0)), expected);
    QCOMPARE(Selected(analysed).size(), 40);
}

void tst_PointerGraph::Walk_DiamondOfFortyLevels_GivesEveryVariableOnceBehindTheOldOnes()
{
    QString strNodes;
    QStringList expected({"Kept", "Too"});
    for (int i = 0; i < 40; ++i) {
        strNodes +=
            Node(Number(i), Pointer("pVariable", Number(i + 1)) + Pointer("pVariable", Number(i + 1)));
        expected.append(Number(i + 1));
    }
    const Analysed analysed = Analyse(strNodes + Node(Number(40), QString()));
    QList<QString> listed({"Before"});
    QList<QString> variables({"Kept", "Too"});

    PointerGraph(analysed.elements, QString()).Walk(Number(0), &listed, &variables);

    QCOMPARE(QStringList(variables), expected);
    QCOMPARE(QStringList(listed), QStringList({"Before"}) + expected.mid(2));
}

void tst_PointerGraph::Walk_SmallDiamond_ListsEveryPath()
{
    QString strNodes;
    for (int i = 0; i < 8; ++i)
        strNodes += Node(Number(i), Pointer("pMin", Number(i + 1)) + Pointer("pMax", Number(i + 1)));
    strNodes += Node(Number(8), Pointer("pInvalidator", QStringLiteral("I")));
    const Analysed analysed = Analyse(strNodes);

    QCOMPARE(Below(analysed, Number(0)).size(), 256);
}

void tst_PointerGraph::Walk_ChainOfHundredThousandNodes_ListsAll()
{
    const int nNodes = 100000;
    const Analysed analysed =
        Analyse(Chain(nNodes, "pValue", Pointer("pInvalidator", QStringLiteral("UserSetLoad")))
                    .replace(QStringLiteral("Integer"), QStringLiteral("Converter")));

    const QStringList listed = Below(analysed, Number(0));

    QCOMPARE(listed.size(), nNodes);
    QCOMPARE(listed.first(), Number(1));
    QCOMPARE(listed.last(), QString("UserSetLoad"));
}

void tst_PointerGraph::Walk_ChainOfHundredThousandFeatures_AllSelected()
{
    const int nNodes = 100000;
    const Analysed analysed =
        Analyse(Chain(nNodes, "pMin", Pointer("pInvalidator", QStringLiteral("UserSetLoad"))));

    // The last one has no pointer to a node that lists the command.
    QCOMPARE(Selected(analysed).size(), nNodes - 1);
}

void tst_PointerGraph::Walk_ChainOfHundredThousandFeaturesWithoutTheCommand_NoneSelected()
{
    const Analysed analysed =
        Analyse(Chain(100000, "pValue", Pointer("pInvalidator", QStringLiteral("Other"))));
    QCOMPARE(Selected(analysed), QStringList());
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
    const Analysed analysed = Analyse(strNodes);

    QStringList listed = Below(analysed, Number(3));
    QCOMPARE(listed.size(), nNodes);
    QCOMPARE(listed.removeDuplicates(), 0);
}

void tst_PointerGraph::Walk_RingOfFeatures_AllSelected()
{
    const int nNodes = 3000; // beyond the bound of all walks together
    const Analysed analysed =
        Analyse(Chain(nNodes, "pValue",
                      Pointer("pInvalidator", QStringLiteral("UserSetLoad")) + Pointer("pMin", Number(0))));

    QCOMPARE(Selected(analysed).size(), nNodes);
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
    const Analysed analysed =
        Analyse(QStringLiteral("<StructReg>%1</StructReg>%2").arg(strRegister, strFeatures));

    QStringList selected = Selected(analysed);
    QCOMPARE(selected.size(), nEntries / 2 - 1);
    QVERIFY(selected.contains(QStringLiteral("F%1").arg(nEntries / 2 + 1)));
    QVERIFY(!selected.contains(QStringLiteral("F%1").arg(nEntries / 2)));
}

void tst_PointerGraph::Walk_BudgetUsedUp_FindsWhatLeadsToTheCommandAndNothingElse()
{
    QString strNodes;
    for (int i = 0; i < 40; ++i)
        strNodes += Node(Number(i), Pointer("pMin", Number(i + 1)) + Pointer("pMax", Number(i + 1)));
    for (int i = 0; i < PointerGraph::kWalkBudget / PointerGraph::kLongestWalk; ++i)
        strNodes += Node(QStringLiteral("User%1").arg(i), Pointer("pMin", Number(0)));
    // No walk has met what follows when the budget ends. Z1 stands before Z2, in the index too.
    strNodes += Node(QStringLiteral("Innocent"), Pointer("pMin", QStringLiteral("Z1"))) +
                Node(QStringLiteral("Selected"), Pointer("pMin", QStringLiteral("Z2"))) +
                Node(QStringLiteral("Z1"), Pointer("pMin", QStringLiteral("Nowhere"))) +
                Node(QStringLiteral("Z2"), Pointer("pMin", QStringLiteral("Z3"))) +
                Node(QStringLiteral("Z3"), Pointer("pInvalidator", QStringLiteral("UserSetLoad")));

    const Analysed analysed = Analyse(strNodes);

    QCOMPARE(Selected(analysed), QStringList({"Selected", "Z2"}));
}

void tst_PointerGraph::Walk_Variables_AreGivenToo()
{
    const Analysed analysed =
        Analyse(Node(QStringLiteral("K"), Pointer("pVariable", QStringLiteral("V")) +
                                              Pointer("pValue", QStringLiteral("R")) +
                                              Pointer("pMin", QStringLiteral("L"))) +
                Node(QStringLiteral("L"), Pointer("pVariable", QStringLiteral("W"))) +
                Node(QStringLiteral("R"), Pointer("pInvalidator", QStringLiteral("I"))));
    QList<QString> listed;
    QList<QString> variables;

    PointerGraph(analysed.elements, QString()).Walk(QStringLiteral("K"), &listed, &variables);

    QCOMPARE(QStringList(listed), QStringList({"V", "R", "I", "W"}));
    QCOMPARE(QStringList(variables), QStringList({"V", "W"}));
}

void tst_PointerGraph::Walk_FilledLists_AreAppendedTo()
{
    const Analysed analysed =
        Analyse(Node(QStringLiteral("R"), Pointer("pInvalidator", QStringLiteral("I"))));
    QList<QString> listed({"Before"});
    QList<QString> variables({"Kept"});

    PointerGraph(analysed.elements, QString()).Walk(QStringLiteral("R"), &listed, &variables);

    QCOMPARE(QStringList(listed), QStringList({"Before", "I"}));
    QCOMPARE(QStringList(variables), QStringList({"Kept"}));
}

/// A camera that knows the hash function can give names that all have one hash.
void tst_PointerGraph::Walk_NamesOfOneHash_TakeNoLonger()
{
    const int nNames = 1 << 15;
    QByteArray nodes("<Register Name='R'><pInvalidator>UserSetLoad</pInvalidator></Register>");
    for (int i = 0; i < nNames; ++i) {
        QByteArray name;
        for (int nBit = 0; nBit < 15; ++nBit)
            name += (i >> nBit & 1) != 0 ? "Aa" : "BB"; // 31 * 'A' + 'a' == 31 * 'B' + 'B'
        nodes += "<Float Name='" + name + "'><pMin>R</pMin><pMax>" + name + "</pMax></Float>";
    }
    const int nSeed = qGlobalQHashSeed();
    qSetGlobalQHashSeed(0);
    const std::clock_t nStart = std::clock();

    const Analysed analysed = Analyse(QString::fromLatin1(nodes));

    qSetGlobalQHashSeed(nSeed == 0 ? 0 : -1);
    QCOMPARE(analysed.features.size(), nNames);
    // 0.5 s; comparing every name with every other one takes half a minute.
    const auto nSeconds = (std::clock() - nStart) / CLOCKS_PER_SEC;
    QVERIFY2(nSeconds < 8, qPrintable(QStringLiteral("%1 s of processor time").arg(nSeconds)));
}

QTEST_GUILESS_MAIN(tst_PointerGraph)
#include "tst_pointergraph.moc"
