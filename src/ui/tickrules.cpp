#include "tickrules.h"

#include <QPersistentModelIndex>

#include <utility>

#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomtablewidget.h>

#include "devicetablemodel.h"

using namespace DeviceTable;

namespace {

template <typename Predicate>
int CountVisibleRows(const QTableWidget *pTable, Predicate predicate)
{
    int nCount = 0;
    for (int nRow = 0; pTable && nRow < pTable->rowCount(); ++nRow) {
        if (!pTable->isRowHidden(nRow) && predicate(nRow))
            ++nCount;
    }
    return nCount;
}

} // namespace

TickRules::TickRules(TarnCustomTableWidget *&pTable, const qint32 &nLimit, Window window)
    : m_pTable(pTable)
    , m_nLimit(nLimit)
    , m_window(std::move(window))
{
}

TarnCustomCheckHeaderView *TickRules::Header() const
{
    return m_pTable ? qobject_cast<TarnCustomCheckHeaderView *>(m_pTable->horizontalHeader()) : nullptr;
}

bool TickRules::IsChecked(int nRow) const
{
    return m_pTable->cellCheckState(nRow, CheckColumn) == Qt::Checked;
}

int TickRules::CheckedCount() const
{
    return CountVisibleRows(m_pTable, [this](int nRow) { return IsChecked(nRow); });
}

int TickRules::EnabledCount() const
{
    return CountVisibleRows(m_pTable,
                            [this](int nRow) { return m_pTable->cellCheckEnable(nRow, CheckColumn); });
}

QVector<int> TickRules::CheckedDevices() const
{
    QVector<int> vecDevices;
    for (int nRow = 0; m_pTable && nRow < m_pTable->rowCount(); ++nRow) {
        if (m_pTable->isRowHidden(nRow))
            continue;
        const QTableWidgetItem *pCell = m_pTable->item(nRow, CheckColumn);
        if (!pCell)
            break; // the empty rows begin
        if (IsChecked(nRow))
            vecDevices.append(pCell->data(DeviceIdRole).toInt());
    }
    return vecDevices;
}

void TickRules::OnCellChanged(int nRow)
{
    TarnCustomCheckHeaderView *pHeader = Header();
    if (!pHeader)
        return;
    const int nChecked = CheckedCount();
    if (static_cast<unsigned int>(nChecked) > static_cast<unsigned int>(m_nLimit)) {
        // Rows may go, and change places, while the message is open.
        const QPersistentModelIndex refused(m_pTable->model()->index(nRow, CheckColumn));
        m_window.showMessage(tr("Operation failed. You can operate %1 devices at most.").arg(m_nLimit));
        m_pTable->setCellCheckState(refused.row(), CheckColumn, Qt::Unchecked, false);
        return;
    }
    const int nEnabled = EnabledCount();
    const bool bAll = nEnabled > 0 && (nChecked == nEnabled || nChecked == m_nLimit);
    pHeader->setCheckState(CheckColumn, bAll ? Qt::Checked : Qt::Unchecked, false);
    m_window.enableButtons(nChecked > 0);
}

void TickRules::OnHeaderChanged(int nColumn)
{
    TarnCustomCheckHeaderView *pHeader = Header();
    if (!pHeader)
        return;
    const Qt::CheckState nState = pHeader->checkState(CheckColumn);
    if (nState == Qt::PartiallyChecked)
        return;
    SetVisibleRows(nColumn, nState);
    m_window.enableButtons(nState != Qt::Unchecked && CheckedCount() > 0);
}

/// Sets the visible rows from the top; ticking ends when as many are ticked as a batch may have.
void TickRules::SetVisibleRows(int nColumn, Qt::CheckState nState)
{
    int nChecked = CheckedCount(); // counted along: a count per row would take the square of the rows
    m_pTable->setUpdatesEnabled(false);
    for (int nRow = 0; nRow < m_pTable->rowCount(); ++nRow) {
        if (m_pTable->isRowHidden(nRow))
            continue;
        if (nState == Qt::Checked && nChecked == m_nLimit)
            break;
        const bool bBefore = IsChecked(nRow);
        m_pTable->setCellCheckState(nRow, nColumn, nState, false);
        nChecked += int(IsChecked(nRow)) - int(bBefore);
    }
    m_pTable->setUpdatesEnabled(true);
}
