#include "gvcp/gvcpcodec.h"

#include <cstring>

namespace kxcc {
namespace {

constexpr std::uint8_t kKey = 0x42;
constexpr std::uint8_t kFlagAckRequired = 0x01;
constexpr std::uint8_t kFlagAllowBroadcastAck = 0x10;
constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kDiscoveryAckSize = 248;

void Put16(std::vector<std::uint8_t> &bytes, std::uint16_t nValue)
{
    bytes.push_back(static_cast<std::uint8_t>(nValue >> 8));
    bytes.push_back(static_cast<std::uint8_t>(nValue));
}

void Put32(std::vector<std::uint8_t> &bytes, std::uint32_t nValue)
{
    Put16(bytes, static_cast<std::uint16_t>(nValue >> 16));
    Put16(bytes, static_cast<std::uint16_t>(nValue));
}

std::uint16_t Get16(const std::uint8_t *pBytes)
{
    return static_cast<std::uint16_t>(pBytes[0] << 8 | pBytes[1]);
}

std::uint32_t Get32(const std::uint8_t *pBytes)
{
    return static_cast<std::uint32_t>(Get16(pBytes)) << 16 | Get16(pBytes + 2);
}

std::vector<std::uint8_t> Command(GvcpCommand command, std::uint8_t nFlags, std::uint16_t nRequestId,
                                  std::size_t nPayload)
{
    std::vector<std::uint8_t> bytes;
    bytes.reserve(kHeaderSize + nPayload);
    bytes.push_back(kKey);
    bytes.push_back(nFlags);
    Put16(bytes, static_cast<std::uint16_t>(command));
    Put16(bytes, static_cast<std::uint16_t>(nPayload));
    Put16(bytes, nRequestId);
    return bytes;
}

template <std::size_t N>
void CopyField(std::array<std::uint8_t, N> &field, const std::uint8_t *pPayload, std::size_t nOffset)
{
    std::memcpy(field.data(), pPayload + nOffset, N);
}

} // namespace

std::vector<std::uint8_t> BuildDiscovery(std::uint16_t nRequestId, bool bAllowBroadcastAck)
{
    const auto nFlags =
        static_cast<std::uint8_t>(kFlagAckRequired | (bAllowBroadcastAck ? kFlagAllowBroadcastAck : 0));
    return Command(GvcpCommand::Discovery, nFlags, nRequestId, 0);
}

std::vector<std::uint8_t> BuildReadRegister(std::uint16_t nRequestId, std::uint32_t nAddress)
{
    std::vector<std::uint8_t> bytes = Command(GvcpCommand::ReadRegister, kFlagAckRequired, nRequestId, 4);
    Put32(bytes, nAddress);
    return bytes;
}

std::vector<std::uint8_t> BuildWriteRegister(std::uint16_t nRequestId, std::uint32_t nAddress,
                                             std::uint32_t nValue)
{
    std::vector<std::uint8_t> bytes = Command(GvcpCommand::WriteRegister, kFlagAckRequired, nRequestId, 8);
    Put32(bytes, nAddress);
    Put32(bytes, nValue);
    return bytes;
}

std::vector<std::uint8_t> BuildReadMemory(std::uint16_t nRequestId, std::uint32_t nAddress,
                                          std::uint16_t nCount)
{
    std::vector<std::uint8_t> bytes = Command(GvcpCommand::ReadMemory, kFlagAckRequired, nRequestId, 8);
    Put32(bytes, nAddress);
    Put16(bytes, 0);
    Put16(bytes, nCount);
    return bytes;
}

std::vector<std::uint8_t> BuildWriteMemory(std::uint16_t nRequestId, std::uint32_t nAddress,
                                           const std::uint8_t *pData, std::size_t nCount)
{
    std::vector<std::uint8_t> bytes =
        Command(GvcpCommand::WriteMemory, kFlagAckRequired, nRequestId, 4 + nCount);
    Put32(bytes, nAddress);
    bytes.insert(bytes.end(), pData, pData + nCount);
    return bytes;
}

std::optional<GvcpAck> ParseAck(const std::uint8_t *pDatagram, std::size_t nSize)
{
    if (nSize < kHeaderSize)
        return std::nullopt;
    GvcpAck ack;
    ack.nStatus = Get16(pDatagram);
    ack.nCommand = Get16(pDatagram + 2);
    ack.nPayload = Get16(pDatagram + 4);
    ack.nRequestId = Get16(pDatagram + 6);
    ack.pPayload = pDatagram + kHeaderSize;
    if (ack.nPayload > nSize - kHeaderSize)
        return std::nullopt;
    return ack;
}

std::optional<std::uint32_t> ParseRegisterAck(const GvcpAck &ack)
{
    if (ack.nPayload < 4)
        return std::nullopt;
    return Get32(ack.pPayload);
}

const std::uint8_t *ParseMemoryAck(const GvcpAck &ack, std::uint32_t nAddress, std::size_t nCount)
{
    if (ack.nPayload < 4 || ack.nPayload - 4 < nCount || Get32(ack.pPayload) != nAddress)
        return nullptr;
    return ack.pPayload + 4;
}

std::optional<std::uint16_t> ParsePendingAck(const GvcpAck &ack)
{
    if (ack.nPayload < 4)
        return std::nullopt;
    return Get16(ack.pPayload + 2);
}

std::optional<DiscoveryAck> ParseDiscoveryAck(const GvcpAck &ack)
{
    if (ack.nCommand != AckOf(GvcpCommand::Discovery) || ack.nStatus != 0 || ack.nPayload < kDiscoveryAckSize)
        return std::nullopt;
    const std::uint8_t *p = ack.pPayload;
    DiscoveryAck answer;
    answer.nMacHigh = Get16(p + 10);
    answer.nMacLow = Get32(p + 12);
    answer.nCurrentIp = Get32(p + 36);
    answer.nSubnetMask = Get32(p + 52);
    answer.nGateway = Get32(p + 68);
    CopyField(answer.manufacturerName, p, 72);
    CopyField(answer.modelName, p, 104);
    CopyField(answer.deviceVersion, p, 136);
    CopyField(answer.manufacturerInfo, p, 168);
    CopyField(answer.serialNumber, p, 216);
    CopyField(answer.userDefinedName, p, 232);
    return answer;
}

} // namespace kxcc
