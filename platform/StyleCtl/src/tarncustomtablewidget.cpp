#include "tarncustomtablewidget.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>

#include "checktabledelegate.h"
#include "stylepainter.h"
#include "tarncustomcheckheaderview.h"

TarnCustomTableWidget::TarnCustomTableWidget(QWidget *pParent)
    : TarnCustomTableWidget(0, 0, pParent)
{
}

TarnCustomTableWidget::TarnCustomTableWidget(int nRows, int nColumns, QWidget *pParent)
    : QTableWidget(nRows, nColumns, pParent)
{
    Init();
}

TarnCustomTableWidget::~TarnCustomTableWidget() = default;

void TarnCustomTableWidget::Init()
{
    setObjectName(QStringLiteral("TableWidget"));
    QPalette colors = StylePainter::LightPalette();
    colors.setColor(QPalette::Window, Qt::white); // the grid's colour comes from it
    setPalette(colors);
    setItemDelegate(new CheckTableDelegate(this));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setTabKeyNavigation(false); // Tab leaves the table
    setWordWrap(false);
    verticalHeader()->hide();
    viewport()->setMouseTracking(true);
    SetTexts();
}

void TarnCustomTableWidget::SetTexts()
{
    setAccessibleDescription(
        tr("Up and Down choose a row, Space ticks it, Ctrl+A ticks all rows, Ctrl+Shift+A none."));
}

// ---- Check boxes and tips ----------------------------------------------------------------------------

void TarnCustomTableWidget::setCheckBoxVisible(int nRow, int nColumn, bool bVisible)
{
    if (bVisible == IsHaveCheckBox(nRow, nColumn) || !model()->hasIndex(nRow, nColumn))
        return;
    QTableWidgetItem *pItem = item(nRow, nColumn);
    if (!pItem) {
        pItem = new QTableWidgetItem;
        setItem(nRow, nColumn, pItem);
    }
    if (bVisible)
        pItem->setFlags(pItem->flags() | Qt::ItemIsUserCheckable);
    pItem->setData(Qt::CheckStateRole, bVisible ? QVariant(Qt::Unchecked) : QVariant());
}

bool TarnCustomTableWidget::IsHaveCheckBox(int nRow, int nColumn) const
{
    const QTableWidgetItem *pItem = item(nRow, nColumn);
    return pItem && pItem->data(Qt::CheckStateRole).isValid();
}

void TarnCustomTableWidget::setCheckBoxEnable(int nRow, int nColumn, bool bEnable)
{
    if (!IsHaveCheckBox(nRow, nColumn) || bEnable == cellCheckEnable(nRow, nColumn))
        return;
    QTableWidgetItem *pItem = item(nRow, nColumn);
    pItem->setFlags(pItem->flags() ^ Qt::ItemIsUserCheckable);
}

bool TarnCustomTableWidget::cellCheckEnable(int nRow, int nColumn) const
{
    return IsHaveCheckBox(nRow, nColumn) && (item(nRow, nColumn)->flags() & Qt::ItemIsUserCheckable);
}

void TarnCustomTableWidget::setCellCheckState(int nRow, int nColumn, Qt::CheckState eState, bool bEmitSignal)
{
    if (!IsHaveCheckBox(nRow, nColumn))
        return;
    if (eState == Qt::Unchecked || cellCheckEnable(nRow, nColumn))
        item(nRow, nColumn)->setCheckState(eState);
    if (bEmitSignal)
        emit SigCellCheckStateChanged(nRow, nColumn);
}

Qt::CheckState TarnCustomTableWidget::cellCheckState(int nRow, int nColumn) const
{
    const QTableWidgetItem *pItem = item(nRow, nColumn);
    return pItem ? pItem->checkState() : Qt::Unchecked;
}

void TarnCustomTableWidget::setDetailTip(int nRow, int nColumn, const QString &tip)
{
    if (QTableWidgetItem *pItem = item(nRow, nColumn))
        pItem->setData(Qt::ToolTipRole, tip.isEmpty() ? QVariant() : QVariant(tip));
}

QString TarnCustomTableWidget::detailTip(int nRow, int nColumn) const
{
    const QTableWidgetItem *pItem = item(nRow, nColumn);
    return pItem ? pItem->toolTip() : QString();
}

