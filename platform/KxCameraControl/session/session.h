#ifndef KXCAMERACONTROL_SESSION_SESSION_H
#define KXCAMERACONTROL_SESSION_SESSION_H

#include "protocol/frame.h"
#include "session/helperprocess.h"

namespace kxcc {

class WaitClock;

/// The library's side of one helper process: sends requests, waits for replies, minds the deadline.
///
/// One thread at a time. After a call gave KX_CC_E_TIMEOUT or KX_CC_E_SESSION_ENDED the helper is gone
/// and reaped.
class Session
{
public:
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

    /// @param nDeadlineMs  longest time that the helper may wait without a sign of life
    /// @param nLongestMs   longest time in all; 0 for none (a call that reports progress per feature)
    /// @return the reply's code, or KX_CC_E_TIMEOUT, or KX_CC_E_SESSION_ENDED
    int Call(Request &request, Reply &reply, int nDeadlineMs, int nLongestMs);

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
    Outcome Send(const std::vector<uint8_t> &bytes, WaitClock &clock);
    Outcome Receive(Reply &reply, WaitClock &clock);
    Outcome ReadExactly(void *pBuffer, size_t nSize, WaitClock &clock);
    Outcome WaitFor(short nEvents, WaitClock &clock);
    Outcome Exchange(Request &request, Reply &reply, WaitClock &clock);

    HelperProcess m_process;
    uint32_t m_nSerial = 0;
};

} // namespace kxcc

#endif
