#include "api/devicehandle.h"

#include <cstring>

#include "KxCameraControl/kxcameracontrol.h"
#include "camera/opencameras.h"
#include "log/log.h"

namespace kxcc {
namespace {

bool LosesHandle(int nCode)
{
    return nCode == KX_CC_E_TIMEOUT || nCode == KX_CC_E_SESSION_ENDED || nCode == KX_CC_E_LOST ||
           nCode == KX_CC_E_UNREACHABLE;
}

} // namespace

int DeviceHandle::Open()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_state != State::Closed)
        return KX_CC_E_ALREADY_OPEN;
    OpenCameras::Instance().Opened(m_info);
    int nCode = m_session.Start();
    if (nCode == KX_CC_OK) {
        Request request;
        request.operation = Operation::Open;
        request.blob.resize(sizeof m_info);
        std::memcpy(request.blob.data(), &m_info, sizeof m_info);
        Reply reply;
        m_budget = TimeBudget();
        nCode = m_session.Call(request, reply, m_budget);
    }
    if (nCode == KX_CC_OK) {
        m_state = State::Open;
    } else {
        m_session.End(Session::kReleaseMs);
        OpenCameras::Instance().Closed(m_info);
        LogFailure("not opened", nCode);
    }
    return nCode;
}

void DeviceHandle::Close()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_state == State::Closed)
        return;
    m_session.End(Session::kReleaseMs);
    m_state = State::Closed;
    OpenCameras::Instance().Closed(m_info);
}

int DeviceHandle::Call(Request &request, Reply &reply, Session::Progress progress)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_state == State::Closed)
        return KX_CC_E_NOT_OPEN;
    if (m_state == State::Lost)
        return KX_CC_E_LOST;
    const int nCode = m_session.Call(request, reply, m_budget, progress);
    if (LosesHandle(nCode)) {
        m_session.End(0);
        m_state = State::Lost;
        LogFailure("lost", nCode);
    }
    return nCode;
}

void DeviceHandle::LogFailure(const char *szWhat, int nCode) const
{
    if (nCode == KX_CC_E_TIMEOUT && m_budget.IsSpent())
        Log(KX_CC_LOG_WARNING, m_strName, "its time budget is spent");
    Log(KX_CC_LOG_WARNING, m_strName,
        std::string(szWhat) + ": " + KX_CC_ErrorText(nCode) + " (" + std::to_string(nCode) + ")");
}

} // namespace kxcc
