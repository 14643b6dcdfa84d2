#include "camera/cameraorder.h"

#include <cstring>
#include <tuple>

namespace kxcc {
namespace {

template <std::size_t N>
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

} // namespace kxcc
