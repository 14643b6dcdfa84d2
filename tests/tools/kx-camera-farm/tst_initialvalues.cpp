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

/// What the registers of a camera hold when it is first switched on.
class tst_InitialValues : public QObject
{
    Q_OBJECT

private slots:
    void FillInitialValues_EnumerationWithoutZero_HasAnEntry();
    void FillInitialValues_NumberBelowItsMinimum_HasTheMinimum();
    void FillInitialValues_InquiryRegister_FeatureExists();
};

void tst_InitialValues::FillInitialValues_EnumerationWithoutZero_HasAnEntry()
{
    QString error;
    NodeMap map;
    QVERIFY(map.Parse(
        Description(Register("R", "IntReg", "") +
                    "<Enumeration Name=\"E\"><EnumEntry Name=\"A\"><Value>5</Value></EnumEntry>"
                    "<EnumEntry Name=\"B\"><Value>9</Value></EnumEntry><pValue>R</pValue></Enumeration>"),
        &error));
    RegisterMemory memory;

    FillInitialValues(map, &memory, true);

    QCOMPARE(memory.ReadWord(0x100), 0x05000000U);
}

void tst_InitialValues::FillInitialValues_NumberBelowItsMinimum_HasTheMinimum()
{
    QString error;
    NodeMap map;
    QVERIFY(
        map.Parse(Description(Register("R", "IntReg", "<Endianess>BigEndian</Endianess>") +
                              "<Integer Name=\"I\"><pValue>R</pValue><Min>16</Min><Max>99</Max></Integer>"),
                  &error));
    RegisterMemory memory;

    FillInitialValues(map, &memory, true);

    QCOMPARE(memory.ReadWord(0x100), 16U);
}

void tst_InitialValues::FillInitialValues_InquiryRegister_FeatureExists()
{
    QString error;
    NodeMap map;
    QVERIFY(map.Parse(
        Description(Register("Inquiry", "IntReg", "<AccessMode>RO</AccessMode>") +
                    "<IntSwissKnife Name=\"K\"><pVariable Name=\"Q\">Inquiry</pVariable>"
                    "<Formula>(Q >> 3) &amp; 1</Formula></IntSwissKnife>"
                    "<Integer Name=\"I\"><pIsImplemented>K</pIsImplemented><Value>1</Value></Integer>"),
        &error));
    RegisterMemory memory;
    MemoryAccess access(&memory);
    NodeEvaluator evaluator(map, &access);
    QVERIFY(!evaluator.Condition(map.Find("I"), "pIsImplemented", true));

    FillInitialValues(map, &memory, true);

    QVERIFY(evaluator.Condition(map.Find("I"), "pIsImplemented", false));
}

QTEST_APPLESS_MAIN(tst_InitialValues)
#include "tst_initialvalues.moc"
