#ifndef KXCAMERACONTROL_DISCOVERY_INTERFACES_H
#define KXCAMERACONTROL_DISCOVERY_INTERFACES_H

#include <cstdint>
#include <string>
#include <vector>

namespace kxcc {

/// One IPv4 address of this machine; numbers in host order.
struct Interface
{
    std::string strName; ///< "eth0", without an alias' suffix
    uint32_t nAddress = 0;
    uint32_t nMask = 0;
    bool bLoopback = false;

    uint32_t Broadcast() const { return nAddress | ~nMask; }
    bool Contains(uint32_t nIp) const { return (nIp & nMask) == (nAddress & nMask); }
};

/// All addresses of interfaces that are up.
std::vector<Interface> ListInterfaces();

} // namespace kxcc

#endif
