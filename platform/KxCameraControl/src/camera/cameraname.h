#ifndef KXCAMERACONTROL_CAMERA_CAMERANAME_H
#define KXCAMERACONTROL_CAMERA_CAMERANAME_H

#include <cstdint>
#include <string>

#include "KxCameraControl/kxdeviceinfo.h"

namespace kxcc {

/// The camera as a person knows it, for the log: "Model Serial (192.168.0.7)", "Model Serial (USB)".
std::string CameraName(const KX_CC_DEVICE_INFO &info);

/// "192.168.0.7" for 0xC0A80007.
std::string DottedAddress(std::uint32_t nIp);

} // namespace kxcc

#endif
