#include "discovery/enumerator.h"

#include <algorithm>
#include <cstring>
#include <tuple>

namespace kxcc {
namespace {

constexpr int kMissesUntilGone = 3;

/// USB cameras are ordered by what they are found by.
int CompareKeys(const KX_CC_DEVICE_INFO &a, const KX_CC_DEVICE_INFO &b)
{
    if (a.nTransportType != KX_CC_TRANSPORT_USB)
        return 0;
    return std::memcmp(a.SpecialInfo.stUsbInfo.chDeviceKey, b.SpecialInfo.stUsbInfo.chDeviceKey,
                       sizeof a.SpecialInfo.stUsbInfo.chDeviceKey);
}

auto NumbersOf(const KX_CC_DEVICE_INFO &info)
{
    const bool bGige = info.nTransportType == KX_CC_TRANSPORT_GIGE;
    return std::make_tuple(info.nTransportType, bGige ? info.SpecialInfo.stGigEInfo.nCurrentIp : 0,
                           info.nMacAddrHigh, info.nMacAddrLow);
}

bool ComesBefore(const KX_CC_DEVICE_INFO &a, const KX_CC_DEVICE_INFO &b)
{
    return NumbersOf(a) != NumbersOf(b) ? NumbersOf(a) < NumbersOf(b) : CompareKeys(a, b) < 0;
}

} // namespace

bool IsSameCamera(const KX_CC_DEVICE_INFO &a, const KX_CC_DEVICE_INFO &b)
{
    return NumbersOf(a) == NumbersOf(b) && CompareKeys(a, b) == 0;
}

size_t KnownCameras::CountOf(uint32_t nTransport) const
{
    return static_cast<size_t>(std::count_if(m_known.begin(), m_known.end(), [&](const Known &known) {
        return known.info.nTransportType == nTransport;
    }));
}

void KnownCameras::Update(const std::vector<KX_CC_DEVICE_INFO> &found)
{
    for (Known &known : m_known)
        ++known.nMisses;
    for (const KX_CC_DEVICE_INFO &info : found) {
        const auto same = std::find_if(m_known.begin(), m_known.end(),
                                       [&](const Known &known) { return IsSameCamera(known.info, info); });
        if (same == m_known.end())
            m_known.push_back({info, 0});
        else
            *same = {info, 0};
    }
    // A camera that got a new address is not missing at the old one.
    m_known.erase(std::remove_if(m_known.begin(), m_known.end(),
                                 [](const Known &known) { return known.nMisses >= kMissesUntilGone; }),
                  m_known.end());
    m_list.clear();
    for (const Known &known : m_known) {
        m_list.push_back(known.info);
        if (known.nMisses > 0)
            m_list.back().nAccessStatus = KX_CC_ACCESS_UNREACHABLE;
    }
    std::sort(m_list.begin(), m_list.end(), ComesBefore);
}

} // namespace kxcc
