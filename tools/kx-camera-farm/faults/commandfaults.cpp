#include "faults/numberfault.h"

#include <QList>

namespace KxFarm {

namespace {

constexpr Endpoint kStranger{0x7F000063, 50000}; // 127.0.0.99: nobody who listens

/// Commands refused with a chosen status.
class Refusal : public Fault
{
public:
    explicit Refusal(std::int64_t status)
        : m_status(static_cast<Gvcp::Status>(status))
    {
    }
    void BeforeCommand(Exchange *pExchange) override { pExchange->refusedWith = m_status; }

private:
    const Gvcp::Status m_status;
};

/// Counts the commands of the controller, then does its deed once.
class Deferred : public Fault
{
public:
    explicit Deferred(std::int64_t after)
        : m_nLeft(after)
    {
    }
    void BeforeCommand(Exchange *pExchange) override
    {
        if (m_nLeft > 0 && pExchange->camera.Control().MayWrite(pExchange->from) && --m_nLeft == 0)
            Strike(pExchange);
    }
    virtual void Strike(Exchange *pExchange) = 0;

private:
    std::int64_t m_nLeft;
};

/// Another application takes control.
class Stolen : public Deferred
{
public:
    using Deferred::Deferred;
    void Strike(Exchange *pExchange) override { pExchange->camera.SeizeControl(kStranger); }
    void Stop(Camera *pCamera) override
    {
        if (pCamera->Control().Controller() == kStranger)
            pCamera->ReleaseControl();
    }
};

/// Another application has had control all the time.
class Held : public Stolen
{
public:
    Held()
        : Stolen(0)
    {
    }
    void Start(Camera *pCamera) override { pCamera->SeizeControl(kStranger); }
};

/// The controller loses its privilege, as when its heartbeat came too late.
class Lapse : public Deferred
{
public:
    using Deferred::Deferred;
    void Strike(Exchange *pExchange) override { pExchange->camera.ReleaseControl(); }
};

/// The camera restarts and is away for a while.
class Reboot : public Deferred
{
public:
    Reboot(std::int64_t after, std::int64_t awayMs)
        : Deferred(after)
        , m_away(awayMs)
    {
    }
    void Strike(Exchange *pExchange) override
    {
        pExchange->dropped = true;
        pExchange->silentFor = m_away;
    }

private:
    const std::chrono::milliseconds m_away;
};

/// The camera gets another address.
class Move : public Deferred
{
public:
    Move(std::int64_t after, std::uint32_t address)
        : Deferred(after)
        , m_nAddress(address)
    {
    }
    void Strike(Exchange *pExchange) override { pExchange->moveTo = m_nAddress; }

private:
    const std::uint32_t m_nAddress;
};

/// The camera's UDP port closes: the system answers "port unreachable".
class PortClosed : public Deferred
{
public:
    using Deferred::Deferred;
    void Strike(Exchange *pExchange) override
    {
        pExchange->dropped = true;
        pExchange->closePort = true;
    }
};

std::unique_ptr<Fault> MakeReboot(const QByteArray &value, const Camera & /*camera*/, QString *pError)
{
    const QList<QByteArray> words = value.split(' ');
    std::int64_t count = 0;
    std::int64_t away = 1000;
    if (!ParseNumber(words.first(), 1, kMaxCount, &count, pError) ||
        (words.size() > 1 && !ParseNumber(words.at(1), 1, 600000, &away, pError)))
        return nullptr;
    return std::make_unique<Reboot>(count, away);
}

std::unique_ptr<Fault> MakeMove(const QByteArray &value, const Camera & /*camera*/, QString *pError)
{
    const QList<QByteArray> words = value.split(' ');
    std::int64_t count = 0;
    std::uint32_t address = 0;
    if (!ParseNumber(words.first(), 1, kMaxCount, &count, pError))
        return nullptr;
    if (words.size() == 2 && ParseLoopbackAddress(QString::fromUtf8(words.at(1)), &address))
        return std::make_unique<Move>(count, address);
    *pError = QStringLiteral("after the count comes an address 127.x.y.z");
    return nullptr;
}

} // namespace

std::vector<FaultKind> CommandFaultKinds()
{
    return {{"control-held", Scope::Commands, MakeSwitched<Held>},
            {"control-stolen-after", Scope::Commands, MakeOfNumber<Stolen, 1, kMaxCount>},
            {"control-lost-after", Scope::Commands, MakeOfNumber<Lapse, 1, kMaxCount>},
            {"reboot-after", Scope::Commands, MakeReboot},
            {"address-after", Scope::Commands, MakeMove},
            {"port-closed-after", Scope::Commands, MakeOfNumber<PortClosed, 1, kMaxCount>},
            {"status", Scope::Commands, MakeOfNumber<Refusal, 1, 0xFFFF>}};
}

} // namespace KxFarm