void TarnCustomTableWidget::connetSectionResized(bool bConnect)
{
    disconnect(m_sectionResized);
    if (bConnect)
        m_sectionResized =
            connect(horizontalHeader(), &QHeaderView::sectionResized, this, [] { QToolTip::hideText(); });
}

// ---- Ticking -----------------------------------------------------------------------------------------

bool TarnCustomTableWidget::ToggleByUser(int nRow, int nColumn)
{
    if (!cellCheckEnable(nRow, nColumn))
        return false;
    const bool bTicked = cellCheckState(nRow, nColumn) == Qt::Checked;
    // Last: who answers the signal may run a message box or remove the row.
    setCellCheckState(nRow, nColumn, bTicked ? Qt::Unchecked : Qt::Checked, true);
    return true;
}

bool TarnCustomTableWidget::ToggleCurrentRow()
{
    const int nRow = currentRow();
    if (nRow < 0 || isRowHidden(nRow))
        return false;
    for (int nColumn = 0; nColumn < columnCount(); ++nColumn) {
        if (IsHaveCheckBox(nRow, nColumn))
            return ToggleByUser(nRow, nColumn);
    }
    return false;
}

bool TarnCustomTableWidget::TickHeader(Qt::CheckState eState)
{
    auto *pHeader = qobject_cast<TarnCustomCheckHeaderView *>(horizontalHeader());
    if (!pHeader || pHeader->checkBoxSection() < 0)
        return false;
    pHeader->setCheckState(pHeader->checkBoxSection(), eState, true);
    return true;
}

// ---- Rows --------------------------------------------------------------------------------------------

bool TarnCustomTableWidget::IsEmptyRow(int nRow) const
{
    for (int nColumn = 0; nColumn < columnCount(); ++nColumn) {
        if (item(nRow, nColumn))
            return false;
    }
    return true;
}

// First row from nRow on, in steps of nStep, that can be chosen; -1 when there is none.
int TarnCustomTableWidget::UsableRowFrom(int nRow, int nStep) const
{
    while (nRow >= 0 && nRow < rowCount() && (isRowHidden(nRow) || IsEmptyRow(nRow)))
        nRow += nStep;
    return nRow < rowCount() ? nRow : -1;
}

QModelIndex TarnCustomTableWidget::moveCursor(CursorAction eAction, Qt::KeyboardModifiers modifiers)
{
    const QModelIndex current = currentIndex();
    const int nColumn = current.isValid() ? current.column() : horizontalHeader()->logicalIndex(0);
    int nRow = -1;
    if (eAction == MoveHome) {
        nRow = UsableRowFrom(0, 1);
    } else if (eAction == MoveEnd) {
        nRow = UsableRowFrom(rowCount() - 1, -1);
    } else {
        const QModelIndex next = QTableWidget::moveCursor(eAction, modifiers);
        if (!next.isValid() || !IsEmptyRow(next.row()))
            return next;
        nRow = UsableRowFrom(next.row(), next.row() > current.row() ? -1 : 1);
    }
    return nRow < 0 ? current : model()->index(nRow, nColumn);
}

void TarnCustomTableWidget::SetHoverRow(int nRow)
{
    if (nRow == m_nHoverRow)
        return;
    UpdateRow(m_nHoverRow);
    m_nHoverRow = nRow;
    UpdateRow(m_nHoverRow);
}

void TarnCustomTableWidget::UpdateRow(int nRow)
{
    if (nRow >= 0 && nRow < rowCount())
        viewport()->update(0, rowViewportPosition(nRow), viewport()->width(), rowHeight(nRow));
}

// ---- Events ------------------------------------------------------------------------------------------

bool TarnCustomTableWidget::event(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        SetTexts();
    return QTableWidget::event(pEvent);
}

QString TarnCustomTableWidget::TipAt(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    QString tip = index.data(Qt::ToolTipRole).toString();
    if (!tip.isEmpty())
        return tip;
    const auto *pDelegate = qobject_cast<const CheckTableDelegate *>(itemDelegate());
    return pDelegate && pDelegate->IsElided(index) ? index.data().toString() : QString();
}

