#include "discovery/newcomers.h"

#include <string>

#include "camera/cameraname.h"
#include "log/log.h"

namespace kxcc {
namespace {

constexpr std::chrono::minutes kMinute(1);

} // namespace

void Newcomers::BeginRound(Clock::time_point now)
{
    m_nInRound = m_known.CountOf(KX_CC_TRANSPORT_GIGE);
    if (now < m_minute + kMinute)
        return;
    m_minute = now;
    m_nNewInMinute = 0;
    for (auto it = m_senders.begin(); it != m_senders.end();) {
        it->second.bBarred = it->second.nShown > kMostOfOneDevice;
        it->second.nShown = 0;
        it = it->second.bBarred ? std::next(it) : m_senders.erase(it);
    }
}

bool Newcomers::Admit(std::uint32_t nSender, const KX_CC_DEVICE_INFO &info)
{
    const auto found = m_senders.find(nSender);
    if (found != m_senders.end() && found->second.bBarred) {
        CountBarred(found->second, info);
        return false;
    }
    if (m_known.Contains(info))
        return true;
    if (IsFull()) {
        SayOnce(nSender, "shows a camera beyond the 4096 that are followed, and new in a minute");
        return false;
    }
    Sender &sender = m_senders[nSender];
    sender.bBarred = ++sender.nShown > kMostOfOneDevice;
    ++m_nNewInMinute;
    ++m_nInRound;
    if (sender.bBarred)
        SayOnce(nSender, "shows more than 300 new cameras a minute and is not followed");
    return !sender.bBarred;
}

bool Newcomers::IsBarred(std::uint32_t nSender) const
{
    const auto found = m_senders.find(nSender);
    return found != m_senders.end() && found->second.bBarred;
}

/// A camera that got the address of a barred device says the same again and again, and is followed soon.
void Newcomers::CountBarred(Sender &sender, const KX_CC_DEVICE_INFO &info)
{
    const std::array<std::uint32_t, 3> shown{info.nMacAddrHigh, info.nMacAddrLow,
                                             info.SpecialInfo.stGigEInfo.nCurrentIp};
    if (shown == sender.last)
        return;
    sender.last = shown;
    if (sender.nShown <= kMostOfOneDevice)
        ++sender.nShown;
}

bool Newcomers::IsFull() const
{
    return m_nNewInMinute >= kMostCameras || m_nInRound >= kMostCameras;
}

void Newcomers::SayOnce(std::uint32_t nSender, const char *szWhat)
{
    if (m_named.size() < kMostNamed && m_named.insert(nSender).second)
        Log(KX_CC_LOG_WARNING, {}, "search: the device at " + DottedAddress(nSender) + ' ' + szWhat);
}

} // namespace kxcc
