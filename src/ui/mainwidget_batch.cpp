#include "mainwidget.h"

#include <QDir>
#include <QStackedWidget>

#include <DevListMgr/structdeviceinfo.h>
#include <StyleCtl/tarncustomloadingdialog.h>
#include <StyleCtl/tarncustommessagebox.h>
#include <StyleCtl/tarncustomsavedonehintdlg.h>
#include <ToolBase/lumointerface.h>
#include <worker/qoperatethread.h>

#include "operatetype.h"

QString MainWidget::StartFolder() const
{
    return m_strFilePath.isEmpty() ? LumoInterface::userDataPath() : m_strFilePath;
}

void MainWidget::OnBtnImport()
{
    const QString strFile =
        LumoInterface::getOpenFileName(this, tr("Select Import File"), StartFolder(),
                                       tr("Import File(*.kfb)"), nullptr, QFileDialog::Options());
    m_results.ShowOperation(OperateType::kButtonImport);
    if (strFile.isEmpty())
        return;
    setAndStartThread(OperateType::kButtonImport, strFile);
    m_strFilePath = strFile;
}

void MainWidget::OnBtnExport()
{
    const QString strFolder = TarnCustom::getExistingDirectory(this, tr("Export Features"), StartFolder(),
                                                               QFileDialog::ShowDirsOnly);
    m_results.ShowOperation(OperateType::kButtonExport);
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
    m_batch.Reset();
    m_pStackedWidget->setCurrentWidget(m_pResultPage);
    m_batch.Start(vecDevice, nType, strPath);
    m_nOperateType = nType;
    ShowLoadingDlg(true, BusyText(nType)); // until the last worker has ended
}

void MainWidget::ClearOperateStatus()
{
    m_progress.Clear();
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
    if (!IsLateSignal(lCamerID))
        m_batch.Begin(lCamerID, nThreadType);
}

void MainWidget::onThreadInfo(long nDeviceID, const QString &strMsg, bool bFailed)
{
    if (!IsLateSignal(nDeviceID))
        m_batch.Report(nDeviceID, strMsg, bFailed);
}

void MainWidget::onEndThread(long lCameraID, unsigned int nThreadType, QString strFilePath)
{
    if (!IsLateSignal(lCameraID))
        m_batch.End(lCameraID, nThreadType, strFilePath);
}

/// Whether the slot that runs was called by a worker that its camera has no longer.
bool MainWidget::IsLateSignal(long nDeviceID) const
{
    return m_workers.IsFormer(sender(), nDeviceID);
}

QOperateThread *MainWidget::getOperateThread(long nDeviceID)
{
    return m_workers.WorkerOf(nDeviceID);
}

void MainWidget::ConnectWorker(QOperateThread *pThread)
{
    connect(pThread, &QOperateThread::SigBeginThread, this, &MainWidget::onBeginThread);
    connect(pThread, &QOperateThread::SigEndThread, this, &MainWidget::onEndThread);
    connect(pThread, &QOperateThread::SigThreadInfo, this, &MainWidget::onThreadInfo);
}

bool MainWidget::IsThreadRunning()
{
    return m_workers.IsAnyRunning();
}

void MainWidget::ShowBatchEnd(unsigned int nThreadType, const QString &strFilePath)
{
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
