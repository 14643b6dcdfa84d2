#ifndef KXCAMERAFARM_CONTROLCHANNEL_H
#define KXCAMERAFARM_CONTROLCHANNEL_H

#include <chrono>
#include <cstdint>

namespace KxFarm {

using TimePoint = std::chrono::steady_clock::time_point;

/// One end of a UDP exchange. Host byte order: 127.0.10.1 is 0x7F000A01.
struct Endpoint
{
    std::uint32_t address = 0;
    std::uint16_t port = 0;
    bool operator==(const Endpoint &other) const { return address == other.address && port == other.port; }
};

/// Which application controls the camera, and for how long (GigE Vision 2.0, section 10: control channel
/// privilege, heartbeat).
///
/// Time comes with every call, so nothing has to fire when a heartbeat runs out: whoever asks next finds
/// the channel free.
class ControlChannel
{
public:
    /// Bits of the control channel privilege register (28.47).
    static constexpr std::uint32_t kExclusive = 1;
    static constexpr std::uint32_t kControl = 2;

    /// Ends the privilege of a controller that was silent for longer than `timeout`. True when it did.
    bool Expire(TimePoint now, std::chrono::milliseconds timeout);

    /// Any command of `from` counts as heartbeat.
    void Touch(const Endpoint &from, TimePoint now);

    /// `from` writes the register. False when another application holds the channel.
    bool WritePrivilege(const Endpoint &from, std::uint32_t value, TimePoint now);

    bool MayRead(const Endpoint &from) const
    {
        return (m_nPrivilege & kExclusive) == 0 || from == m_controller;
    }
    bool MayWrite(const Endpoint &from) const { return IsHeld() && from == m_controller; }

    /// Gives the channel to `owner` whoever had it; its heartbeat never runs out.
    void Seize(const Endpoint &owner);
    void Release();

    bool IsHeld() const { return (m_nPrivilege & (kExclusive | kControl)) != 0; }
    std::uint32_t Privilege() const { return m_nPrivilege; } ///< as the register reads
    Endpoint Controller() const { return m_controller; }     ///< zeros while nobody has it

private:
    Endpoint m_controller;
    std::uint32_t m_nPrivilege = 0;
    bool m_bSeized = false;
    TimePoint m_lastHeard;
};

} // namespace KxFarm

#endif
