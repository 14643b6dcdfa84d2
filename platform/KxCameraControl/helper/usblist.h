#ifndef KXCAMERACONTROL_HELPER_USBLIST_H
#define KXCAMERACONTROL_HELPER_USBLIST_H

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

/// The records of all USB3 Vision cameras, one after the other.
std::vector<uint8_t> ListUsbCameras();

} // namespace kxcc

#endif
