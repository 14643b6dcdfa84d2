#include <QHeaderView>
#include <QHelpEvent>
#include <QSignalSpy>
#include <QToolTip>

#include "checktable.h"

class tst_TarnCustomTableWidgetInput : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Click_InBoxCell_TogglesAndSignalsOnce();
    void Click_BesideTheSquareInTheCell_Toggles();
    void Click_OtherColumn_ChoosesRowOnly();
    void Click_DisabledBox_Nothing();
    void Click_PressedInOneCellReleasedInAnother_Nothing();
    void Click_RightButton_Nothing();
    void DoubleClick_InBoxCell_TogglesTwice();
    void DoubleClick_EmptyRow_CurrentRowStays();
    void Click_EmptyRow_CurrentRowStays();
    void Click_TableDisabled_Nothing();
    void Click_SlotRemovesTheRow_Survives();
    void Click_SlotUndoesTheTick_StaysUnticked();
    void Click_LeftPressedRightReleased_Nothing();
    void Click_ReleasedTwice_TogglesOnce();
    void Click_AnywhereInTheBoxCell_TogglesOnce();
    void Drag_OverOtherRows_ChoosesNone();
    void ToolTip_DetailTip_ShownWithLineBreaksEscaped();
    void ToolTip_TextCutOff_ShowsWholeText();
    void ToolTip_TextFits_None();
    void ToolTip_TextFitsExactly_None();
    void ToolTip_OverACellWithoutOne_ClosesTheOpenOne();
    void ToolTip_BelowTheRows_None();
    void Paint_DisabledBox_LooksDifferent();
    void Paint_SelectedRowWithColouredText_KeepsTheColour();

private:
    QString TipShownAt(int nRow, int nColumn);

    CheckTable *m_pTable = nullptr;
};

void tst_TarnCustomTableWidgetInput::init()
{
    m_pTable = new CheckTable;
    QVERIFY(QTest::qWaitForWindowExposed(m_pTable));
}

void tst_TarnCustomTableWidgetInput::cleanup()
{
    QToolTip::hideText();
    delete m_pTable;
}

QString tst_TarnCustomTableWidgetInput::TipShownAt(int nRow, int nColumn)
{
    const QPoint pos = m_pTable->Centre(nRow, nColumn);
    QHelpEvent help(QEvent::ToolTip, pos, m_pTable->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(m_pTable->viewport(), &help);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
}

// ---- Mouse -------------------------------------------------------------------------------------------

void tst_TarnCustomTableWidgetInput::Click_InBoxCell_TogglesAndSignalsOnce()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(1, 0));
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Checked);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0), QVariantList({1, 0}));
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(1, 0));
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Unchecked);
    QCOMPARE(changed.count(), 2);
}

void tst_TarnCustomTableWidgetInput::Click_BesideTheSquareInTheCell_Toggles()
{
    const QRect cell = m_pTable->visualRect(m_pTable->model()->index(0, 0));
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, cell.topLeft() + QPoint(2, 2));
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Checked);
}

void tst_TarnCustomTableWidgetInput::Click_OtherColumn_ChoosesRowOnly()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(1, 1));
    QCOMPARE(m_pTable->currentRow(), 1);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidgetInput::Click_DisabledBox_Nothing()
{
    m_pTable->setCheckBoxEnable(0, 0, false);
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(0, 0));
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidgetInput::Click_PressedInOneCellReleasedInAnother_Nothing()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mousePress(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(0, 0));
    QTest::mouseRelease(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(1, 0));
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidgetInput::Click_RightButton_Nothing()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mouseClick(m_pTable->viewport(), Qt::RightButton, {}, m_pTable->Centre(0, 0));
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidgetInput::DoubleClick_InBoxCell_TogglesTwice()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(0, 0));
    // The second press of a double click comes as an event of its own kind.
    QMouseEvent second(QEvent::MouseButtonDblClick, m_pTable->Centre(0, 0), Qt::LeftButton, Qt::LeftButton,
                       {});
    QApplication::sendEvent(m_pTable->viewport(), &second);
    QTest::mouseRelease(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(0, 0));
    QCOMPARE(changed.count(), 2);
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidgetInput::DoubleClick_EmptyRow_CurrentRowStays()
{
    m_pTable->selectRow(0);
    QTest::mouseDClick(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(4, 1));
    QCOMPARE(m_pTable->currentRow(), 0);
}

void tst_TarnCustomTableWidgetInput::Click_EmptyRow_CurrentRowStays()
{
    m_pTable->selectRow(0);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(4, 1));
    QCOMPARE(m_pTable->currentRow(), 0);
    QVERIFY(!m_pTable->selectionModel()->isRowSelected(4, QModelIndex()));
}

void tst_TarnCustomTableWidgetInput::Click_TableDisabled_Nothing()
{
    m_pTable->setDisabled(true);
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(0, 0));
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidgetInput::Click_SlotRemovesTheRow_Survives()
{
    connect(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged, m_pTable,
            [this](int nRow) { m_pTable->removeRow(nRow); });
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(1, 0));
    QCOMPARE(m_pTable->item(1, 1)->text(), QString("a"));
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidgetInput::Click_SlotUndoesTheTick_StaysUnticked()
{
    connect(
        m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged, m_pTable,
        [this](int nRow, int nColumn) { m_pTable->setCellCheckState(nRow, nColumn, Qt::Unchecked, false); });
    QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(1, 0));
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidgetInput::Click_LeftPressedRightReleased_Nothing()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mousePress(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(0, 0));
    QTest::mouseRelease(m_pTable->viewport(), Qt::RightButton, {}, m_pTable->Centre(0, 0));
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidgetInput::Click_ReleasedTwice_TogglesOnce()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::mousePress(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(0, 0));
    QTest::mouseRelease(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(0, 0));
    QTest::mouseRelease(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(0, 0));
    QCOMPARE(changed.count(), 1);
}

