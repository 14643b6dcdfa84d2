#include "helper/usblist.h"

#include "protocol/idtext.h"

namespace kxcc {
namespace {

template <size_t N>
void SetText(unsigned char (&field)[N], const std::string &strText)
{
    SetIdField(field, strText.data(), strText.size());
}

} // namespace

KX_CC_DEVICE_INFO UsbRecord(const UsbCameraTexts &texts)
{
    KX_CC_DEVICE_INFO info{};
    info.nTransportType = KX_CC_TRANSPORT_USB;
    info.nAccessStatus = KX_CC_ACCESS_FREE; // a camera that another program has claimed cannot be listed
    KX_CC_USB_INFO &usb = info.SpecialInfo.stUsbInfo;
    SetText(usb.chModelName, texts.strModel);
    SetText(usb.chSerialNumber, texts.strSerial);
    SetText(usb.chVendorName, texts.strVendor);
    SetText(usb.chDeviceGuid, texts.strGuid);
    SetText(usb.chDeviceKey, texts.strKey);
    return info;
}

} // namespace kxcc
