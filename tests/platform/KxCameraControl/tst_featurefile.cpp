#include <QTest>

#include "features/featurefile.h"

using namespace kxcc;

class tst_FeatureFile : public QObject
{
    Q_OBJECT

private slots:
    void Write_LinesAndComments_GivesTheTextForm();
    void Write_EmptyValue_BecomesAComment();
    void Read_LineWithItsSelectors_HasThem_data();
    void Read_LineWithItsSelectors_HasThem();
    void Read_WhatWasWritten_GivesTheSameLines();
    void Read_LineEndsOfWindows_AreAccepted();
    void Read_Malformed_data();
    void Read_Malformed();
};

void tst_FeatureFile::Write_LinesAndComments_GivesTheTextForm()
{
    QCOMPARE(WriteFeatureFile({"made by hand"}, {{"Gain", "1.5", {}}, {"Width", "8", {}}}),
             std::string("# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n# made by hand\nGain\t1.5\nWidth\t8\n"));
}

void tst_FeatureFile::Write_EmptyValue_BecomesAComment()
{
    const std::string strText =
        WriteFeatureFile({}, {{"Gain", "1.5", {}}, {"Name", "", {}}, {"Width", "8", {}}});
    QCOMPARE(strText,
             std::string("# {05D8C294-F295-4dfb-9D01-096BD04049F4}\nGain\t1.5\n# Name is empty\nWidth\t8\n"));
    QCOMPARE(ReadFeatureFile(strText)->size(), size_t{2});
}

void tst_FeatureFile::Read_LineWithItsSelectors_HasThem_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("selection");
    QTest::addColumn<QByteArray>("value");
    const auto row = [](const char *szLine, const char *szSelection, const char *szValue) {
        QTest::newRow(szLine) << QByteArray(szLine) << QByteArray(szSelection) << QByteArray(szValue);
    };
    row("A\t{S=1}\t2", "S=1;", "2");
    row("A\t{S=One\tT=2}\tthree", "S=One;T=2;", "three");
    row("A\t{S=}\t2", "S=;", "2");
    row("A\t{S=a=b}\t2", "S=a=b;", "2");
    row("A\t{S=1}\t", "S=1;", "");
    row("A\t{S=1}\t{T=2}\t3", "S=1;", "{T=2}\t3");
    // Texts with a brace.
    row("A\t{S=1}", "", "{S=1}");
    row("A\t{S}\t2", "", "{S}\t2");
    row("A\t{}\t2", "", "{}\t2");
    row("A\t{=1}\t2", "", "{=1}\t2");
    row("A\t{S=1\t}\t2", "", "{S=1\t}\t2");
    row("A\t{S=1\tT}\t2=", "", "{S=1\tT}\t2=");
    row("A\tS=1}\t2", "", "S=1}\t2");
    row("A\t{S=1\t2", "", "{S=1\t2");
}

void tst_FeatureFile::Read_LineWithItsSelectors_HasThem()
{
    QFETCH(QByteArray, line);
    const auto lines =
        ReadFeatureFile("# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n" + line.toStdString() + "\r\n");
    QVERIFY(lines && lines->size() == 1);
    QByteArray selection;
    for (const auto &selector : lines->at(0).selection)
        selection += QByteArray::fromStdString(selector.first + "=" + selector.second + ";");
    QTEST(selection, "selection");
    QTEST(QByteArray::fromStdString(lines->at(0).strValue), "value");
    QCOMPARE(lines->at(0).strName, std::string("A"));
}

void tst_FeatureFile::Read_WhatWasWritten_GivesTheSameLines()
{
    const auto lines =
        ReadFeatureFile(WriteFeatureFile({"c"}, {{"A", "x\ty", {}}, {"B", "1", {}}, {"A", "2", {}}}));

    QVERIFY(lines);
    QCOMPARE(lines->size(), size_t{3});
    QCOMPARE(lines->at(0).strName, std::string("A"));
    QCOMPARE(lines->at(0).strValue, std::string("x\ty"));
    QCOMPARE(lines->at(1).strValue, std::string("1"));
    QCOMPARE(lines->at(2).strValue, std::string("2"));
}

void tst_FeatureFile::Read_LineEndsOfWindows_AreAccepted()
{
    const auto lines = ReadFeatureFile("# {05D8C294-F295-4dfb-9D01-096BD04049F4}\r\nA\t1\r\n\r\n");

    QVERIFY(lines);
    QCOMPARE(lines->size(), size_t{1});
    QCOMPARE(lines->at(0).strValue, std::string("1"));
}

void tst_FeatureFile::Read_Malformed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no marker") << QByteArray("A\t1\n");
    QTest::newRow("another comment first") << QByteArray("# x\n# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n");
    QTest::newRow("no tab") << QByteArray("# {05D8C294-F295-4dfb-9D01-096BD04049F4}\nA 1\n");
    QTest::newRow("no name") << QByteArray("# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n\t1\n");
}

void tst_FeatureFile::Read_Malformed()
{
    QFETCH(QByteArray, text);
    QVERIFY(!ReadFeatureFile(text.toStdString()));
}

QTEST_APPLESS_MAIN(tst_FeatureFile)
#include "tst_featurefile.moc"
