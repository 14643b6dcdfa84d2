#include "mainwidget.h"

#include <KxCameraControl/kxcameracontrol.h>
#include <worker/qoperatethread.h>

#include "operatetype.h"

namespace {

// A worker that lost its camera gives up after one deadline of the camera SDK; what it does besides takes
// far less than another two. One that has not ended by then never will.
const unsigned long LONGEST_WAIT_MS = 3ul * KX_CC_DEADLINE_MS;

} // namespace

QOperateThread *MainWidget::getOperateThread(long nDeviceID)
{
    const auto it = m_mapThread.constFind(nDeviceID);
    if (it != m_mapThread.constEnd())
        return it.value();
    auto *pThread = new QOperateThread(this);
    m_mapThread.insert(nDeviceID, pThread);
    connect(pThread, &QOperateThread::SigBeginThread, this, &MainWidget::onBeginThread);
    connect(pThread, &QOperateThread::SigEndThread, this, &MainWidget::onEndThread);
    connect(pThread, &QOperateThread::SigThreadInfo, this, &MainWidget::onThreadInfo);
    return pThread;
}

void MainWidget::StartWorker(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, unsigned int nType,
                             const QString &strPath)
{
    QOperateThread *pThread = getOperateThread(stDeviceInfo.nDeviceID);
    // Its last signal may have come before its thread was through; it cannot be started until it is.
    if (!pThread->wait(LONGEST_WAIT_MS))
        return;
    if (OperateType::IsExport(nType))
        pThread->SetExportThreadInfo(stDeviceInfo, strPath);
    else if (OperateType::IsImport(nType))
        pThread->SetImportThreadInfo(stDeviceInfo, strPath);
    pThread->start(QThread::InheritPriority);
}

bool MainWidget::IsThreadRunning()
{
    for (const QOperateThread *pThread : qAsConst(m_mapThread)) {
        if (pThread && pThread->isRunning())
            return true;
    }
    return false;
}

/// Ends the worker of a camera that has gone. One that is still at work is not waited for, which would hold
/// up the window: it is deleted when it has ended.
void MainWidget::RemoveWorker(long nDeviceID)
{
    QOperateThread *pThread = m_mapThread.take(nDeviceID);
    if (!pThread)
        return;
    disconnect(pThread, nullptr, this, nullptr);
    connect(pThread, &QThread::finished, pThread, &QObject::deleteLater);
    if (!pThread->isRunning())
        delete pThread;
}

void MainWidget::DeleteWorkers()
{
    m_mapThread.clear();
    // All our workers, those of cameras that have gone included.
    const auto listThreads = findChildren<QOperateThread *>(QString(), Qt::FindDirectChildrenOnly);
    for (QOperateThread *pThread : listThreads) {
        disconnect(pThread, nullptr, this, nullptr);
        if (pThread->wait(LONGEST_WAIT_MS))
            delete pThread;
        else
            pThread->setParent(nullptr); // deleting it would abort the program; it ends with the process
    }
}
