#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalSpy>

#include "checktable.h"

/// What the keyboard does in a table.
class tst_TarnCustomTableWidgetKeys : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { delete m_pTable; }

    void KeySpace_RowWithBox_TogglesAndSignalsOnce();
    void KeySpace_DisabledBox_Nothing();
    void KeySpace_CurrentRowHidden_Nothing();
    void KeySpace_NoRows_Nothing();
    void KeySpace_HeldDown_TogglesOnce();
    void KeySpace_WithAModifierOrAnotherKey_Nothing();
    void KeySpace_TwoBoxes_TogglesTheFirst();
    void KeySpace_BoxInTheLastColumn_Toggles();
    void KeyEnd_EmptyRowsBelow_StopsAtLastFilledRow();
    void KeyEnd_LastFilledRowHidden_StopsAboveIt();
    void KeyEnd_NoEmptyRows_GoesToTheLast();
    void KeyHome_FirstRowHidden_GoesToFirstVisible();
    void KeyHome_AllRowsHidden_Stays();
    void KeyDown_LastFilledRow_Stays();
    void KeyDown_SomeRows_GoesToTheNext();
    void KeyPageDown_EmptyRowsBelow_StopsAtLastFilledRow();
    void KeyCtrlA_CheckHeader_TicksHeaderAndSignalsOnce();
    void KeyCtrlShiftA_CheckHeader_ClearsHeader();
    void KeyCtrlA_PlainHeader_NothingTicked();
    void KeyCtrlA_HeaderWithoutABox_IsNotTaken();
    void KeyUp_EmptyRowAbove_GoesToTheFilledOneAboveIt();
    void Focus_NoCurrentRow_ChoosesTheFirstVisible();
    void Focus_CurrentRow_Stays();
    void Focus_NoUsableRow_ChoosesNone();

private:
    bool Press(Qt::Key eKey, Qt::KeyboardModifiers modifiers = Qt::NoModifier, bool bRepeated = false);

    CheckTable *m_pTable = nullptr;
};

void tst_TarnCustomTableWidgetKeys::init()
{
    m_pTable = new CheckTable;
    QVERIFY(QTest::qWaitForWindowExposed(m_pTable));
}

/// Whether the table took the key.
bool tst_TarnCustomTableWidgetKeys::Press(Qt::Key eKey, Qt::KeyboardModifiers modifiers, bool bRepeated)
{
    QKeyEvent press(QEvent::KeyPress, eKey, modifiers, QString(), bRepeated);
    static_cast<QObject *>(m_pTable)->event(&press);
    return press.isAccepted();
}

void tst_TarnCustomTableWidgetKeys::KeySpace_RowWithBox_TogglesAndSignalsOnce()
{
    m_pTable->setCurrentCell(2, 1);
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::keyClick(m_pTable, Qt::Key_Space);
    QCOMPARE(m_pTable->cellCheckState(2, 0), Qt::Checked);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0), QVariantList({2, 0}));
}

void tst_TarnCustomTableWidgetKeys::KeySpace_DisabledBox_Nothing()
{
    m_pTable->setCheckBoxEnable(0, 0, false);
    m_pTable->setCurrentCell(0, 0);
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::keyClick(m_pTable, Qt::Key_Space);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidgetKeys::KeySpace_CurrentRowHidden_Nothing()
{
    m_pTable->setCurrentCell(1, 0);
    m_pTable->setRowHidden(1, true);
    QTest::keyClick(m_pTable, Qt::Key_Space);
    QCOMPARE(m_pTable->cellCheckState(1, 0), Qt::Unchecked);
}

void tst_TarnCustomTableWidgetKeys::KeySpace_NoRows_Nothing()
{
    m_pTable->setRowCount(0);
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::keyClick(m_pTable, Qt::Key_Space);
    QTest::keyClick(m_pTable, Qt::Key_Down);
    QTest::keyClick(m_pTable, Qt::Key_End);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidgetKeys::KeySpace_HeldDown_TogglesOnce()
{
    m_pTable->setCurrentCell(0, 0);
    QVERIFY(Press(Qt::Key_Space));
    QVERIFY(Press(Qt::Key_Space, Qt::NoModifier, true));
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Checked);
}

// The base class would tick on these without the signal, or look for a row whose text begins like them.
void tst_TarnCustomTableWidgetKeys::KeySpace_WithAModifierOrAnotherKey_Nothing()
{
    m_pTable->setCurrentCell(0, 0);
    for (Qt::KeyboardModifier eModifier : {Qt::ControlModifier, Qt::ShiftModifier, Qt::AltModifier}) {
        QVERIFY(!Press(Qt::Key_Space, eModifier));
        QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
        QCOMPARE(m_pTable->currentRow(), 0);
    }
    Press(Qt::Key_Select);
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
    Press(Qt::Key_Space, Qt::KeypadModifier); // a key, not a modifier
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Checked);
}

