#include "discovery/accessreader.h"

#include <utility>

#include "KxCameraControl/kxdeviceinfo.h"

namespace kxcc {
namespace {

// GVCP reserves request id 0.
std::uint16_t RequestId(std::size_t nCamera)
{
    return static_cast<std::uint16_t>(nCamera % 0xFFFF + 1);
}

std::uint32_t AccessOf(const GvcpAck &ack)
{
    if (ack.nStatus == kGvcpStatusAccessDenied)
        return KX_CC_ACCESS_IN_USE;
    const auto privilege = ParseRegisterAck(ack);
    if (ack.nStatus != 0 || !privilege)
        return KX_CC_ACCESS_UNREACHABLE;
    return (*privilege & (kPrivilegeControl | kPrivilegeExclusive)) != 0 ? KX_CC_ACCESS_IN_USE
                                                                         : KX_CC_ACCESS_FREE;
}

} // namespace

bool AccessReader::Open(const Interface &interface)
{
    GvcpSocket socket;
    if (!socket.Open(interface, GvcpSocket::Way::Routed))
        return false;
    m_sockets.push_back(std::move(socket));
    return true;
}

void AccessReader::Add(std::uint32_t nIp, std::size_t nInterface)
{
    m_cameras.push_back({nIp, nInterface, true, KX_CC_ACCESS_UNREACHABLE});
    ++m_nWaiting;
}

void AccessReader::AddUnreachable()
{
    m_cameras.push_back({0, 0, false, KX_CC_ACCESS_UNREACHABLE});
}

void AccessReader::Ask(bool bAgain)
{
    for (std::size_t i = bAgain ? 0 : m_nFirstNew; i < m_cameras.size(); ++i) {
        const Asked &camera = m_cameras[i];
        if (camera.bWaiting)
            m_sockets[camera.nInterface].Send(camera.nIp,
                                              BuildReadRegister(RequestId(i), kRegisterControlPrivilege));
    }
    m_nFirstNew = m_cameras.size();
}

void AccessReader::TakeAnswer(const GvcpAck &ack, std::uint32_t nFrom)
{
    const std::size_t i = ack.nRequestId > 0 ? ack.nRequestId - 1U : m_cameras.size();
    if (i >= m_cameras.size() || ack.nCommand != AckOf(GvcpCommand::ReadRegister) || !m_cameras[i].bWaiting ||
        m_cameras[i].nIp != nFrom)
        return;
    m_cameras[i].nStatus = AccessOf(ack);
    m_cameras[i].bWaiting = false;
    --m_nWaiting;
}

} // namespace kxcc
