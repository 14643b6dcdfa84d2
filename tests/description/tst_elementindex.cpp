#include <QtTest>

#include "workerundertest.h"

class tst_ElementIndex : public QObject
{
    Q_OBJECT

private slots:
    void GenerateDomElementMap_NullElement_IndexesNothing();
    void GenerateDomElementMap_RootWithoutChildren_IndexesNothing();
    void GenerateDomElementMap_RootWithName_IsNotIndexed();
    void GenerateDomElementMap_SameNameTwice_LastInDocumentOrderWins();
    void GenerateDomElementMap_ChildNamedLikeParent_ChildWins();
    void GenerateDomElementMap_EnumEntryNamedLikeNode_DoesNotReplaceIt();
    void GenerateDomElementMap_ElementsInsideEnumEntry_AreNotIndexed();
    void GenerateDomElementMap_NamelessElement_DescendantsAreIndexed();
    void GenerateDomElementMap_EmptyName_IsNotIndexed();
    void GenerateDomElementMap_NameWithBlanks_IsNotTrimmed();
    void GenerateDomElementMap_TagDiffersFromEnumEntryInCase_IsIndexed();
    void GenerateDomElementMap_FilledIndex_IsAddedTo();
    void GetDomElementNode_OtherCase_FailsAndLeavesElement();
    void GetDomElementNode_StoredNullElement_FailsAndNullsElement();

private:
    struct Indexed
    {
        WorkerUnderTest worker;
        explicit Indexed(const char *szXml) { Add(szXml); }
        void Add(const char *szXml)
        {
            QVERIFY(worker.m_domDocument.setContent(QString::fromLatin1(szXml)));
            QDomElement root = worker.m_domDocument.documentElement();
            worker.GenerateDomElementMap(root);
        }
        QStringList Names() const { return worker.m_mapDomElement.keys(); }
        QString TagOf(const char *szName)
        {
            QDomElement element;
            return worker.GetDomElementNode(QString::fromLatin1(szName), element) ? element.tagName()
                                                                                  : QString();
        }
    };
};

void tst_ElementIndex::GenerateDomElementMap_NullElement_IndexesNothing()
{
    WorkerUnderTest worker;
    QDomElement element;
    worker.GenerateDomElementMap(element);
    QVERIFY(worker.m_mapDomElement.isEmpty());
}

void tst_ElementIndex::GenerateDomElementMap_RootWithoutChildren_IndexesNothing()
{
    QCOMPARE(Indexed("<R/>").Names(), QStringList());
}

void tst_ElementIndex::GenerateDomElementMap_RootWithName_IsNotIndexed()
{
    QCOMPARE(Indexed("<R Name='Root'><Integer Name='A'/></R>").Names(), QStringList({"A"}));
}

void tst_ElementIndex::GenerateDomElementMap_SameNameTwice_LastInDocumentOrderWins()
{
    QCOMPARE(Indexed("<R><Group><Integer Name='A'/></Group><Group><Float Name='A'/></Group></R>").TagOf("A"),
             QString("Float"));
}

void tst_ElementIndex::GenerateDomElementMap_ChildNamedLikeParent_ChildWins()
{
    QCOMPARE(Indexed("<R><Outer Name='A'><Inner Name='A'/></Outer></R>").TagOf("A"), QString("Inner"));
}

void tst_ElementIndex::GenerateDomElementMap_EnumEntryNamedLikeNode_DoesNotReplaceIt()
{
    QCOMPARE(
        Indexed("<R><Integer Name='Off'/><Enumeration Name='E'><EnumEntry Name='Off'/></Enumeration></R>")
            .TagOf("Off"),
        QString("Integer"));
}

void tst_ElementIndex::GenerateDomElementMap_ElementsInsideEnumEntry_AreNotIndexed()
{
    QCOMPARE(Indexed("<R><Enumeration Name='E'><EnumEntry Name='On'><Integer Name='In'/></EnumEntry>"
                     "</Enumeration></R>")
                 .Names(),
             QStringList({"E"}));
}

void tst_ElementIndex::GenerateDomElementMap_NamelessElement_DescendantsAreIndexed()
{
    QCOMPARE(Indexed("<R><Group><Deeper><Integer Name='A'/></Deeper></Group></R>").Names(),
             QStringList({"A"}));
}

void tst_ElementIndex::GenerateDomElementMap_EmptyName_IsNotIndexed()
{
    QCOMPARE(Indexed("<R><Group Name=''><Integer Name='A'/></Group></R>").Names(), QStringList({"A"}));
}

void tst_ElementIndex::GenerateDomElementMap_NameWithBlanks_IsNotTrimmed()
{
    QCOMPARE(Indexed("<R><Integer Name=' A '/></R>").Names(), QStringList({" A "}));
}

void tst_ElementIndex::GenerateDomElementMap_TagDiffersFromEnumEntryInCase_IsIndexed()
{
    QCOMPARE(Indexed("<R><Enumentry Name='A'/></R>").TagOf("A"), QString("Enumentry"));
}

void tst_ElementIndex::GenerateDomElementMap_FilledIndex_IsAddedTo()
{
    Indexed indexed("<R><Integer Name='A'/></R>");
    indexed.Add("<R><Integer Name='B'/></R>");
    QCOMPARE(indexed.Names(), QStringList({"A", "B"}));
}

void tst_ElementIndex::GetDomElementNode_OtherCase_FailsAndLeavesElement()
{
    Indexed indexed("<R><Integer Name='Gain'/></R>");
    QDomElement element = indexed.worker.m_domDocument.documentElement();

    QVERIFY(!indexed.worker.GetDomElementNode(QStringLiteral("gain"), element));
    QCOMPARE(element.tagName(), QString("R"));
}

void tst_ElementIndex::GetDomElementNode_StoredNullElement_FailsAndNullsElement()
{
    Indexed indexed("<R/>");
    indexed.worker.m_mapDomElement.insert(QStringLiteral("Null"), QDomElement());
    QDomElement element = indexed.worker.m_domDocument.documentElement();

    QVERIFY(!indexed.worker.GetDomElementNode(QStringLiteral("Null"), element));
    QVERIFY(element.isNull());
}

QTEST_GUILESS_MAIN(tst_ElementIndex)
#include "tst_elementindex.moc"
