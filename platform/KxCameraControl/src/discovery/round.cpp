#include "discovery/round.h"

#include <algorithm>
#include <utility>

#include <poll.h>

#include "camera/idtext.h"

namespace kxcc {
namespace {

using std::chrono::milliseconds;

// GVCP reserves request id 0.
constexpr std::uint16_t kDiscoveryId = 0xFFFF;
constexpr std::uint32_t kEveryone = 0xFFFFFFFF;
// Repeated as long as the search lasts, because a datagram can get lost, most of all where some hundred come
// at once.
constexpr milliseconds kRepeat(300);
// The standard lets a camera wait with its answer; most do not.
constexpr milliseconds kQuiet(150);
constexpr milliseconds kAccessTime(450);
constexpr milliseconds kAccessRepeat(120);
// Of a device that answers without end, before the clock is looked at again.
constexpr int kMostDatagrams = 1000;

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
        if (!socket.Open(interface, GvcpSocket::Way::Interface) || !m_access.Open(interface))
            continue;
        m_interfaces.push_back(interface);
        m_sockets.push_back(std::move(socket));
    }
    return !m_sockets.empty();
}

void Round::Broadcast()
{
    for (std::size_t i = 0; i < m_sockets.size(); ++i) {
        m_sockets[i].Send(m_interfaces[i].Broadcast(), BuildDiscovery(kDiscoveryId, true));
        m_sockets[i].Send(kEveryone, BuildDiscovery(kDiscoveryId, true));
    }
}

void Round::Ask(std::uint32_t nIp)
{
    for (const GvcpSocket &socket : m_sockets)
        socket.Send(nIp, BuildDiscovery(kDiscoveryId, false));
}

void Round::Collect(int nTimeoutMs, std::size_t nExpected)
{
    const auto start = Clock::now();
    const auto end = start + milliseconds(nTimeoutMs);
    auto repeat = start;
    auto quietSince = start;
    for (auto now = start; now < end; now = Clock::now()) {
        if (now >= repeat) {
            Broadcast();
            repeat = now + kRepeat;
        }
        AskAccess();
        Wait(Sockets::All, std::min({end, repeat, quietSince + kQuiet}));
        const auto heard = Clock::now();
        const bool bNew = TakeAnswers() > 0;
        const bool bQuiet = !bNew && heard >= quietSince + kQuiet;
        if (bQuiet && nExpected > 0 && m_found.size() >= nExpected && m_access.IsDone())
            return;
        if (bNew || bQuiet)
            quietSince = heard;
    }
}

void Round::CollectFrom(std::uint32_t nIp, int nTimeoutMs)
{
    m_asked = nIp;
    const auto end = Clock::now() + milliseconds(nTimeoutMs);
    while (m_found.empty() && Clock::now() < end) {
        Ask(nIp);
        const auto repeat = std::min(end, Clock::now() + kRepeat);
        while (m_found.empty() && Clock::now() < repeat) {
            Wait(Sockets::All, repeat);
            TakeAnswers();
        }
    }
}

void Round::ReadAccess()
{
    const auto end = Clock::now() + kAccessTime;
    while (!m_access.IsDone() && Clock::now() < end) {
        AskAccess();
        Wait(Sockets::Access, end);
        TakeAccess();
    }
}

std::vector<KX_CC_DEVICE_INFO> Round::Cameras() const
{
    std::vector<KX_CC_DEVICE_INFO> cameras;
    for (std::size_t i = 0; i < m_found.size(); ++i) {
        if (m_pNewcomers != nullptr && m_pNewcomers->IsBarred(m_found[i].nSender))
            continue;
        cameras.push_back(m_found[i].info);
        cameras.back().nAccessStatus = m_access.StatusOf(i);
    }
    return cameras;
}

/// Until then, a datagram, or the time to ask for the access status again.
void Round::Wait(Sockets which, Clock::time_point until) const
{
    std::vector<pollfd> descriptors;
    descriptors.reserve(2 * m_sockets.size());
    for (const GvcpSocket &socket : m_access.Sockets())
        descriptors.push_back({socket.Descriptor(), POLLIN, 0});
    for (std::size_t i = 0; which == Sockets::All && i < m_sockets.size(); ++i)
        descriptors.push_back({m_sockets[i].Descriptor(), POLLIN, 0});
    if (!m_access.IsDone())
        until = std::min(until, m_nextAccess);
    const auto left = std::chrono::duration_cast<milliseconds>(until - Clock::now()) + milliseconds(1);
    poll(descriptors.data(), descriptors.size(), static_cast<int>(std::max<long long>(left.count(), 0)));
}

