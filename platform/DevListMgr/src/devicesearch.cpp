#include "devicesearch.h"

#include <QDeadlineTimer>
#include <QMutexLocker>

#include <utility>

DeviceSearch::DeviceSearch(DeviceSourceFactory factory, QObject *pParent)
    : QThread(pParent)
    , m_factory(std::move(factory))
{
    qRegisterMetaType<QVector<DeviceChange>>("QVector<DeviceChange>");
    setObjectName(QStringLiteral("camera search"));
}

DeviceSearch::~DeviceSearch()
{
    Stop();
    wait();
}

void DeviceSearch::SetTransports(unsigned int nTransports)
{
    const QMutexLocker locker(&m_mutex);
    m_nTransports = nTransports;
    m_bSwitchedOn = m_bSwitchedOn || nTransports != 0;
    m_changed.wakeAll();
}

void DeviceSearch::Stop()
{
    const QMutexLocker locker(&m_mutex);
    m_bStop = true;
    m_changed.wakeAll();
}

void DeviceSearch::run()
{
    const std::unique_ptr<DeviceSource> pSource = m_factory();
    DeviceListDiff diff;
    unsigned int nTransports = 0;
    while (WaitForTransports(nTransports)) {
        // With every kind switched off again there is nothing to ask, but what was shown has to go.
        const auto found = nTransports ? pSource->search(nTransports) : QVector<KX_CC_DEVICE_INFO>();
        if (found && m_bHandled.exchange(false))
            emit RoundDone(diff.Next(*found, [&](const auto &stInfo) { return pSource->isOpen(stInfo); }));
        Pause(pSource->pauseMs());
    }
}

/// Blocks until the search was switched on for the first time; false when the thread has to end.
bool DeviceSearch::WaitForTransports(unsigned int &nTransports)
{
    QMutexLocker locker(&m_mutex);
    while (!m_bStop && !m_bSwitchedOn)
        m_changed.wait(&m_mutex);
    nTransports = m_nTransports;
    return !m_bStop;
}

void DeviceSearch::Pause(int nMs)
{
    QMutexLocker locker(&m_mutex);
    const unsigned int nTransports = m_nTransports;
    const QDeadlineTimer deadline(nMs);
    while (!m_bStop && m_nTransports == nTransports && m_changed.wait(&m_mutex, deadline)) {
    }
}
