#include "discovery/knowncameras.h"

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

} // namespace

bool CameraOrder::operator()(const KX_CC_DEVICE_INFO &a, const KX_CC_DEVICE_INFO &b) const
{
    return NumbersOf(a) != NumbersOf(b) ? NumbersOf(a) < NumbersOf(b) : CompareKeys(a, b) < 0;
}

size_t KnownCameras::CountOf(uint32_t nTransport) const
{
    return static_cast<size_t>(std::count_if(m_misses.begin(), m_misses.end(), [&](const auto &entry) {
        return entry.first.nTransportType == nTransport;
    }));
}

void KnownCameras::Update(const std::vector<KX_CC_DEVICE_INFO> &found)
{
    for (auto &entry : m_misses)
        ++entry.second;
    for (const KX_CC_DEVICE_INFO &info : found) {
        m_misses.erase(info); // the record that it gave last counts
        m_misses.emplace(info, 0);
    }
    m_list.clear();
    for (auto it = m_misses.begin(); it != m_misses.end();) {
        if (it->second >= kMissesUntilGone) {
            it = m_misses.erase(it);
            continue;
        }
        m_list.push_back(it->first);
        if (it->second > 0)
            m_list.back().nAccessStatus = KX_CC_ACCESS_UNREACHABLE;
        ++it;
    }
}

} // namespace kxcc
