#include "devicedelegate.h"

#include <QTreeView>

#include "DevListMgr/lumodevicetree.h"

namespace {

// The view's own spanned rows take time that grows with the square of their number, and the view keeps an
// entry of each that has gone.
bool IsOneText(const QModelIndex &index)
{
    const QModelIndex first = index.sibling(index.row(), 0);
    return first.data(LumoDeviceTree::ItemTypeRole).toInt() == LumoDeviceTree::CameraItem;
}

} // namespace

DeviceDelegate::DeviceDelegate(QTreeView *pTree)
    : QStyledItemDelegate(pTree)
    , m_pTree(pTree)
{
}

void DeviceDelegate::paint(QPainter *pPainter, const QStyleOptionViewItem &option,
                           const QModelIndex &index) const
{
    if (!IsOneText(index))
        return QStyledItemDelegate::paint(pPainter, option, index);
    if (index.column() != 0)
        return;
    QStyleOptionViewItem whole = option;
    whole.rect = option.rect.united(m_pTree->visualRect(index.sibling(index.row(), 1)));
    whole.viewItemPosition = QStyleOptionViewItem::OnlyOne;
    QStyledItemDelegate::paint(pPainter, whole, index);
}

bool DeviceDelegate::helpEvent(QHelpEvent *pEvent, QAbstractItemView *pView,
                               const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const QModelIndex first = index.sibling(index.row(), 0);
    return QStyledItemDelegate::helpEvent(pEvent, pView, option, IsOneText(index) ? first : index);
}
