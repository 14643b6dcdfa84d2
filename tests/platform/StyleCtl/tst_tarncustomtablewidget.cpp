#include <QHeaderView>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomtablewidget.h>

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
    void SetCellCheckState_NoBox_NothingAndNoSignal();
    void SetCellCheckState_DisabledBox_ClearsButDoesNotTick();
    void SetCellCheckState_EmitSignal_SignalledOnceAlsoWithoutChange();
    void SetCellCheckState_WithoutEmit_NoSignal();
    void SetCheckBoxEnable_TickedBox_KeepsState();
    void SetCheckBoxEnable_NoBox_StaysFalse();
    void SetDetailTip_CellWithoutItem_MakesNoItem();
    void SetDetailTip_EmptyText_RemovesTip();
    void SortItems_TickedDisabledAndTipped_TravelWithTheirRows();
    void SortItems_HiddenRow_StaysHiddenAtItsNewPlace();
    void RemoveRow_TickedRow_OthersKeepTheirs();

    void Click_InBoxCell_TogglesAndSignalsOnce();
    void Click_BesideTheSquareInTheCell_Toggles();
    void Click_OtherColumn_ChoosesRowOnly();
    void Click_DisabledBox_Nothing();
    void Click_PressedInOneCellReleasedInAnother_Nothing();
    void Click_RightButton_Nothing();
    void DoubleClick_InBoxCell_TogglesTwice();
    void Click_EmptyRow_CurrentRowStays();
    void Click_TableDisabled_Nothing();
    void Click_SlotRemovesTheRow_Survives();
    void Click_SlotUndoesTheTick_StaysUnticked();

    void KeySpace_RowWithBox_TogglesAndSignalsOnce();
    void KeySpace_DisabledBox_Nothing();
    void KeySpace_CurrentRowHidden_Nothing();
    void KeySpace_NoRows_Nothing();
    void KeyEnd_EmptyRowsBelow_StopsAtLastFilledRow();
    void KeyHome_FirstRowHidden_GoesToFirstVisible();
    void KeyDown_LastFilledRow_Stays();
    void KeyPageDown_EmptyRowsBelow_StopsAtLastFilledRow();
    void KeyCtrlA_CheckHeader_TicksHeaderAndSignalsOnce();
    void KeyCtrlShiftA_CheckHeader_ClearsHeader();
    void KeyCtrlA_PlainHeader_NothingTicked();

    void ToolTip_DetailTip_ShownWithLineBreaksEscaped();
    void ToolTip_TextCutOff_ShowsWholeText();
    void ToolTip_TextFits_None();
    void Paint_DisabledBox_LooksDifferent();
    void Paint_SelectedRowWithColouredText_KeepsTheColour();

private:
    void AddRow(const QString &name);
    QPoint Centre(int nRow, int nColumn) const;
    QImage CellImage(int nRow, int nColumn) const;
    QString TipShownAt(int nRow, int nColumn);

    TarnCustomTableWidget *m_pTable = nullptr;
    TarnCustomCheckHeaderView *m_pHeader = nullptr;
};

void tst_TarnCustomTableWidget::init()
{
    m_pTable = new TarnCustomTableWidget;
    m_pHeader = new TarnCustomCheckHeaderView(Qt::Horizontal, m_pTable);
    m_pHeader->setCheckBoxVisible(0, true);
    m_pTable->setHorizontalHeader(m_pHeader);
    m_pTable->setColumnCount(3);
    m_pTable->setColumnWidth(0, 38);
    m_pTable->setColumnWidth(1, 150);
    m_pTable->setColumnWidth(2, 150);
    for (const char *name : {"b", "c", "a"})
        AddRow(QLatin1String(name));
    for (int i = 0; i < 3; ++i)
        m_pTable->insertRow(3); // without items
    m_pTable->resize(500, 300);
    m_pTable->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pTable));
}

void tst_TarnCustomTableWidget::cleanup()
{
    QToolTip::hideText();
    delete m_pTable;
}

void tst_TarnCustomTableWidget::AddRow(const QString &name)
{
    const int nRow = m_pTable->rowCount();
    m_pTable->insertRow(nRow);
    for (int nColumn = 0; nColumn < 3; ++nColumn)
        m_pTable->setItem(nRow, nColumn, new QTableWidgetItem);
    m_pTable->item(nRow, 1)->setText(name);
    m_pTable->setCheckBoxVisible(nRow, 0, true);
}

QPoint tst_TarnCustomTableWidget::Centre(int nRow, int nColumn) const
{
    return m_pTable->visualRect(m_pTable->model()->index(nRow, nColumn)).center();
}

