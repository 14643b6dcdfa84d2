#include <QDomDocument>
#include <QtTest>

#include <description/elementindex.h>
#include <description/invalidatormap.h>

class tst_InvalidatorMap : public QObject
{
    Q_OBJECT

private slots:
    void AddFeaturesAt_PointerToInvalidator_ListsIt_data();
    void AddFeaturesAt_PointerToInvalidator_ListsIt();
    void AddFeaturesAt_Feature_ListsInOrder_data();
    void AddFeaturesAt_Feature_ListsInOrder();
    void AddFeaturesAt_FeatureTag_DecidesWhoGetsAnEntry_data();
    void AddFeaturesAt_FeatureTag_DecidesWhoGetsAnEntry();
    void AddFeaturesAt_FeatureInsideEnumEntryAndFeature_GetsEntries();
    void AddFeaturesAt_NameTwice_LastFeatureWins();
    void AddFeaturesAt_SecondFeatureOfNameListsNothing_FirstStays();
    void AddFeaturesAt_NullElement_AddsNothing();
    void AddFeature_OtherTagAndOldEntry_IsAddedAndReplaced();

private:
    static InvalidatorLists MapOf(const QString &strNodes);
    static const QString s_strTail;
};

// R lists I; D (down) leads to R.
const QString tst_InvalidatorMap::s_strTail =
    QStringLiteral("<Register Name='R'><pInvalidator>I</pInvalidator></Register>"
                   "<SwissKnife Name='D'><pValue>R</pValue></SwissKnife>");

InvalidatorLists tst_InvalidatorMap::MapOf(const QString &strNodes)
{
    QDomDocument document;
    [&] { QVERIFY(document.setContent(QStringLiteral("<Root>%1</Root>").arg(strNodes))); }();
    ElementMap elements;
    ElementIndex(&elements).AddBelow(document.documentElement());
    InvalidatorLists lists;
    InvalidatorMap(elements, QString(), &lists).AddFeaturesAt(document.documentElement());
    return lists;
}

void tst_InvalidatorMap::AddFeaturesAt_PointerToInvalidator_ListsIt_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QStringList>("nodeLists");
    for (const char *szTag : {"pMin", "pMax", "pInc", "pIsLocked", "pIsImplemented", "pIsAvailable"})
        QTest::newRow(szTag) << szTag << QStringList({"I"});
    QTest::newRow("pValue lists its target from the second level") << "pValue" << QStringList({"R", "I"});
}

void tst_InvalidatorMap::AddFeaturesAt_PointerToInvalidator_ListsIt()
{
    QFETCH(QString, first);
    QFETCH(QStringList, nodeLists);
    const QString strPointer = QStringLiteral("<%1>R</%1>").arg(first);

    const InvalidatorLists map =
        MapOf(s_strTail + QStringLiteral("<Integer Name='Direct'>%1</Integer>"
                                         "<Converter Name='C'>%1</Converter>"
                                         "<Integer Name='Indirect'><pMin>C</pMin></Integer>")
                              .arg(strPointer));

    QCOMPARE(QStringList(map.value("Direct")), QStringList({"I"}));
    QCOMPARE(QStringList(map.value("Indirect")), nodeLists);
}

