#include <QtTest>

#include <ui/csorttableitem.h>

class tst_CSortTableItem : public QObject
{
    Q_OBJECT

private slots:
    void Type_Constructed_IsZero() { QCOMPARE(CSortTableItem().type(), 0); }
    void LessThan_Codes_DecideBeforeTheTexts();
    void LessThan_NoCode_ComparesTextsByCodeUnit();
    void LessThan_OnlyTheOtherHasACode_ComparesTexts();
    void LessThan_OnlyThisHasACode_TheOtherCountsAsZero();
    void LessThan_EqualCodes_NeitherComesFirst();
};

namespace {

/// An item with this text and, unless it is 0, this code.
void Fill(CSortTableItem &item, const QString &strText, int nCode = 0)
{
    item.setText(strText);
    if (nCode)
        item.setData(Qt::UserRole + 3, nCode);
}

} // namespace

void tst_CSortTableItem::LessThan_Codes_DecideBeforeTheTexts()
{
    CSortTableItem low;
    CSortTableItem high;
    Fill(low, "z", 1);
    Fill(high, "a", 3);
    QVERIFY(low < high);
    QVERIFY(!(high < low));
}

void tst_CSortTableItem::LessThan_NoCode_ComparesTextsByCodeUnit()
{
    CSortTableItem upper;
    CSortTableItem lower;
    Fill(upper, "Z");
    Fill(lower, "a");
    QVERIFY(upper < lower); // upper case comes first
    QVERIFY(!(lower < upper));
    QVERIFY(!(lower < lower));
}

void tst_CSortTableItem::LessThan_OnlyTheOtherHasACode_ComparesTexts()
{
    CSortTableItem plain;
    CSortTableItem coded;
    Fill(plain, "a");
    Fill(coded, "b", 1);
    QVERIFY(plain < coded);
}

void tst_CSortTableItem::LessThan_OnlyThisHasACode_TheOtherCountsAsZero()
{
    CSortTableItem plain;
    CSortTableItem coded;
    Fill(plain, "b");
    Fill(coded, "a", 1);
    QVERIFY(!(coded < plain));
}

void tst_CSortTableItem::LessThan_EqualCodes_NeitherComesFirst()
{
    CSortTableItem one;
    CSortTableItem other;
    Fill(one, "a", 2);
    Fill(other, "b", 2);
    QVERIFY(!(one < other));
    QVERIFY(!(other < one));
}

QTEST_APPLESS_MAIN(tst_CSortTableItem)
#include "tst_csorttableitem.moc"