/// Hands over what is there already: the acknowledge, the sender, and the index of the interface.
/// @return how many datagrams were there, those included that are none
std::size_t Round::Drain(const std::vector<GvcpSocket> &sockets, const Taker &take)
{
    std::size_t nTaken = 0;
    for (std::size_t i = 0; i < sockets.size(); ++i) {
        std::uint8_t datagram[kGvcpDatagramSize];
        std::uint32_t nFrom = 0;
        for (int nLeft = kMostDatagrams; nLeft > 0; --nLeft) {
            const std::size_t nSize = sockets[i].Receive(datagram, sizeof datagram, nFrom);
            if (nSize == 0)
                break;
            ++nTaken;
            if (const auto ack = ParseAck(datagram, nSize))
                take(*ack, nFrom, i);
        }
    }
    return nTaken;
}

/// @return how many datagrams were there of the search
std::size_t Round::TakeAnswers()
{
    TakeAccess();
    return Drain(m_sockets, [this](const GvcpAck &ack, std::uint32_t nSender, std::size_t nInterface) {
        TakeDiscovery(ack, nSender, nInterface);
    });
}

void Round::TakeAccess()
{
    Drain(m_access.Sockets(), [this](const GvcpAck &ack, std::uint32_t nSender, std::size_t /*interface*/) {
        m_access.TakeAnswer(ack, nSender);
    });
}

void Round::AskAccess()
{
    const auto now = Clock::now();
    const bool bAgain = now >= m_nextAccess;
    m_access.Ask(bAgain);
    if (bAgain)
        m_nextAccess = now + kAccessRepeat;
}

void Round::TakeDiscovery(const GvcpAck &ack, std::uint32_t nSender, std::size_t nHeardOn)
{
    const auto answer = ParseDiscoveryAck(ack);
    if (!answer || ack.nRequestId != kDiscoveryId)
        return;
    if (m_asked && (nSender != *m_asked || answer->nCurrentIp != *m_asked))
        return; // somebody else's, or one that leads to somebody else
    const std::size_t nInterface = WayTo(answer->nCurrentIp, nHeardOn);
    const Found found{GigeRecord(*answer, m_interfaces[nInterface]), nSender};
    const auto former = m_indexOf.find(found.info);
    if (former == m_indexOf.end())
        Add(found, nInterface);
    else if (nSender == answer->nCurrentIp && m_found[former->second].nSender != nSender)
        m_found[former->second] = found; // the camera's own word counts, not what another said of it
}

/// The interface that reaches the camera: the one it was heard on, unless the camera's subnet is that of
/// another one. On a switch with two of our interfaces an answer may arrive at either; but none that came
/// from outside leads to this machine's own network, nor the other way round.
std::size_t Round::WayTo(std::uint32_t nCameraIp, std::size_t nHeardOn) const
{
    if (m_interfaces[nHeardOn].Contains(nCameraIp))
        return nHeardOn;
    const auto same = std::find_if(m_interfaces.begin(), m_interfaces.end(), [&](const Interface &interface) {
        return interface.bLoopback == m_interfaces[nHeardOn].bLoopback && interface.Contains(nCameraIp);
    });
    return same != m_interfaces.end() ? static_cast<std::size_t>(same - m_interfaces.begin()) : nHeardOn;
}

void Round::Add(const Found &found, std::size_t nInterface)
{
    if (m_found.size() == kMostCameras ||
        (m_pNewcomers != nullptr && !m_pNewcomers->Admit(found.nSender, found.info)))
        return;
    m_indexOf.emplace(found.info, m_found.size());
    m_found.push_back(found);
    const std::uint32_t nIp = found.info.SpecialInfo.stGigEInfo.nCurrentIp;
    if (nIp == m_asked || (m_interfaces[nInterface].Contains(nIp) && IsOneDevice(nIp, m_interfaces)))
        m_access.Add(nIp, nInterface);
    else
        m_access.AddUnreachable();
}

} // namespace kxcc
