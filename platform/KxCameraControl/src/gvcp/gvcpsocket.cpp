#include "gvcp/gvcpsocket.h"

#include <cstring>
#include <utility>

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "gvcp/gvcpcodec.h"

namespace kxcc {
namespace {

// Some hundred cameras answer a broadcast at once.
constexpr int kReceiveBuffer = 4 << 20;

sockaddr_in Address(std::uint32_t nIp, std::uint16_t nPort)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(nIp);
    address.sin_port = htons(nPort);
    return address;
}

} // namespace

GvcpSocket::GvcpSocket(GvcpSocket &&other) noexcept
    : m_interface(std::move(other.m_interface))
    , m_nSocket(std::exchange(other.m_nSocket, -1))
{
}

GvcpSocket::~GvcpSocket()
{
    if (m_nSocket >= 0)
        close(m_nSocket);
}

bool GvcpSocket::Open(const Interface &interface, Way way)
{
    m_interface = interface;
    m_nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (m_nSocket < 0)
        return false;
    // What is routed goes to one device: without the option the system itself refuses a broadcast address.
    const int nBroadcast = way == Way::Interface ? 1 : 0;
    setsockopt(m_nSocket, SOL_SOCKET, SO_BROADCAST, &nBroadcast, sizeof nBroadcast);
    setsockopt(m_nSocket, SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof kReceiveBuffer);
    setsockopt(m_nSocket, SOL_SOCKET, SO_RCVBUFFORCE, &kReceiveBuffer, sizeof kReceiveBuffer);
    return Bind(way);
}

/// A search binds to the interface rather than its address, because a camera of another subnet answers by
/// broadcast, which a socket bound to an address does not get. Old kernels want a privilege for that.
bool GvcpSocket::Bind(Way way)
{
    const bool bToDevice = way == Way::Interface &&
                           setsockopt(m_nSocket, SOL_SOCKET, SO_BINDTODEVICE, m_interface.strName.c_str(),
                                      static_cast<socklen_t>(m_interface.strName.size())) == 0;
    const sockaddr_in local = Address(bToDevice ? INADDR_ANY : m_interface.nAddress, 0);
    return bind(m_nSocket, reinterpret_cast<const sockaddr *>(&local), sizeof local) == 0;
}

bool GvcpSocket::Send(std::uint32_t nIp, const std::vector<std::uint8_t> &bytes) const
{
    sockaddr_in to = Address(nIp, kGvcpPort);
    iovec data{const_cast<std::uint8_t *>(bytes.data()), bytes.size()};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(in_pktinfo))] = {};
    msghdr message{};
    message.msg_name = &to;
    message.msg_namelen = sizeof to;
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    cmsghdr *pHeader = CMSG_FIRSTHDR(&message);
    pHeader->cmsg_level = IPPROTO_IP;
    pHeader->cmsg_type = IP_PKTINFO;
    pHeader->cmsg_len = CMSG_LEN(sizeof(in_pktinfo));
    // The address of this entry, where an interface has several.
    in_pktinfo source{};
    source.ipi_spec_dst.s_addr = htonl(m_interface.nAddress);
    std::memcpy(CMSG_DATA(pHeader), &source, sizeof source);
    return sendmsg(m_nSocket, &message, MSG_NOSIGNAL) >= 0;
}

std::size_t GvcpSocket::Receive(std::uint8_t *pBuffer, std::size_t nSize, std::uint32_t &nFromIp) const
{
    sockaddr_in from{};
    socklen_t nFrom = sizeof from;
    const ssize_t nRead =
        recvfrom(m_nSocket, pBuffer, nSize, MSG_DONTWAIT, reinterpret_cast<sockaddr *>(&from), &nFrom);
    nFromIp = ntohl(from.sin_addr.s_addr);
    return nRead > 0 ? static_cast<std::size_t>(nRead) : 0;
}

} // namespace kxcc
