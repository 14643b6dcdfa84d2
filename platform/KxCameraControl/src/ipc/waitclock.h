#ifndef KXCAMERACONTROL_IPC_WAITCLOCK_H
#define KXCAMERACONTROL_IPC_WAITCLOCK_H

#include <chrono>
#include <string>

#include <sys/types.h>

namespace kxcc {

/// Measures how long a process has waited: wall time less the time in which it worked or queued for a
/// processor. On a busy machine a helper needs longer for the same work; that is no fault of its camera.
class WaitClock
{
public:
    WaitClock(pid_t nPid, std::chrono::milliseconds deadline, std::chrono::milliseconds longest);

    /// The same with the process's folder of the proc file system.
    WaitClock(std::string strProcess, std::chrono::milliseconds deadline, std::chrono::milliseconds longest);

    /// The camera gave a sign of life: the deadline starts anew, the longest time does not.
    void Restart();
    /// The longest time, from now on.
    void SetLongest(std::chrono::milliseconds longest);
    bool HasExpired() const;
    /// Time after which HasExpired() is worth asking again.
    std::chrono::milliseconds NextLook() const;

private:
    std::chrono::nanoseconds Waited() const;
    /// Fields 1 and 2 of /proc/PID/schedstat: time on a processor, time in the queue for one.
    std::chrono::nanoseconds Busy() const;

    /// True while it runs or queues: time in the queue is added to the statistics only when it ends.
    bool IsRunnable() const;

    const std::string m_strProcess;
    const std::chrono::nanoseconds m_deadline;
    std::chrono::steady_clock::time_point m_end; ///< of the longest time
    std::chrono::steady_clock::time_point m_start;
    std::chrono::nanoseconds m_busyAtStart;
};

} // namespace kxcc

#endif
