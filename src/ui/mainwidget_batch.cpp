#include "mainwidget.h"

#include <QDir>
#include <QStackedWidget>

#include <DevListMgr/structdeviceinfo.h>
#include <StyleCtl/tarncustomlabel.h>
#include <StyleCtl/tarncustomloadingdialog.h>
#include <StyleCtl/tarncustommessagebox.h>
#include <StyleCtl/tarncustomsavedonehintdlg.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <ToolBase/lumointerface.h>

#include "devicetablemodel.h"
#include "operatetype.h"

using namespace DeviceTable;

QString MainWidget::StartFolder() const
{
    return m_strFilePath.isEmpty() ? LumoInterface::userDataPath() : m_strFilePath;
}

void MainWidget::OnBtnImport()
{
    const QString strFile =
        LumoInterface::getOpenFileName(this, tr("Select Import File"), StartFolder(),
                                       tr("Import File(*.kfb)"), nullptr, QFileDialog::Options());
    ShowOperateTexts(OperateType::kButtonImport);
    if (strFile.isEmpty())
        return;
    setAndStartThread(OperateType::kButtonImport, strFile);
    m_strFilePath = strFile;
}

void MainWidget::OnBtnExport()
{
    const QString strFolder = TarnCustom::getExistingDirectory(this, tr("Export Features"), StartFolder(),
                                                               QFileDialog::ShowDirsOnly);
    ShowOperateTexts(OperateType::kButtonExport);
    if (strFolder.isEmpty())
        return;
    setAndStartThread(OperateType::kButtonExport, strFolder);
    m_strFilePath = strFolder;
}

void MainWidget::setAndStartThread(unsigned int nType, QString strPath)
{
    ClearOperateStatus();
    QVector<_STRUCT_DEVICE_INFO_> vecDevice;
    getCheckedDeviceInfo(vecDevice);
    if (vecDevice.isEmpty())
        return;

    setDisabled(true);
    ResetCounts();
    m_pStackedWidget->setCurrentWidget(m_pResultPage);
    StartWorkers(vecDevice, nType, strPath);
    m_nOperateType = nType;
    ShowLoadingDlg(true, BusyText(nType)); // until the last worker has ended
}

void MainWidget::ResetCounts()
{
    m_nRunningNum = m_nSuccessNum = m_nFailedNum = 0;
    for (TarnCustomLabel *pLabel : {m_pTotalNumLabel, m_pSuccessNumLabel, m_pFailedNumLabel})
        pLabel->setText(QStringLiteral("0"));
}

void MainWidget::ClearOperateStatus()
{
    for (int nRow = 0; nRow < m_pTableWidget->rowCount(); ++nRow) {
        if (QTableWidgetItem *pItem = m_pTableWidget->item(nRow, OperateColumn))
            pItem->setText(QString());
        m_pTableWidget->setDetailTip(nRow, OperateColumn, QString());
    }
}

/// Label of the busy dialog; empty for no operation.
QString MainWidget::BusyText(unsigned int nType) const
{
    if (OperateType::IsImport(nType))
        return tr("Importing features...");
    return OperateType::IsExport(nType) ? tr("Exporting features...") : QString();
}

void MainWidget::ShowLoadingDlg(bool bShow, QString strText)
{
    if (!m_pLoadingDlg)
        return;
    if (bShow) {
        m_pLoadingDlg->SetLabelText(strText);
        m_pLoadingDlg->exec();
    } else {
        m_pLoadingDlg->close();
    }
}

void MainWidget::OnShowMsg(QString strTitle, QString strContent, QString strDetail)
{
    if (strTitle.isEmpty())
        strTitle = tr("Prompt");
    TarnCustomMessageBox::simple(this, strContent, strDetail, strTitle,
                                 TarnCustomMessageBox::HintInformation);
}

void MainWidget::onBeginThread(long lCamerID, unsigned int nThreadType)
{
    const int nRow = rowFromDeviceID(static_cast<int>(lCamerID));
    if (nRow < 0 || IsLateSignal(lCamerID))
        return;
    m_bHasSucceeded = false;
    m_pTotalNumLabel->setText(QString::number(++m_nRunningNum));
    QTableWidgetItem *pItem = m_pTableWidget->item(nRow, OperateColumn);
    if (!pItem)
        return;
    pItem->setData(SuccessRole, true);
    if (OperateType::IsExport(nThreadType))
        pItem->setText(tr("Start exporting..."));
    else if (OperateType::IsImport(nThreadType))
        pItem->setText(tr("Start importing..."));
}

void MainWidget::onThreadInfo(long nDeviceID, const QString &strMsg, bool bFailed)
{
    const int nRow = rowFromDeviceID(static_cast<int>(nDeviceID));
    if (nRow < 0 || IsLateSignal(nDeviceID))
        return;
    QTableWidgetItem *pItem = m_pTableWidget->item(nRow, OperateColumn);
    if (!pItem)
        return;
    pItem->setData(SuccessRole, !bFailed); // the last message decides
    if (bFailed) {
        pItem->setText(QString(strMsg).remove(QStringLiteral("\r\n")));
        m_pTableWidget->setDetailTip(nRow, OperateColumn,
                                     tr("The Reasons of Failure :") + QStringLiteral("\r\n") + strMsg);
        pItem->setForeground(QBrush(Qt::red));
    } else {
        pItem->setText(strMsg);
        pItem->setForeground(QBrush(Qt::black));
    }
}

void MainWidget::onEndThread(long lCameraID, unsigned int nThreadType, QString strFilePath)
{
    const int nRow = rowFromDeviceID(static_cast<int>(lCameraID));
    if (nRow < 0 || IsLateSignal(lCameraID))
        return;
    if (--m_nRunningNum == 0)
        setEnabled(true);
    m_pTotalNumLabel->setText(QString::number(m_nRunningNum));
    QTableWidgetItem *pItem = m_pTableWidget->item(nRow, OperateColumn);
    if (!pItem)
        return;
    if (pItem->data(SuccessRole).toBool()) {
        m_bHasSucceeded = true;
        if (OperateType::IsExport(nThreadType))
            pItem->setText(tr("Exported."));
        else if (OperateType::IsImport(nThreadType))
            pItem->setText(tr("Imported."));
        m_pSuccessNumLabel->setText(QString::number(++m_nSuccessNum));
    } else {
        m_pFailedNumLabel->setText(QString::number(++m_nFailedNum));
    }
    if (m_nRunningNum == 0)
        EndBatch(nThreadType, strFilePath);
}

void MainWidget::EndBatch(unsigned int nThreadType, const QString &strFilePath)
{
    ShowLoadingDlg(false, QString());
    if (!m_bHasSucceeded)
        return; // the red rows and the count of failures say it all
    if (OperateType::IsExport(nThreadType)) {
        auto *pDialog = new TarnCustomSaveDoneHintDlg(this, QString(), QString());
        pDialog->setAttribute(Qt::WA_DeleteOnClose);
        pDialog->setModal(true);
        pDialog->SetMsgText(tr("Exporting process is over."), QDir::toNativeSeparators(strFilePath));
        pDialog->show();
    } else if (OperateType::IsImport(nThreadType)) {
        TarnCustomMessageBox::setNotBlockRun_Mac();
        TarnCustomMessageBox::simple(this, tr("Importing process is over."), QString(), QString(),
                                     TarnCustomMessageBox::HintInformation);
    }
}
