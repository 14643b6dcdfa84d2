#include "camerarows.h"

#include <QHeaderView>
#include <QPersistentModelIndex>

#include <DevListMgr/structdeviceinfo.h>
#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomtablewidget.h>

#include "csorttableitem.h"
#include "devicerecordtexts.h"
#include "devicetablemodel.h"

using namespace DeviceTable;

CameraRows::CameraRows(TarnCustomTableWidget *&pTable)
    : m_pTable(pTable)
{
}

void CameraRows::SetUp()
{
    if (!m_pTable)
        return;
    auto *pHeader = new TarnCustomCheckHeaderView(Qt::Horizontal, m_pTable);
    pHeader->setCheckBoxVisible(CheckColumn, true);
    m_pTable->setHorizontalHeader(pHeader);
    pHeader->setFixedHeight(kHeaderHeight);

    m_pTable->connetSectionResized(true);
    m_pTable->setShowGrid(true);
    m_pTable->setAlternatingRowColors(true);
    SetUpColumns();
    pHeader->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (int nColumn = PortColumn; nColumn < ColumnCount; ++nColumn)
        pHeader->enableSort(nColumn, true);
    SetTexts();
    pHeader->setFixedHeight(kHeaderHeight);

    for (int nRow = 0; nRow < kMinRows; ++nRow)
        InsertEmptyRow(nRow);
}

void CameraRows::SetUpColumns()
{
    m_pTable->setColumnCount(ColumnCount);
    m_pTable->setColumnWidth(CheckColumn, 38);
    m_pTable->setColumnWidth(PortColumn, 100);
    m_pTable->setColumnWidth(ModelColumn, 149);
    m_pTable->setColumnWidth(UserNameColumn, 110);
    m_pTable->setColumnWidth(SerialColumn, 160);
    m_pTable->setColumnWidth(StateColumn, 54);
    m_pTable->setColumnWidth(OperateColumn, 319);
    m_pTable->setIconSize(QSize(kIconSize, kIconSize));
    m_pTable->horizontalHeader()->setSectionResizeMode(OperateColumn, QHeaderView::Stretch);
    for (int nColumn : {PortColumn, InterfaceColumn, MacColumn})
        m_pTable->setColumnHidden(nColumn, true);
}

void CameraRows::SetTexts()
{
    if (!m_pTable)
        return;
    m_pTable->setHorizontalHeaderLabels({QString(), tr("PortID"), tr("Model Name"), tr("Device User ID"),
                                         tr("Serial Number"), tr("Interface Type"), tr("MAC Address"),
                                         tr("Status"), tr("Operation Status")});
}

void CameraRows::InsertEmptyRow(int nRow)
{
    m_pTable->insertRow(nRow);
    m_pTable->setRowHeight(nRow, kRowHeight);
}

int CameraRows::Count() const
{
    int nCount = 0;
    for (int nRow = 0; m_pTable && nRow < m_pTable->rowCount(); ++nRow) {
        if (m_pTable->IsHaveCheckBox(nRow, CheckColumn))
            ++nCount;
    }
    return nCount;
}

int CameraRows::RowOf(int nDeviceID) const
{
    for (int nRow = 0; m_pTable && nRow < m_pTable->rowCount(); ++nRow) {
        const QTableWidgetItem *pItem = m_pTable->item(nRow, CheckColumn);
        if (!pItem)
            return -1; // the empty rows begin
        if (pItem->data(DeviceIdRole).toInt() == nDeviceID)
            return nRow;
    }
    return -1;
}

int CameraRows::Insert(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, const QString &strInterface)
{
    if (!m_pTable)
        return -1;
    const int nRow = Count();
    if (nRow >= kMinRows)
        InsertEmptyRow(nRow);
    for (int nColumn = 0; nColumn < ColumnCount; ++nColumn)
        m_pTable->setItem(nRow, nColumn, new CSortTableItem);
    m_pTable->setCheckBoxVisible(nRow, CheckColumn, true);
    m_pTable->setRowHidden(nRow, true);
    Update(nRow, stDeviceInfo, strInterface);
    if (nRow == 0)
        m_pTable->selectRow(0);
    return nRow;
}

/// False when the cell has no item.
bool CameraRows::SetText(int nRow, int nColumn, const QString &strText)
{
    QTableWidgetItem *pItem = m_pTable->item(nRow, nColumn);
    if (!pItem)
        return false;
    pItem->setData(Qt::DisplayRole, strText);
    return true;
}

void CameraRows::Update(int nRow, const _STRUCT_DEVICE_INFO_ &stDeviceInfo, const QString &strInterface)
{
    QTableWidgetItem *pFirst = m_pTable ? m_pTable->item(nRow, CheckColumn) : nullptr;
    if (!pFirst)
        return;
    pFirst->setData(DeviceIdRole, stDeviceInfo.nDeviceID);

    const DeviceTexts texts = TextsOfDevice(stDeviceInfo);
    const bool bPort = stDeviceInfo.nDeviceType == PortDevice;
    const bool bNetwork = stDeviceInfo.nDeviceType == NetworkDevice;
    if ((bPort && !SetText(nRow, PortColumn, texts.strPortID)) ||
        !SetText(nRow, ModelColumn, texts.strModel) || !SetText(nRow, UserNameColumn, texts.strUserName) ||
        !SetText(nRow, SerialColumn, texts.strSerial) || !SetText(nRow, InterfaceColumn, strInterface) ||
        (bNetwork && !SetText(nRow, MacColumn, texts.strMacAddress)))
        return;
    UpdateAccessState(nRow, stDeviceInfo.nAccessStatus);
}

void CameraRows::UpdateAccessState(int nRow, quint32 nAccessStatus)
{
    const AccessState nState = AccessStateOf(nAccessStatus);
    if (nState != AccessFree) // without a signal: header and buttons follow at the next tick
        m_pTable->setCellCheckState(nRow, CheckColumn, Qt::Unchecked, false);
    m_pTable->setCheckBoxEnable(nRow, CheckColumn, nState == AccessFree);
    QTableWidgetItem *pItem = m_pTable->item(nRow, StateColumn);
    if (!pItem)
        return;
    // The state's word is made with the row's other texts, and on purpose shown nowhere: the column has room
    // for the icon alone, whatever the language.
    const QString strState = AccessStateText(nState);
    Q_UNUSED(strState)
    pItem->setData(Qt::DecorationRole, QIcon(AccessIconPath(nState)));
    pItem->setData(StateCodeRole, int(nState));
}

QString CameraRows::AccessStateText(int nState)
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

bool CameraRows::Remove(int nDeviceID)
{
    const int nRow = RowOf(nDeviceID);
    if (nRow < 0)
        return false;
    // Told while the row is there, so that the header and the buttons are right when it has gone. A message
    // may come of it, and rows may go, and change places, while it is open.
    const QPersistentModelIndex leaving(m_pTable->model()->index(nRow, CheckColumn));
    m_pTable->setCellCheckState(nRow, CheckColumn, Qt::Unchecked, true);
    m_pTable->removeRow(leaving.row());
    if (m_pTable->rowCount() < kMinRows)
        InsertEmptyRow(m_pTable->rowCount());
    return true;
}
