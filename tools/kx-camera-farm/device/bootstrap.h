#ifndef KXCAMERAFARM_BOOTSTRAP_H
#define KXCAMERAFARM_BOOTSTRAP_H

#include "wire/bytes.h"

#include <QByteArray>

namespace KxFarm {

class RegisterMemory;

/// Addresses of the bootstrap registers a camera of ours has (GigE Vision 2.0, section 28).
namespace Bootstrap {
enum Address : std::uint32_t
{
    VERSION = 0x0000,
    DEVICE_MODE = 0x0004,
    MAC_HIGH = 0x0008,
    MAC_LOW = 0x000C,
    INTERFACE_CAPABILITY = 0x0010,
    INTERFACE_CONFIGURATION = 0x0014,
    CURRENT_IP = 0x0024,
    CURRENT_MASK = 0x0034,
    CURRENT_GATEWAY = 0x0044,
    MANUFACTURER_NAME = 0x0048,
    MODEL_NAME = 0x0068,
    DEVICE_VERSION = 0x0088,
    MANUFACTURER_INFO = 0x00A8,
    SERIAL_NUMBER = 0x00D8,
    USER_DEFINED_NAME = 0x00E8,
    FIRST_URL = 0x0200,
    SECOND_URL = 0x0400,
    INTERFACE_COUNT = 0x0600,
    PERSISTENT_IP = 0x064C,
    PERSISTENT_MASK = 0x065C,
    PERSISTENT_GATEWAY = 0x066C,
    LINK_SPEED = 0x0670,
    MESSAGE_CHANNEL_COUNT = 0x0900,
    STREAM_CHANNEL_COUNT = 0x0904,
    STREAM_CHANNEL_CAPABILITY = 0x092C,
    GVCP_CAPABILITY = 0x0934,
    HEARTBEAT_TIMEOUT = 0x0938,
    TICK_FREQUENCY_HIGH = 0x093C,
    TICK_FREQUENCY_LOW = 0x0940,
    TIMESTAMP_CONTROL = 0x0944,
    TIMESTAMP_HIGH = 0x0948,
    TIMESTAMP_LOW = 0x094C,
    GVCP_CONFIGURATION = 0x0954,
    PENDING_TIMEOUT = 0x0958,
    SWITCHOVER_KEY = 0x095C,
    CONTROL_PRIVILEGE = 0x0A00,
    PRIMARY_PORT = 0x0A04,
    PRIMARY_ADDRESS = 0x0A14,
    STREAM_PORT = 0x0D00,
    STREAM_PACKET_SIZE = 0x0D04,
    STREAM_PACKET_DELAY = 0x0D08,
    STREAM_DESTINATION = 0x0D18,
    STREAM_SOURCE_PORT = 0x0D1C,
    MANUFACTURER_SPACE = 0xA000, ///< from here on addresses are the manufacturer's
};

constexpr std::size_t kUrlSize = 512;
constexpr std::uint32_t kDefaultHeartbeatMs = 3000;
constexpr std::uint32_t kMinHeartbeatMs = 500;
constexpr std::uint32_t kMaxHeartbeatMs = 60000; ///< both as the built-in description says
constexpr std::uint32_t kHeartbeatDisabled = 1;  ///< bit of GVCP_CONFIGURATION

/// What may be done with the register word at `address` below MANUFACTURER_SPACE.
enum class Access
{
    None, ///< no such register
    ReadOnly,
    ReadWrite,
};
Access AccessOf(std::uint32_t address);
} // namespace Bootstrap

/// Who a camera says it is. Texts are bytes as they go out, cut at the width of their register.
struct CameraIdentity
{
    QByteArray vendor;
    QByteArray model;
    QByteArray version;
    QByteArray info;
    QByteArray serial;
    QByteArray userName;
    std::uint64_t mac = 0; ///< lower 48 bits
};

/// Writes the state after power-up: everything but the description's URLs.
void FillBootstrap(RegisterMemory *pMemory, const CameraIdentity &identity, std::uint32_t ipAddress);

/// Writes `text` cut at `width` bytes, the rest zero.
void WriteText(RegisterMemory *pMemory, std::uint32_t address, const QByteArray &text, std::size_t width);

} // namespace KxFarm

#endif
