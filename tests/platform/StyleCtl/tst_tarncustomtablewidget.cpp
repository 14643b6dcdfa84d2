#include <QApplication>
#include <QHeaderView>
#include <QSignalSpy>

#include "checktable.h"

class tst_TarnCustomTableWidget : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void SetCheckBoxVisible_CellWithItem_BoxIsUntickedAndEnabled();
    void SetCheckBoxVisible_CellWithoutItem_MakesOne();
    void SetCheckBoxVisible_HiddenAgain_BoxAndStateGo();
    void SetCheckBoxVisible_ShownTwice_KeepsState();
    void SetCheckBoxVisible_OutOfRange_Ignored();
    void SetCheckBoxVisible_DisabledBoxShownAgain_IsEnabled();
    void SetCellCheckState_NoBox_NothingAndNoSignal();
    void SetCellCheckState_DisabledBox_ClearsButDoesNotTick();
    void SetCellCheckState_EmitSignal_SignalledOnceAlsoWithoutChange();
    void SetCellCheckState_WithoutEmit_NoSignal();
    void SetCheckBoxEnable_TickedBox_KeepsState();
    void SetCheckBoxEnable_NoBox_StaysFalse();
    void SetCheckBoxEnable_SameTwice_StaysSo();
    void SetDetailTip_CellWithoutItem_MakesNoItem();
    void SetDetailTip_EmptyText_RemovesTip();
    void SetDetailTip_EmptyText_LeavesNoData();
    void SortItems_TickedDisabledAndTipped_TravelWithTheirRows();
    void SortItems_HiddenRow_StaysHiddenAtItsNewPlace();
    void RemoveRow_TickedRow_OthersKeepTheirs();
    void Construct_Table_ChoosesOneRowAndEditsNothing();
    void Construct_WithoutSize_HasNoRowsAndColumns();
    void Language_Changed_TextsAreSetAnew();
    void ConnetSectionResized_OnTwiceThenOff_ListensOnceThenNot();

private:
    CheckTable *m_pTable = nullptr;
};

namespace {

/// Tells how many listen to the resizing of its sections.
class CountingHeader : public QHeaderView
{
public:
    using QHeaderView::QHeaderView;
    int Listeners() const { return receivers(SIGNAL(sectionResized(int, int, int))); }
};

} // namespace

void tst_TarnCustomTableWidget::init()
{
    m_pTable = new CheckTable;
    QVERIFY(QTest::qWaitForWindowExposed(m_pTable));
}

void tst_TarnCustomTableWidget::cleanup()
{
    delete m_pTable;
}

