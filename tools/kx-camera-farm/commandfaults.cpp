#include "fault.h"
#include "faultvalue.h"

#include <QList>
#include <optional>

namespace KxFarm {

namespace {

constexpr std::int64_t MAX_COUNT = 1000000000;
constexpr Endpoint STRANGER{0x7F000063, 50000}; // 127.0.0.99: nobody who listens

bool ParseCommand(const QByteArray &word, std::uint16_t *pCommand)
{
    static const std::pair<const char *, Gvcp::Command> NAMES[] = {{"discovery", Gvcp::DISCOVERY_CMD},
                                                                   {"readreg", Gvcp::READREG_CMD},
                                                                   {"writereg", Gvcp::WRITEREG_CMD},
                                                                   {"readmem", Gvcp::READMEM_CMD},
                                                                   {"writemem", Gvcp::WRITEMEM_CMD}};
    for (const auto &[name, command] : NAMES) {
        if (word == name) {
            *pCommand = command;
            return true;
        }
    }
    return false;
}

/// Commands refused with a chosen status: all, one kind, those that touch one address, the first n.
class Refusal : public Fault
{
public:
    static std::unique_ptr<Fault> Make(const QByteArray &value, QString *pError)
    {
        auto fault = std::make_unique<Refusal>();
        const QList<QByteArray> words = value.simplified().split(' ');
        std::int64_t number = 0;
        if (!ParseNumber(words.first(), 1, 0xFFFF, &number, pError))
            return nullptr;
        fault->m_status = static_cast<Gvcp::Status>(number);
        for (int i = 1; i < words.size(); ++i) {
            if (!fault->Narrow(words.at(i), pError))
                return nullptr;
        }
        return fault;
    }

    void BeforeCommand(Exchange *pExchange) override
    {
        if (!Matches(pExchange->request) || m_nLeft == 0)
            return;
        if (m_nLeft > 0)
            --m_nLeft;
        pExchange->refusedWith = m_status;
    }

private:
    bool Narrow(const QByteArray &word, QString *pError)
    {
        const int equals = word.indexOf('=');
        const QByteArray key = word.left(equals);
        const QByteArray text = word.mid(equals + 1);
        std::int64_t number = 0;
        if (key == "command") {
            m_command = std::uint16_t{0};
            if (ParseCommand(text, &*m_command))
                return true;
            *pError = QStringLiteral("\"%1\" is no command").arg(QString::fromUtf8(text));
            return false;
        }
        if (key == "address" && ParseNumber(text, 0, 0xFFFFFFFF, &number, pError)) {
            m_address = static_cast<std::uint32_t>(number);
            return true;
        }
        if (key == "times" && ParseNumber(text, 1, MAX_COUNT, &number, pError)) {
            m_nLeft = number;
            return true;
        }
        if (pError->isEmpty())
            *pError =
                QStringLiteral("\"%1\" is none of command=, address=, times=").arg(QString::fromUtf8(word));
        return false;
    }

    bool Matches(const Gvcp::Request &request) const
    {
        if (m_command ? request.command != *m_command : request.command == Gvcp::DISCOVERY_CMD)
            return false;
        return !m_address || Touches(request, *m_address);
    }

    static bool Touches(const Gvcp::Request &request, std::uint32_t address)
    {
        const bool memory = request.command == Gvcp::READMEM_CMD || request.command == Gvcp::WRITEMEM_CMD;
        if (memory) {
            if (request.size < 8)
                return false;
            const std::uint64_t first = LoadBe32(request.payload);
            const std::uint64_t size =
                request.command == Gvcp::READMEM_CMD ? LoadBe16(request.payload + 6) : request.size - 4;
            return address >= first && address < first + size;
        }
        const std::size_t step = request.command == Gvcp::WRITEREG_CMD ? 8 : 4;
        for (std::size_t i = 0; i + step <= request.size; i += step) {
            if (LoadBe32(request.payload + i) == address)
                return true;
        }
        return false;
    }

    Gvcp::Status m_status = Gvcp::STATUS_ERROR;
    std::optional<std::uint16_t> m_command;
    std::optional<std::uint32_t> m_address;
    std::int64_t m_nLeft = -1; // -1: without end
};

/// Another application has control, from the start or after a number of commands of the controller.
class Stolen : public Fault
{
public:
    explicit Stolen(std::int64_t after)
        : m_nLeft(after)
    {
    }
    void Start(Camera *pCamera) override
    {
        if (m_nLeft == 0)
            pCamera->SeizeControl(STRANGER);
    }
    void BeforeCommand(Exchange *pExchange) override
    {
        if (m_nLeft > 0 && pExchange->camera.Control().MayWrite(pExchange->from) && --m_nLeft == 0)
            pExchange->camera.SeizeControl(STRANGER);
    }
    void Stop(Camera *pCamera) override
    {
        if (pCamera->Control().Controller() == STRANGER)
            pCamera->ReleaseControl();
    }

private:
    std::int64_t m_nLeft;
};

/// The controller loses its privilege after a number of commands, as when its heartbeat came too late.
class Lapse : public Fault
{
public:
    explicit Lapse(std::int64_t after)
        : m_nLeft(after)
    {
    }
    void BeforeCommand(Exchange *pExchange) override
    {
        if (m_nLeft > 0 && pExchange->camera.Control().MayWrite(pExchange->from) && --m_nLeft == 0)
            pExchange->camera.ReleaseControl();
    }

private:
    std::int64_t m_nLeft;
};

template <typename Made>
std::unique_ptr<Fault> MakeCounted(const QByteArray &value, QString *pError)
{
    std::int64_t count = 0;
    return ParseNumber(value, 1, MAX_COUNT, &count, pError) ? std::make_unique<Made>(count) : nullptr;
}

std::unique_ptr<Fault> MakeHeld(const QByteArray &value, QString *pError)
{
    std::int64_t on = 0;
    return ParseNumber(value, 1, 1, &on, pError) ? std::make_unique<Stolen>(0) : nullptr;
}

} // namespace

std::vector<FaultKind> CommandFaultKinds()
{
    return {{"control-held", MakeHeld},
            {"control-stolen-after", MakeCounted<Stolen>},
            {"control-lost-after", MakeCounted<Lapse>},
            {"status", Refusal::Make}};
}

} // namespace KxFarm
