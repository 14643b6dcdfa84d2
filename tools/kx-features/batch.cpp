#include "batch.h"

#include <QTimer>

#include <process/processroom.h>
#include <worker/qoperatethread.h>

Batch::Batch(Operation operation, const QVector<Camera> &cameras, const QString &path, QObject *pParent)
    : QObject(pParent)
    , m_operation(operation)
    , m_cameras(cameras)
    , m_strPath(path)
    , m_strSource(path)
    , m_results(cameras.size())
    , m_files(cameras.size())
{
    const QStringList paths = operation == Operation::Export ? ExportPaths(cameras, path) : QStringList();
    for (int index = 0; index < cameras.size(); ++index) {
        m_results[index].strFile = paths.value(index, path);
    }
}

Batch::~Batch()
{
    for (QOperateThread *pWorker : qAsConst(m_workers)) {
        pWorker->wait();
    }
}

void Batch::Refuse(int index, const QString &message)
{
    m_results[index].strMessage = message;
}

void Batch::Start()
{
    if (m_cameras.isEmpty()) {
        QTimer::singleShot(0, this, &Batch::Finished);
    }
    m_nPlaces = ProcessRoom::ForWorkers();
    StartWaiting();
}

void Batch::StartWaiting()
{
    while (m_nStarted < m_cameras.size() && (m_workers.size() < m_nPlaces || m_workers.isEmpty())) {
        const int index = m_nStarted;
        const bool isRefused = !m_results.at(index).strMessage.isEmpty();
        const bool hasWorker = !isRefused && m_nPlaces > 0 && StartWorker(index);
        if (!isRefused && !hasWorker && !m_workers.isEmpty()) {
            // Other programs took threads meanwhile. This camera's turn comes when a worker has ended.
            m_nPlaces = m_workers.size();
            return;
        }
        if (!hasWorker) {
            FailWithoutWorker(index);
        }
        ++m_nStarted;
    }
}

void Batch::FailWithoutWorker(int index)
{
    QString &message = m_results[index].strMessage;
    if (message.isEmpty()) {
        message = m_nPlaces > 0 ? QStringLiteral("This computer allows no further thread.")
                                : QStringLiteral("This computer allows too few open files.");
    }
    // Not at once: who starts a batch may not wait for its signals yet.
    QTimer::singleShot(0, this, [this, index] { Finish(index); });
}

bool Batch::StartWorker(int index)
{
    const Camera &camera = m_cameras.at(index);
    auto *pWorker = new QOperateThread(this);
    if (m_operation == Operation::Export) {
        pWorker->SetExportThreadInfo(camera.record, m_strPath);
        m_files[index] = ExportFile(m_results.at(index).strFile);
    } else {
        pWorker->SetImportThreadInfo(camera.record, m_strSource);
    }
    // The last message decides, as it does in the window.
    connect(pWorker, &QOperateThread::SigThreadInfo, this,
            [this, index](long, const QString &text, bool failed) {
                m_results[index].strMessage = failed ? text : QString();
            });
    // Not SigEndThread: a worker may send that twice.
    connect(pWorker, &QThread::finished, this, [this, index, pWorker] { OnWorkerFinished(index, pWorker); });
    if (!ProcessRoom::Start(pWorker)) {
        delete pWorker;
        return false;
    }
    m_workers << pWorker;
    return true;
}

void Batch::OnWorkerFinished(int index, QOperateThread *pWorker)
{
    // Its last signal comes before the thread gives back what it has of the system.
    pWorker->wait();
    m_workers.removeOne(pWorker);
    pWorker->deleteLater();
    // The worker does not tell that the disk was full; it knows where the file does not show it, as when an
    // old one was put back.
    QString &message = m_results[index].strMessage;
    if (m_operation == Operation::Export && message.isEmpty()) {
        message = m_files.at(index).Problem(pWorker->IsFileWritten());
    }
    Finish(index);
    StartWaiting();
}

void Batch::Finish(int index)
{
    CameraResult &result = m_results[index];
    result.bDone = true;
    result.bOk = result.strMessage.isEmpty();
    ++m_nDone;
    m_nFailed += result.bOk ? 0 : 1;
    emit CameraDone(index);
    if (m_nDone == m_cameras.size()) {
        emit Finished();
    }
}