void tst_TarnCustomTableWidget::SetCheckBoxVisible_CellWithItem_BoxIsUntickedAndEnabled()
{
    QVERIFY(m_pTable->IsHaveCheckBox(0, 0));
    QVERIFY(m_pTable->cellCheckEnable(0, 0));
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidget::SetCheckBoxVisible_CellWithoutItem_MakesOne()
{
    QVERIFY(!m_pTable->item(4, 0));
    m_pTable->setCheckBoxVisible(4, 0, false);
    QVERIFY(!m_pTable->item(4, 0));
    m_pTable->setCheckBoxVisible(4, 0, true);
    QVERIFY(m_pTable->IsHaveCheckBox(4, 0));
}

void tst_TarnCustomTableWidget::SetCheckBoxVisible_HiddenAgain_BoxAndStateGo()
{
    m_pTable->setCellCheckState(0, 0, Qt::Checked);
    m_pTable->setCheckBoxVisible(0, 0, false);
    QVERIFY(!m_pTable->IsHaveCheckBox(0, 0));
    QVERIFY(!m_pTable->cellCheckEnable(0, 0));
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidget::SetCheckBoxVisible_ShownTwice_KeepsState()
{
    m_pTable->setCellCheckState(0, 0, Qt::Checked);
    m_pTable->setCheckBoxVisible(0, 0, true);
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Checked);
}

void tst_TarnCustomTableWidget::SetCheckBoxVisible_OutOfRange_Ignored()
{
    for (const QPoint &cell : {QPoint(-1, 0), QPoint(0, -1), QPoint(99, 0), QPoint(0, 99)}) {
        m_pTable->setCheckBoxVisible(cell.x(), cell.y(), true);
        m_pTable->setCheckBoxEnable(cell.x(), cell.y(), false);
        m_pTable->setCellCheckState(cell.x(), cell.y(), Qt::Checked, true);
        m_pTable->setDetailTip(cell.x(), cell.y(), "tip");
        QVERIFY(!m_pTable->IsHaveCheckBox(cell.x(), cell.y()));
        QVERIFY(!m_pTable->cellCheckEnable(cell.x(), cell.y()));
        QCOMPARE(m_pTable->cellCheckState(cell.x(), cell.y()), Qt::Unchecked);
        QCOMPARE(m_pTable->detailTip(cell.x(), cell.y()), QString());
    }
}

void tst_TarnCustomTableWidget::SetCheckBoxVisible_DisabledBoxShownAgain_IsEnabled()
{
    m_pTable->setCheckBoxVisible(0, 0, false);
    m_pTable->item(0, 0)->setFlags(Qt::ItemIsEnabled);
    m_pTable->setCheckBoxVisible(0, 0, true);
    QVERIFY(m_pTable->cellCheckEnable(0, 0));
}

void tst_TarnCustomTableWidget::SetCellCheckState_NoBox_NothingAndNoSignal()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    m_pTable->setCellCheckState(0, 1, Qt::Checked, true);
    m_pTable->setCellCheckState(4, 0, Qt::Checked, true);
    QVERIFY(!m_pTable->IsHaveCheckBox(0, 1));
    QCOMPARE(m_pTable->cellCheckState(4, 0), Qt::Unchecked);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidget::SetCellCheckState_DisabledBox_ClearsButDoesNotTick()
{
    m_pTable->setCellCheckState(1, 0, Qt::Checked);
    m_pTable->setCheckBoxEnable(0, 0, false);
    m_pTable->setCheckBoxEnable(1, 0, false);
    m_pTable->setCellCheckState(0, 0, Qt::Checked);
    m_pTable->setCellCheckState(1, 0, Qt::Unchecked);
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidget::SetCellCheckState_EmitSignal_SignalledOnceAlsoWithoutChange()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    m_pTable->setCellCheckState(1, 0, Qt::Checked, true);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0), QVariantList({1, 0}));
    m_pTable->setCellCheckState(1, 0, Qt::Checked, true);
    QCOMPARE(changed.count(), 2);
}

void tst_TarnCustomTableWidget::SetCellCheckState_WithoutEmit_NoSignal()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    m_pTable->setCellCheckState(1, 0, Qt::Checked, false);
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Checked);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidget::SetCheckBoxEnable_TickedBox_KeepsState()
{
    m_pTable->setCellCheckState(0, 0, Qt::Checked);
    m_pTable->setCheckBoxEnable(0, 0, false);
    QVERIFY(!m_pTable->cellCheckEnable(0, 0));
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Checked);
    m_pTable->setCheckBoxEnable(0, 0, true);
    QVERIFY(m_pTable->cellCheckEnable(0, 0));
}

void tst_TarnCustomTableWidget::SetCheckBoxEnable_NoBox_StaysFalse()
{
    m_pTable->setCheckBoxEnable(0, 1, true);
    QVERIFY(!m_pTable->cellCheckEnable(0, 1));
}

void tst_TarnCustomTableWidget::SetCheckBoxEnable_SameTwice_StaysSo()
{
    m_pTable->setCheckBoxEnable(0, 0, true);
    QVERIFY(m_pTable->cellCheckEnable(0, 0));
    m_pTable->setCheckBoxEnable(0, 0, false);
    m_pTable->setCheckBoxEnable(0, 0, false);
    QVERIFY(!m_pTable->cellCheckEnable(0, 0));
}

void tst_TarnCustomTableWidget::SetDetailTip_CellWithoutItem_MakesNoItem()
{
    m_pTable->setDetailTip(4, 2, "tip");
    QVERIFY(!m_pTable->item(4, 2));
}

void tst_TarnCustomTableWidget::SetDetailTip_EmptyText_RemovesTip()
{
    m_pTable->setDetailTip(0, 2, "one\r\ntwo");
    QCOMPARE(m_pTable->detailTip(0, 2), QString("one\r\ntwo"));
    m_pTable->setDetailTip(0, 2, QString());
    QCOMPARE(m_pTable->detailTip(0, 2), QString());
}

