#include "gvcp/interfaces.h"

#include <algorithm>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

namespace kxcc {
namespace {

std::uint32_t Ip(const sockaddr *pAddress)
{
    return ntohl(reinterpret_cast<const sockaddr_in *>(pAddress)->sin_addr.s_addr);
}

constexpr std::uint32_t kFirstHost = 0x01000000; // below it is "this network"
constexpr std::uint32_t kFirstMulticast =
    0xE0000000; // above multicast there is what nobody has, and broadcast
constexpr std::uint32_t kSmallestMask = 0xFFFFFFFE;

} // namespace

bool Interface::IsForAll(std::uint32_t nIp) const
{
    return nMask < kSmallestMask && (nIp == Broadcast() || nIp == (nAddress & nMask));
}

bool IsOneDevice(std::uint32_t nIp, const std::vector<Interface> &interfaces)
{
    return nIp >= kFirstHost && nIp < kFirstMulticast &&
           std::none_of(interfaces.begin(), interfaces.end(),
                        [=](const Interface &interface) { return interface.IsForAll(nIp); });
}

std::vector<Interface> ListInterfaces()
{
    std::vector<Interface> interfaces;
    ifaddrs *pFirst = nullptr;
    if (getifaddrs(&pFirst) != 0)
        return interfaces;
    for (const ifaddrs *p = pFirst; p != nullptr; p = p->ifa_next) {
        if (p->ifa_addr == nullptr || p->ifa_netmask == nullptr || p->ifa_addr->sa_family != AF_INET ||
            (p->ifa_flags & IFF_UP) == 0)
            continue;
        const std::string strLabel = p->ifa_name;
        interfaces.push_back({strLabel.substr(0, strLabel.find(':')), Ip(p->ifa_addr), Ip(p->ifa_netmask),
                              (p->ifa_flags & IFF_LOOPBACK) != 0});
    }
    freeifaddrs(pFirst);
    return interfaces;
}

} // namespace kxcc
