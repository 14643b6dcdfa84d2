#ifndef KXCAMERACONTROL_DISCOVERY_USBLISTER_H
#define KXCAMERACONTROL_DISCOVERY_USBLISTER_H

#include <vector>

#include "KxCameraControl/kxdeviceinfo.h"
#include "ipc/session.h"

namespace kxcc {

/// Lists USB3 Vision cameras through a helper process of its own, because listing runs the same foreign
/// code on the same foreign data as opening does. The helper is kept from one round to the next.
class UsbLister
{
public:
    std::vector<KX_CC_DEVICE_INFO> List();

private:
    Session m_session{"USB"};
};

} // namespace kxcc

#endif
