#include "batch.h"

#include <QTimer>

#include <worker/cameraidentity.h>
#include <worker/qoperatethread.h>

Batch::Batch(Operation operation, const QVector<Camera> &cameras, const QString &path, QObject *pParent)
    : QObject(pParent)
    , m_operation(operation)
    , m_cameras(cameras)
    , m_strPath(path)
    , m_results(cameras.size())
{
}

Batch::~Batch()
{
    for (QOperateThread *pWorker : qAsConst(m_workers)) {
        pWorker->wait();
    }
}

void Batch::Start()
{
    if (m_cameras.isEmpty()) {
        QTimer::singleShot(0, this, &Batch::Finished);
    }
    for (int index = 0; index < m_cameras.size(); ++index) {
        StartWorker(index);
    }
}

void Batch::StartWorker(int index)
{
    const Camera &camera = m_cameras.at(index);
    CameraResult &result = m_results[index];
    auto *pWorker = new QOperateThread(this);
    m_workers << pWorker;
    if (m_operation == Operation::Export) {
        pWorker->SetExportThreadInfo(camera.record, m_strPath);
        result.strFile = CameraIdentity::FilePath(m_strPath, {camera.strModel, camera.strSerial});
    } else {
        pWorker->SetImportThreadInfo(camera.record, m_strPath);
        result.strFile = m_strPath;
    }
    // The last message decides, as it does in the window.
    connect(pWorker, &QOperateThread::SigThreadInfo, this,
            [this, index](long, const QString &text, bool failed) {
                m_results[index].strMessage = failed ? text : QString();
            });
    // Not SigEndThread: a worker may send that twice.
    connect(pWorker, &QThread::finished, this, [this, index] { OnWorkerFinished(index); });
    pWorker->start();
}

void Batch::OnWorkerFinished(int index)
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
