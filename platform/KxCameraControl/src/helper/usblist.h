#ifndef KXCAMERACONTROL_HELPER_USBLIST_H
#define KXCAMERACONTROL_HELPER_USBLIST_H

#include <vector>

#include "KxCameraControl/kxdeviceinfo.h"

namespace kxcc {

/// The records of all USB3 Vision cameras.
std::vector<KX_CC_DEVICE_INFO> ListUsbCameras();

} // namespace kxcc

#endif
