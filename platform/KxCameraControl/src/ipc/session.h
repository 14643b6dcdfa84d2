#ifndef KXCAMERACONTROL_IPC_SESSION_H
#define KXCAMERACONTROL_IPC_SESSION_H

#include <cstddef>
#include <cstdint>
#include <functional>

#include "ipc/frame.h"
#include "ipc/helperprocess.h"
#include "ipc/timebudget.h"

namespace kxcc {

class WaitClock;

/// The library's side of one helper process: sends requests, waits for replies, minds the deadline.
///
/// One thread at a time. After a call gave KX_CC_E_TIMEOUT or KX_CC_E_SESSION_ENDED the helper is gone
/// and reaped.
class Session
{
public:
    /// For End(): a helper releases its camera within it, see its watcher.
    static constexpr int kReleaseMs = 950;

    /// @param strCamera  whom the messages in the log are about
    explicit Session(std::string strCamera)
        : m_process(std::move(strCamera))
    {
    }

    /// Starts the helper and waits until it can take requests. A few start at a time, see StartGate.
    /// @return as HelperProcess::Start(), or KX_CC_E_TIMEOUT, or KX_CC_E_SESSION_ENDED
    int Start();
    bool IsRunning() const { return m_process.IsRunning(); }
    pid_t Pid() const { return m_process.Pid(); }

    enum class Progress
    {
        OfOneJob,  ///< it starts the deadline anew
        OfFeatures ///< each is a feature that was finished; there is no longest time but the budget
    };

    /// @param budget    of the camera; the time of the call is booked to it
    /// @param progress  what it means when the helper tells of progress
    /// @return the reply's code, or KX_CC_E_TIMEOUT, or KX_CC_E_SESSION_ENDED
    int Call(Request &request, Reply &reply, TimeBudget &budget, Progress progress = Progress::OfOneJob);

    void End(int nWaitMs) { m_process.End(nWaitMs); }
    void Kill() { m_process.Kill(); }

private:
    enum class Outcome
    {
        Done,
        Expired,
        Ended
    };

    Outcome AwaitReady();
    int CodeOf(Outcome outcome);
    Outcome Send(const std::vector<std::uint8_t> &bytes, WaitClock &clock);
    Outcome Receive(Reply &reply, WaitClock &clock);
    Outcome ReadExactly(void *pBuffer, std::size_t nSize, WaitClock &clock);
    Outcome WaitFor(short nEvents, WaitClock &clock);
    Outcome Exchange(Request &request, Reply &reply, WaitClock &clock, const std::function<void()> &progress);

    HelperProcess m_process;
    std::uint32_t m_nSerial = 0;
};

} // namespace kxcc

#endif
