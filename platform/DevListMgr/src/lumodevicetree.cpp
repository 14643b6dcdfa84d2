#include "DevListMgr/lumodevicetree.h"

#include <QElapsedTimer>
#include <QEvent>
#include <QHeaderView>
#include <QPersistentModelIndex>

#include <utility>

#include "devicedelegate.h"
#include "devicerecord.h"
#include "lumodevicetree_p.h"
#include "sdkdevicesource.h"

namespace {

// Longest time that one slice of changes keeps the GUI thread, a slot of the window included.
const qint64 kSliceMs = 8;

DeviceSourceFactory &SourceFactory()
{
    static DeviceSourceFactory factory;
    return factory;
}

DeviceSourceFactory CurrentSourceFactory()
{
    if (SourceFactory())
        return SourceFactory();
    return [] { return std::unique_ptr<DeviceSource>(new SdkDeviceSource); };
}

} // namespace

LumoDeviceTree::LumoDeviceTree(QWidget *parent)
    : QTreeWidget(parent)
    , m_pPrivate(std::make_unique<LumoDeviceTreePrivate>(this, CurrentSourceFactory()))
{
    setColumnCount(2);
    setHeaderHidden(true);
    header()->setMinimumSectionSize(0);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    setIndentation(8); // the first step is a margin
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setTextElideMode(Qt::ElideMiddle); // a long name keeps its start, and the serial number at its end
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    setItemDelegate(new DeviceDelegate(this));

    m_pPrivate->CreateFixedItems();
    connect(&m_pPrivate->m_search, &DeviceSearch::RoundDone, this, &LumoDeviceTree::OnRoundDone);
    connect(&m_pPrivate->m_timerSlice, &QTimer::timeout, this, &LumoDeviceTree::ApplySlice);
}

LumoDeviceTree::~LumoDeviceTree() = default;

void LumoDeviceTree::setToolName(const QString &strName)
{
    setObjectName(strName);
}

void LumoDeviceTree::setVisibleItemTypes(const QList<int> &listTypes)
{
    m_pPrivate->m_listVisible = listTypes;
    m_pPrivate->ApplyVisibilityToAll();
}

QList<int> LumoDeviceTree::visibleItemTypes() const
{
    return m_pPrivate->m_listVisible;
}

void LumoDeviceTree::updateDeviceTypes(unsigned int nTypes, bool bOn)
{
    const unsigned int nOld = m_pPrivate->m_nTransports;
    m_pPrivate->m_nTransports = bOn ? nOld | nTypes : nOld & ~nTypes;
    m_pPrivate->m_search.SetTransports(m_pPrivate->m_nTransports);
    if (m_pPrivate->m_nTransports && !m_pPrivate->m_search.isRunning())
        m_pPrivate->m_search.start();
}

QTreeWidgetItem *LumoDeviceTree::findItem(ItemType nType, long nID) const
{
    switch (nType) {
    case CameraItem:
        return findCameraItem(nID);
    case AllCamerasItem:
        return nID == -1 ? m_pPrivate->m_pAllItem : nullptr;
    case HintItem:
        return nID == -1 ? m_pPrivate->m_pHintItem : nullptr;
    default:
        break;
    }
    for (QTreeWidgetItem *pGroup : qAsConst(m_pPrivate->m_mapGroups)) {
        if (pGroup->data(0, ItemTypeRole).toInt() == nType && pGroup->data(0, ItemIdRole).toInt() == nID)
            return pGroup;
    }
    return nullptr;
}

QTreeWidgetItem *LumoDeviceTree::findCameraItem(long nDeviceID) const
{
    return m_pPrivate->m_hashCameras.value(static_cast<int>(nDeviceID));
}

void LumoDeviceTree::setSourceFactory(DeviceSourceFactory factory)
{
    SourceFactory() = std::move(factory);
}

void LumoDeviceTree::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        m_pPrivate->SetTexts();
    QTreeWidget::changeEvent(pEvent);
}