void tst_InvalidatorMap::AddFeaturesAt_Feature_ListsInOrder_data()
{
    QTest::addColumn<QString>("children"); // of the Float F
    QTest::addColumn<QString>("others");
    QTest::addColumn<QStringList>("listed");

    QTest::newRow("own invalidator and value") << "<Value>1</Value><pInvalidator>X</pInvalidator>"
                                               << "" << QStringList();
    QTest::newRow("own invalidator is left out") << "<pInvalidator>X</pInvalidator><pValue>R</pValue>"
                                                 << "" << QStringList({"I"});
    QTest::newRow("further node listed, first target not") << "<pValue>D</pValue>"
                                                           << "" << QStringList({"R", "I"});
    QTest::newRow("undefined target") << "<pMin>Nowhere</pMin>"
                                      << "" << QStringList();
    QTest::newRow("pointers that lead nowhere") << "<pValue>E</pValue><pMax>E</pMax>"
                                                << "<Register Name='E'/>" << QStringList();
    QTest::newRow("pVariable at the feature is not followed") << "<pVariable>D</pVariable>"
                                                              << "" << QStringList({"D"});
    QTest::newRow("pVariable below is followed")
        << "<pValue>K</pValue>"
        << "<SwissKnife Name='K'><pVariable>D</pVariable></SwissKnife>" << QStringList({"D", "R", "I"});
    QTest::newRow("undefined pValue below is listed")
        << "<pValue>K</pValue>"
        << "<Converter Name='K'><pValue>Nowhere</pValue></Converter>" << QStringList({"Nowhere"});
    QTest::newRow("two paths list twice") << "<pValue>D</pValue><pMin>R</pMin><pMax>D</pMax>"
                                          << "" << QStringList({"R", "I", "I", "R", "I"});
    QTest::newRow("text is not trimmed")
        << "<pValue>K</pValue>"
        << "<Register Name='K'><pInvalidator> X </pInvalidator></Register>" << QStringList({" X "});
    QTest::newRow("text of elements inside a pointer is not its own")
        << "<pValue>R<a>R<b>R</b></a></pValue><pVariable>V<a>W</a></pVariable><pMin>K</pMin>"
        << "<Converter Name='K'><pInvalidator>X<a>Y</a></pInvalidator></Converter>"
        << QStringList({"I", "V", "X"});
    QTest::newRow("register's pointers with elements inside")
        << "<pMin>S</pMin>"
        << "<StructReg><pInvalidator>A<a>B</a></pInvalidator><StructEntry Name='S'/></StructReg>"
        << QStringList({"A"});
    QTest::newRow("pointer text in parts") << "<pMin><![CDATA[K]]><!-- no --></pMin><pMin>&#x52;<?no?></pMin>"
                                           << "<Converter Name='K'><pInvalidator>X<!-- and -->Y"
                                              "</pInvalidator></Converter>"
                                           << QStringList({"XY", "I"});
    QTest::newRow("pointer text with blanks names no node") << "<pValue> R </pValue>"
                                                            << "" << QStringList();
    QTest::newRow("tags compare with case") << "<pvalue>R</pvalue><PMin>R</PMin>"
                                            << "" << QStringList();
    QTest::newRow("unknown pointers") << "<pSelected>R</pSelected><pPort>R</pPort>"
                                      << "" << QStringList();
    QTest::newRow("pointer to an enumeration entry")
        << "<pValue>On</pValue>"
        << "<Enumeration Name='E'><EnumEntry "
           "Name='On'><pInvalidator>X</pInvalidator></EnumEntry></Enumeration>"
        << QStringList();
    QTest::newRow("register of a StructEntry, nearest first")
        << "<pValue>S</pValue>"
        << "<StructReg><pInvalidator>A</pInvalidator><Length>4</Length><pInvalidator>B</pInvalidator>"
           "<StructEntry Name='Q'/><pInvalidator>C</pInvalidator><StructEntry Name='S'>"
           "<pInvalidator>Own</pInvalidator></StructEntry><pInvalidator>After</pInvalidator></StructReg>"
        << QStringList({"C", "B", "A", "Own"});
    QTest::newRow("only invalidators before another entry")
        << "<pValue>Q</pValue>"
        << "<StructReg><pInvalidator>A</pInvalidator><StructEntry Name='Q'/><pInvalidator>C</pInvalidator>"
           "<StructEntry Name='S'/></StructReg>"
        << QStringList({"A"});
    QTest::newRow("entry defined twice in a register, last one counts")
        << "<pValue>Q</pValue>"
        << "<StructReg><pInvalidator>A</pInvalidator><StructEntry Name='Q'/><pInvalidator>C</pInvalidator>"
           "<StructEntry Name='Q'/></StructReg>"
        << QStringList({"C", "A"});
    QTest::newRow("entries of two registers")
        << "<pValue>Q</pValue><pMin>S</pMin>"
        << "<StructReg><pInvalidator>A</pInvalidator><StructEntry Name='Q'/></StructReg>"
           "<StructReg><pInvalidator>B</pInvalidator><StructEntry Name='S'/></StructReg>"
        << QStringList({"A", "B"});
    QTest::newRow("entry whose name another node took")
        << "<pMin>S</pMin><pValue>Q</pValue>"
        << "<StructReg><pInvalidator>A</pInvalidator><StructEntry Name='Q'/><StructEntry "
           "Name='S'/></StructReg>"
           "<Register Name='Q'><pInvalidator>Own</pInvalidator></Register>"
        << QStringList({"A", "Own"});
    QTest::newRow("entry whose name an entry of another register took")
        << "<pMin>S</pMin><pValue>Q</pValue>"
        << "<StructReg><pInvalidator>A</pInvalidator><StructEntry Name='Q'/><StructEntry "
           "Name='S'/></StructReg>"
           "<StructReg><pInvalidator>B</pInvalidator><StructEntry Name='Q'/></StructReg>"
        << QStringList({"A", "B"});
    QTest::newRow("neighbours of another node do not count")
        << "<pValue>Q</pValue>"
        << "<Group><pInvalidator>A</pInvalidator><IntReg Name='Q'/></Group>" << QStringList();
    QTest::newRow("cycle ends where it closes")
        << "<pValue>A</pValue>"
        << "<Converter Name='A'><pInvalidator>X</pInvalidator><pValue>B</pValue></Converter>"
           "<Converter Name='B'><pValue>A</pValue><pInvalidator>Y</pInvalidator></Converter>"
        << QStringList({"X", "B", "A", "Y"});
    QTest::newRow("pointer to itself")
        << "<pValue>A</pValue>"
        << "<Converter Name='A'><pValue>A</pValue><pInvalidator>X</pInvalidator></Converter>"
        << QStringList({"A", "X"});
}

