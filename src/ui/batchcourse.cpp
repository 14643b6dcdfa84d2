#include "batchcourse.h"

#include <utility>

#include <DevListMgr/structdeviceinfo.h>

#include "camerarows.h"
#include "operatetype.h"
#include "resultpage.h"
#include "rowprogress.h"

BatchCourse::BatchCourse(const Counts &counts, const View &view, Window window, QObject *pContext)
    : m_counts(counts)
    , m_view(view)
    , m_window(std::move(window))
    , m_pContext(pContext)
{
}

int BatchCourse::RowOf(long nDeviceID) const
{
    return m_view.rows.RowOf(static_cast<int>(nDeviceID));
}

void BatchCourse::Reset()
{
    m_view.page.ShowRunning(m_counts.nRunning = 0);
    m_view.page.ShowSucceeded(m_counts.nSucceeded = 0);
    m_view.page.ShowFailed(m_counts.nFailed = 0);
}

void BatchCourse::Start(const QVector<_STRUCT_DEVICE_INFO_> &vecDevice, unsigned int nType,
                        const QString &strPath)
{
    QVector<long> vecRefused;
    for (const _STRUCT_DEVICE_INFO_ &stDeviceInfo : vecDevice) {
        if (m_window.startWorker(stDeviceInfo, nType, strPath))
            continue;
        vecRefused.append(stDeviceInfo.nDeviceID);
        Begin(stDeviceInfo.nDeviceID, nType);
    }
    for (const long nDeviceID : qAsConst(vecRefused))
        QMetaObject::invokeMethod(
            m_pContext, [this, nDeviceID, nType, strPath] { EndRefused(nDeviceID, nType, strPath); },
            Qt::QueuedConnection);
}

/// The end of a worker that never ran.
void BatchCourse::EndRefused(long nDeviceID, unsigned int nType, const QString &strPath)
{
    Report(nDeviceID,
           OperateType::IsExport(nType) ? tr("Failed to export features. The system allows no more threads.")
                                        : tr("Failed to import features. The system allows no more threads."),
           true);
    End(nDeviceID, nType, strPath);
}

void BatchCourse::Begin(long nDeviceID, unsigned int nType)
{
    const int nRow = RowOf(nDeviceID);
    if (nRow < 0)
        return;
    m_counts.bHasSucceeded = false;
    m_view.page.ShowRunning(++m_counts.nRunning);
    m_view.progress.Begin(nRow, nType);
}

void BatchCourse::Report(long nDeviceID, const QString &strMsg, bool bFailed)
{
    const int nRow = RowOf(nDeviceID);
    if (nRow >= 0)
        m_view.progress.Report(nRow, strMsg, bFailed);
}

void BatchCourse::End(long nDeviceID, unsigned int nType, const QString &strPath)
{
    const int nRow = RowOf(nDeviceID);
    if (nRow < 0)
        return;
    if (--m_counts.nRunning == 0)
        m_window.enable();
    m_view.page.ShowRunning(m_counts.nRunning);

    switch (m_view.progress.End(nRow, nType)) {
    case RowProgress::Outcome::None:
        return;
    case RowProgress::Outcome::Succeeded:
        m_counts.bHasSucceeded = true;
        m_view.page.ShowSucceeded(++m_counts.nSucceeded);
        break;
    case RowProgress::Outcome::Failed:
        m_view.page.ShowFailed(++m_counts.nFailed);
        break;
    }
    if (m_counts.nRunning != 0)
        return;
    m_window.closeBusy();
    if (m_counts.bHasSucceeded) // else the red rows and the count of failures say it all
        m_window.tellEnd(nType, strPath);
}
