#include "genicam/initialvalues.h"

#include <QtTest>

using namespace KxFarm;

namespace {

QByteArray Description(const QByteArray &nodes)
{
    return "<RegisterDescription ModelName=\"M\" VendorName=\"V\">" + nodes + "</RegisterDescription>";
}

QByteArray Register(const QByteArray &name, const QByteArray &kind, const QByteArray &more)
{
    return '<' + kind + " Name=\"" + name + "\"><Address>0x100</Address><Length>4</Length>" + more + "</" +
           kind + '>';
}

} // namespace

/// Numbers between registers and features.
class tst_NodeEvaluator : public QObject
{
    Q_OBJECT

private slots:
    void Integer_RegisterBytes_HasItsValue_data();
    void Integer_RegisterBytes_HasItsValue();
    void SetInteger_OneField_OthersKeepTheirBits();
    void Float_ThroughAConverter_GoesThereAndBack();
    void Address_OfPartsAndIndex_IsTheirSum();
    void Integer_PointerInACircle_HasNoValue();
    void Integer_ExpressionThatNamesItself_HasNoValue();
    void Integer_DanglingPointer_HasNoValue();
    void Integer_RegisterOfImpossibleLength_HasNoValue_data();
    void Integer_RegisterOfImpossibleLength_HasNoValue();
};

void tst_NodeEvaluator::Integer_RegisterBytes_HasItsValue_data()
{
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<qint64>("value");
    QTest::newRow("big-endian") << Register("R", "IntReg", "<Endianess>BigEndian</Endianess>")
                                << qint64{0x81020384};
    QTest::newRow("little-endian is the default") << Register("R", "IntReg", "") << qint64{0x84030281};
    QTest::newRow("signed") << Register("R", "IntReg", "<Sign>Signed</Sign><Endianess>BigEndian</Endianess>")
                            << qint64{static_cast<std::int32_t>(0x81020384)};
    QTest::newRow("big-endian bits are counted from the top")
        << Register("R", "MaskedIntReg", "<LSB>15</LSB><MSB>8</MSB><Endianess>BigEndian</Endianess>")
        << qint64{0x02};
    QTest::newRow("little-endian bits are counted from below")
        << Register("R", "MaskedIntReg", "<LSB>8</LSB><MSB>15</MSB>") << qint64{0x02};
    QTest::newRow("one bit") << Register("R", "MaskedIntReg", "<Bit>0</Bit><Endianess>BigEndian</Endianess>")
                             << qint64{1};
    QTest::newRow("signed field")
        << Register("R", "MaskedIntReg",
                    "<LSB>7</LSB><MSB>0</MSB><Sign>Signed</Sign><Endianess>BigEndian</Endianess>")
        << qint64{static_cast<std::int8_t>(0x81)};
    QTest::newRow("entry of a structure")
        << QByteArray("<StructReg><Address>0x100</Address><Length>4</Length><Endianess>BigEndian</Endianess>"
                      "<StructEntry Name=\"R\"><LSB>31</LSB><MSB>24</MSB></StructEntry></StructReg>")
        << qint64{0x84};
}

void tst_NodeEvaluator::Integer_RegisterBytes_HasItsValue()
{
    QFETCH(QByteArray, node);
    QFETCH(qint64, value);
    QString error;
    NodeMap map;
    QVERIFY2(map.Parse(Description(node), &error), qPrintable(error));
    RegisterMemory memory;
    memory.WriteWord(0x100, 0x81020384);
    MemoryAccess access(&memory);
    NodeEvaluator evaluator(map, &access);

    QCOMPARE(qint64{evaluator.Integer(map.Find("R")).value_or(-1)}, value);

    QVERIFY(evaluator.SetInteger(map.Find("R"), value));
    QCOMPARE(memory.ReadWord(0x100), 0x81020384U);
}

void tst_NodeEvaluator::SetInteger_OneField_OthersKeepTheirBits()
{
    QString error;
    NodeMap map;
    QVERIFY(map.Parse(Description(Register("R", "MaskedIntReg",
                                           "<LSB>15</LSB><MSB>8</MSB><Endianess>BigEndian</Endianess>")),
                      &error));
    RegisterMemory memory;
    memory.WriteWord(0x100, 0xFFFFFFFF);
    MemoryAccess access(&memory);
    NodeEvaluator evaluator(map, &access);

    QVERIFY(evaluator.SetInteger(map.Find("R"), 0x12));

    QCOMPARE(memory.ReadWord(0x100), 0xFF12FFFFU);
}

