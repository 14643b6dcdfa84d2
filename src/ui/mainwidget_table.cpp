#include "mainwidget.h"

#include <QHeaderView>
#include <QPersistentModelIndex>

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomtablewidget.h>

#include "csorttableitem.h"
#include "devicerecordtexts.h"
#include "devicetablemodel.h"

using namespace DeviceTable;

namespace {

const int DEVICE_TYPES = NetworkDevice | UsbDevice;

QVariant RecordOf(const QTreeWidgetItem *pItem)
{
    return pItem->data(0, LumoDeviceTree::RecordRole);
}

QString InterfaceTextOf(const QTreeWidgetItem *pItem)
{
    return pItem->parent() ? pItem->parent()->text(0) : QString();
}

/// False when the cell has no item.
bool SetCellText(const QTableWidget *pTable, int nRow, int nColumn, const QString &strText)
{
    QTableWidgetItem *pItem = pTable->item(nRow, nColumn);
    if (!pItem)
        return false;
    pItem->setData(Qt::DisplayRole, strText);
    return true;
}

} // namespace

void MainWidget::InitTableWidget()
{
    if (!m_pTableWidget)
        return;
    auto *pHeader = new TarnCustomCheckHeaderView(Qt::Horizontal, m_pTableWidget);
    pHeader->setCheckBoxVisible(CheckColumn, true);
    m_pTableWidget->setHorizontalHeader(pHeader);
    pHeader->setFixedHeight(HEADER_HEIGHT);

    m_pTableWidget->connetSectionResized(true);
    m_pTableWidget->setShowGrid(true);
    m_pTableWidget->setAlternatingRowColors(true);
    InitTableColumns();
    pHeader->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (int nColumn = PortColumn; nColumn < ColumnCount; ++nColumn)
        pHeader->enableSort(nColumn, true);
    m_pTableWidget->setHorizontalHeaderLabels(HeaderLabels());
    pHeader->setFixedHeight(HEADER_HEIGHT);

    for (int nRow = 0; nRow < MIN_ROWS; ++nRow)
        InsertEmptyRow(nRow);
    InitDeviceTree();
}

void MainWidget::InitTableColumns()
{
    m_pTableWidget->setColumnCount(ColumnCount);
    m_pTableWidget->setColumnWidth(CheckColumn, 38);
    m_pTableWidget->setColumnWidth(PortColumn, 100);
    m_pTableWidget->setColumnWidth(ModelColumn, 149);
    m_pTableWidget->setColumnWidth(UserNameColumn, 110);
    m_pTableWidget->setColumnWidth(SerialColumn, 160);
    m_pTableWidget->setColumnWidth(StateColumn, 54);
    m_pTableWidget->setColumnWidth(OperateColumn, 319);
    m_pTableWidget->setIconSize(QSize(ICON_SIZE, ICON_SIZE));
    m_pTableWidget->horizontalHeader()->setSectionResizeMode(OperateColumn, QHeaderView::Stretch);
    for (int nColumn : {PortColumn, InterfaceColumn, MacColumn})
        m_pTableWidget->setColumnHidden(nColumn, true);
}

QStringList MainWidget::HeaderLabels() const
{
    return {QString(),
            tr("PortID"),
            tr("Model Name"),
            tr("Device User ID"),
            tr("Serial Number"),
            tr("Interface Type"),
            tr("MAC Address"),
            tr("Status"),
            tr("Operation Status")};
}

void MainWidget::InsertEmptyRow(int nRow)
{
    m_pTableWidget->insertRow(nRow);
    m_pTableWidget->setRowHeight(nRow, ROW_HEIGHT);
}

void MainWidget::InitDeviceTree()
{
    if (!m_pDeviceTree)
        return;
    m_pDeviceTree->setVisibleItemTypes({2, 3, 1, 4, 11, 10});
    m_pDeviceTree->updateDeviceTypes(DEVICE_TYPES, true);
    m_pDeviceTree->setToolName(QStringLiteral("ToolTree"));
    m_pDeviceTree->setFixedWidth(186);
    m_pDeviceTree->setItemsExpandable(false);
    m_pDeviceTree->setCurrentItem(m_pDeviceTree->findItem(LumoDeviceTree::AllCamerasItem, -1), 1);
}

void MainWidget::onNewDevice(QTreeWidgetItem *pItem)
{
    if (!m_pTableWidget || !pItem)
        return;
    const int nRow = GetCameraNum();
    if (nRow >= MIN_ROWS)
        InsertEmptyRow(nRow);
    for (int nColumn = 0; nColumn < ColumnCount; ++nColumn)
        m_pTableWidget->setItem(nRow, nColumn, new CSortTableItem);
    m_pTableWidget->setCheckBoxVisible(nRow, CheckColumn, true);
    m_pTableWidget->setRowHidden(nRow, true);
    updateDeviceInfo(nRow, RecordOf(pItem), InterfaceTextOf(pItem));
    if (nRow == 0)
        m_pTableWidget->selectRow(0);
    UpdateItemVisible(nRow);
}

void MainWidget::onUpdateDevice(QTreeWidgetItem *pItem)
{
    if (!m_pTableWidget || !pItem)
        return;
    const QVariant record = RecordOf(pItem);
    const int nRow = rowFromDeviceID(record.value<StructDeviceInfo>().nDeviceID);
    if (nRow >= 0)
        updateDeviceInfo(nRow, record, InterfaceTextOf(pItem));
}