QImage tst_TarnCustomTableWidget::CellImage(int nRow, int nColumn) const
{
    const QRect cell = m_pTable->visualRect(m_pTable->model()->index(nRow, nColumn));
    return m_pTable->viewport()->grab(cell).toImage();
}

QString tst_TarnCustomTableWidget::TipShownAt(int nRow, int nColumn)
{
    const QPoint pos = Centre(nRow, nColumn);
    QHelpEvent help(QEvent::ToolTip, pos, m_pTable->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(m_pTable->viewport(), &help);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
}

// ---- Check boxes and tips ----------------------------------------------------------------------------

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

// ---- Mouse -------------------------------------------------------------------------------------------

void tst_TarnCustomTableWidget::Click_InBoxCell_TogglesAndSignalsOnce()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, Centre(1, 0));
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Checked);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0), QVariantList({1, 0}));
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, Centre(1, 0));
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Unchecked);
    QCOMPARE(changed.count(), 2);
}

void tst_TarnCustomTableWidget::Click_BesideTheSquareInTheCell_Toggles()
{
    const QRect cell = m_pTable->visualRect(m_pTable->model()->index(0, 0));
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, cell.topLeft() + QPoint(2, 2));
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Checked);
}

void tst_TarnCustomTableWidget::Click_OtherColumn_ChoosesRowOnly()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, Centre(1, 1));
    QCOMPARE(m_pTable->currentRow(), 1);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidget::Click_DisabledBox_Nothing()
{
    m_pTable->setCheckBoxEnable(0, 0, false);
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, Centre(0, 0));
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidget::Click_PressedInOneCellReleasedInAnother_Nothing()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mousePress(m_pTable->viewport(), Qt::LeftButton, {}, Centre(0, 0));
    QTest::mouseRelease(m_pTable->viewport(), Qt::LeftButton, {}, Centre(1, 0));
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidget::Click_RightButton_Nothing()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mouseClick(m_pTable->viewport(), Qt::RightButton, {}, Centre(0, 0));
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidget::DoubleClick_InBoxCell_TogglesTwice()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, Centre(0, 0));
    // The second press of a double click comes as an event of its own kind.
    QMouseEvent second(QEvent::MouseButtonDblClick, Centre(0, 0), Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(m_pTable->viewport(), &second);
    QTest::mouseRelease(m_pTable->viewport(), Qt::LeftButton, {}, Centre(0, 0));
    QCOMPARE(changed.count(), 2);
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidget::Click_EmptyRow_CurrentRowStays()
{
    m_pTable->selectRow(0);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, Centre(4, 1));
    QCOMPARE(m_pTable->currentRow(), 0);
    QVERIFY(!m_pTable->selectionModel()->isRowSelected(4, QModelIndex()));
}

void tst_TarnCustomTableWidget::Click_TableDisabled_Nothing()
{
    m_pTable->setDisabled(true);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, Centre(0, 0));
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidget::Click_SlotRemovesTheRow_Survives()
{
    connect(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged, m_pTable,
            [this](int nRow) { m_pTable->removeRow(nRow); });
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, Centre(1, 0));
    QCOMPARE(m_pTable->item(1, 1)->text(), QString("a"));
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidget::Click_SlotUndoesTheTick_StaysUnticked()
{
    connect(
        m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged, m_pTable,
        [this](int nRow, int nColumn) { m_pTable->setCellCheckState(nRow, nColumn, Qt::Unchecked, false); });
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, Centre(1, 0));
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Unchecked);
}

// ---- Keyboard ----------------------------------------------------------------------------------------

void tst_TarnCustomTableWidget::KeySpace_RowWithBox_TogglesAndSignalsOnce()
{
    m_pTable->setCurrentCell(2, 1);
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::keyClick(m_pTable, Qt::Key_Space);
    QCOMPARE(m_pTable->cellCheckState(2, 0), Qt::Checked);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0), QVariantList({2, 0}));
}