void tst_NodeEvaluator::Float_ThroughAConverter_GoesThereAndBack()
{
    QString error;
    NodeMap map;
    QVERIFY(map.Parse(Description(Register("R", "IntReg", "<Endianess>BigEndian</Endianess>") +
                                  "<Converter Name=\"C\"><FormulaTo>FROM * 10</FormulaTo>"
                                  "<FormulaFrom>TO / 10</FormulaFrom><pValue>R</pValue></Converter>"
                                  "<Float Name=\"F\"><pValue>C</pValue></Float>"),
                      &error));
    RegisterMemory memory;
    MemoryAccess access(&memory);
    NodeEvaluator evaluator(map, &access);

    QVERIFY(evaluator.SetFloat(map.Find("F"), 12.5));

    QCOMPARE(memory.ReadWord(0x100), 125U);
    QCOMPARE(evaluator.Float(map.Find("F")).value_or(-1), 12.5);
}

void tst_NodeEvaluator::Address_OfPartsAndIndex_IsTheirSum()
{
    QString error;
    NodeMap map;
    QVERIFY(map.Parse(Description("<Integer Name=\"Base\"><Value>0x1000</Value></Integer>"
                                  "<Integer Name=\"Index\"><Value>3</Value></Integer>"
                                  "<IntReg Name=\"R\"><Address>0x100</Address><pAddress>Base</pAddress>"
                                  "<pIndex Offset=\"8\">Index</pIndex><Length>4</Length></IntReg>"),
                      &error));
    RegisterMemory memory;
    MemoryAccess access(&memory);
    NodeEvaluator evaluator(map, &access);

    const auto field = evaluator.Field(map.Find("R"));

    QVERIFY(field.has_value());
    QCOMPARE(field->address, 0x1118U);
}

void tst_NodeEvaluator::Integer_PointerInACircle_HasNoValue()
{
    QString error;
    NodeMap map;
    QVERIFY(map.Parse(Description("<Integer Name=\"A\"><pValue>B</pValue></Integer>"
                                  "<Integer Name=\"B\"><pValue>A</pValue></Integer>"),
                      &error));
    RegisterMemory memory;
    MemoryAccess access(&memory);
    NodeEvaluator evaluator(map, &access);

    QVERIFY(!evaluator.Integer(map.Find("A")).has_value());
    QVERIFY(!evaluator.SetInteger(map.Find("A"), 1));
    QCOMPARE(evaluator.RegisterOf(map.Find("A")), -1);
}

void tst_NodeEvaluator::Integer_ExpressionThatNamesItself_HasNoValue()
{
    QString error;
    NodeMap map;
    QVERIFY(map.Parse(Description("<IntSwissKnife Name=\"A\"><Expression Name=\"E\">E + 1</Expression>"
                                  "<Formula>E</Formula></IntSwissKnife>"),
                      &error));
    RegisterMemory memory;
    MemoryAccess access(&memory);
    NodeEvaluator evaluator(map, &access);

    QVERIFY(!evaluator.Integer(map.Find("A")).has_value());
}

void tst_NodeEvaluator::Integer_DanglingPointer_HasNoValue()
{
    QString error;
    NodeMap map;
    QVERIFY(map.Parse(Description("<Integer Name=\"A\"><pValue>Nowhere</pValue></Integer>"), &error));
    RegisterMemory memory;
    MemoryAccess access(&memory);
    NodeEvaluator evaluator(map, &access);

    QVERIFY(!evaluator.Integer(map.Find("A")).has_value());
}

void tst_NodeEvaluator::Integer_RegisterOfImpossibleLength_HasNoValue_data()
{
    QTest::addColumn<QByteArray>("length");
    QTest::newRow("negative") << QByteArray("-4");
    QTest::newRow("zero") << QByteArray("0");
    QTest::newRow("nine") << QByteArray("9");
    QTest::newRow("two gigabytes") << QByteArray("2147483648");
    QTest::newRow("no number") << QByteArray("four");
}

void tst_NodeEvaluator::Integer_RegisterOfImpossibleLength_HasNoValue()
{
    QFETCH(QByteArray, length);
    QString error;
    NodeMap map;
    QVERIFY(map.Parse(
        Description("<IntReg Name=\"R\"><Address>0</Address><Length>" + length + "</Length></IntReg>"),
        &error));
    RegisterMemory memory;
    MemoryAccess access(&memory);
    NodeEvaluator evaluator(map, &access);

    QVERIFY(!evaluator.Integer(map.Find("R")).has_value());
}

QTEST_APPLESS_MAIN(tst_NodeEvaluator)
#include "tst_nodeevaluator.moc"
