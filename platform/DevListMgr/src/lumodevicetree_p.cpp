#include "lumodevicetree_p.h"

#include <QPalette>

#include <utility>

#include "devicerecord.h"

namespace {

const int kRowHeight = 26;

LumoDeviceTree::ItemType InterfaceType(quint32 nTransport)
{
    switch (nTransport) {
    case KX_CC_TRANSPORT_GIGE:
        return LumoDeviceTree::GigEInterfaceItem;
    case KX_CC_TRANSPORT_USB:
        return LumoDeviceTree::UsbInterfaceItem;
    default:
        return LumoDeviceTree::PortInterfaceItem;
    }
}

void SetCount(QTreeWidgetItem *pItem, int nCount)
{
    const QString strCount = QString::number(nCount);
    if (pItem->text(1) != strCount)
        pItem->setText(1, strCount);
}

} // namespace

LumoDeviceTreePrivate::LumoDeviceTreePrivate(LumoDeviceTree *pTree, DeviceSourceFactory factory)
    : m_pTree(pTree)
    , m_search(std::move(factory))
{
    m_timerSlice.setInterval(0); // input and painting come between two slices
}

void LumoDeviceTreePrivate::CreateFixedItems()
{
    m_pAllItem = MakeItem(m_pTree->invisibleRootItem(), LumoDeviceTree::AllCamerasItem, -1);
    m_pHintItem = MakeItem(m_pAllItem, LumoDeviceTree::HintItem, -1);
    m_pHintItem->setFlags(Qt::NoItemFlags);
    m_pHintItem->setFirstColumnSpanned(true);
    SetTexts();
    ShowCounts();
}

void LumoDeviceTreePrivate::SetTexts()
{
    m_pTree->setAccessibleName(LumoDeviceTree::tr("Device tree"));
    m_pAllItem->setText(0, LumoDeviceTree::tr("All Cameras"));
    m_pHintItem->setText(0, m_bRoundDone ? LumoDeviceTree::tr("No camera found")
                                         : LumoDeviceTree::tr("Searching for cameras..."));
    for (auto it = m_hashCameras.cbegin(); it != m_hashCameras.cend(); ++it) {
        const auto record = it.value()->data(0, LumoDeviceTree::RecordRole).value<StructDeviceInfo>();
        WriteCamera(it.value(), {DeviceChange::Update, it.key(), record.stDevInfo});
    }
}

QTreeWidgetItem *LumoDeviceTreePrivate::MakeItem(QTreeWidgetItem *pParent, LumoDeviceTree::ItemType nType,
                                                 int nID)
{
    QTreeWidgetItem *pItem = new QTreeWidgetItem;
    pItem->setData(0, LumoDeviceTree::ItemTypeRole, int(nType));
    pItem->setData(0, LumoDeviceTree::ItemIdRole, nID);
    pItem->setSizeHint(0, QSize(0, kRowHeight));
    pItem->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    pParent->addChild(pItem);
    if (nType != LumoDeviceTree::CameraItem) // nothing is below; and each expanded item makes others slower
        pItem->setExpanded(true);
    ApplyVisibility(pItem);
    return pItem;
}

QTreeWidgetItem *LumoDeviceTreePrivate::GroupFor(const KX_CC_DEVICE_INFO &stDevInfo)
{
    const QString strInterface = InterfaceText(stDevInfo);
    QTreeWidgetItem *&pGroup = m_mapGroups[strInterface];
    if (!pGroup) {
        pGroup = MakeItem(m_pAllItem, InterfaceType(stDevInfo.nTransportType), m_nNextGroup++);
        pGroup->setText(0, strInterface);
        pGroup->setToolTip(0, strInterface);
    }
    return pGroup;
}

void LumoDeviceTreePrivate::DropGroupIfEmpty(QTreeWidgetItem *pGroup)
{
    if (pGroup->childCount() > 0)
        return;
    if (m_pTree->currentItem() == pGroup)
        m_pTree->setCurrentItem(m_pAllItem);
    m_mapGroups.remove(pGroup->text(0));
    delete pGroup;
}

void LumoDeviceTreePrivate::WriteCamera(QTreeWidgetItem *pItem, const DeviceChange &change)
{
    const QString strCamera = CameraText(change.stDevInfo);
    const QString strState = StateText(change.stDevInfo.nAccessStatus);
    pItem->setData(0, LumoDeviceTree::RecordRole,
                   QVariant::fromValue(DeviceRecord(change.nDeviceID, change.stDevInfo)));
    pItem->setText(0, strCamera);
    pItem->setToolTip(0,
                      QStringLiteral("%1\n%2\n%3").arg(strCamera, AddressText(change.stDevInfo), strState));
    pItem->setData(0, Qt::AccessibleTextRole, QStringLiteral("%1, %2").arg(strCamera, strState));
    if (change.stDevInfo.nAccessStatus == KX_CC_ACCESS_FREE)
        pItem->setData(0, Qt::ForegroundRole, QVariant());
    else
        pItem->setForeground(0, m_pTree->palette().brush(QPalette::Disabled, QPalette::Text));
}

void LumoDeviceTreePrivate::ShowCounts()
{
    SetCount(m_pAllItem, m_hashCameras.size());
    for (QTreeWidgetItem *pGroup : qAsConst(m_mapGroups))
        SetCount(pGroup, pGroup->childCount());
    ApplyVisibility(m_pHintItem);
}

/// An item is shown when its type is; the hint only while there is no camera.
void LumoDeviceTreePrivate::ApplyVisibility(QTreeWidgetItem *pItem)
{
    const int nType = pItem->data(0, LumoDeviceTree::ItemTypeRole).toInt();
    bool bShow = m_listVisible.isEmpty() || m_listVisible.contains(nType);
    if (nType == LumoDeviceTree::HintItem)
        bShow = bShow && m_hashCameras.isEmpty();
    if (pItem->isHidden() == bShow)
        pItem->setHidden(!bShow);
}

void LumoDeviceTreePrivate::ApplyVisibilityToAll()
{
    for (QTreeWidgetItem *pItem : {m_pAllItem, m_pHintItem})
        ApplyVisibility(pItem);
    for (QTreeWidgetItem *pGroup : qAsConst(m_mapGroups))
        ApplyVisibility(pGroup);
    for (QTreeWidgetItem *pItem : qAsConst(m_hashCameras))
        ApplyVisibility(pItem);
}

QString LumoDeviceTreePrivate::StateText(quint32 nAccessStatus) const
{
    switch (nAccessStatus) {
    case KX_CC_ACCESS_FREE:
        return LumoDeviceTree::tr("Free");
    case KX_CC_ACCESS_IN_USE:
        return LumoDeviceTree::tr("In use by another program");
    default:
        return LumoDeviceTree::tr("Unreachable");
    }
}