void MainWidget::onDeleteDevice(QTreeWidgetItem *pItem)
{
    if (!m_pTableWidget || !pItem)
        return;
    const int nDeviceID = RecordOf(pItem).value<StructDeviceInfo>().nDeviceID;
    const int nRow = rowFromDeviceID(nDeviceID);
    if (nRow < 0)
        return;
    // Told while the row is there, so that the header and the buttons are right when it has gone. A message
    // may come of it, and rows may go, and change places, while it is open.
    const QPersistentModelIndex leaving(m_pTableWidget->model()->index(nRow, CheckColumn));
    m_pTableWidget->setCellCheckState(nRow, CheckColumn, Qt::Unchecked, true);
    m_pTableWidget->removeRow(leaving.row());
    if (m_pTableWidget->rowCount() < MIN_ROWS)
        InsertEmptyRow(m_pTableWidget->rowCount());
    RemoveWorker(nDeviceID);
}

void MainWidget::updateDeviceInfo(int nRow, const QVariant &deviceInfo, const QString &strInterfaceType)
{
    if (!m_pTableWidget || nRow < 0 || nRow >= m_pTableWidget->rowCount())
        return;
    const auto stDeviceInfo = deviceInfo.value<StructDeviceInfo>();
    QTableWidgetItem *pFirst = m_pTableWidget->item(nRow, CheckColumn);
    if (!pFirst)
        return;
    pFirst->setData(DeviceIdRole, stDeviceInfo.nDeviceID);

    const DeviceTexts texts = TextsOfDevice(stDeviceInfo);
    const auto setText = [&](int nColumn, const QString &strText) {
        return SetCellText(m_pTableWidget, nRow, nColumn, strText);
    };
    const bool bPort = stDeviceInfo.nDeviceType == PortDevice;
    const bool bNetwork = stDeviceInfo.nDeviceType == NetworkDevice;
    if ((bPort && !setText(PortColumn, texts.strPortID)) || !setText(ModelColumn, texts.strModel) ||
        !setText(UserNameColumn, texts.strUserName) || !setText(SerialColumn, texts.strSerial) ||
        !setText(InterfaceColumn, strInterfaceType) || (bNetwork && !setText(MacColumn, texts.strMacAddress)))
        return;
    UpdateAccessState(nRow, stDeviceInfo.nAccessStatus);
}

void MainWidget::UpdateAccessState(int nRow, unsigned int nAccessStatus)
{
    const AccessState nState = AccessStateOf(nAccessStatus);
    if (nState != AccessFree) // without a signal: header and buttons follow at the next tick
        m_pTableWidget->setCellCheckState(nRow, CheckColumn, Qt::Unchecked, false);
    m_pTableWidget->setCheckBoxEnable(nRow, CheckColumn, nState == AccessFree);
    QTableWidgetItem *pItem = m_pTableWidget->item(nRow, StateColumn);
    if (!pItem)
        return;
    // The state's word is made with the row's other texts, and on purpose shown nowhere: the column has room
    // for the icon alone, whatever the language.
    const QString strState = AccessStateText(nState);
    Q_UNUSED(strState)
    pItem->setData(Qt::DecorationRole, QIcon(AccessIconPath(nState)));
    pItem->setData(StateCodeRole, int(nState));
}

QString MainWidget::AccessStateText(int nState) const
{
    switch (nState) {
    case AccessFree:
        return tr("Free");
    case AccessInUse:
        return tr("In Use");
    default:
        return tr("Unreachable");
    }
}

void MainWidget::UpdateItemVisible(int nRow)
{
    if (!m_pDeviceTree || !m_pTableWidget || !m_pTableWidget->item(nRow, CheckColumn))
        return;
    const int nDeviceID = m_pTableWidget->item(nRow, CheckColumn)->data(DeviceIdRole).toInt();
    const QTreeWidgetItem *pCamera = m_pDeviceTree->findCameraItem(nDeviceID);
    if (!pCamera)
        return;
    const QTreeWidgetItem *pCurrent = m_pDeviceTree->currentItem();
    bool bShow =
        pCurrent && pCurrent->data(0, LumoDeviceTree::ItemTypeRole).toInt() == LumoDeviceTree::AllCamerasItem;
    for (const QTreeWidgetItem *pGroup = pCamera->parent(); pGroup && !bShow; pGroup = pGroup->parent())
        bShow = pGroup == pCurrent;
    if (m_pTableWidget->isRowHidden(nRow) == bShow)
        m_pTableWidget->setRowHidden(nRow, !bShow);
}

void MainWidget::UpdateAllVisible()
{
    m_pTableWidget->setUpdatesEnabled(false); // one repaint instead of one for every row
    for (int nRow = 0; nRow < m_pTableWidget->rowCount(); ++nRow)
        UpdateItemVisible(nRow);
    m_pTableWidget->setUpdatesEnabled(true);
}

void MainWidget::OnTreeSelectesChanged()
{
    if (!m_pTableWidget || !m_pDeviceTree)
        return;
    UpdateAllVisible();
    m_pTableWidget->setColumnHidden(PortColumn, true); // for every group
    onCellCheckStateChanged(0, CheckColumn);
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
    if (!m_pTableWidget)
        return -1;
    for (int nRow = 0; nRow < m_pTableWidget->rowCount(); ++nRow) {
        const QTableWidgetItem *pItem = m_pTableWidget->item(nRow, CheckColumn);
        if (!pItem)
            return -1; // the empty rows begin
        if (pItem->data(DeviceIdRole).toInt() == nDeviceID)
            return nRow;
    }
    return -1;
}
