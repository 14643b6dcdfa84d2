#include "rowprogress.h"

#include <StyleCtl/tarncustomtablewidget.h>

#include "devicetablemodel.h"
#include "operatetype.h"

using namespace DeviceTable;

namespace {

QTableWidgetItem *CellOf(const QTableWidget *pTable, int nRow)
{
    return pTable ? pTable->item(nRow, OperateColumn) : nullptr;
}

} // namespace

RowProgress::RowProgress(TarnCustomTableWidget *&pTable)
    : m_pTable(pTable)
{
}

void RowProgress::Clear()
{
    for (int nRow = 0; m_pTable && nRow < m_pTable->rowCount(); ++nRow) {
        if (QTableWidgetItem *pItem = CellOf(m_pTable, nRow))
            pItem->setText(QString());
        m_pTable->setDetailTip(nRow, OperateColumn, QString());
    }
}

void RowProgress::Begin(int nRow, unsigned int nType)
{
    QTableWidgetItem *pItem = CellOf(m_pTable, nRow);
    if (!pItem)
        return;
    pItem->setData(SuccessRole, true);
    if (OperateType::IsExport(nType))
        pItem->setText(tr("Start exporting..."));
    else if (OperateType::IsImport(nType))
        pItem->setText(tr("Start importing..."));
}

void RowProgress::Report(int nRow, const QString &strMsg, bool bFailed)
{
    QTableWidgetItem *pItem = CellOf(m_pTable, nRow);
    if (!pItem)
        return;
    pItem->setData(SuccessRole, !bFailed); // the last message decides
    if (bFailed) {
        pItem->setText(QString(strMsg).remove(QStringLiteral("\r\n")));
        m_pTable->setDetailTip(nRow, OperateColumn,
                               tr("The Reasons of Failure :") + QStringLiteral("\r\n") + strMsg);
        pItem->setForeground(QBrush(Qt::red));
    } else {
        pItem->setText(strMsg);
        pItem->setForeground(QBrush(Qt::black));
    }
}

RowProgress::Outcome RowProgress::End(int nRow, unsigned int nType)
{
    QTableWidgetItem *pItem = CellOf(m_pTable, nRow);
    if (!pItem)
        return Outcome::None;
    if (!pItem->data(SuccessRole).toBool())
        return Outcome::Failed;
    if (OperateType::IsExport(nType))
        pItem->setText(tr("Exported."));
    else if (OperateType::IsImport(nType))
        pItem->setText(tr("Imported."));
    return Outcome::Succeeded;
}
