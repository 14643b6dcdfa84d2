#ifndef UI_BATCHCOURSE_H
#define UI_BATCHCOURSE_H

#include <QCoreApplication>
#include <QVector>

#include <functional>

class CameraRows;
class QObject;
class ResultPage;
class RowProgress;
struct _STRUCT_DEVICE_INFO_;

/// The course of a batch: counts the workers that begin and end, shows it in the rows and on the result page,
/// and tells the window when the last one has ended.
///
/// The counts are the owner's; the rows, the page and the window's side are given, and no worker is known
/// here. Signals for a camera without a row are dropped, its end too, so that the batch does not come down to
/// zero by itself then. Everything given has to outlive this object. GUI thread only.
class BatchCourse
{
    Q_DECLARE_TR_FUNCTIONS(MainWidget) // the texts are the window's

public:
    struct Counts
    {
        bool &bHasSucceeded; ///< a worker has succeeded since one began
        qint32 &nRunning;    ///< begun and not ended
        qint32 &nSucceeded;
        qint32 &nFailed;
    };

    /// Where it shows.
    struct View
    {
        CameraRows &rows;
        RowProgress &progress;
        ResultPage &page;
    };

    /// What is asked of the window.
    struct Window
    {
        /// Starts a camera's worker; false when the system has no thread for it.
        std::function<bool(const _STRUCT_DEVICE_INFO_ &, unsigned int nType, const QString &strPath)>
            startWorker;
        std::function<void()> enable;    ///< no worker is counted any more
        std::function<void()> closeBusy; ///< the busy dialog; comes after enable
        /// Something has succeeded. Comes last, and may wait for a person.
        std::function<void(unsigned int nType, const QString &strPath)> tellEnd;
    };

    /// @param pContext  object of the GUI thread; when it goes, nothing that is queued happens any more
    BatchCourse(const Counts &counts, const View &view, Window window, QObject *pContext);
    Q_DISABLE_COPY(BatchCourse)

    /// Counts from zero again; whether something has succeeded stays.
    void Reset();

    /// Starts a worker per camera. One that is refused a thread has begun at once, and fails later, as if its
    /// signals arrived: when the busy dialog is there to be closed.
    void Start(const QVector<_STRUCT_DEVICE_INFO_> &vecDevice, unsigned int nType, const QString &strPath);

    /// A worker's signals. The batch ends, maybe more than once, whenever as many have ended as have begun.
    void Begin(long nDeviceID, unsigned int nType);
    void Report(long nDeviceID, const QString &strMsg, bool bFailed);
    void End(long nDeviceID, unsigned int nType, const QString &strPath);

private:
    int RowOf(long nDeviceID) const;
    void EndRefused(long nDeviceID, unsigned int nType, const QString &strPath);

    const Counts m_counts;
    const View m_view;
    const Window m_window;
    QObject *const m_pContext;
};

#endif
