#include "groupfilter.h"

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustomtablewidget.h>

#include "devicetablemodel.h"

using namespace DeviceTable;

GroupFilter::GroupFilter(TarnCustomTableWidget *&pTable, LumoDeviceTree *&pTree)
    : m_pTable(pTable)
    , m_pTree(pTree)
{
}

bool GroupFilter::IsShown(const QTreeWidgetItem *pCamera, const QTreeWidgetItem *pSelected)
{
    if (!pSelected)
        return false;
    if (pSelected->data(0, LumoDeviceTree::ItemTypeRole).toInt() == LumoDeviceTree::AllCamerasItem)
        return true;
    for (const QTreeWidgetItem *pGroup = pCamera->parent(); pGroup; pGroup = pGroup->parent()) {
        if (pGroup == pSelected)
            return true;
    }
    return false;
}

void GroupFilter::FilterRow(int nRow)
{
    const QTableWidgetItem *pCell = m_pTree && m_pTable ? m_pTable->item(nRow, CheckColumn) : nullptr;
    if (!pCell)
        return;
    const QTreeWidgetItem *pCamera = m_pTree->findCameraItem(pCell->data(DeviceIdRole).toInt());
    if (!pCamera)
        return;
    const bool bShow = IsShown(pCamera, m_pTree->currentItem());
    if (m_pTable->isRowHidden(nRow) == bShow)
        m_pTable->setRowHidden(nRow, !bShow);
}

void GroupFilter::FilterAllRows()
{
    if (!m_pTree || !m_pTable)
        return;
    m_pTable->setUpdatesEnabled(false); // one repaint instead of one for every row
    for (int nRow = 0; nRow < m_pTable->rowCount(); ++nRow)
        FilterRow(nRow);
    m_pTable->setUpdatesEnabled(true);
}
