#ifndef KXCAMERACONTROL_API_DEVICEHANDLE_H
#define KXCAMERACONTROL_API_DEVICEHANDLE_H

#include <mutex>

#include "KxCameraControl/kxdeviceinfo.h"
#include "camera/cameraname.h"
#include "ipc/session.h"

namespace kxcc {

/// A camera handle: closed, open or lost, with its helper process while it is open.
///
/// Callers keep to one thread at a time; the lock only makes a caller who does not wait.
class DeviceHandle
{
public:
    explicit DeviceHandle(const KX_CC_DEVICE_INFO &info)
        : m_info(info)
        , m_strName(CameraName(info))
        , m_session(m_strName)
    {
    }
    DeviceHandle(const DeviceHandle &) = delete;
    DeviceHandle &operator=(const DeviceHandle &) = delete;
    ~DeviceHandle() { Close(); }

    int Open();
    void Close();

    /// Hands a request to the helper.
    /// @return KX_CC_E_NOT_OPEN, KX_CC_E_LOST, the reply's code, or that of the loss
    int Call(Request &request, Reply &reply, Session::Progress progress = Session::Progress::OfOneJob);

private:
    void LogFailure(const char *szWhat, int nCode) const;

    enum class State
    {
        Closed,
        Open,
        Lost
    };

    std::mutex m_mutex;
    const KX_CC_DEVICE_INFO m_info;
    const std::string m_strName; ///< in the log
    State m_state = State::Closed;
    Session m_session;
    TimeBudget m_budget; ///< since it was opened
};

} // namespace kxcc

#endif
