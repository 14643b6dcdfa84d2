#ifndef KXCAMERACONTROL_GVCP_GVCPCODEC_H
#define KXCAMERACONTROL_GVCP_GVCPCODEC_H

/**
 * @file
 * Building GVCP commands and reading GVCP acknowledges (GigE Vision 2.0, parts 14 to 16 and 28).
 *
 * Pure functions: bytes in, records out. What comes from the network is checked against the size of the
 * datagram before it is looked at.
 */

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kxcc {

constexpr std::uint16_t kGvcpPort = 3956;
/// Most bytes that one READMEM or WRITEMEM carries, so that the datagram stays within 576 bytes.
constexpr std::size_t kGvcpBlockSize = 512;
/// Largest datagram that a camera may send on the control channel; longer ones are cut by the socket.
constexpr std::size_t kGvcpDatagramSize = 1024;

/// Registers of GigE Vision 2.0, part 28 (bootstrap registers).
enum GvcpRegister : std::uint32_t
{
    kRegisterDeviceMode = 0x0004,
    kRegisterMacHigh0 = 0x0008,     ///< of the first network interface; the low half follows each
    kRegisterModelName = 0x0068,    ///< 32 bytes
    kRegisterSerialNumber = 0x00D8, ///< 16 bytes
    kRegisterDescriptionUrl0 = 0x0200,
    kRegisterDescriptionUrl1 = 0x0400,
    kRegisterMacHigh1 = 0x0680,
    kRegisterMacHigh2 = 0x0700,
    kRegisterMacHigh3 = 0x0780,
    kRegisterCapability = 0x0934,
    kRegisterHeartbeatTimeout = 0x0938,
    kRegisterControlPrivilege = 0x0A00,
};

/// Bits of the control-channel-privilege register.
constexpr std::uint32_t kPrivilegeExclusive = 0x1;
constexpr std::uint32_t kPrivilegeControl = 0x2;

enum class GvcpCommand : std::uint16_t
{
    Discovery = 0x0002,
    ReadRegister = 0x0080,
    WriteRegister = 0x0082,
    ReadMemory = 0x0084,
    WriteMemory = 0x0086,
};

constexpr std::uint16_t kGvcpPendingAck = 0x0089;
constexpr std::uint16_t kGvcpStatusAccessDenied = 0x8006;
constexpr std::uint16_t kGvcpStatusBusy = 0x8007;

/// The acknowledge that belongs to a command (its number is the command's plus one).
constexpr std::uint16_t AckOf(GvcpCommand command)
{
    return static_cast<std::uint16_t>(static_cast<std::uint16_t>(command) + 1);
}

std::vector<std::uint8_t> BuildDiscovery(std::uint16_t nRequestId, bool bAllowBroadcastAck);
std::vector<std::uint8_t> BuildReadRegister(std::uint16_t nRequestId, std::uint32_t nAddress);
std::vector<std::uint8_t> BuildWriteRegister(std::uint16_t nRequestId, std::uint32_t nAddress,
                                             std::uint32_t nValue);
/// @param nCount bytes, a multiple of 4, up to kGvcpBlockSize.
std::vector<std::uint8_t> BuildReadMemory(std::uint16_t nRequestId, std::uint32_t nAddress,
                                          std::uint16_t nCount);
/// @param nCount bytes, up to kGvcpBlockSize.
std::vector<std::uint8_t> BuildWriteMemory(std::uint16_t nRequestId, std::uint32_t nAddress,
                                           const std::uint8_t *pData, std::size_t nCount);

/// An acknowledge; the payload is borrowed from the datagram.
struct GvcpAck
{
    std::uint16_t nStatus = 0; ///< 0 success, 0x8001 and up an error
    std::uint16_t nCommand = 0;
    std::uint16_t nRequestId = 0;
    const std::uint8_t *pPayload = nullptr;
    std::size_t nPayload = 0;
};

/// Nothing when the datagram is shorter than its header says, or than a header.
std::optional<GvcpAck> ParseAck(const std::uint8_t *pDatagram, std::size_t nSize);

/// Value of a READREG acknowledge for one register; nothing when it is too short.
std::optional<std::uint32_t> ParseRegisterAck(const GvcpAck &ack);
/// Data of a READMEM acknowledge, nCount bytes long; null when the address differs or it is too short.
const std::uint8_t *ParseMemoryAck(const GvcpAck &ack, std::uint32_t nAddress, std::size_t nCount);
/// Milliseconds that a PENDING_ACK asks for; nothing when it is too short.
std::optional<std::uint16_t> ParsePendingAck(const GvcpAck &ack);

/// What a DISCOVERY_ACK says, as sent: texts may lack their NUL.
struct DiscoveryAck
{
    std::uint16_t nMacHigh = 0;
    std::uint32_t nMacLow = 0;
    std::uint32_t nCurrentIp = 0;
    std::uint32_t nSubnetMask = 0;
    std::uint32_t nGateway = 0;
    std::array<std::uint8_t, 32> manufacturerName{};
    std::array<std::uint8_t, 32> modelName{};
    std::array<std::uint8_t, 32> deviceVersion{};
    std::array<std::uint8_t, 48> manufacturerInfo{};
    std::array<std::uint8_t, 16> serialNumber{};
    std::array<std::uint8_t, 16> userDefinedName{};
};

/// Nothing for any other acknowledge, for an error status, and for a payload below its 248 bytes.
std::optional<DiscoveryAck> ParseDiscoveryAck(const GvcpAck &ack);

} // namespace kxcc

#endif
