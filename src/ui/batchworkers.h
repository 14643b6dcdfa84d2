#ifndef UI_BATCHWORKERS_H
#define UI_BATCHWORKERS_H

#include <QMap>
#include <QString>

#include <functional>

class QObject;
class QOperateThread;
struct _STRUCT_DEVICE_INFO_;

/// The workers of the cameras, one each, kept from batch to batch in the map of the owner.
///
/// A worker's Qt parent is the object given as pParent. A worker whose camera goes, or that cannot be started
/// again in time, is taken from the map and no longer counts; it is never waited for, which would hold up the
/// window, and deletes itself when it has ended. All of this in the GUI thread; the workers' own signals
/// arrive there queued, those of a former worker too: IsFormer() tells them apart.
///
/// Map and parent have to outlive this object. End with DeleteAll() while the parent still lives.
class BatchWorkers
{
public:
    /// Connects the signals of a new worker.
    using Connector = std::function<void(QOperateThread *pWorker)>;

    BatchWorkers(QMap<long, QOperateThread *> &mapWorkers, QObject *pParent, Connector connectSignals);

    /// The camera's worker, made and connected when it has none.
    QOperateThread *WorkerOf(long nDeviceID);

    /// Starts an operation on a camera, by a fresh worker when its own still runs. False when the system has
    /// no thread for it: then no signal comes.
    bool Start(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, unsigned int nType, const QString &strPath);

    /// Former workers do not count.
    bool IsAnyRunning() const;

    /// Whether a signal about this camera was sent by a worker that it has no longer. False for a sender that
    /// is no worker.
    bool IsFormer(const QObject *pSender, long nDeviceID) const;

    /// Takes the worker from its camera; nothing when there is none.
    void Remove(long nDeviceID);

    /// Waits for all workers together, former ones included, and deletes them. One that does not end within
    /// three deadlines of the camera SDK never will: it is left to the end of the process.
    void DeleteAll();

private:
    QMap<long, QOperateThread *> &m_mapWorkers;
    QObject *const m_pParent;
    const Connector m_connectSignals;
};

#endif
