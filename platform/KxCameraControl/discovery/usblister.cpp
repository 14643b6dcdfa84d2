#include "discovery/usblister.h"

#include "KxCameraControl/kxcameracontrol.h"
#include "protocol/usbrecord.h"

namespace kxcc {

std::vector<KX_CC_DEVICE_INFO> UsbLister::List()
{
    if (!m_session.IsRunning() && m_session.Start() != KX_CC_OK)
        return {};
    Request request;
    request.operation = Operation::ListUsbCameras;
    Reply reply;
    if (m_session.Call(request, reply, KX_CC_DEADLINE_MS, KX_CC_LONGEST_CALL_MS) != KX_CC_OK)
        return {};
    return DecodeUsbRecords(reply.blob);
}

} // namespace kxcc
