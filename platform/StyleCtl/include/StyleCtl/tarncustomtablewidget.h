#ifndef STYLECTL_TARNCUSTOMTABLEWIDGET_H
#define STYLECTL_TARNCUSTOMTABLEWIDGET_H

#include <QMetaObject>
#include <QPersistentModelIndex>
#include <QTableWidget>

#include "styleglobal.h"

/// Table whose cells can have check boxes and detail tips. Rows are chosen one at a time.
///
/// A cell's box, its state, whether it can be ticked, and its tip are kept in the cell's item, so they move
/// with the row when the table is sorted and go when the item goes: an item has a box when it has
/// Qt::CheckStateRole, the box is enabled when it has Qt::ItemIsUserCheckable, the tip is Qt::ToolTipRole.
/// No other role is used. Row and column out of range are ignored everywhere.
///
/// The user ticks with a click anywhere in the box's cell, or with Space for the first box of the current
/// row. Up, Down, Page Up and Page Down move; Home and End go to the first and last row. Ctrl+A ticks the
/// header's check box, Ctrl+Shift+A clears it: what that means for the rows, limits included, is for those
/// who answer the header's signal. Rows without a single item are empty: they cannot be chosen.
class STYLECTL_EXPORT TarnCustomTableWidget : public QTableWidget
{
    Q_OBJECT

public:
    explicit TarnCustomTableWidget(QWidget *pParent = nullptr);
    TarnCustomTableWidget(int nRows, int nColumns, QWidget *pParent = nullptr);
    ~TarnCustomTableWidget() override;

    /// Gives a cell a check box, unticked and enabled, or takes it away. A cell that has one keeps it as it
    /// is. A cell without an item gets one when a box is to be shown.
    void setCheckBoxVisible(int nRow, int nColumn, bool bVisible);
    bool IsHaveCheckBox(int nRow, int nColumn) const;

    /// Whether the box can be ticked. Its state stays. Nothing for a cell without a box.
    void setCheckBoxEnable(int nRow, int nColumn, bool bEnable);
    /// False for a cell without a box.
    bool cellCheckEnable(int nRow, int nColumn) const;

    /// Sets a box's state. A disabled box can be cleared but not ticked, so that ticking all rows leaves
    /// out those that cannot be used. With bEmitSignal, SigCellCheckStateChanged() is emitted once, also
    /// when the state was the same. Nothing, and no signal, for a cell without a box.
    void setCellCheckState(int nRow, int nColumn, Qt::CheckState eState, bool bEmitSignal = false);
    /// Qt::Unchecked for a cell without a box.
    Qt::CheckState cellCheckState(int nRow, int nColumn) const;

    /// Text shown as tool tip of a cell, plain, line breaks kept; empty for none. A cell without a tip shows
    /// its own text when that does not fit. Nothing for a cell without an item.
    void setDetailTip(int nRow, int nColumn, const QString &tip);
    QString detailTip(int nRow, int nColumn) const;

    /// Whether the table follows its header's sections while they are resized: a tool tip that is open is
    /// closed, for it belongs to a cell that has moved. Off at start; call it after setHorizontalHeader().
    void connetSectionResized(bool bConnect);

signals:
    /// The user ticked or cleared a box, or a program did and asked for the signal.
    void SigCellCheckStateChanged(int nRow, int nColumn);

protected:
    bool event(QEvent *pEvent) override;
    bool viewportEvent(QEvent *pEvent) override;
    void focusInEvent(QFocusEvent *pEvent) override;
    void focusOutEvent(QFocusEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent *pEvent) override;
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void mousePressEvent(QMouseEvent *pEvent) override;
    void mouseReleaseEvent(QMouseEvent *pEvent) override;
    QModelIndex moveCursor(CursorAction eAction, Qt::KeyboardModifiers modifiers) override;

private:
    void Init();
    void SetTexts();
    bool PressAt(QMouseEvent *pEvent);
    bool ToggleByUser(int nRow, int nColumn);
    bool ToggleCurrentRow();
    bool TickHeader(Qt::CheckState eState);
    bool IsEmptyRow(int nRow) const;
    int UsableRowFrom(int nRow, int nStep) const;
    QString TipAt(const QModelIndex &index) const;
    void SetHoverRow(int nRow);
    void UpdateRow(int nRow);

    QPersistentModelIndex m_pressed; // cell whose box the mouse went down on
    int m_nHoverRow = -1;
    QMetaObject::Connection m_sectionResized;

    friend class CheckTableDelegate; // asks for the hovered row
};

#endif