// Wherever the style would draw a box of its own.
void tst_TarnCustomTableWidgetInput::Click_AnywhereInTheBoxCell_TogglesOnce()
{
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    const QRect cell = m_pTable->visualRect(m_pTable->model()->index(0, 0));
    int nClicks = 0;
    for (int x = cell.left(); x <= cell.right(); ++x) {
        QTest::mouseClick(m_pTable->viewport(), Qt::LeftButton, {}, QPoint(x, cell.center().y()));
        QCOMPARE(changed.count(), ++nClicks);
        QCOMPARE(m_pTable->cellCheckState(0, 0), nClicks % 2 ? Qt::Checked : Qt::Unchecked);
    }
}

// ---- What is shown -----------------------------------------------------------------------------------

void tst_TarnCustomTableWidgetInput::ToolTip_DetailTip_ShownWithLineBreaksEscaped()
{
    m_pTable->setDetailTip(0, 2, "Reasons :\r\n<none> & more");
    const QString tip = TipShownAt(0, 2);
    QVERIFY2(tip.contains("Reasons :\n&lt;none&gt; &amp; more"), qPrintable(tip));
}

void tst_TarnCustomTableWidgetInput::ToolTip_TextCutOff_ShowsWholeText()
{
    const QString text = QString("a long text ").repeated(10);
    m_pTable->item(0, 1)->setText(text);
    QVERIFY(TipShownAt(0, 1).contains(text));
}

void tst_TarnCustomTableWidgetInput::ToolTip_TextFits_None()
{
    QCOMPARE(TipShownAt(0, 1), QString());
}

// The cell's text begins three pixels to the right of where the style puts it.
void tst_TarnCustomTableWidgetInput::ToolTip_TextFitsExactly_None()
{
    m_pTable->item(0, 1)->setText("just about fits");
    QStyleOptionViewItem option;
    option.initFrom(m_pTable);
    option.font = m_pTable->font();
    const QModelIndex index = m_pTable->model()->index(0, 1);
    const int nNeeded = m_pTable->itemDelegate()->sizeHint(option, index).width() + 3;
    const int nGrid = m_pTable->columnWidth(1) - m_pTable->visualRect(index).width();
    m_pTable->setColumnWidth(1, nNeeded + nGrid);
    QCOMPARE(TipShownAt(0, 1), QString());
    m_pTable->setColumnWidth(1, nNeeded + nGrid - 1);
    QVERIFY(TipShownAt(0, 1).contains("just about fits"));
}

void tst_TarnCustomTableWidgetInput::ToolTip_OverACellWithoutOne_ClosesTheOpenOne()
{
    m_pTable->setDetailTip(0, 2, "of another cell");
    QVERIFY(!TipShownAt(0, 2).isEmpty());
    const QPoint pos = m_pTable->Centre(1, 2);
    QHelpEvent help(QEvent::ToolTip, pos, m_pTable->viewport()->mapToGlobal(pos));
    QVERIFY(QApplication::sendEvent(m_pTable->viewport(), &help));
    QTRY_VERIFY(!QToolTip::isVisible());
}

void tst_TarnCustomTableWidgetInput::ToolTip_BelowTheRows_None()
{
    m_pTable->setRowCount(1);
    const QPoint pos(20, m_pTable->viewport()->height() - 5);
    QHelpEvent help(QEvent::ToolTip, pos, m_pTable->viewport()->mapToGlobal(pos));
    QVERIFY(QApplication::sendEvent(m_pTable->viewport(), &help));
    QVERIFY(!QToolTip::isVisible());
}

void tst_TarnCustomTableWidgetInput::Paint_DisabledBox_LooksDifferent()
{
    m_pTable->setCellCheckState(0, 0, Qt::Checked);
    const QImage enabled = m_pTable->CellImage(0, 0);
    m_pTable->setCheckBoxEnable(0, 0, false);
    QVERIFY(m_pTable->CellImage(0, 0) != enabled);
}

void tst_TarnCustomTableWidgetInput::Paint_SelectedRowWithColouredText_KeepsTheColour()
{
    m_pTable->item(0, 1)->setText(QString(20, QChar(0x2588))); // solid blocks
    m_pTable->item(0, 1)->setForeground(QBrush(Qt::red));
    m_pTable->selectRow(0);
    const QImage cell = m_pTable->CellImage(0, 1);
    int nRed = 0;
    for (int x = 0; x < cell.width(); ++x)
        nRed += cell.pixelColor(x, cell.height() / 2) == QColor(Qt::red) ? 1 : 0;
    QVERIFY2(nRed > 20, qPrintable(QString::number(nRed)));
}

void tst_TarnCustomTableWidgetInput::Drag_OverOtherRows_ChoosesNone()
{
    QTest::mousePress(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(0, 1));
    QMouseEvent move(QEvent::MouseMove, m_pTable->Centre(2, 1), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(m_pTable->viewport(), &move);
    QTest::mouseRelease(m_pTable->viewport(), Qt::LeftButton, {}, m_pTable->Centre(2, 1));
    QCOMPARE(m_pTable->currentRow(), 0);
    QVERIFY(!m_pTable->selectionModel()->isRowSelected(2, QModelIndex()));
}

QTEST_MAIN(tst_TarnCustomTableWidgetInput)
#include "tst_tarncustomtablewidget_input.moc"
