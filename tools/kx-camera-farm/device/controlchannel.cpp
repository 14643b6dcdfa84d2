#include "device/controlchannel.h"

namespace KxFarm {

bool ControlChannel::Expire(TimePoint now, std::chrono::milliseconds timeout)
{
    if (!IsHeld() || m_bSeized || now - m_lastHeard <= timeout)
        return false;
    Release();
    return true;
}

void ControlChannel::Touch(const Endpoint &from, TimePoint now)
{
    if (from == m_controller)
        m_lastHeard = now;
}

bool ControlChannel::WritePrivilege(const Endpoint &from, std::uint32_t value, TimePoint now)
{
    if (IsHeld() && !(from == m_controller))
        return false;
    const std::uint32_t privilege = value & (kExclusive | kControl);
    if (privilege == 0) {
        Release();
        return true;
    }
    m_controller = from;
    m_nPrivilege = privilege;
    m_lastHeard = now;
    return true;
}

void ControlChannel::Seize(const Endpoint &owner)
{
    m_controller = owner;
    m_nPrivilege = kExclusive;
    m_bSeized = true;
}

void ControlChannel::Release()
{
    m_controller = Endpoint();
    m_nPrivilege = 0;
    m_bSeized = false;
}

} // namespace KxFarm
