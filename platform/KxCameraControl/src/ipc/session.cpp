#include "ipc/session.h"

#include <algorithm>
#include <cerrno>

#include <poll.h>
#include <sys/socket.h>

#include "KxCameraControl/kxcameracontrol.h"
#include "ipc/startgate.h"
#include "ipc/waitclock.h"

namespace kxcc {

using std::chrono::milliseconds;

int Session::Start()
{
    const StartGate::Place place(StartGate::Instance(), milliseconds(KX_CC_LONGEST_CALL_MS / 2));
    const int nCode = m_process.Start();
    return nCode == KX_CC_OK ? CodeOf(AwaitReady()) : nCode;
}

Session::Outcome Session::AwaitReady()
{
    constexpr milliseconds kLongestStart(10000);
    WaitClock clock(Pid(), kLongestStart, milliseconds(KX_CC_LONGEST_CALL_MS / 2));
    clock.Restart();
    Reply ready;
    const Outcome outcome = Receive(ready, clock);
    return outcome == Outcome::Done && ready.nSerial != kReadySerial ? Outcome::Ended : outcome;
}

/// The code of a call that got no reply; then the helper is of no more use.
int Session::CodeOf(Outcome outcome)
{
    if (outcome == Outcome::Done)
        return KX_CC_OK;
    Kill();
    return outcome == Outcome::Expired ? KX_CC_E_TIMEOUT : KX_CC_E_SESSION_ENDED;
}

int Session::Call(Request &request, Reply &reply, TimeBudget &budget, Progress progress)
{
    if (!IsRunning())
        return KX_CC_E_SESSION_ENDED;
    request.nSerial = ++m_nSerial;
    budget.BeginCall();
    const bool bOneJob = progress == Progress::OfOneJob;
    const milliseconds longest = bOneJob ? milliseconds(KX_CC_LONGEST_CALL_MS) : milliseconds::max();
    WaitClock clock(Pid(), milliseconds(KX_CC_DEADLINE_MS), std::min(longest, budget.Left()));
    clock.Restart();
    const Outcome outcome = Exchange(request, reply, clock, [&] {
        clock.Restart();
        if (bOneJob)
            return;
        budget.FinishFeature();
        clock.SetLongest(budget.Left());
    });
    if (outcome == Outcome::Done)
        budget.FinishFeature();
    // The camera works: it is left in order.
    if (outcome == Outcome::Expired && budget.IsSpent())
        End(kReleaseMs);
    budget.EndCall();
    return outcome == Outcome::Done ? reply.nCode : CodeOf(outcome);
}

Session::Outcome Session::Exchange(Request &request, Reply &reply, WaitClock &clock,
                                   const std::function<void()> &progress)
{
    Outcome outcome = Send(EncodeRequest(request), clock);
    while (outcome == Outcome::Done) {
        outcome = Receive(reply, clock);
        if (outcome == Outcome::Done && !reply.bProgress)
            return reply.nSerial == request.nSerial ? outcome : Outcome::Ended;
        progress();
    }
    return outcome;
}

Session::Outcome Session::Send(const std::vector<std::uint8_t> &bytes, WaitClock &clock)
{
    std::size_t nSent = 0;
    while (nSent < bytes.size()) {
        const ssize_t n =
            send(m_process.Socket(), bytes.data() + nSent, bytes.size() - nSent, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (n > 0) {
            nSent += static_cast<std::size_t>(n);
        } else if (errno == EAGAIN) {
            const Outcome outcome = WaitFor(POLLOUT, clock);
            if (outcome != Outcome::Done)
                return outcome;
        } else if (errno != EINTR) {
            return Outcome::Ended;
        }
    }
    return Outcome::Done;
}

Session::Outcome Session::Receive(Reply &reply, WaitClock &clock)
{
    std::array<std::uint8_t, kFrameHeadSize> bytes{};
    Outcome outcome = ReadExactly(bytes.data(), bytes.size(), clock);
    if (outcome != Outcome::Done)
        return outcome;
    const std::optional<FrameHead> head = DecodeHead(bytes);
    if (!head)
        return Outcome::Ended; // a helper that no longer keeps to the protocol is as good as dead
    std::vector<std::uint8_t> body(head->nBody);
    outcome = ReadExactly(body.data(), body.size(), clock);
    if (outcome != Outcome::Done)
        return outcome;
    std::optional<Reply> decoded = DecodeReply(body);
    if (!decoded)
        return Outcome::Ended;
    reply = std::move(*decoded);
    reply.blob.resize(head->nBlob);
    return ReadExactly(reply.blob.data(), reply.blob.size(), clock);
}

Session::Outcome Session::ReadExactly(void *pBuffer, std::size_t nSize, WaitClock &clock)
{
    auto *pBytes = static_cast<std::uint8_t *>(pBuffer);
    std::size_t nDone = 0;
    while (nDone < nSize) {
        const Outcome outcome = WaitFor(POLLIN, clock);
        if (outcome != Outcome::Done)
            return outcome;
        const ssize_t n = recv(m_process.Socket(), pBytes + nDone, nSize - nDone, MSG_DONTWAIT);
        if (n > 0)
            nDone += static_cast<std::size_t>(n);
        else if (n == 0 || (errno != EAGAIN && errno != EINTR))
            return Outcome::Ended;
    }
    return Outcome::Done;
}

Session::Outcome Session::WaitFor(short nEvents, WaitClock &clock)
{
    for (bool bExpired = false;;) {
        pollfd descriptors[] = {{m_process.Socket(), nEvents, 0}, {m_process.ErrorOutput(), POLLIN, 0}};
        const int nReady = poll(descriptors, 2, bExpired ? 0 : static_cast<int>(clock.NextLook().count()));
        if (nReady > 0 && descriptors[1].revents != 0)
            m_process.ReadErrorOutput(); // of a bounded number of lines: it does not keep us from the clock
        if (nReady > 0 && descriptors[0].revents != 0)
            return Outcome::Done;
        if (nReady > 0)
            continue;
        if (nReady < 0 && errno != EINTR)
            return Outcome::Ended;
        if (nReady == 0 && bExpired)
            return Outcome::Expired;
        // On a busy machine much can happen between these two lines: look once more before giving up.
        bExpired = nReady == 0 && clock.HasExpired();
    }
}

} // namespace kxcc
