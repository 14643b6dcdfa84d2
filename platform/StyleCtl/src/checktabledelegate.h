#ifndef STYLECTL_CHECKTABLEDELEGATE_H
#define STYLECTL_CHECKTABLEDELEGATE_H

#include <QStyledItemDelegate>

class TarnCustomTableWidget;

/// Draws the cells of a TarnCustomTableWidget: row background, check box, icon and text, focus of the row.
/// The table handles mouse and keyboard itself.
class CheckTableDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit CheckTableDelegate(TarnCustomTableWidget *pTable);

    void paint(QPainter *pPainter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

    /// Ticks nothing, and never takes an event: the base class would tick without the table's signal.
    bool editorEvent(QEvent *pEvent, QAbstractItemModel *pModel, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

    /// Whether the text of a cell does not fit into it.
    bool IsElided(const QModelIndex &index) const;

private:
    void DrawBackground(QPainter *pPainter, const QStyleOptionViewItem &option,
                        const QModelIndex &index) const;
    void DrawRowFocus(QPainter *pPainter, const QStyleOptionViewItem &option, const QModelIndex &index) const;

    const TarnCustomTableWidget *const m_pTable;
};

#endif
