#include <QDomDocument>
#include <QtTest>

#include <description/elementindex.h>

class tst_ElementIndex : public QObject
{
    Q_OBJECT

private slots:
    void AddBelow_NullElement_IndexesNothing();
    void AddBelow_RootWithoutChildren_IndexesNothing();
    void AddBelow_RootWithName_IsNotIndexed();
    void AddBelow_SameNameTwice_LastInDocumentOrderWins();
    void AddBelow_ChildNamedLikeParent_ChildWins();
    void AddBelow_EnumEntryNamedLikeNode_DoesNotReplaceIt();
    void AddBelow_ElementsInsideEnumEntry_AreNotIndexed();
    void AddBelow_NamelessElement_DescendantsAreIndexed();
    void AddBelow_EmptyName_IsNotIndexed();
    void AddBelow_NameWithBlanks_IsNotTrimmed();
    void AddBelow_TagDiffersFromEnumEntryInCase_IsIndexed();
    void AddBelow_FilledIndex_IsAddedTo();
    void Find_OtherCase_FailsAndLeavesElement();
    void Find_StoredNullElement_FailsAndNullsElement();

private:
    struct Indexed
    {
        QDomDocument document;
        ElementMap elements;
        ElementIndex index{&elements};
        explicit Indexed(const char *szXml) { Add(szXml); }
        void Add(const char *szXml)
        {
            QVERIFY(document.setContent(QString::fromLatin1(szXml)));
            index.AddBelow(document.documentElement());
        }
        QStringList Names() const { return elements.keys(); }
        QString TagOf(const char *szName) const
        {
            QDomElement element;
            return index.Find(QString::fromLatin1(szName), &element) ? element.tagName() : QString();
        }
    };
};

void tst_ElementIndex::AddBelow_NullElement_IndexesNothing()
{
    ElementMap elements;
    ElementIndex(&elements).AddBelow(QDomElement());
    QVERIFY(elements.isEmpty());
}

void tst_ElementIndex::AddBelow_RootWithoutChildren_IndexesNothing()
{
    QCOMPARE(Indexed("<R/>").Names(), QStringList());
}

void tst_ElementIndex::AddBelow_RootWithName_IsNotIndexed()
{
    QCOMPARE(Indexed("<R Name='Root'><Integer Name='A'/></R>").Names(), QStringList({"A"}));
}

void tst_ElementIndex::AddBelow_SameNameTwice_LastInDocumentOrderWins()
{
    QCOMPARE(Indexed("<R><Group><Integer Name='A'/></Group><Group><Float Name='A'/></Group></R>").TagOf("A"),
             QString("Float"));
}

void tst_ElementIndex::AddBelow_ChildNamedLikeParent_ChildWins()
{
    QCOMPARE(Indexed("<R><Outer Name='A'><Inner Name='A'/></Outer></R>").TagOf("A"), QString("Inner"));
}

void tst_ElementIndex::AddBelow_EnumEntryNamedLikeNode_DoesNotReplaceIt()
{
    QCOMPARE(
        Indexed("<R><Integer Name='Off'/><Enumeration Name='E'><EnumEntry Name='Off'/></Enumeration></R>")
            .TagOf("Off"),
        QString("Integer"));
}

void tst_ElementIndex::AddBelow_ElementsInsideEnumEntry_AreNotIndexed()
{
    QCOMPARE(Indexed("<R><Enumeration Name='E'><EnumEntry Name='On'><Integer Name='In'/></EnumEntry>"
                     "</Enumeration></R>")
                 .Names(),
             QStringList({"E"}));
}

void tst_ElementIndex::AddBelow_NamelessElement_DescendantsAreIndexed()
{
    QCOMPARE(Indexed("<R><Group><Deeper><Integer Name='A'/></Deeper></Group></R>").Names(),
             QStringList({"A"}));
}

void tst_ElementIndex::AddBelow_EmptyName_IsNotIndexed()
{
    QCOMPARE(Indexed("<R><Group Name=''><Integer Name='A'/></Group></R>").Names(), QStringList({"A"}));
}

void tst_ElementIndex::AddBelow_NameWithBlanks_IsNotTrimmed()
{
    QCOMPARE(Indexed("<R><Integer Name=' A '/></R>").Names(), QStringList({" A "}));
}

void tst_ElementIndex::AddBelow_TagDiffersFromEnumEntryInCase_IsIndexed()
{
    QCOMPARE(Indexed("<R><Enumentry Name='A'/></R>").TagOf("A"), QString("Enumentry"));
}

void tst_ElementIndex::AddBelow_FilledIndex_IsAddedTo()
{
    Indexed indexed("<R><Integer Name='A'/></R>");
    indexed.Add("<R><Integer Name='B'/></R>");
    QCOMPARE(indexed.Names(), QStringList({"A", "B"}));
}

void tst_ElementIndex::Find_OtherCase_FailsAndLeavesElement()
{
    Indexed indexed("<R><Integer Name='Gain'/></R>");
    QDomElement element = indexed.document.documentElement();

    QVERIFY(!indexed.index.Find(QStringLiteral("gain"), &element));
    QCOMPARE(element.tagName(), QString("R"));
}

void tst_ElementIndex::Find_StoredNullElement_FailsAndNullsElement()
{
    Indexed indexed("<R/>");
    indexed.elements.insert(QStringLiteral("Null"), QDomElement());
    QDomElement element = indexed.document.documentElement();

    QVERIFY(!indexed.index.Find(QStringLiteral("Null"), &element));
    QVERIFY(element.isNull());
}

QTEST_GUILESS_MAIN(tst_ElementIndex)
#include "tst_elementindex.moc"
