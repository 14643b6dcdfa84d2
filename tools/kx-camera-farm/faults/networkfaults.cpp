#include "faults/numberfault.h"

namespace KxFarm {

namespace {

using std::chrono::microseconds;

constexpr std::int64_t kMaxMicroseconds = 600000000; // ten minutes

/// Every answer later by a fixed time.
class Latency : public Fault
{
public:
    explicit Latency(std::int64_t us)
        : m_delay(us)
    {
    }
    void AfterCommand(Exchange *pExchange) override
    {
        for (Reply &reply : pExchange->replies)
            reply.delay += m_delay;
    }

private:
    const microseconds m_delay;
};

/// Every answer later by a random time.
class Jitter : public Fault
{
public:
    explicit Jitter(std::int64_t us)
        : m_distribution(0, us)
    {
    }
    void AfterCommand(Exchange *pExchange) override
    {
        for (Reply &reply : pExchange->replies)
            reply.delay += microseconds(m_distribution(pExchange->random));
    }

private:
    std::uniform_int_distribution<std::int64_t> m_distribution;
};

/// A share of the datagrams never arrives, in either direction.
class Loss : public Fault
{
public:
    explicit Loss(std::int64_t percent)
        : m_nPercent(static_cast<int>(percent))
    {
    }
    void BeforeCommand(Exchange *pExchange) override { pExchange->dropped |= Strikes(pExchange); }
    void AfterCommand(Exchange *pExchange) override
    {
        std::vector<Reply> arriving;
        for (Reply &reply : pExchange->replies) {
            if (!Strikes(pExchange))
                arriving.push_back(std::move(reply));
        }
        pExchange->replies = std::move(arriving);
    }

private:
    bool Strikes(Exchange *pExchange) const
    {
        return std::uniform_int_distribution<int>(0, 99)(pExchange->random) < m_nPercent;
    }
    const int m_nPercent;
};

/// No answer any more after a number of commands.
class Mute : public Fault
{
public:
    explicit Mute(std::int64_t after = 0)
        : m_nLeft(after)
    {
    }
    void BeforeCommand(Exchange *pExchange) override
    {
        if (m_nLeft > 0)
            --m_nLeft;
        else
            pExchange->dropped = true;
    }

private:
    std::int64_t m_nLeft;
};

} // namespace

std::vector<FaultKind> NetworkFaultKinds()
{
    return {{"mute", Scope::Commands, MakeSwitched<Mute>},
            {"mute-after", Scope::Commands, MakeOfNumber<Mute, 1, kMaxCount>},
            {"discovery-mute", Scope::Discovery, MakeSwitched<Mute>},
            {"loss", Scope::Everything, MakeOfNumber<Loss, 0, 100>},
            {"latency-us", Scope::Everything, MakeOfNumber<Latency, 0, kMaxMicroseconds>},
            {"jitter-us", Scope::Everything, MakeOfNumber<Jitter, 0, kMaxMicroseconds>}};
}

} // namespace KxFarm
