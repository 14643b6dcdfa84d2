#include <QApplication>
#include <QMouseEvent>

#include <memory>

#include "checktable.h"

/// How the cells of a table look. Colours are looked up where neither text nor frame can be.
class tst_CheckTableDelegate : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Background_Rows_Alternate();
    void Background_SelectedRow_TellsWhereTheFocusIs();
    void Background_SelectedRowOfADisabledTable_IsTheUnfocusedOne();
    void Background_HoveredRow_IsPale();
    void Background_HoverOverAnEmptyRow_ShowsNothing();
    void Background_HoverInADisabledTable_ShowsNothing();
    void Background_HoverOverTheSelectedRow_StaysSelected();
    void Background_MouseLeaves_HoverEnds();
    void Background_OwnColour_IsShownUntilHovered();
    void Frame_CurrentRow_GoesAroundTheWholeRow();
    void Frame_FocusElsewhere_None();
    void CheckBox_States_LookDifferent();
    void CheckBox_DisabledTable_LooksDifferent();
    void CheckBox_Hovered_HasTheAccentAsItsBorder();
    void Icon_WithoutText_StandsInTheMiddle();
    void Icon_DisabledTable_LooksDifferent();
    void Text_InACell_StandsBelowThatOfTheHeader();
    void Text_TooLong_EndsInAnEllipsis();
    void Text_DisabledTable_IsWeakerButReadable();
    void Text_OwnColourInADisabledTable_IsKept();

private:
    QColor BackgroundOf(int nRow, int nColumn = 1) const;
    void MoveMouseTo(int nRow, int nColumn = 1);
    void FillWithBlocks(int nRow, int nColumn);

    std::unique_ptr<CheckTable> m_pTable;
};

namespace {

const QColor kBase("#ffffff");
const QColor kAlternate("#f8f9fa");
const QColor kSelected("#ffe4d0");
const QColor kSelectedUnfocused("#eceef2");
const QColor kHovered("#fff3ea");
const QColor kAccent("#f76900");
const QColor kWeakText("#6c6c6c");

/// First column of the picture's middle line that is not of this colour; -1 when there is none.
int FirstOtherThan(const QImage &image, const QColor &color)
{
    for (int x = 0; x < image.width(); ++x) {
        if (image.pixelColor(x, image.height() / 2) != color)
            return x;
    }
    return -1;
}

QIcon RedIcon(int nSize)
{
    QPixmap pixmap(nSize, nSize);
    pixmap.fill(Qt::red);
    return QIcon(pixmap);
}

} // namespace

void tst_CheckTableDelegate::init()
{
    m_pTable = std::make_unique<CheckTable>();
    m_pTable->setAlternatingRowColors(true);
    m_pTable->setShowGrid(false);
    QVERIFY(QTest::qWaitForWindowActive(m_pTable.get()));
    m_pTable->clearFocus();
    m_pTable->setCurrentItem(nullptr);
}

void tst_CheckTableDelegate::cleanup()
{
    m_pTable.reset();
}

QColor tst_CheckTableDelegate::BackgroundOf(int nRow, int nColumn) const
{
    const QImage cell = m_pTable->CellImage(nRow, nColumn);
    return cell.pixelColor(cell.width() - 6, 5);
}

