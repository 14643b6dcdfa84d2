#include "discovery/usblister.h"

#include <cstring>

#include "KxCameraControl/kxcameracontrol.h"

namespace kxcc {

std::vector<KX_CC_DEVICE_INFO> UsbLister::List()
{
    std::vector<KX_CC_DEVICE_INFO> cameras;
    if (!m_session.IsRunning() && m_session.Start() != KX_CC_OK)
        return cameras;
    Request request;
    request.operation = Operation::ListUsbCameras;
    Reply reply;
    if (m_session.Call(request, reply, KX_CC_DEADLINE_MS, KX_CC_LONGEST_CALL_MS) != KX_CC_OK)
        return cameras;
    cameras.resize(reply.blob.size() / sizeof(KX_CC_DEVICE_INFO));
    if (!cameras.empty())
        std::memcpy(cameras.data(), reply.blob.data(), cameras.size() * sizeof(KX_CC_DEVICE_INFO));
    return cameras;
}

} // namespace kxcc