void tst_InvalidatorMap::AddFeaturesAt_Feature_ListsInOrder()
{
    QFETCH(QString, children);
    QFETCH(QString, others);
    QFETCH(QStringList, listed);

    const InvalidatorLists map =
        MapOf(s_strTail + others + QStringLiteral("<Float Name='F'>%1</Float>").arg(children));

    QCOMPARE(QStringList(map.value("F")), listed);
    QCOMPARE(map.contains("F"), !listed.isEmpty());
}

void tst_InvalidatorMap::AddFeaturesAt_FeatureTag_DecidesWhoGetsAnEntry_data()
{
    QTest::addColumn<bool>("entered");
    for (const char *szTag : {"Enumeration", "Integer", "IntReg", "Boolean", "Float"})
        QTest::newRow(szTag) << true;
    for (const char *szTag : {"Command", "String", "StringReg", "Register", "SwissKnife", "IntSwissKnife",
                              "Converter", "MaskedIntReg", "FloatReg", "integer", "StructEntry"})
        QTest::newRow(szTag) << false;
}

void tst_InvalidatorMap::AddFeaturesAt_FeatureTag_DecidesWhoGetsAnEntry()
{
    QFETCH(bool, entered);
    const QString strFeature = QStringLiteral("<%1 Name='F'><pValue>R</pValue></%1>")
                                   .arg(QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(MapOf(s_strTail + strFeature).keys(), entered ? QStringList({"F"}) : QStringList());
}

void tst_InvalidatorMap::AddFeaturesAt_FeatureInsideEnumEntryAndFeature_GetsEntries()
{
    const InvalidatorLists map =
        MapOf(s_strTail + QStringLiteral("<Enumeration Name='E'><pValue>R</pValue><EnumEntry Name='On'>"
                                         "<Integer Name='In'><pValue>R</pValue></Integer></EnumEntry>"
                                         "</Enumeration>"));
    QCOMPARE(map.keys(), QStringList({"E", "In"}));
}

void tst_InvalidatorMap::AddFeaturesAt_NameTwice_LastFeatureWins()
{
    const InvalidatorLists map =
        MapOf(s_strTail + QStringLiteral("<Integer Name='F'><pValue>D</pValue></Integer>"
                                         "<Float Name='F'><pValue>R</pValue></Float>"));
    QCOMPARE(QStringList(map.value("F")), QStringList({"I"}));
}

void tst_InvalidatorMap::AddFeaturesAt_SecondFeatureOfNameListsNothing_FirstStays()
{
    const InvalidatorLists map =
        MapOf(s_strTail + QStringLiteral("<Integer Name='F'><pValue>D</pValue></Integer><Float Name='F'/>"));
    QCOMPARE(QStringList(map.value("F")), QStringList({"R", "I"}));
}

void tst_InvalidatorMap::AddFeaturesAt_NullElement_AddsNothing()
{
    InvalidatorLists lists;
    InvalidatorMap(ElementMap(), QString(), &lists).AddFeaturesAt(QDomElement());
    QVERIFY(lists.isEmpty());
}

void tst_InvalidatorMap::AddFeature_OtherTagAndOldEntry_IsAddedAndReplaced()
{
    QDomDocument document;
    QVERIFY(document.setContent(QStringLiteral("<Root><Command Name='F'><pVariable>V</pVariable></Command>"
                                               "<Integer Name='Inside'><pVariable>W</pVariable></Integer>"
                                               "</Root>")));
    InvalidatorLists lists({{"F", {"Old"}}});

    InvalidatorMap(ElementMap(), QString(), &lists)
        .AddFeature(document.documentElement().firstChildElement());

    QCOMPARE(lists, InvalidatorLists({{"F", {"V"}}}));
}

QTEST_GUILESS_MAIN(tst_InvalidatorMap)
#include "tst_invalidatormap.moc"
