#include "device/bootstrap.h"

#include "wire/registermemory.h"

#include <algorithm>

namespace KxFarm {

namespace {

struct Range
{
    std::uint32_t first;
    std::uint32_t end;
    Bootstrap::Access access;
};

using Bootstrap::Access;

// One network interface, no message channel, one stream channel, no manifest, no action commands.
constexpr Range kRanges[] = {
    {0x0000, 0x0014, Access::ReadOnly},  // version, mode, MAC, capability
    {0x0014, 0x0018, Access::ReadWrite}, // interface configuration
    {0x0018, 0x00E8, Access::ReadOnly},  // reserved words and current addresses, names
    {0x00E8, 0x00F8, Access::ReadWrite}, // user-defined name
    {0x0200, 0x0604, Access::ReadOnly},  // both URLs, number of interfaces
    {0x064C, 0x0650, Access::ReadWrite}, // persistent address
    {0x065C, 0x0660, Access::ReadWrite}, // persistent mask
    {0x066C, 0x0670, Access::ReadWrite}, // persistent gateway
    {0x0670, 0x0674, Access::ReadOnly},  // link speed
    {0x0900, 0x0914, Access::ReadOnly},  // numbers of channels, of action signals, of active links
    {0x092C, 0x0938, Access::ReadOnly},  // capabilities
    {0x0938, 0x093C, Access::ReadWrite}, // heartbeat timeout
    {0x093C, 0x0944, Access::ReadOnly},  // timestamp tick frequency
    {0x0944, 0x0948, Access::ReadWrite}, // timestamp control
    {0x0948, 0x0950, Access::ReadOnly},  // timestamp value
    {0x0954, 0x0958, Access::ReadWrite}, // GVCP configuration
    {0x0958, 0x095C, Access::ReadOnly},  // pending timeout
    {0x095C, 0x0960, Access::ReadWrite}, // switchover key
    {0x0A00, 0x0A04, Access::ReadWrite}, // control channel privilege
    {0x0A04, 0x0A08, Access::ReadOnly},  // primary application port
    {0x0A14, 0x0A18, Access::ReadOnly},  // primary application address
    {0x0D00, 0x0D0C, Access::ReadWrite}, // stream channel 0: port, packet size, packet delay
    {0x0D18, 0x0D1C, Access::ReadWrite}, // stream channel 0: destination
    {0x0D1C, 0x0D24, Access::ReadOnly},  // stream channel 0: source port, capability
    {0x0D24, 0x0D28, Access::ReadWrite}, // stream channel 0: configuration
};

// Bits of GVCP_CAPABILITY (28.42): user-defined name, serial number, heartbeat can be disabled, link speed,
// application port and address; PENDING_ACK, WRITEMEM, several registers in one command.
constexpr std::uint32_t kCapabilities =
    0x80000000U | 0x40000000U | 0x20000000U | 0x10000000U | 0x08000000U | 0x20U | 0x2U | 0x1U;

} // namespace

Bootstrap::Access Bootstrap::AccessOf(std::uint32_t address)
{
    const auto *const found =
        std::find_if(std::begin(kRanges), std::end(kRanges),
                     [address](const Range &range) { return address >= range.first && address < range.end; });
    return found == std::end(kRanges) ? Access::None : found->access;
}

void WriteText(RegisterMemory *pMemory, std::uint32_t address, const QByteArray &text, std::size_t width)
{
    Bytes field(width, 0);
    std::copy_n(text.constData(), std::min<std::size_t>(width, static_cast<std::size_t>(text.size())),
                field.begin());
    pMemory->Write(address, field.data(), width);
}

void FillBootstrap(RegisterMemory *pMemory, const CameraIdentity &identity, std::uint32_t ipAddress)
{
    using namespace Bootstrap;
    pMemory->Fill(0, 0x1000, 0);
    pMemory->WriteWord(VERSION, 0x00020000);     // GigE Vision 2.0
    pMemory->WriteWord(DEVICE_MODE, 0x80000001); // big-endian transmitter, one link, UTF-8
    pMemory->WriteWord(MAC_HIGH, static_cast<std::uint32_t>(identity.mac >> 32U) & 0xFFFFU);
    pMemory->WriteWord(MAC_LOW, static_cast<std::uint32_t>(identity.mac & 0xFFFFFFFFU));
    pMemory->WriteWord(INTERFACE_CAPABILITY, 7);    // persistent, DHCP, link-local
    pMemory->WriteWord(INTERFACE_CONFIGURATION, 5); // persistent, link-local
    pMemory->WriteWord(CURRENT_IP, ipAddress);
    pMemory->WriteWord(CURRENT_MASK, 0xFF000000);
    WriteText(pMemory, MANUFACTURER_NAME, identity.vendor, 32);
    WriteText(pMemory, MODEL_NAME, identity.model, 32);
    WriteText(pMemory, DEVICE_VERSION, identity.version, 32);
    WriteText(pMemory, MANUFACTURER_INFO, identity.info, 48);
    WriteText(pMemory, SERIAL_NUMBER, identity.serial, 16);
    WriteText(pMemory, USER_DEFINED_NAME, identity.userName, 16);
    pMemory->WriteWord(INTERFACE_COUNT, 1);
    pMemory->WriteWord(PERSISTENT_IP, ipAddress);
    pMemory->WriteWord(PERSISTENT_MASK, 0xFF000000);
    pMemory->WriteWord(LINK_SPEED, 1000); // Mbit/s
    pMemory->WriteWord(STREAM_CHANNEL_COUNT, 1);
    pMemory->WriteWord(GVCP_CAPABILITY, kCapabilities);
    pMemory->WriteWord(HEARTBEAT_TIMEOUT, kDefaultHeartbeatMs);
    pMemory->WriteWord(TICK_FREQUENCY_LOW, 1000000000); // one tick is one nanosecond
    pMemory->WriteWord(PENDING_TIMEOUT, 1000);
    pMemory->WriteWord(STREAM_PACKET_SIZE, 1500);
}

} // namespace KxFarm
