#include "discovery/knowncameras.h"

#include <algorithm>
#include <cstring>
#include <tuple>

namespace kxcc {
namespace {

constexpr int kMissesUntilGone = 3;

template <size_t N>
int Compare(const unsigned char (&a)[N], const unsigned char (&b)[N])
{
    return std::memcmp(a, b, N);
}

/// A USB camera is its GUID. One that has none is told by what it is listed by, which may have been cut to
/// its field, and by its serial number.
int CompareUsb(const KX_CC_USB_INFO &a, const KX_CC_USB_INFO &b)
{
    const int nGuid = Compare(a.chDeviceGuid, b.chDeviceGuid);
    if (nGuid != 0 || a.chDeviceGuid[0] != '\0')
        return nGuid;
    const int nKey = Compare(a.chDeviceKey, b.chDeviceKey);
    return nKey != 0 ? nKey : Compare(a.chSerialNumber, b.chSerialNumber);
}

int CompareKeys(const KX_CC_DEVICE_INFO &a, const KX_CC_DEVICE_INFO &b)
{
    if (a.nTransportType != KX_CC_TRANSPORT_USB)
        return 0;
    return CompareUsb(a.SpecialInfo.stUsbInfo, b.SpecialInfo.stUsbInfo);
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