void tst_TarnCustomTableWidgetKeys::KeySpace_TwoBoxes_TogglesTheFirst()
{
    m_pTable->setCheckBoxVisible(0, 2, true);
    m_pTable->setCurrentCell(0, 2);
    QTest::keyClick(m_pTable, Qt::Key_Space);
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Checked);
    QCOMPARE(m_pTable->cellCheckState(0, 2), Qt::Unchecked);
}

void tst_TarnCustomTableWidgetKeys::KeySpace_BoxInTheLastColumn_Toggles()
{
    m_pTable->setCheckBoxVisible(1, 0, false);
    m_pTable->setCheckBoxVisible(1, 2, true);
    m_pTable->setCurrentCell(1, 0);
    QTest::keyClick(m_pTable, Qt::Key_Space);
    QCOMPARE(m_pTable->cellCheckState(1, 2), Qt::Checked);
}

void tst_TarnCustomTableWidgetKeys::KeyEnd_EmptyRowsBelow_StopsAtLastFilledRow()
{
    m_pTable->setCurrentCell(0, 0);
    QTest::keyClick(m_pTable, Qt::Key_End);
    QCOMPARE(m_pTable->currentRow(), 2);
}

void tst_TarnCustomTableWidgetKeys::KeyEnd_LastFilledRowHidden_StopsAboveIt()
{
    m_pTable->setRowHidden(2, true);
    m_pTable->setCurrentCell(0, 0);
    QTest::keyClick(m_pTable, Qt::Key_End);
    QCOMPARE(m_pTable->currentRow(), 1);
}

void tst_TarnCustomTableWidgetKeys::KeyEnd_NoEmptyRows_GoesToTheLast()
{
    m_pTable->setRowCount(3);
    m_pTable->setCurrentCell(0, 1);
    QTest::keyClick(m_pTable, Qt::Key_End);
    QCOMPARE(m_pTable->currentRow(), 2);
    QCOMPARE(m_pTable->currentColumn(), 1);
}

void tst_TarnCustomTableWidgetKeys::KeyHome_FirstRowHidden_GoesToFirstVisible()
{
    m_pTable->setRowHidden(0, true);
    m_pTable->setCurrentCell(2, 0);
    QTest::keyClick(m_pTable, Qt::Key_Home);
    QCOMPARE(m_pTable->currentRow(), 1);
}

void tst_TarnCustomTableWidgetKeys::KeyHome_AllRowsHidden_Stays()
{
    m_pTable->setCurrentCell(1, 0);
    for (int nRow = 0; nRow < 3; ++nRow)
        m_pTable->setRowHidden(nRow, true);
    QTest::keyClick(m_pTable, Qt::Key_Home);
    QTest::keyClick(m_pTable, Qt::Key_End);
    QCOMPARE(m_pTable->currentRow(), 1);
}

void tst_TarnCustomTableWidgetKeys::KeyDown_LastFilledRow_Stays()
{
    m_pTable->setCurrentCell(1, 0);
    QTest::keyClick(m_pTable, Qt::Key_Down);
    QTest::keyClick(m_pTable, Qt::Key_Down);
    QCOMPARE(m_pTable->currentRow(), 2);
}

