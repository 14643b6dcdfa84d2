#ifndef KXCAMERACONTROL_CAMERA_CAMERAORDER_H
#define KXCAMERACONTROL_CAMERA_CAMERAORDER_H

#include "KxCameraControl/kxdeviceinfo.h"

namespace kxcc {

/// Orders records by transport, then by address. Equal are the records of one camera, whatever else they
/// say: by MAC address and IP address, or by USB GUID.
struct CameraOrder
{
    bool operator()(const KX_CC_DEVICE_INFO &a, const KX_CC_DEVICE_INFO &b) const;
};

} // namespace kxcc

#endif
