#ifndef KXCAMERACONTROL_DISCOVERY_ACCESSREADER_H
#define KXCAMERACONTROL_DISCOVERY_ACCESSREADER_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gvcp/gvcpcodec.h"
#include "gvcp/gvcpsocket.h"
#include "gvcp/interfaces.h"

namespace kxcc {

/// Asks cameras who controls them, all at once, and again until they have answered. By the way that opening
/// takes: the system's routes.
class AccessReader
{
public:
    /// @return false when the system gives no socket; the interface is then left out
    bool Open(const Interface &interface);

    /// The next camera. Cameras are numbered from 0 in the order of these calls, interfaces in that of
    /// Open().
    void Add(std::uint32_t nIp, std::size_t nInterface);
    /// One that is not to be asked: it is unreachable.
    void AddUnreachable();

    /// Asks those that were never asked; with bAgain all that have not answered.
    void Ask(bool bAgain);
    void TakeAnswer(const GvcpAck &ack, std::uint32_t nFrom);

    bool IsDone() const { return m_nWaiting == 0; }
    /// KX_CC_ACCESS_...; unreachable until the camera has answered.
    std::uint32_t StatusOf(std::size_t nCamera) const { return m_cameras[nCamera].nStatus; }
    const std::vector<GvcpSocket> &Sockets() const { return m_sockets; }

private:
    struct Asked
    {
        std::uint32_t nIp;
        std::size_t nInterface;
        bool bWaiting;
        std::uint32_t nStatus;
    };

    std::vector<GvcpSocket> m_sockets; ///< by interface
    std::vector<Asked> m_cameras;
    std::size_t m_nFirstNew = 0; ///< cameras from here on were never asked
    std::size_t m_nWaiting = 0;
};

} // namespace kxcc

#endif
