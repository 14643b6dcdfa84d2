#ifndef DEVLISTMGR_DEVICEDELEGATE_H
#define DEVLISTMGR_DEVICEDELEGATE_H

#include <QStyledItemDelegate>

class QTreeView;

/// Lets the text of a camera reach over the column of the counts, which is empty in its row.
class DeviceDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit DeviceDelegate(QTreeView *pTree);

    void paint(QPainter *pPainter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *pEvent, QAbstractItemView *pView, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

private:
    QTreeView *const m_pTree;
};

#endif
