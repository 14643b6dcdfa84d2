#include "fault.h"
#include "faultvalue.h"

namespace KxFarm {

namespace {

using std::chrono::microseconds;

constexpr std::int64_t MAX_MICROSECONDS = 600000000; // ten minutes
constexpr std::int64_t MAX_COUNT = 1000000000;

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
    explicit Mute(std::int64_t after)
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

template <typename Made>
std::unique_ptr<Fault> MakeTimed(const QByteArray &value, const Camera & /*camera*/, QString *pError)
{
    std::int64_t us = 0;
    return ParseNumber(value, 0, MAX_MICROSECONDS, &us, pError) ? std::make_unique<Made>(us) : nullptr;
}

std::unique_ptr<Fault> MakeLoss(const QByteArray &value, const Camera & /*camera*/, QString *pError)
{
    std::int64_t percent = 0;
    return ParseNumber(value, 0, 100, &percent, pError) ? std::make_unique<Loss>(percent) : nullptr;
}

std::unique_ptr<Fault> MakeMute(const QByteArray &value, const Camera & /*camera*/, QString *pError)
{
    std::int64_t on = 0;
    return ParseNumber(value, 1, 1, &on, pError) ? std::make_unique<Mute>(0) : nullptr;
}

std::unique_ptr<Fault> MakeMuteAfter(const QByteArray &value, const Camera & /*camera*/, QString *pError)
{
    std::int64_t count = 0;
    return ParseNumber(value, 1, MAX_COUNT, &count, pError) ? std::make_unique<Mute>(count) : nullptr;
}

} // namespace

std::vector<FaultKind> NetworkFaultKinds()
{
    return {{"mute", Scope::Commands, MakeMute},
            {"mute-after", Scope::Commands, MakeMuteAfter},
            {"discovery-mute", Scope::Discovery, MakeMute},
            {"loss", Scope::Everything, MakeLoss},
            {"latency-us", Scope::Everything, MakeTimed<Latency>},
            {"jitter-us", Scope::Everything, MakeTimed<Jitter>}};
}

} // namespace KxFarm
