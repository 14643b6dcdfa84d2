#ifndef KXCAMERACONTROL_GVCP_GVCPSOCKET_H
#define KXCAMERACONTROL_GVCP_GVCPSOCKET_H

#include <cstdint>
#include <vector>

#include "gvcp/interfaces.h"

namespace kxcc {

/// An unconnected UDP socket of one interface, for commands to many cameras at once.
class GvcpSocket
{
public:
    enum class Way
    {
        Interface, ///< by this interface alone, also from and to other subnets, as a search needs it
        Routed     ///< from the interface's address, by the system's routes, as a camera is opened
    };

    GvcpSocket() = default;
    GvcpSocket(GvcpSocket &&other) noexcept;
    GvcpSocket(const GvcpSocket &) = delete;
    GvcpSocket &operator=(const GvcpSocket &) = delete;
    ~GvcpSocket();

    /// @return false when the system gives no socket, or not this address
    bool Open(const Interface &interface, Way way);
    int Descriptor() const { return m_nSocket; }

    /// @param nIp  host order, a broadcast address included
    bool Send(std::uint32_t nIp, const std::vector<std::uint8_t> &bytes) const;
    /// The next datagram that is there already.
    /// @return its size; 0 when none is left, and for one that is empty or the error of an earlier Send()
    std::size_t Receive(std::uint8_t *pBuffer, std::size_t nSize, std::uint32_t &nFromIp) const;

private:
    bool Bind(Way way);

    Interface m_interface;
    int m_nSocket = -1;
};

} // namespace kxcc

#endif