void tst_TarnCustomTableWidget::SetDetailTip_EmptyText_LeavesNoData()
{
    m_pTable->setDetailTip(0, 2, "tip");
    m_pTable->setDetailTip(0, 2, QString());
    QVERIFY(!m_pTable->item(0, 2)->data(Qt::ToolTipRole).isValid());
}

void tst_TarnCustomTableWidget::SortItems_TickedDisabledAndTipped_TravelWithTheirRows()
{
    m_pTable->setCellCheckState(0, 0, Qt::Checked); // b
    m_pTable->setCheckBoxEnable(1, 0, false);       // c
    m_pTable->setDetailTip(2, 2, "of a");
    m_pTable->sortItems(1, Qt::AscendingOrder);
    QCOMPARE(m_pTable->item(0, 1)->text(), QString("a"));
    QCOMPARE(m_pTable->detailTip(0, 2), QString("of a"));
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Checked);
    QVERIFY(m_pTable->cellCheckEnable(1, 0));
    QVERIFY(!m_pTable->cellCheckEnable(2, 0));
    QVERIFY(!m_pTable->IsHaveCheckBox(3, 0));
}

void tst_TarnCustomTableWidget::SortItems_HiddenRow_StaysHiddenAtItsNewPlace()
{
    m_pTable->setRowHidden(1, true); // c
    m_pTable->sortItems(1, Qt::AscendingOrder);
    QVERIFY(!m_pTable->isRowHidden(0));
    QVERIFY(!m_pTable->isRowHidden(1));
    QVERIFY(m_pTable->isRowHidden(2));
    QCOMPARE(m_pTable->item(2, 1)->text(), QString("c"));
}

void tst_TarnCustomTableWidget::RemoveRow_TickedRow_OthersKeepTheirs()
{
    m_pTable->setCellCheckState(2, 0, Qt::Checked);
    m_pTable->removeRow(0);
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Checked);
}

void tst_TarnCustomTableWidget::Construct_Table_ChoosesOneRowAndEditsNothing()
{
    const TarnCustomTableWidget table(2, 3);
    QCOMPARE(table.rowCount(), 2);
    QCOMPARE(table.columnCount(), 3);
    QCOMPARE(table.objectName(), QString("TableWidget"));
    QCOMPARE(table.selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(table.selectionMode(), QAbstractItemView::SingleSelection);
    QCOMPARE(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(table.horizontalScrollMode(), QAbstractItemView::ScrollPerPixel);
    QCOMPARE(table.verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
    QVERIFY(!table.tabKeyNavigation());
    QVERIFY(!table.wordWrap());
    QVERIFY(table.verticalHeader()->isHidden());
    QVERIFY(table.viewport()->hasMouseTracking());
    QCOMPARE(table.palette().color(QPalette::Window), QColor(Qt::white));
    QCOMPARE(table.palette().color(QPalette::Text), QColor("#333333")); // whatever the desktop's is
    QVERIFY(table.accessibleDescription().contains("Space"));
}

void tst_TarnCustomTableWidget::Construct_WithoutSize_HasNoRowsAndColumns()
{
    const TarnCustomTableWidget table;
    QCOMPARE(table.rowCount(), 0);
    QCOMPARE(table.columnCount(), 0);
}

void tst_TarnCustomTableWidget::Language_Changed_TextsAreSetAnew()
{
    m_pTable->setAccessibleDescription("in another language");
    QEvent change(QEvent::LanguageChange);
    QApplication::sendEvent(m_pTable, &change);
    QVERIFY(m_pTable->accessibleDescription().contains("Space"));
}

void tst_TarnCustomTableWidget::ConnetSectionResized_OnTwiceThenOff_ListensOnceThenNot()
{
    auto *pHeader = new CountingHeader(Qt::Horizontal, m_pTable);
    m_pTable->setHorizontalHeader(pHeader);
    const int nBefore = pHeader->Listeners();
    m_pTable->connetSectionResized(true);
    QCOMPARE(pHeader->Listeners(), nBefore + 1);
    m_pTable->connetSectionResized(true);
    QCOMPARE(pHeader->Listeners(), nBefore + 1);
    m_pTable->connetSectionResized(false);
    QCOMPARE(pHeader->Listeners(), nBefore);
}

QTEST_MAIN(tst_TarnCustomTableWidget)
#include "tst_tarncustomtablewidget.moc"
