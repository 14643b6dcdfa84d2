#ifndef KXFEATURES_BATCH_H
#define KXFEATURES_BATCH_H

#include <QObject>
#include <QString>
#include <QVector>

#include "camera.h"
#include "exportfile.h"

class QOperateThread;

/// Outcome of one camera.
struct CameraResult
{
    bool bDone = false;
    bool bOk = false;
    QString strMessage; ///< why it failed; empty after a success
    QString strFile;    ///< the file written or read
};

/// One export or import: a worker thread per camera, all at once.
///
/// Lives in the main thread and needs its event loop. The workers report by queued signals; results are
/// complete when Finished() comes. Destroying it waits for the workers.
class Batch : public QObject
{
    Q_OBJECT

public:
    enum class Operation
    {
        Export, ///< path is the folder
        Import, ///< path is the file
    };

    Batch(Operation operation, const QVector<Camera> &cameras, const QString &path,
          QObject *pParent = nullptr);
    ~Batch() override;

    /// Lets the camera fail with this message instead of starting its worker. Before Start().
    void Refuse(int index, const QString &message);

    /// Starts every worker but those of refused cameras. With no camera, Finished() comes from the event loop
    /// all the same.
    void Start();

    const QVector<Camera> &Cameras() const { return m_cameras; }
    const QVector<CameraResult> &Results() const { return m_results; }
    int DoneCount() const { return m_nDone; }
    int FailedCount() const { return m_nFailed; }

signals:
    /// A camera's worker ended, or the camera was refused; index into Cameras() and Results(). Once per
    /// camera.
    void CameraDone(int index);
    /// Every camera is done; exactly once.
    void Finished();

private:
    void StartWorker(int index);
    void OnWorkerFinished(int index, const QOperateThread &worker);
    void Finish(int index);

    const Operation m_operation;
    const QVector<Camera> m_cameras;
    const QString m_strPath;
    QVector<CameraResult> m_results;
    QVector<ExportFile> m_files; // of an export
    QVector<QOperateThread *> m_workers;
    int m_nDone = 0;
    int m_nFailed = 0;
};

#endif
