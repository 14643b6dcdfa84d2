#include "mainwidget.h"

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <ToolBase/lumointerface.h>

#include "devicerecordtexts.h"
#include "devicetablemodel.h"

using namespace DeviceTable;

namespace {

const int kDeviceTypes = NetworkDevice | UsbDevice;

QVariant RecordOf(const QTreeWidgetItem *pItem)
{
    return pItem->data(0, LumoDeviceTree::RecordRole);
}

QString InterfaceTextOf(const QTreeWidgetItem *pItem)
{
    return pItem->parent() ? pItem->parent()->text(0) : QString();
}

} // namespace

void MainWidget::InitTableWidget()
{
    if (!m_pTableWidget)
        return;
    m_rows.SetUp();
    InitDeviceTree();
}

void MainWidget::InitDeviceTree()
{
    if (!m_pDeviceTree)
        return;
    m_pDeviceTree->setVisibleItemTypes({2, 3, 1, 4, 11, 10});
    m_pDeviceTree->updateDeviceTypes(kDeviceTypes, true);
    m_pDeviceTree->setToolName(QStringLiteral("ToolTree"));
    m_pDeviceTree->setFixedWidth(186);
    m_pDeviceTree->setItemsExpandable(false);
    m_pDeviceTree->setCurrentItem(m_pDeviceTree->findItem(LumoDeviceTree::AllCamerasItem, -1), 1);
}

void MainWidget::onNewDevice(QTreeWidgetItem *pItem)
{
    if (!m_pTableWidget || !pItem)
        return;
    UpdateItemVisible(m_rows.Insert(RecordOf(pItem).value<StructDeviceInfo>(), InterfaceTextOf(pItem)));
}

void MainWidget::onUpdateDevice(QTreeWidgetItem *pItem)
{
    if (!m_pTableWidget || !pItem)
        return;
    const QVariant record = RecordOf(pItem);
    const int nRow = rowFromDeviceID(record.value<StructDeviceInfo>().nDeviceID);
    updateDeviceInfo(nRow, record, InterfaceTextOf(pItem));
}

void MainWidget::onDeleteDevice(QTreeWidgetItem *pItem)
{
    if (!m_pTableWidget || !pItem)
        return;
    const int nDeviceID = RecordOf(pItem).value<StructDeviceInfo>().nDeviceID;
    if (m_rows.Remove(nDeviceID))
        m_workers.Remove(nDeviceID);
}

void MainWidget::updateDeviceInfo(int nRow, const QVariant &deviceInfo, const QString &strInterfaceType)
{
    m_rows.Update(nRow, deviceInfo.value<StructDeviceInfo>(), strInterfaceType);
}

void MainWidget::UpdateItemVisible(int nRow)
{
    m_filter.FilterRow(nRow);
}

void MainWidget::OnTreeSelectesChanged()
{
    if (!m_pTableWidget || !m_pDeviceTree)
        return;
    m_filter.FilterAllRows();
    m_pTableWidget->setColumnHidden(PortColumn, true); // for every group
    onCellCheckStateChanged(0, CheckColumn);
}

void MainWidget::onCellCheckStateChanged(int nRow, int)
{
    m_ticks.OnCellChanged(nRow);
}

void MainWidget::onHeaderCheckStateChanged(int nColumn)
{
    m_ticks.OnHeaderChanged(nColumn);
}

void MainWidget::onSortTableWidget(int nColumn, bool bAscending)
{
    if (!m_pTableWidget)
        return;
    // Hidden rows move with their cameras. They are not filtered anew: a ticked camera that has moved to
    // another interface would vanish, and its tick with it, while the buttons still stand for it.
    m_pTableWidget->sortItems(nColumn, bAscending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

int MainWidget::rowFromDeviceID(int nDeviceID)
{
    return m_rows.RowOf(nDeviceID);
}

int MainWidget::GetCameraNum()
{
    return m_rows.Count();
}

int MainWidget::GetCheckedNum()
{
    return m_ticks.CheckedCount();
}

int MainWidget::GetEnabledNum()
{
    return m_ticks.EnabledCount();
}

int MainWidget::GetMaxCameraNum()
{
    return LumoInterface::toolsSupportNum();
}

void MainWidget::getCheckedDeviceInfo(QVector<_STRUCT_DEVICE_INFO_> &vecDevice)
{
    vecDevice.clear();
    for (const int nDeviceID : m_ticks.CheckedDevices()) {
        // The tree's record, not a copy of ours: the camera's address may have changed since the row was
        // made.
        if (const QTreeWidgetItem *pItem = m_pDeviceTree->findCameraItem(nDeviceID))
            vecDevice.append(RecordOf(pItem).value<StructDeviceInfo>());
    }
}
