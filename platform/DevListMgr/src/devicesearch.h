#ifndef DEVLISTMGR_DEVICESEARCH_H
#define DEVLISTMGR_DEVICESEARCH_H

#include <QMutex>
#include <QThread>
#include <QVector>
#include <QWaitCondition>

#include <atomic>

#include "DevListMgr/devicesource.h"
#include "devicelistdiff.h"

/// The thread that searches cameras, round after round, until it is stopped.
class DeviceSearch : public QThread
{
    Q_OBJECT

public:
    explicit DeviceSearch(DeviceSourceFactory factory, QObject *pParent = nullptr);

    /// Stops and waits for the round in progress.
    ~DeviceSearch() override;

    /// What the next rounds look for; the search starts with the first that are not 0. Any thread.
    void SetTransports(unsigned int nTransports);

    /// Tells that what the last RoundDone() said is done. Until then rounds say nothing: the next one that
    /// does tells all differences at once, so nothing piles up, however much changes. Any thread.
    void SetHandled() { m_bHandled = true; }

    /// Asks the thread to end after the round in progress. Any thread.
    void Stop();

signals:
    /// After a round, from the search thread; most rounds change nothing. Wants SetHandled().
    void RoundDone(const QVector<DeviceChange> &vecChanges);

protected:
    void run() override;

private:
    bool WaitForTransports(unsigned int &nTransports);
    void Pause(int nMs);

    const DeviceSourceFactory m_factory;
    std::atomic_bool m_bHandled{true};
    QMutex m_mutex; ///< protects the members below
    QWaitCondition m_changed;
    unsigned int m_nTransports = 0;
    bool m_bSwitchedOn = false;
    bool m_bStop = false;
};

#endif