void tst_CheckTableDelegate::MoveMouseTo(int nRow, int nColumn)
{
    QMouseEvent move(QEvent::MouseMove, m_pTable->Centre(nRow, nColumn), Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(m_pTable->viewport(), &move);
}

void tst_CheckTableDelegate::FillWithBlocks(int nRow, int nColumn)
{
    m_pTable->item(nRow, nColumn)->setText(QString(4, QChar(0x2588)));
}

void tst_CheckTableDelegate::Background_Rows_Alternate()
{
    QCOMPARE(BackgroundOf(0), kBase);
    QCOMPARE(BackgroundOf(1), kAlternate);
    QCOMPARE(BackgroundOf(2, 0), kBase);
}

void tst_CheckTableDelegate::Background_SelectedRow_TellsWhereTheFocusIs()
{
    m_pTable->selectRow(1);
    QCOMPARE(BackgroundOf(1), kSelectedUnfocused);
    m_pTable->setFocus();
    QCOMPARE(BackgroundOf(1), kSelected);
    QCOMPARE(BackgroundOf(1, 2), kSelected);
    QCOMPARE(BackgroundOf(0), kBase);
}

void tst_CheckTableDelegate::Background_SelectedRowOfADisabledTable_IsTheUnfocusedOne()
{
    m_pTable->selectRow(1);
    m_pTable->setDisabled(true);
    QCOMPARE(BackgroundOf(1), kSelectedUnfocused);
}

void tst_CheckTableDelegate::Background_HoveredRow_IsPale()
{
    MoveMouseTo(1);
    QCOMPARE(BackgroundOf(1, 1), kHovered);
    QCOMPARE(BackgroundOf(1, 2), kHovered);
    QCOMPARE(BackgroundOf(0), kBase);
    MoveMouseTo(0);
    QCOMPARE(BackgroundOf(0), kHovered);
    QCOMPARE(BackgroundOf(1), kAlternate);
}

void tst_CheckTableDelegate::Background_HoverOverAnEmptyRow_ShowsNothing()
{
    MoveMouseTo(1);
    MoveMouseTo(4);
    QCOMPARE(BackgroundOf(4), kBase);
    QCOMPARE(BackgroundOf(1), kAlternate);
}

void tst_CheckTableDelegate::Background_HoverInADisabledTable_ShowsNothing()
{
    MoveMouseTo(1);
    m_pTable->setDisabled(true);
    QCOMPARE(BackgroundOf(1), kAlternate);
}

void tst_CheckTableDelegate::Background_HoverOverTheSelectedRow_StaysSelected()
{
    m_pTable->selectRow(1);
    m_pTable->setFocus();
    MoveMouseTo(1);
    QCOMPARE(BackgroundOf(1), kSelected);
}

void tst_CheckTableDelegate::Background_MouseLeaves_HoverEnds()
{
    MoveMouseTo(1);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(m_pTable->viewport(), &leave);
    QCOMPARE(BackgroundOf(1), kAlternate);
}

void tst_CheckTableDelegate::Background_OwnColour_IsShownUntilHovered()
{
    m_pTable->item(1, 1)->setBackground(QColor("#123456"));
    QCOMPARE(BackgroundOf(1, 1), QColor("#123456"));
    QCOMPARE(BackgroundOf(1, 2), kAlternate);
    MoveMouseTo(1);
    QCOMPARE(BackgroundOf(1, 1), kHovered);
}

void tst_CheckTableDelegate::Frame_CurrentRow_GoesAroundTheWholeRow()
{
    m_pTable->setCurrentCell(1, 1);
    m_pTable->setFocus();
    for (int nColumn = 0; nColumn < 3; ++nColumn) {
        const QImage cell = m_pTable->CellImage(1, nColumn);
        const int nRight = cell.width() - 1;
        const int nY = 5; // above the check box
        for (int x : {4, nRight / 2, nRight - 2}) {
            QCOMPARE(cell.pixelColor(x, 0), kAccent);
            QCOMPARE(cell.pixelColor(x, 1), kSelected);
            QCOMPARE(cell.pixelColor(x, cell.height() - 2), kSelected);
            QCOMPARE(cell.pixelColor(x, cell.height() - 1), kAccent);
        }
        QCOMPARE(cell.pixelColor(0, nY), nColumn == 0 ? kAccent : kSelected);
        QCOMPARE(cell.pixelColor(2, nY), nColumn == 0 ? kAccent : kSelected);
        QCOMPARE(cell.pixelColor(3, nY), kSelected);
        QCOMPARE(cell.pixelColor(nRight - 1, nY), kSelected);
        QCOMPARE(cell.pixelColor(nRight, nY), nColumn == 2 ? kAccent : kSelected);
    }
    QCOMPARE(m_pTable->CellImage(0, 0).pixelColor(0, 5), kBase);
    QCOMPARE(m_pTable->CellImage(2, 0).pixelColor(10, 0), kBase);
}

void tst_CheckTableDelegate::Frame_FocusElsewhere_None()
{
    m_pTable->setCurrentCell(1, 1);
    QCOMPARE(m_pTable->CellImage(1, 0).pixelColor(0, 5), kSelectedUnfocused);
    QCOMPARE(m_pTable->CellImage(1, 0).pixelColor(10, 0), kSelectedUnfocused);
}

void tst_CheckTableDelegate::CheckBox_States_LookDifferent()
{
    const QImage cleared = m_pTable->CellImage(0, 0);
    m_pTable->setCellCheckState(0, 0, Qt::Checked);
    const QImage ticked = m_pTable->CellImage(0, 0);
    m_pTable->setCellCheckState(0, 0, Qt::PartiallyChecked);
    const QImage partly = m_pTable->CellImage(0, 0);
    QVERIFY(cleared != ticked && ticked != partly && cleared != partly);
    const QPoint inside = cleared.rect().center() - QPoint(5, 5);
    QCOMPARE(cleared.pixelColor(inside), kBase);
    QCOMPARE(ticked.pixelColor(inside), kAccent);
}

void tst_CheckTableDelegate::CheckBox_DisabledTable_LooksDifferent()
{
    m_pTable->setCellCheckState(0, 0, Qt::Checked);
    m_pTable->setDisabled(true);
    const QImage cell = m_pTable->CellImage(0, 0);
    QCOMPARE(cell.pixelColor(cell.rect().center() - QPoint(5, 5)), QColor("#cdd0d5"));
}

void tst_CheckTableDelegate::CheckBox_Hovered_HasTheAccentAsItsBorder()
{
    const auto border = [this](int nRow) {
        const QImage cell = m_pTable->CellImage(nRow, 0);
        const int nTop = (cell.height() - 16) / 2;
        return cell.pixelColor(cell.width() / 2, nTop);
    };
    MoveMouseTo(0);
    QCOMPARE(border(0), kAccent);
    QVERIFY(border(1) != kAccent);
    m_pTable->setCheckBoxEnable(0, 0, false);
    QVERIFY(border(0) != kAccent); // there is nothing to click on
}

void tst_CheckTableDelegate::Icon_WithoutText_StandsInTheMiddle()
{
    m_pTable->setIconSize(QSize(10, 10));
    m_pTable->item(0, 2)->setIcon(RedIcon(10));
    const QImage cell = m_pTable->CellImage(0, 2);
    int nLeft = FirstOtherThan(cell, kBase);
    int nRight = FirstOtherThan(cell.mirrored(true, false), kBase);
    QVERIFY2(qAbs(nLeft - nRight) <= 1, qPrintable(QString("%1, %2").arg(nLeft).arg(nRight)));
    QCOMPARE(cell.pixelColor(cell.rect().center()), QColor(Qt::red));

    m_pTable->item(0, 2)->setText("text");
    nLeft = FirstOtherThan(m_pTable->CellImage(0, 2), kBase);
    QVERIFY2(nLeft < 12, qPrintable(QString::number(nLeft))); // at the start, with its text
}

void tst_CheckTableDelegate::Icon_DisabledTable_LooksDifferent()
{
    m_pTable->item(0, 2)->setIcon(RedIcon(10));
    const QImage enabled = m_pTable->CellImage(0, 2);
    m_pTable->setDisabled(true);
    QVERIFY(m_pTable->CellImage(0, 2) != enabled);
}

void tst_CheckTableDelegate::Text_InACell_StandsBelowThatOfTheHeader()
{
    FillWithBlocks(0, 1);
    m_pTable->setHorizontalHeaderItem(1, new QTableWidgetItem(QString(4, QChar(0x2588))));
    m_pTable->Header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const QRect section(m_pTable->Header()->sectionViewportPosition(1), 0, 100, m_pTable->Header()->height());
    const QImage header = m_pTable->Header()->viewport()->grab(section).toImage();
    const int nInHeader = FirstOtherThan(header, header.pixelColor(1, header.height() / 2));
    QVERIFY(nInHeader > 0);
    QCOMPARE(FirstOtherThan(m_pTable->CellImage(0, 1), kBase), nInHeader);
}

void tst_CheckTableDelegate::Text_TooLong_EndsInAnEllipsis()
{
    m_pTable->item(0, 1)->setText("a text that is a good deal too long");
    const QImage cutOff = m_pTable->CellImage(0, 1);
    m_pTable->item(0, 1)->setText("a text that is a good deal too long for its column");
    QCOMPARE(m_pTable->CellImage(0, 1), cutOff); // the start and three dots
    m_pTable->item(0, 1)->setText("A text that is a good deal too long for its column");
    QVERIFY(m_pTable->CellImage(0, 1) != cutOff);
}

void tst_CheckTableDelegate::Text_DisabledTable_IsWeakerButReadable()
{
    FillWithBlocks(0, 1);
    m_pTable->setDisabled(true);
    const QImage cell = m_pTable->CellImage(0, 1);
    QCOMPARE(cell.pixelColor(14, cell.height() / 2), kWeakText);
}

void tst_CheckTableDelegate::Text_OwnColourInADisabledTable_IsKept()
{
    FillWithBlocks(0, 1);
    m_pTable->item(0, 1)->setForeground(QBrush(Qt::red));
    m_pTable->setDisabled(true);
    const QImage cell = m_pTable->CellImage(0, 1);
    QCOMPARE(cell.pixelColor(14, cell.height() / 2), QColor(Qt::red));
}

QTEST_MAIN(tst_CheckTableDelegate)
#include "tst_checktabledelegate.moc"
