#ifndef KXCAMERACONTROL_CAMERA_USBRECORD_H
#define KXCAMERACONTROL_CAMERA_USBRECORD_H

#include <cstdint>
#include <string>
#include <vector>

#include "KxCameraControl/kxdeviceinfo.h"

namespace kxcc {

/// What Aravis tells of a USB3 Vision camera.
struct UsbCameraTexts
{
    std::string strKey;  ///< id that arv_open_device() takes
    std::string strGuid; ///< its physical id
    std::string strVendor;
    std::string strModel;
    std::string strSerial;
};

/// Pure: the record of a camera.
KX_CC_DEVICE_INFO UsbRecord(const UsbCameraTexts &texts);

/// The records as they travel between the processes, one after the other.
std::vector<std::uint8_t> EncodeUsbRecords(const std::vector<KX_CC_DEVICE_INFO> &records);

/// Made anew from the texts of what came, so that whatever has become of the helper, the records keep to
/// their rules. An incomplete last one is left out.
std::vector<KX_CC_DEVICE_INFO> DecodeUsbRecords(const std::vector<std::uint8_t> &bytes);

} // namespace kxcc

#endif
