#include "mainwidget.h"

#include <QPersistentModelIndex>

#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <ToolBase/lumointerface.h>

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

TarnCustomCheckHeaderView *MainWidget::CheckHeader() const
{
    return m_pTableWidget ? qobject_cast<TarnCustomCheckHeaderView *>(m_pTableWidget->horizontalHeader())
                          : nullptr;
}

int MainWidget::GetCameraNum()
{
    int nCount = 0;
    for (int nRow = 0; m_pTableWidget && nRow < m_pTableWidget->rowCount(); ++nRow) {
        if (m_pTableWidget->IsHaveCheckBox(nRow, CheckColumn))
            ++nCount;
    }
    return nCount;
}

int MainWidget::GetCheckedNum()
{
    return CountVisibleRows(m_pTableWidget, [this](int nRow) {
        return m_pTableWidget->cellCheckState(nRow, CheckColumn) == Qt::Checked;
    });
}

int MainWidget::GetEnabledNum()
{
    return CountVisibleRows(m_pTableWidget,
                            [this](int nRow) { return m_pTableWidget->cellCheckEnable(nRow, CheckColumn); });
}

int MainWidget::GetMaxCameraNum()
{
    return LumoInterface::toolsSupportNum();
}

void MainWidget::onCellCheckStateChanged(int nRow, int)
{
    TarnCustomCheckHeaderView *pHeader = CheckHeader();
    if (!pHeader)
        return;
    const int nChecked = GetCheckedNum();
    if (static_cast<unsigned int>(nChecked) > static_cast<unsigned int>(m_nMaxCameraNum)) {
        // Rows may go, and change places, while the message is open.
        const QPersistentModelIndex refused(m_pTableWidget->model()->index(nRow, CheckColumn));
        OnShowMsg(tr("Prompt"),
                  tr("Operation failed. You can operate %1 devices at most.").arg(m_nMaxCameraNum),
                  QString());
        m_pTableWidget->setCellCheckState(refused.row(), CheckColumn, Qt::Unchecked, false);
        return;
    }
    const int nEnabled = GetEnabledNum();
    const bool bAll = nEnabled > 0 && (nChecked == nEnabled || nChecked == m_nMaxCameraNum);
    pHeader->setCheckState(CheckColumn, bAll ? Qt::Checked : Qt::Unchecked, false);
    EnabledOperateCtrls(nChecked > 0);
}

void MainWidget::onHeaderCheckStateChanged(int nColumn)
{
    TarnCustomCheckHeaderView *pHeader = CheckHeader();
    if (!pHeader)
        return;
    const Qt::CheckState nState = pHeader->checkState(CheckColumn);
    if (nState == Qt::PartiallyChecked)
        return;
    CheckVisibleRows(nColumn, nState);
    EnabledOperateCtrls(nState != Qt::Unchecked && GetCheckedNum() > 0);
}

/// Sets the visible rows from the top; ticking ends when as many are ticked as a batch may have.
void MainWidget::CheckVisibleRows(int nColumn, Qt::CheckState nState)
{
    const auto isChecked = [&](int nRow) {
        return m_pTableWidget->cellCheckState(nRow, CheckColumn) == Qt::Checked;
    };
    int nChecked = GetCheckedNum(); // counted along: a count per row would take the square of the rows
    m_pTableWidget->setUpdatesEnabled(false);
    for (int nRow = 0; nRow < m_pTableWidget->rowCount(); ++nRow) {
        if (m_pTableWidget->isRowHidden(nRow))
            continue;
        if (nState == Qt::Checked && nChecked == m_nMaxCameraNum)
            break;
        const bool bBefore = isChecked(nRow);
        m_pTableWidget->setCellCheckState(nRow, nColumn, nState, false);
        nChecked += int(isChecked(nRow)) - int(bBefore);
    }
    m_pTableWidget->setUpdatesEnabled(true);
}
