#include "discovery/round.h"

#include <algorithm>

#include <poll.h>

#include "protocol/idtext.h"

namespace kxcc {
namespace {

using std::chrono::milliseconds;

// GVCP reserves request id 0.
constexpr uint16_t kDiscoveryId = 0xFFFF;
constexpr uint32_t kEveryone = 0xFFFFFFFF;
// Repeated, because a datagram can get lost where some hundred come at once.
constexpr milliseconds kRepeat(250);
// The standard lets a camera wait with its answer; most do not.
constexpr milliseconds kQuiet(150);
constexpr milliseconds kAccessTime(450);
constexpr milliseconds kAccessRepeat(120);
// Of a device that answers without end, before the clock is looked at again.
constexpr int kMostDatagrams = 1000;

uint32_t AccessOf(const GvcpAck &ack)
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

KX_CC_DEVICE_INFO GigeRecord(const DiscoveryAck &ack, const Interface &interface)
{
    KX_CC_DEVICE_INFO info{};
    info.nTransportType = KX_CC_TRANSPORT_GIGE;
    info.nMacAddrHigh = ack.nMacHigh;
    info.nMacAddrLow = ack.nMacLow;
    KX_CC_GIGE_INFO &gige = info.SpecialInfo.stGigEInfo;
    gige.nCurrentIp = ack.nCurrentIp;
    gige.nSubNetMask = ack.nSubnetMask;
    gige.nGateway = ack.nGateway;
    gige.nInterfaceIp = interface.nAddress;
    gige.nInterfaceMask = interface.nMask;
    SetIdField(gige.chInterfaceName, interface.strName.data(), interface.strName.size());
    SetIdField(gige.chManufacturerName, ack.manufacturerName.data(), ack.manufacturerName.size());
    SetIdField(gige.chModelName, ack.modelName.data(), ack.modelName.size());
    SetIdField(gige.chDeviceVersion, ack.deviceVersion.data(), ack.deviceVersion.size());
    SetIdField(gige.chManufacturerInfo, ack.manufacturerInfo.data(), ack.manufacturerInfo.size());
    SetIdField(gige.chSerialNumber, ack.serialNumber.data(), ack.serialNumber.size());
    SetIdField(gige.chUserDefinedName, ack.userDefinedName.data(), ack.userDefinedName.size());
    return info;
}

bool Round::Open(const std::vector<Interface> &interfaces)
{
    for (const Interface &interface : interfaces) {
        GvcpSocket socket;
        GvcpSocket routed;
        if (!socket.Open(interface, GvcpSocket::Way::Interface) ||
            !routed.Open(interface, GvcpSocket::Way::Routed))
            continue;
        m_interfaces.push_back(interface);
        m_sockets.push_back(std::move(socket));
        m_routed.push_back(std::move(routed));
    }
    return !m_sockets.empty();
}

void Round::Broadcast()
{
    for (size_t i = 0; i < m_sockets.size(); ++i) {
        m_sockets[i].Send(m_interfaces[i].Broadcast(), BuildDiscovery(kDiscoveryId, true));
        m_sockets[i].Send(kEveryone, BuildDiscovery(kDiscoveryId, true));
    }
}

void Round::Ask(uint32_t nIp)
{
    for (const GvcpSocket &socket : m_sockets)
        socket.Send(nIp, BuildDiscovery(kDiscoveryId, false));
}

void Round::Collect(int nTimeoutMs, size_t nExpected)
{
    const auto end = Clock::now() + milliseconds(nTimeoutMs);
    auto repeat = Clock::now() + kRepeat;
    auto quietSince = Clock::now();
    bool bRepeated = false;
    Broadcast();
    while (Clock::now() < end) {
        Wait(m_sockets, std::min({end, bRepeated ? end : repeat, quietSince + kQuiet}));
        const auto now = Clock::now();
        const bool bNew = TakeAnswers() > 0;
        const bool bQuiet = !bNew && now >= quietSince + kQuiet;
        if (bQuiet && nExpected > 0 && m_cameras.size() >= nExpected)
            return;
        if (bNew || bQuiet)
            quietSince = now;
        if (!bRepeated && now >= repeat) {
            bRepeated = true;
            Broadcast();
        }
    }
}

void Round::CollectFrom(uint32_t nIp, int nTimeoutMs)
{
    const auto end = Clock::now() + milliseconds(nTimeoutMs);
    while (m_cameras.empty() && Clock::now() < end) {
        Ask(nIp);
        const auto repeat = std::min(end, Clock::now() + kRepeat);
        while (m_cameras.empty() && Clock::now() < repeat) {
            Wait(m_sockets, repeat);
            TakeAnswers();
        }
    }
}

/// @return true when a datagram is there
bool Round::Wait(const std::vector<GvcpSocket> &sockets, Clock::time_point until)
{
    std::vector<pollfd> descriptors;
    descriptors.reserve(sockets.size());
    for (const GvcpSocket &socket : sockets)
        descriptors.push_back({socket.Descriptor(), POLLIN, 0});
    const auto left = std::chrono::duration_cast<milliseconds>(until - Clock::now()) + milliseconds(1);
    return poll(descriptors.data(), descriptors.size(),
                static_cast<int>(std::max<long long>(left.count(), 0))) > 0;
}

/// Hands over what is there already: the acknowledge, nothing for bytes that are none, the sender, and the
/// index of the interface.
void Round::Drain(const std::vector<GvcpSocket> &sockets, const Taker &take)
{
    for (size_t i = 0; i < sockets.size(); ++i) {
        uint8_t datagram[kGvcpDatagramSize];
        uint32_t nFrom = 0;
        for (int nLeft = kMostDatagrams; nLeft > 0; --nLeft) {
            const size_t nSize = sockets[i].Receive(datagram, sizeof datagram, nFrom);
            if (nSize == 0)
                break;
            take(ParseAck(datagram, nSize), nFrom, i);
        }
    }
}

/// @return how many datagrams were there
size_t Round::TakeAnswers()
{
    size_t nTaken = 0;
    Drain(m_sockets, [&](const std::optional<GvcpAck> &ack, uint32_t /*sender*/, size_t nInterface) {
        ++nTaken;
        const auto answer = ack ? ParseDiscoveryAck(*ack) : std::nullopt;
        if (answer && ack->nRequestId == kDiscoveryId)
            Add(*answer, nInterface);
    });
    return nTaken;
}

/// The interface that reaches the camera: the one it was heard on, unless the camera's subnet is that of
/// another one. On a switch with two of our interfaces an answer may arrive at either.
size_t Round::WayTo(uint32_t nCameraIp, size_t nHeardOn) const
{
    if (m_interfaces[nHeardOn].Contains(nCameraIp))
        return nHeardOn;
    const auto same = std::find_if(m_interfaces.begin(), m_interfaces.end(),
                                   [&](const Interface &interface) { return interface.Contains(nCameraIp); });
    return same != m_interfaces.end() ? static_cast<size_t>(same - m_interfaces.begin()) : nHeardOn;
}

void Round::Add(const DiscoveryAck &ack, size_t nHeardOn)
{
    const size_t nInterface = WayTo(ack.nCurrentIp, nHeardOn);
    const KX_CC_DEVICE_INFO info = GigeRecord(ack, m_interfaces[nInterface]);
    if (m_cameras.size() == MOST_CAMERAS || !m_seen.insert(info).second)
        return;
    m_cameras.push_back(info);
    m_interfaceOf.push_back(nInterface);
}

/// By the way that opening takes: a camera of another subnet, which the search reaches all the same, is
/// unreachable unless there is a route to it.
void Round::ReadAccess()
{
    for (KX_CC_DEVICE_INFO &camera : m_cameras)
        camera.nAccessStatus = KX_CC_ACCESS_UNREACHABLE; // unless it answers
    std::vector<bool> answered(m_cameras.size(), false);
    size_t nLeft = m_cameras.size();
    const auto end = Clock::now() + kAccessTime;
    while (nLeft > 0 && Clock::now() < end) {
        AskAccess(answered);
        const auto repeat = std::min(end, Clock::now() + kAccessRepeat);
        while (nLeft > 0 && Clock::now() < repeat) {
            Wait(m_routed, repeat);
            nLeft -= TakeAccess(answered);
        }
    }
}

void Round::AskAccess(const std::vector<bool> &answered)
{
    for (size_t i = 0; i < m_cameras.size(); ++i) {
        if (!answered[i])
            m_routed[m_interfaceOf[i]].Send(
                m_cameras[i].SpecialInfo.stGigEInfo.nCurrentIp,
                BuildReadRegister(static_cast<uint16_t>(i % 0xFFFE + 1), kRegisterControlPrivilege));
    }
}

size_t Round::TakeAccess(std::vector<bool> &answered)
{
    size_t nNew = 0;
    Drain(m_routed, [&](const std::optional<GvcpAck> &ack, uint32_t nFrom, size_t /*interface*/) {
        const size_t i = ack && ack->nRequestId > 0 ? ack->nRequestId - 1U : m_cameras.size();
        if (i >= m_cameras.size() || ack->nCommand != AckOf(GvcpCommand::ReadRegister) || answered[i] ||
            m_cameras[i].SpecialInfo.stGigEInfo.nCurrentIp != nFrom)
            return;
        m_cameras[i].nAccessStatus = AccessOf(*ack);
        answered[i] = true;
        ++nNew;
    });
    return nNew;
}

} // namespace kxcc