void tst_TarnCustomTableWidget::KeySpace_DisabledBox_Nothing()
{
    m_pTable->setCheckBoxEnable(0, 0, false);
    m_pTable->setCurrentCell(0, 0);
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::keyClick(m_pTable, Qt::Key_Space);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidget::KeySpace_CurrentRowHidden_Nothing()
{
    m_pTable->setCurrentCell(1, 0);
    m_pTable->setRowHidden(1, true);
    QTest::keyClick(m_pTable, Qt::Key_Space);
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidget::KeySpace_NoRows_Nothing()
{
    m_pTable->setRowCount(0);
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::keyClick(m_pTable, Qt::Key_Space);
    QTest::keyClick(m_pTable, Qt::Key_Down);
    QTest::keyClick(m_pTable, Qt::Key_End);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidget::KeyEnd_EmptyRowsBelow_StopsAtLastFilledRow()
{
    m_pTable->setCurrentCell(0, 0);
    QTest::keyClick(m_pTable, Qt::Key_End);
    QCOMPARE(m_pTable->currentRow(), 2);
}

void tst_TarnCustomTableWidget::KeyHome_FirstRowHidden_GoesToFirstVisible()
{
    m_pTable->setRowHidden(0, true);
    m_pTable->setCurrentCell(2, 0);
    QTest::keyClick(m_pTable, Qt::Key_Home);
    QCOMPARE(m_pTable->currentRow(), 1);
}

void tst_TarnCustomTableWidget::KeyDown_LastFilledRow_Stays()
{
    m_pTable->setCurrentCell(1, 0);
    QTest::keyClick(m_pTable, Qt::Key_Down);
    QTest::keyClick(m_pTable, Qt::Key_Down);
    QCOMPARE(m_pTable->currentRow(), 2);
}

void tst_TarnCustomTableWidget::KeyPageDown_EmptyRowsBelow_StopsAtLastFilledRow()
{
    m_pTable->setCurrentCell(0, 0);
    QTest::keyClick(m_pTable, Qt::Key_PageDown);
    QCOMPARE(m_pTable->currentRow(), 2);
}

void tst_TarnCustomTableWidget::KeyCtrlA_CheckHeader_TicksHeaderAndSignalsOnce()
{
    QSignalSpy changed(m_pHeader, &TarnCustomCheckHeaderView::SigCheckStateChange);
    QTest::keyClick(m_pTable, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(m_pHeader->checkState(0), Qt::Checked);
    QCOMPARE(changed.count(), 1);
}

void tst_TarnCustomTableWidget::KeyCtrlShiftA_CheckHeader_ClearsHeader()
{
    m_pHeader->setCheckState(0, Qt::Checked);
    QSignalSpy changed(m_pHeader, &TarnCustomCheckHeaderView::SigCheckStateChange);
    QTest::keyClick(m_pTable, Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_pHeader->checkState(0), Qt::Unchecked);
    QCOMPARE(changed.count(), 1);
}

void tst_TarnCustomTableWidget::KeyCtrlA_PlainHeader_NothingTicked()
{
    m_pTable->setHorizontalHeader(new QHeaderView(Qt::Horizontal, m_pTable));
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::keyClick(m_pTable, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
    QCOMPARE(changed.count(), 0);
}

// ---- What is shown -----------------------------------------------------------------------------------

void tst_TarnCustomTableWidget::ToolTip_DetailTip_ShownWithLineBreaksEscaped()
{
    m_pTable->setDetailTip(0, 2, "Reasons :\r\n<none> & more");
    const QString tip = TipShownAt(0, 2);
    QVERIFY2(tip.contains("Reasons :\n&lt;none&gt; &amp; more"), qPrintable(tip));
}

void tst_TarnCustomTableWidget::ToolTip_TextCutOff_ShowsWholeText()
{
    const QString text = QString("a long text ").repeated(10);
    m_pTable->item(0, 1)->setText(text);
    QVERIFY(TipShownAt(0, 1).contains(text));
}

void tst_TarnCustomTableWidget::ToolTip_TextFits_None()
{
    QCOMPARE(TipShownAt(0, 1), QString());
}

void tst_TarnCustomTableWidget::Paint_DisabledBox_LooksDifferent()
{
    m_pTable->setCellCheckState(0, 0, Qt::Checked);
    const QImage enabled = CellImage(0, 0);
    m_pTable->setCheckBoxEnable(0, 0, false);
    QVERIFY(CellImage(0, 0) != enabled);
}

void tst_TarnCustomTableWidget::Paint_SelectedRowWithColouredText_KeepsTheColour()
{
    m_pTable->item(0, 1)->setText(QString(20, QChar(0x2588))); // solid blocks
    m_pTable->item(0, 1)->setForeground(QBrush(Qt::red));
    m_pTable->selectRow(0);
    const QImage cell = CellImage(0, 1);
    int nRed = 0;
    for (int x = 0; x < cell.width(); ++x)
        nRed += cell.pixelColor(x, cell.height() / 2) == QColor(Qt::red) ? 1 : 0;
    QVERIFY2(nRed > 20, qPrintable(QString::number(nRed)));
}

QTEST_MAIN(tst_TarnCustomTableWidget)
#include "tst_tarncustomtablewidget.moc"
