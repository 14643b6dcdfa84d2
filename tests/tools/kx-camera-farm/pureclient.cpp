#include "pureclient.h"

#include <cstring>

using namespace KxFarm;

TimePoint PureClient::m_now = TimePoint(std::chrono::hours(1));

namespace {

QByteArray ToByteArray(const Bytes &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
}

QByteArray Word(std::uint32_t value)
{
    std::uint8_t bytes[4];
    StoreBe32(bytes, value);
    return QByteArray(reinterpret_cast<const char *>(bytes), 4);
}

} // namespace

PureClient::PureClient(SimulatedCamera *pCamera, std::uint16_t port)
    : m_pCamera(pCamera)
    , m_self{0x7F000001, port}
{
}

std::vector<Reply> PureClient::SendBytes(const QByteArray &bytes)
{
    std::vector<Reply> replies;
    m_pCamera->Receive(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                       static_cast<std::size_t>(bytes.size()), m_self, m_now, &replies);
    return replies;
}

QByteArray PureClient::Send(const QByteArray &hex)
{
    QByteArrayList answers;
    for (const Reply &reply : SendBytes(QByteArray::fromHex(hex)))
        answers.append(ToByteArray(reply.bytes).toHex());
    return answers.join(" | ");
}

QByteArray PureClient::Request(std::uint16_t command, const QByteArray &payload)
{
    std::uint8_t header[8] = {0x42, 0x01};
    m_nId = m_nId == 0xFFFF ? 1 : m_nId + 1;
    StoreBe16(header + 2, command);
    StoreBe16(header + 4, static_cast<std::uint16_t>(payload.size()));
    StoreBe16(header + 6, m_nId);
    const auto replies = SendBytes(QByteArray(reinterpret_cast<const char *>(header), 8) + payload);
    m_lastStatus = Gvcp::STATUS_ERROR;
    if (replies.empty() || replies.back().bytes.size() < 8)
        return {};
    m_lastStatus = static_cast<Gvcp::Status>(LoadBe16(replies.back().bytes.data()));
    return ToByteArray(replies.back().bytes).mid(8);
}

bool PureClient::TakeControl(std::uint32_t privilege)
{
    return WriteWord(Bootstrap::CONTROL_PRIVILEGE, privilege) == Gvcp::STATUS_SUCCESS;
}

std::uint32_t PureClient::ReadWord(std::uint32_t address)
{
    std::uint8_t word[4] = {};
    Read(address, word, sizeof word);
    return LoadBe32(word);
}

Gvcp::Status PureClient::WriteWord(std::uint32_t address, std::uint32_t value)
{
    Request(Gvcp::WRITEREG_CMD, Word(address) + Word(value));
    return m_lastStatus;
}

bool PureClient::Read(std::uint32_t address, std::uint8_t *data, std::size_t size)
{
    const QByteArray answer =
        Request(Gvcp::READMEM_CMD, Word(address) + Word(static_cast<std::uint32_t>(size)));
    if (m_lastStatus != Gvcp::STATUS_SUCCESS || answer.size() != static_cast<int>(4 + size))
        return false;
    std::memcpy(data, answer.constData() + 4, size);
    return true;
}

bool PureClient::Write(std::uint32_t address, const std::uint8_t *data, std::size_t size)
{
    Request(Gvcp::WRITEMEM_CMD,
            Word(address) + QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    return m_lastStatus == Gvcp::STATUS_SUCCESS;
}

std::unique_ptr<SimulatedCamera> MakeBuiltinCamera()
{
    QString error;
    CameraIdentity identity;
    identity.vendor = "Simulated";
    identity.model = "SimCam-150";
    identity.version = "1.0.0";
    identity.serial = "SIM0001";
    identity.mac = 0x02007F1E0901;
    return std::make_unique<SimulatedCamera>(MakeBuiltinModel(&error), identity, 0x7F1E0901);
}