void tst_TarnCustomTableWidgetKeys::KeyDown_SomeRows_GoesToTheNext()
{
    m_pTable->setCurrentCell(0, 0);
    QTest::keyClick(m_pTable, Qt::Key_Down);
    QCOMPARE(m_pTable->currentRow(), 1);
    QTest::keyClick(m_pTable, Qt::Key_Up);
    QCOMPARE(m_pTable->currentRow(), 0);
}

void tst_TarnCustomTableWidgetKeys::KeyPageDown_EmptyRowsBelow_StopsAtLastFilledRow()
{
    m_pTable->setCurrentCell(0, 0);
    QTest::keyClick(m_pTable, Qt::Key_PageDown);
    QCOMPARE(m_pTable->currentRow(), 2);
}

void tst_TarnCustomTableWidgetKeys::KeyCtrlA_CheckHeader_TicksHeaderAndSignalsOnce()
{
    QSignalSpy changed(m_pTable->Header(), &TarnCustomCheckHeaderView::SigCheckStateChange);
    QTest::keyClick(m_pTable, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(m_pTable->Header()->checkState(0), Qt::Checked);
    QCOMPARE(changed.count(), 1);
}

void tst_TarnCustomTableWidgetKeys::KeyCtrlShiftA_CheckHeader_ClearsHeader()
{
    m_pTable->Header()->setCheckState(0, Qt::Checked);
    QSignalSpy changed(m_pTable->Header(), &TarnCustomCheckHeaderView::SigCheckStateChange);
    QTest::keyClick(m_pTable, Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_pTable->Header()->checkState(0), Qt::Unchecked);
    QCOMPARE(changed.count(), 1);
}

void tst_TarnCustomTableWidgetKeys::KeyCtrlA_PlainHeader_NothingTicked()
{
    m_pTable->setHorizontalHeader(new QHeaderView(Qt::Horizontal, m_pTable));
    QSignalSpy changed(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QTest::keyClick(m_pTable, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(m_pTable->cellCheckState(0, 0), Qt::Unchecked);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomTableWidgetKeys::KeyCtrlA_HeaderWithoutABox_IsNotTaken()
{
    QVERIFY(Press(Qt::Key_A, Qt::ControlModifier));
    QVERIFY(Press(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier));
    QSignalSpy turned(m_pTable->Header(), &TarnCustomCheckHeaderView::SigCheckStateChange);
    Press(Qt::Key_A);
    Press(Qt::Key_B, Qt::ControlModifier);
    m_pTable->Header()->setCheckBoxVisible(0, false);
    QVERIFY(!Press(Qt::Key_A, Qt::ControlModifier));
    QCOMPARE(turned.count(), 0);
}

void tst_TarnCustomTableWidgetKeys::KeyUp_EmptyRowAbove_GoesToTheFilledOneAboveIt()
{
    for (int nColumn = 0; nColumn < 3; ++nColumn)
        delete m_pTable->takeItem(1, nColumn);
    m_pTable->setCurrentCell(2, 0);
    QTest::keyClick(m_pTable, Qt::Key_Up);
    QCOMPARE(m_pTable->currentRow(), 2); // the next filled one in the other direction
}

void tst_TarnCustomTableWidgetKeys::Focus_NoCurrentRow_ChoosesTheFirstVisible()
{
    m_pTable->setCurrentItem(nullptr);
    m_pTable->setRowHidden(0, true);
    QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(m_pTable, &in);
    QCOMPARE(m_pTable->currentRow(), 1);
}

void tst_TarnCustomTableWidgetKeys::Focus_CurrentRow_Stays()
{
    m_pTable->setCurrentCell(2, 1);
    QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(m_pTable, &in);
    QCOMPARE(m_pTable->currentRow(), 2);
    QCOMPARE(m_pTable->currentColumn(), 1);
}

void tst_TarnCustomTableWidgetKeys::Focus_NoUsableRow_ChoosesNone()
{
    m_pTable->setCurrentItem(nullptr);
    for (int nRow = 0; nRow < 3; ++nRow)
        m_pTable->setRowHidden(nRow, true);
    QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(m_pTable, &in);
    QCOMPARE(m_pTable->currentRow(), -1);
}

QTEST_MAIN(tst_TarnCustomTableWidgetKeys)
#include "tst_tarncustomtablewidget_keys.moc"
