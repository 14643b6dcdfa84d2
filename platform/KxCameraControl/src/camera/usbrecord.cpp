#include "camera/usbrecord.h"

#include <cstring>

#include "camera/idtext.h"

namespace kxcc {
namespace {

template <std::size_t N>
void SetText(unsigned char (&field)[N], const std::string &strText)
{
    SetIdField(field, strText.data(), strText.size());
}

template <std::size_t N>
std::string Text(const unsigned char (&field)[N])
{
    const char *pText = reinterpret_cast<const char *>(field);
    return std::string(pText, strnlen(pText, N));
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

std::vector<std::uint8_t> EncodeUsbRecords(const std::vector<KX_CC_DEVICE_INFO> &records)
{
    std::vector<std::uint8_t> bytes(records.size() * sizeof(KX_CC_DEVICE_INFO));
    if (!bytes.empty())
        std::memcpy(bytes.data(), records.data(), bytes.size());
    return bytes;
}

std::vector<KX_CC_DEVICE_INFO> DecodeUsbRecords(const std::vector<std::uint8_t> &bytes)
{
    std::vector<KX_CC_DEVICE_INFO> records(bytes.size() / sizeof(KX_CC_DEVICE_INFO));
    for (std::size_t i = 0; i < records.size(); ++i) {
        KX_CC_DEVICE_INFO came{};
        std::memcpy(&came, bytes.data() + i * sizeof came, sizeof came);
        const KX_CC_USB_INFO &usb = came.SpecialInfo.stUsbInfo;
        records[i] = UsbRecord({Text(usb.chDeviceKey), Text(usb.chDeviceGuid), Text(usb.chVendorName),
                                Text(usb.chModelName), Text(usb.chSerialNumber)});
    }
    return records;
}

} // namespace kxcc
