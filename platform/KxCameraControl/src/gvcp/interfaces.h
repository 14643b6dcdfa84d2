#ifndef KXCAMERACONTROL_GVCP_INTERFACES_H
#define KXCAMERACONTROL_GVCP_INTERFACES_H

#include <cstdint>
#include <string>
#include <vector>

namespace kxcc {

/// One IPv4 address of this machine; numbers in host order.
struct Interface
{
    std::string strName; ///< "eth0", without an alias' suffix
    std::uint32_t nAddress = 0;
    std::uint32_t nMask = 0;
    bool bLoopback = false;

    std::uint32_t Broadcast() const { return nAddress | ~nMask; }
    bool Contains(std::uint32_t nIp) const { return (nIp & nMask) == (nAddress & nMask); }
    /// Whether the address stands for the whole network: its last one, and its first, which old systems
    /// take for the same. Networks of one or two addresses have none.
    bool IsForAll(std::uint32_t nIp) const;
};

/// All addresses of interfaces that are up.
std::vector<Interface> ListInterfaces();

/// Whether the address may be that of one device: not 0.0.0.0 and its network, not multicast or above, and
/// for all devices of none of the networks.
bool IsOneDevice(std::uint32_t nIp, const std::vector<Interface> &interfaces);

} // namespace kxcc

#endif
