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

/// One export or import: a worker thread per camera, all at once, or as many as this computer allows; the
/// others begin when one of those has ended and closed its camera. A camera for which no thread can be
/// started fails with that reason.
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

    /// Lets the workers of an import read this file in place of the path, which the results name. Before
    /// Start().
    void SetSource(const QString &path) { m_strSource = path; }

    /// Lets the camera fail with this message instead of starting its worker. Before Start().
    void Refuse(int index, const QString &message);

    /// Starts the workers of all but the refused cameras. With no camera, Finished() comes from the event
    /// loop all the same.
    void Start();

    const QVector<Camera> &Cameras() const { return m_cameras; }
    const QVector<CameraResult> &Results() const { return m_results; }
    int DoneCount() const { return m_nDone; }
    int FailedCount() const { return m_nFailed; }

signals:
    /// A camera's worker ended, or the camera had none; index into Cameras() and Results(). Once per
    /// camera.
    void CameraDone(int index);
    /// Every camera is done; exactly once.
    void Finished();

private:
    void StartWaiting();
    bool StartWorker(int index);
    void FailWithoutWorker(int index);
    void OnWorkerFinished(int index, QOperateThread *pWorker);
    void Finish(int index);

    const Operation m_operation;
    const QVector<Camera> m_cameras;
    const QString m_strPath;
    QString m_strSource;
    QVector<CameraResult> m_results;
    QVector<ExportFile> m_files;         // of an export
    QVector<QOperateThread *> m_workers; // those that run
    int m_nPlaces = 0;                   // how many may run at once
    int m_nStarted = 0;                  // cameras before this index have, or had, their turn
    int m_nDone = 0;
    int m_nFailed = 0;
};

#endif
