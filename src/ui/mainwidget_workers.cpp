#include "mainwidget.h"

#include <QDeadlineTimer>

#include <KxCameraControl/kxcameracontrol.h>
#include <worker/qoperatethread.h>

#include "operatetype.h"

namespace {

// A worker that lost its camera gives up after one deadline of the camera SDK; what it does besides takes
// far less than another two. One that has not ended by then never will.
const qint64 kLongestWaitMs = 3 * KX_CC_DEADLINE_MS;

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

void MainWidget::StartWorkers(const QVector<_STRUCT_DEVICE_INFO_> &vecDevice, unsigned int nType,
                              const QString &strPath)
{
    QVector<long> vecRefused;
    for (const _STRUCT_DEVICE_INFO_ &stDeviceInfo : vecDevice) {
        if (StartWorker(stDeviceInfo, nType, strPath))
            continue;
        vecRefused.append(stDeviceInfo.nDeviceID);
        onBeginThread(stDeviceInfo.nDeviceID, nType);
    }
    // They end as a worker's signals arrive, when the busy dialog is there to be closed.
    for (const long nDeviceID : qAsConst(vecRefused))
        QMetaObject::invokeMethod(
            this, [=] { EndRefused(nDeviceID, nType, strPath); }, Qt::QueuedConnection);
}

/// The end of a worker that never ran.
void MainWidget::EndRefused(long nDeviceID, unsigned int nType, const QString &strPath)
{
    onThreadInfo(nDeviceID,
                 OperateType::IsExport(nType)
                     ? tr("Failed to export features. The system allows no more threads.")
                     : tr("Failed to import features. The system allows no more threads."),
                 true);
    onEndThread(nDeviceID, nType, strPath);
}

/// False when there is no thread for the worker.
bool MainWidget::StartWorker(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, unsigned int nType,
                             const QString &strPath)
{
    // One whose last signal came before its thread was through cannot be started again yet, and the window
    // waits for nobody.
    if (getOperateThread(stDeviceInfo.nDeviceID)->isRunning())
        RemoveWorker(stDeviceInfo.nDeviceID);
    QOperateThread *pThread = getOperateThread(stDeviceInfo.nDeviceID);
    if (OperateType::IsExport(nType))
        pThread->SetExportThreadInfo(stDeviceInfo, strPath);
    else if (OperateType::IsImport(nType))
        pThread->SetImportThreadInfo(stDeviceInfo, strPath);
    pThread->start(QThread::InheritPriority);
    return pThread->isRunning() || pThread->isFinished(); // a thread that was refused is neither
}

/// Whether the slot that runs was called by a worker that its camera has no longer. Its signals may have been
/// on their way when it was replaced, so disconnecting it would not do.
bool MainWidget::IsLateSignal(long nDeviceID) const
{
    const auto *pThread = qobject_cast<QOperateThread *>(sender());
    return pThread && pThread != m_mapThread.value(nDeviceID);
}

bool MainWidget::IsThreadRunning()
{
    for (const QOperateThread *pThread : qAsConst(m_mapThread)) {
        if (pThread && pThread->isRunning())
            return true;
    }
    return false;
}

/// Takes the worker from its camera: it does not count any more. One that is still at work is not waited for,
/// which would hold up the window: it is deleted when it has ended.
void MainWidget::RemoveWorker(long nDeviceID)
{
    QOperateThread *pThread = m_mapThread.take(nDeviceID);
    if (!pThread)
        return;
    connect(pThread, &QThread::finished, pThread, &QObject::deleteLater);
    if (!pThread->isRunning())
        pThread->deleteLater(); // behind its signals that have not arrived yet
}

void MainWidget::DeleteWorkers()
{
    m_mapThread.clear();
    // All our workers, those that were taken from their cameras included.
    const auto listThreads = findChildren<QOperateThread *>(QString(), Qt::FindDirectChildrenOnly);
    const QDeadlineTimer deadline(kLongestWaitMs); // for all together
    for (QOperateThread *pThread : listThreads) {
        disconnect(pThread, nullptr, this, nullptr);
        if (pThread->wait(deadline))
            delete pThread;
        else
            pThread->setParent(nullptr); // deleting it would abort the program; it ends with the process
    }
}
