#include "faults/numberfault.h"

#include <QList>
#include <algorithm>

namespace KxFarm {

namespace {

using std::chrono::milliseconds;

/// Every answer comes several times more.
class Duplicate : public Fault
{
public:
    explicit Duplicate(std::int64_t more)
        : m_nMore(more)
    {
    }
    void AfterCommand(Exchange *pExchange) override
    {
        const std::vector<Reply> once = pExchange->replies;
        for (std::int64_t i = 0; i < m_nMore; ++i)
            pExchange->replies.insert(pExchange->replies.end(), once.begin(), once.end());
    }

private:
    const std::int64_t m_nMore;
};

/// The answer to the previous command comes once more, before the right one.
class Late : public Fault
{
public:
    void AfterCommand(Exchange *pExchange) override
    {
        std::vector<Reply> &replies = pExchange->replies;
        const std::vector<Reply> now = replies;
        replies.insert(replies.begin(), m_listPrevious.begin(), m_listPrevious.end());
        m_listPrevious = now;
    }

private:
    std::vector<Reply> m_listPrevious;
};

/// Every other answer waits until the next one has gone out.
class Reordered : public Fault
{
public:
    void AfterCommand(Exchange *pExchange) override
    {
        std::vector<Reply> &replies = pExchange->replies;
        if (m_listHeld.empty()) {
            m_listHeld.swap(replies);
        } else {
            replies.insert(replies.end(), m_listHeld.begin(), m_listHeld.end());
            m_listHeld.clear();
        }
    }

private:
    std::vector<Reply> m_listHeld;
};

/// Answers are cut to a number of bytes, header included.
class Short : public Fault
{
public:
    explicit Short(std::int64_t size)
        : m_nSize(static_cast<std::size_t>(size))
    {
    }
    void AfterCommand(Exchange *pExchange) override
    {
        for (Reply &reply : pExchange->replies)
            reply.bytes.resize(std::min(reply.bytes.size(), m_nSize));
    }

private:
    const std::size_t m_nSize;
};

/// Answers have bytes behind their end that their header does not count.
class Oversized : public Fault
{
public:
    explicit Oversized(std::int64_t more)
        : m_nMore(static_cast<std::size_t>(more))
    {
    }
    void AfterCommand(Exchange *pExchange) override
    {
        for (Reply &reply : pExchange->replies)
            reply.bytes.resize(reply.bytes.size() + m_nMore, 0xA5);
    }

private:
    const std::size_t m_nMore;
};

/// Answers to discovery name another address as the camera's (GigE Vision 2.0, 16.1.2, table 16-2).
class Claim : public Fault
{
public:
    explicit Claim(std::uint32_t address)
        : m_nAddress(address)
    {
    }
    void AfterCommand(Exchange *pExchange) override
    {
        constexpr std::size_t kPlace = Gvcp::kHeaderSize + Bootstrap::CURRENT_IP;
        for (Reply &reply : pExchange->replies) {
            if (reply.bytes.size() >= kPlace + 4)
                StoreBe32(reply.bytes.data() + kPlace, m_nAddress);
        }
    }

private:
    const std::uint32_t m_nAddress;
};

/// Answers carry an id off by a number.
class WrongId : public Fault
{
public:
    explicit WrongId(std::int64_t by)
        : m_nBy(by)
    {
    }
    void AfterCommand(Exchange *pExchange) override
    {
        for (Reply &reply : pExchange->replies)
            StoreBe16(reply.bytes.data() + 6,
                      static_cast<std::uint16_t>((pExchange->request.id + m_nBy) & 0xFFFF));
    }

private:
    const std::int64_t m_nBy;
};

/// Answers come from 127.0.0.99.
class WrongSource : public Fault
{
public:
    void AfterCommand(Exchange *pExchange) override
    {
        for (Reply &reply : pExchange->replies)
            reply.foreignSource = true;
    }
};

/// PENDING_ACK a number of times before the answer, or for ever in place of it.
class Pending : public Fault
{
public:
    static constexpr std::int64_t kForEver = -1;

    Pending(std::int64_t times, std::int64_t intervalMs)
        : m_nTimes(times)
        , m_interval(intervalMs)
    {
    }
    void AfterCommand(Exchange *pExchange) override
    {
        std::vector<Reply> &replies = pExchange->replies;
        if (replies.empty())
            return;
        Reply pending;
        // Twice the interval: the promise is kept.
        pending.bytes =
            Gvcp::MakePendingAck(pExchange->request.id, static_cast<std::uint16_t>(m_interval.count() * 2));
        if (m_nTimes == kForEver) {
            pending.repeat = m_interval;
            replies.assign(1, pending);
            return;
        }
        for (Reply &reply : replies)
            reply.delay += m_interval * m_nTimes;
        for (std::int64_t i = m_nTimes - 1; i >= 0; --i) {
            pending.delay = m_interval * i;
            replies.insert(replies.begin(), pending);
        }
    }

private:
    const std::int64_t m_nTimes;
    const milliseconds m_interval;
};

/// Answers come again and again.
class Endless : public Fault
{
public:
    explicit Endless(std::int64_t intervalMs)
        : m_interval(intervalMs)
    {
    }
    void AfterCommand(Exchange *pExchange) override
    {
        for (Reply &reply : pExchange->replies)
            reply.repeat = m_interval;
    }

private:
    const milliseconds m_interval;
};

std::unique_ptr<Fault> MakeClaim(const QByteArray &value, const Camera & /*camera*/, QString *pError)
{
    std::uint32_t address = 0;
    if (ParseLoopbackAddress(QString::fromUtf8(value), &address))
        return std::make_unique<Claim>(address);
    *pError = QStringLiteral("\"%1\" is no address 127.x.y.z").arg(QString::fromUtf8(value));
    return nullptr;
}

std::unique_ptr<Fault> MakePending(const QByteArray &value, const Camera & /*camera*/, QString *pError)
{
    const QList<QByteArray> words = value.split(' ');
    const bool forEver = words.first() == "forever";
    std::int64_t times = Pending::kForEver;
    std::int64_t interval = 100;
    if ((!forEver && !ParseNumber(words.first(), 1, 1000, &times, pError)) ||
        (words.size() > 1 && !ParseNumber(words.at(1), 1, 30000, &interval, pError)))
        return nullptr;
    return std::make_unique<Pending>(times, interval);
}

} // namespace

std::vector<FaultKind> AnswerFaultKinds()
{
    return {{"wrong-id", Scope::Commands, MakeOfNumber<WrongId, -65535, 65535>},
            {"short", Scope::Commands, MakeOfNumber<Short, 1, 1000>},
            {"oversized", Scope::Commands, MakeOfNumber<Oversized, 1, 60000>},
            {"discovery-short", Scope::Discovery, MakeOfNumber<Short, 1, 1000>},
            {"discovery-oversized", Scope::Discovery, MakeOfNumber<Oversized, 1, 60000>},
            {"discovery-address", Scope::Discovery, MakeClaim},
            {"discovery-endless-ms", Scope::Discovery, MakeOfNumber<Endless, 1, 60000>},
            {"late", Scope::Commands, MakeSwitched<Late>},
            {"reordered", Scope::Commands, MakeSwitched<Reordered>},
            {"duplicate", Scope::Commands, MakeOfNumber<Duplicate, 1, 100>},
            {"wrong-source", Scope::Commands, MakeSwitched<WrongSource>},
            {"pending-ack", Scope::Commands, MakePending}};
}

} // namespace KxFarm
