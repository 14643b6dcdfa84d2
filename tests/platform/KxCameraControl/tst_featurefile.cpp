#include <QTest>

#include "protocol/featurefile.h"

using namespace kxcc;

class tst_FeatureFile : public QObject
{
    Q_OBJECT

private slots:
    void Write_LinesAndComments_GivesTheTextForm();
    void Read_WhatWasWritten_GivesTheSameLines();
    void Read_LineEndsOfWindows_AreAccepted();
    void Read_Malformed_data();
    void Read_Malformed();
};

void tst_FeatureFile::Write_LinesAndComments_GivesTheTextForm()
{
    QCOMPARE(WriteFeatureFile({"made by hand"}, {{"Gain", "1.5"}, {"Name", ""}}),
             std::string("# {05D8C294-F295-4dfb-9D01-096BD04049F4}\n# made by hand\nGain\t1.5\nName\t\n"));
}

void tst_FeatureFile::Read_WhatWasWritten_GivesTheSameLines()
{
    const auto lines = ReadFeatureFile(WriteFeatureFile({"c"}, {{"A", "x\ty"}, {"B", ""}, {"A", "2"}}));

    QVERIFY(lines);
    QCOMPARE(lines->size(), size_t{3});
    QCOMPARE(lines->at(0).strName, std::string("A"));
    QCOMPARE(lines->at(0).strValue, std::string("x\ty"));
    QCOMPARE(lines->at(1).strValue, std::string());
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
