#include "discovery/usblister.h"

#include "KxCameraControl/kxerrors.h"
#include "camera/usbrecord.h"

namespace kxcc {

std::vector<KX_CC_DEVICE_INFO> UsbLister::List()
{
    if (!m_session.IsRunning() && m_session.Start() != KX_CC_OK)
        return {};
    Request request;
    request.operation = Operation::ListUsbCameras;
    Reply reply;
    TimeBudget budget;
    if (m_session.Call(request, reply, budget) != KX_CC_OK)
        return {};
    return DecodeUsbRecords(reply.blob);
}

} // namespace kxcc