void LumoDeviceTree::drawBranches(QPainter *pPainter, const QRect &rect, const QModelIndex &index) const
{
    if (itemsExpandable()) // else there is nothing that an arrow could do
        QTreeWidget::drawBranches(pPainter, rect, index);
}

void LumoDeviceTree::OnRoundDone(const QVector<DeviceChange> &vecChanges)
{
    if (!m_pPrivate->m_bRoundDone) {
        m_pPrivate->m_bRoundDone = true;
        m_pPrivate->SetTexts();
    }
    for (const DeviceChange &change : vecChanges)
        m_pPrivate->m_queueChanges.enqueue(change);
    if (vecChanges.isEmpty())
        m_pPrivate->m_search.SetHandled();
    else
        m_pPrivate->m_timerSlice.start();
}

void LumoDeviceTree::ApplySlice()
{
    QElapsedTimer timer;
    timer.start();
    QQueue<DeviceChange> &queue = m_pPrivate->m_queueChanges;
    // A slot may run an event loop of its own, as for a message: the timer has to fire there, too, and the
    // next round may come there, so a change is off the queue, and the last one handled, before it is
    // applied.
    m_pPrivate->m_timerSlice.start();
    while (!queue.isEmpty() && timer.elapsed() < kSliceMs) {
        const DeviceChange change = queue.dequeue();
        if (queue.isEmpty())
            m_pPrivate->m_search.SetHandled();
        Apply(change);
    }
    if (queue.isEmpty())
        m_pPrivate->m_timerSlice.stop();
    m_pPrivate->ShowCounts();
}

void LumoDeviceTree::Apply(const DeviceChange &change)
{
    switch (change.nKind) {
    case DeviceChange::New:
        return AddCamera(change);
    case DeviceChange::Update:
        return UpdateCamera(change);
    case DeviceChange::Delete:
        return DeleteCamera(change);
    }
}

void LumoDeviceTree::AddCamera(const DeviceChange &change)
{
    QTreeWidgetItem *pItem =
        m_pPrivate->MakeItem(m_pPrivate->GroupFor(change.stDevInfo), CameraItem, change.nDeviceID);
    m_pPrivate->m_hashCameras.insert(change.nDeviceID, pItem);
    m_pPrivate->WriteCamera(pItem, change);
    emit sigNewDeviceItem(pItem);
}

void LumoDeviceTree::UpdateCamera(const DeviceChange &change)
{
    QTreeWidgetItem *pItem = findCameraItem(change.nDeviceID);
    if (!pItem)
        return;
    QTreeWidgetItem *pOldGroup = pItem->parent();
    QTreeWidgetItem *pGroup = m_pPrivate->GroupFor(change.stDevInfo);
    if (pGroup != pOldGroup) {
        const bool bCurrent = currentItem() == pItem;
        pGroup->addChild(pOldGroup->takeChild(pOldGroup->indexOfChild(pItem)));
        m_pPrivate->ApplyVisibility(pItem);
        if (bCurrent)
            setCurrentItem(pItem);
        m_pPrivate->DropGroupIfEmpty(pOldGroup);
    }
    m_pPrivate->WriteCamera(pItem, change);
    emit sigUpdateDeviceItem(pItem);
}

void LumoDeviceTree::DeleteCamera(const DeviceChange &change)
{
    QTreeWidgetItem *pItem = findCameraItem(change.nDeviceID);
    if (!pItem)
        return;
    // A slot may run an event loop, in which the item goes, or the camera comes back with an item of its own.
    const QPersistentModelIndex place(indexFromItem(pItem));
    emit sigDeleteDeviceItem(pItem);
    if (!place.isValid())
        return;
    pItem = itemFromIndex(place);
    if (findCameraItem(change.nDeviceID) == pItem)
        m_pPrivate->m_hashCameras.remove(change.nDeviceID);
    QTreeWidgetItem *pGroup = pItem->parent();
    if (currentItem() == pItem)
        setCurrentItem(pGroup);
    delete pItem;
    m_pPrivate->DropGroupIfEmpty(pGroup);
}
