#ifndef KXCAMERAFARM_GVCP_H
#define KXCAMERAFARM_GVCP_H

#include "wire/bytes.h"

/// The GigE Vision control protocol as bytes: requests taken apart, acknowledges put together.
///
/// GigE Vision 2.0, sections 13 to 16 (GVCP) and 17 (dictionary). No I/O, no state.
namespace KxFarm::Gvcp {

constexpr std::uint16_t kUdpPort = 3956;
constexpr std::uint8_t kKey = 0x42;          ///< first byte of every command (15.1)
constexpr std::uint8_t kFlagAckRequired = 1; ///< lowest bit of the flag byte (15.1)
constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kMaxPayload = 540;          ///< 576 bytes of IP packet less all headers (15.1)
constexpr std::size_t kMaxReadmem = 536;          ///< kMaxPayload less the address in the acknowledge
constexpr std::size_t kDiscoveryAckPayload = 248; ///< bootstrap registers 0x0000 to 0x00F7 (16.1.2)
constexpr std::size_t kForceipPayload = 56; ///< MAC and new addresses, where those registers have them (16.2)

/// Command values (17, table 17-1); the acknowledge of a command has its value plus one.
enum Command : std::uint16_t
{
    DISCOVERY_CMD = 0x0002,
    FORCEIP_CMD = 0x0004,
    PACKETRESEND_CMD = 0x0040,
    READREG_CMD = 0x0080,
    WRITEREG_CMD = 0x0082,
    READMEM_CMD = 0x0084,
    WRITEMEM_CMD = 0x0086,
    PENDING_ACK = 0x0089,
    ACTION_CMD = 0x0100,
};

/// Status codes (17, table 17-2).
enum Status : std::uint16_t
{
    STATUS_SUCCESS = 0x0000,
    STATUS_NOT_IMPLEMENTED = 0x8001,
    STATUS_INVALID_PARAMETER = 0x8002,
    STATUS_INVALID_ADDRESS = 0x8003,
    STATUS_WRITE_PROTECT = 0x8004,
    STATUS_BAD_ALIGNMENT = 0x8005,
    STATUS_ACCESS_DENIED = 0x8006,
    STATUS_BUSY = 0x8007,
    STATUS_INVALID_HEADER = 0x800E,
    STATUS_ERROR = 0x8FFF,
};

/// One command. `payload` points into the datagram it was parsed from.
struct Request
{
    std::uint16_t command = 0;
    std::uint16_t id = 0;
    std::uint8_t flags = 0;
    const std::uint8_t *payload = nullptr;
    std::size_t size = 0; ///< bytes of payload, as the header says
    bool AckRequired() const { return (flags & kFlagAckRequired) != 0; }
};

enum class Parsed
{
    Ok,
    Ignore,    ///< no command: wrong key, too short, request id 0. A device stays silent.
    BadHeader, ///< a command whose length field does not fit the datagram; command, id, flags are set
};

Parsed ParseRequest(const std::uint8_t *data, std::size_t size, Request *pRequest);

/// An acknowledge: header, then `size` bytes of payload.
Bytes MakeAck(std::uint16_t status, std::uint16_t command, std::uint16_t id,
              const std::uint8_t *payload = nullptr, std::size_t size = 0);

/// The answer to `request` when it was refused as a whole, with the payload its kind of command has then.
Bytes MakeErrorAck(std::uint16_t status, const Request &request);

/// PENDING_ACK: wait up to `timeToCompletionMs` more for the answer to request `id` (16.6).
Bytes MakePendingAck(std::uint16_t id, std::uint16_t timeToCompletionMs);

} // namespace KxFarm::Gvcp

#endif
