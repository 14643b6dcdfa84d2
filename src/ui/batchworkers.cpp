#include "batchworkers.h"

#include <QDeadlineTimer>

#include <utility>

#include <KxCameraControl/kxcameracontrol.h>
#include <worker/qoperatethread.h>

#include "operatetype.h"

namespace {

// A worker that lost its camera gives up after one deadline of the camera SDK; what it does besides takes
// far less than another two. One that has not ended by then never will.
const qint64 kLongestWaitMs = 3LL * KX_CC_DEADLINE_MS;

} // namespace

BatchWorkers::BatchWorkers(QMap<long, QOperateThread *> &mapWorkers, QObject *pParent,
                           Connector connectSignals)
    : m_mapWorkers(mapWorkers)
    , m_pParent(pParent)
    , m_connectSignals(std::move(connectSignals))
{
}

QOperateThread *BatchWorkers::WorkerOf(long nDeviceID)
{
    const auto it = m_mapWorkers.constFind(nDeviceID);
    if (it != m_mapWorkers.constEnd())
        return it.value();
    auto *pWorker = new QOperateThread(m_pParent);
    m_mapWorkers.insert(nDeviceID, pWorker);
    m_connectSignals(pWorker);
    return pWorker;
}

bool BatchWorkers::Start(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, unsigned int nType, const QString &strPath)
{
    // One whose last signal came before its thread was through cannot be started again yet, and the window
    // waits for nobody.
    if (WorkerOf(stDeviceInfo.nDeviceID)->isRunning())
        Remove(stDeviceInfo.nDeviceID);
    QOperateThread *pWorker = WorkerOf(stDeviceInfo.nDeviceID);
    if (OperateType::IsExport(nType))
        pWorker->SetExportThreadInfo(stDeviceInfo, strPath);
    else if (OperateType::IsImport(nType))
        pWorker->SetImportThreadInfo(stDeviceInfo, strPath);
    pWorker->start(QThread::InheritPriority);
    return pWorker->isRunning() || pWorker->isFinished(); // a thread that was refused is neither
}

bool BatchWorkers::IsAnyRunning() const
{
    for (const QOperateThread *pWorker : qAsConst(m_mapWorkers)) {
        if (pWorker && pWorker->isRunning())
            return true;
    }
    return false;
}

// The signals of a worker may be on their way when it is replaced, so disconnecting it would not do.
bool BatchWorkers::IsFormer(const QObject *pSender, long nDeviceID) const
{
    const auto *pWorker = qobject_cast<const QOperateThread *>(pSender);
    return pWorker && pWorker != m_mapWorkers.value(nDeviceID);
}

void BatchWorkers::Remove(long nDeviceID)
{
    QOperateThread *pWorker = m_mapWorkers.take(nDeviceID);
    if (!pWorker)
        return;
    QObject::connect(pWorker, &QThread::finished, pWorker, &QObject::deleteLater);
    if (!pWorker->isRunning())
        pWorker->deleteLater(); // behind its signals that have not arrived yet
}

void BatchWorkers::DeleteAll()
{
    m_mapWorkers.clear();
    // All our workers, those that were taken from their cameras included.
    const auto listWorkers = m_pParent->findChildren<QOperateThread *>(QString(), Qt::FindDirectChildrenOnly);
    const QDeadlineTimer deadline(kLongestWaitMs); // for all together
    for (QOperateThread *pWorker : listWorkers) {
        QObject::disconnect(pWorker, nullptr, m_pParent, nullptr);
        if (pWorker->wait(deadline))
            delete pWorker;
        else
            pWorker->setParent(nullptr); // deleting it would abort the program; it ends with the process
    }
}
