#ifndef KXCAMERACONTROL_HELPER_USBIDENTITY_H
#define KXCAMERACONTROL_HELPER_USBIDENTITY_H

#include <arv.h>

#include "KxCameraControl/kxdeviceinfo.h"

namespace kxcc {

/// Whether the camera that was opened is the one of the record.
///
/// One with a GUID was opened by it and is. Any other is by its serial number, which its registers
/// (GenCP 1.3, bootstrap register map) tell: the library opens the first camera without a GUID when it is
/// asked for one of several. A camera that does not tell its serial number has an empty one.
bool IsUsbCameraOf(ArvDevice *pDevice, const KX_CC_USB_INFO &info);

} // namespace kxcc

#endif
