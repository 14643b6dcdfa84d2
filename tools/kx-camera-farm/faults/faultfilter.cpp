#include "faults/faultfilter.h"

#include "faults/faultvalue.h"

#include <QList>

namespace KxFarm {

namespace {

constexpr std::int64_t kMaxCount = 1000000000;

bool ParseCommand(const QByteArray &word, std::optional<std::uint16_t> *pCommand)
{
    static const std::pair<const char *, Gvcp::Command> kNames[] = {{"discovery", Gvcp::DISCOVERY_CMD},
                                                                    {"readreg", Gvcp::READREG_CMD},
                                                                    {"writereg", Gvcp::WRITEREG_CMD},
                                                                    {"readmem", Gvcp::READMEM_CMD},
                                                                    {"writemem", Gvcp::WRITEMEM_CMD}};
    for (const auto &[name, command] : kNames) {
        if (word == name)
            *pCommand = command;
    }
    return pCommand->has_value();
}

} // namespace

bool IsWrite(const Gvcp::Request &request)
{
    return request.command == Gvcp::WRITEREG_CMD || request.command == Gvcp::WRITEMEM_CMD;
}

bool Touches(const Gvcp::Request &request, std::uint32_t address)
{
    if (request.command == Gvcp::READMEM_CMD || request.command == Gvcp::WRITEMEM_CMD) {
        if (request.size < 8)
            return false;
        const std::uint64_t first = LoadBe32(request.payload);
        const std::uint64_t size =
            request.command == Gvcp::READMEM_CMD ? LoadBe16(request.payload + 6) : request.size - 4;
        return address >= first && address < first + size;
    }
    if (request.command != Gvcp::READREG_CMD && request.command != Gvcp::WRITEREG_CMD)
        return false;
    const std::size_t step = request.command == Gvcp::WRITEREG_CMD ? 8 : 4;
    for (std::size_t i = 0; i + step <= request.size; i += step) {
        if (LoadBe32(request.payload + i) == address)
            return true;
    }
    return false;
}

bool FaultFilter::Parse(const QByteArray &text, QByteArray *pValue, QString *pError)
{
    QList<QByteArray> own;
    const QList<QByteArray> words = text.simplified().split(' ');
    for (const QByteArray &word : words) {
        const int equals = word.indexOf('=');
        const QByteArray key = word.left(equals);
        if (equals < 0 || (key != "command" && key != "address" && key != "after" && key != "times"))
            own.append(word);
        else if (!ParseWord(key, word.mid(equals + 1), pError))
            return false;
    }
    *pValue = own.join(' ');
    return true;
}

bool FaultFilter::ParseWord(const QByteArray &key, const QByteArray &text, QString *pError)
{
    if (key == "command") {
        if (ParseCommand(text, &m_command))
            return true;
        *pError = QStringLiteral("\"%1\" is no command").arg(QString::fromUtf8(text));
        return false;
    }
    const bool address = key == "address";
    std::int64_t number = 0;
    if (!ParseNumber(text, key == "times" ? 1 : 0, address ? 0xFFFFFFFF : kMaxCount, &number, pError))
        return false;
    if (address)
        m_address = static_cast<std::uint32_t>(number);
    else
        (key == "after" ? m_nSkip : m_nLeft) = number;
    return true;
}

bool FaultFilter::Matches(const Gvcp::Request &request) const
{
    const bool discovery = request.command == Gvcp::DISCOVERY_CMD;
    if (m_command)
        return request.command == *m_command && (!m_address || Touches(request, *m_address));
    if (m_address)
        return Touches(request, *m_address);
    return m_scope == Scope::Everything || discovery == (m_scope == Scope::Discovery);
}

bool FaultFilter::Takes(const Gvcp::Request &request)
{
    if (!Matches(request) || m_nLeft == 0)
        return false;
    if (m_nSkip > 0) {
        --m_nSkip;
        return false;
    }
    if (m_nLeft > 0)
        --m_nLeft;
    return true;
}

} // namespace KxFarm