bool TarnCustomTableWidget::viewportEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::ToolTip) {
        const auto *pHelp = static_cast<QHelpEvent *>(pEvent);
        const QModelIndex index = indexAt(pHelp->pos());
        // As rich text a long line wraps; the text itself stays plain.
        const QString tip = TipAt(index).remove(QLatin1Char('\r')).toHtmlEscaped();
        if (tip.isEmpty())
            QToolTip::hideText();
        else
            QToolTip::showText(pHelp->globalPos(),
                               QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(tip), viewport(),
                               visualRect(index));
        return true;
    }
    if (pEvent->type() == QEvent::Leave || pEvent->type() == QEvent::Hide)
        SetHoverRow(-1);
    return QTableWidget::viewportEvent(pEvent);
}

void TarnCustomTableWidget::focusInEvent(QFocusEvent *pEvent)
{
    QTableWidget::focusInEvent(pEvent);
    if (currentRow() < 0 && UsableRowFrom(0, 1) >= 0)
        setCurrentCell(UsableRowFrom(0, 1), 0);
    viewport()->update();
}

void TarnCustomTableWidget::focusOutEvent(QFocusEvent *pEvent)
{
    QTableWidget::focusOutEvent(pEvent);
    viewport()->update();
}

void TarnCustomTableWidget::keyPressEvent(QKeyEvent *pEvent)
{
    const Qt::KeyboardModifiers modifiers = pEvent->modifiers() & ~Qt::KeypadModifier;
    if (pEvent->key() == Qt::Key_Space) {
        // Never to the base class, which would look for a row whose text begins with what was typed.
        if (modifiers == Qt::NoModifier && !pEvent->isAutoRepeat())
            ToggleCurrentRow();
        pEvent->setAccepted(modifiers == Qt::NoModifier);
    } else if (pEvent->key() == Qt::Key_A && modifiers == Qt::ControlModifier) {
        pEvent->setAccepted(TickHeader(Qt::Checked));
    } else if (pEvent->key() == Qt::Key_A && modifiers == (Qt::ControlModifier | Qt::ShiftModifier)) {
        pEvent->setAccepted(TickHeader(Qt::Unchecked));
    } else {
        QTableWidget::keyPressEvent(pEvent);
    }
}

// Takes note of a box under the mouse; true when the event is not for the base class.
bool TarnCustomTableWidget::PressAt(QMouseEvent *pEvent)
{
    const QModelIndex index = indexAt(pEvent->pos());
    m_pressed = QPersistentModelIndex();
    if (index.isValid() && IsEmptyRow(index.row()))
        return true;
    if (pEvent->button() == Qt::LeftButton && cellCheckEnable(index.row(), index.column()))
        m_pressed = index;
    return false;
}

void TarnCustomTableWidget::mousePressEvent(QMouseEvent *pEvent)
{
    if (!PressAt(pEvent))
        QTableWidget::mousePressEvent(pEvent);
}

void TarnCustomTableWidget::mouseDoubleClickEvent(QMouseEvent *pEvent)
{
    // Two fast clicks are two ticks.
    if (!PressAt(pEvent))
        QTableWidget::mouseDoubleClickEvent(pEvent);
}

void TarnCustomTableWidget::mouseReleaseEvent(QMouseEvent *pEvent)
{
    QTableWidget::mouseReleaseEvent(pEvent);
    if (pEvent->button() != Qt::LeftButton || !m_pressed.isValid())
        return;
    const QModelIndex pressed = m_pressed;
    m_pressed = QPersistentModelIndex();
    if (indexAt(pEvent->pos()) == pressed)
        ToggleByUser(pressed.row(), pressed.column());
}

void TarnCustomTableWidget::mouseMoveEvent(QMouseEvent *pEvent)
{
    const QModelIndex index = indexAt(pEvent->pos());
    SetHoverRow(index.isValid() && !IsEmptyRow(index.row()) ? index.row() : -1);
    // Dragging from a row over the others must not choose them one after the other.
    if (pEvent->buttons() == Qt::NoButton)
        QTableWidget::mouseMoveEvent(pEvent);
}
