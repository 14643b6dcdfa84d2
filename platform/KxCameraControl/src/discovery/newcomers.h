#ifndef KXCAMERACONTROL_DISCOVERY_NEWCOMERS_H
#define KXCAMERACONTROL_DISCOVERY_NEWCOMERS_H

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>

#include "KxCameraControl/kxdeviceinfo.h"
#include "discovery/knowncameras.h"

namespace kxcc {

/// Says whose answers to a search count. A device that calls itself a camera, then another one, and so on,
/// would fill every list that is made of the answers.
///
/// A device, known by the address that it sends from, is followed until it has shown more than a few hundred
/// new cameras within a minute, and again after a minute in which it showed no more than that. The first such
/// devices are named in the log, once each.
class Newcomers
{
public:
    using Clock = std::chrono::steady_clock;

    static constexpr int kMostOfOneDevice = 300;      ///< new cameras a minute
    static constexpr std::size_t kMostCameras = 4096; ///< known at once, and new ones a minute of all devices
    static constexpr std::size_t kMostNamed = 16;     ///< devices that the log names

    /// @param known  what the rounds before have found; borrowed
    explicit Newcomers(const KnownCameras &known)
        : m_known(known)
    {
    }

    /// To be called before a round.
    void BeginRound(Clock::time_point now);
    /// Whether the camera that a device shows may be listed. One that is new counts with each call, so a
    /// round asks once for each.
    /// @param nSender  address of the device, host order
    bool Admit(std::uint32_t nSender, const KX_CC_DEVICE_INFO &info);
    /// Whether the device is not followed now; then what it showed before does not count either.
    bool IsBarred(std::uint32_t nSender) const;

private:
    struct Sender
    {
        int nShown = 0; ///< new cameras in this minute
        bool bBarred = false;
        std::array<std::uint32_t, 3> last{}; ///< the camera that it showed last, once it is barred
    };

    static void CountBarred(Sender &sender, const KX_CC_DEVICE_INFO &info);
    bool IsFull() const;
    void SayOnce(std::uint32_t nSender, const char *szWhat);

    const KnownCameras &m_known;
    std::map<std::uint32_t, Sender>
        m_senders; ///< those that showed something new in this minute, or are barred
    std::set<std::uint32_t> m_named;
    Clock::time_point m_minute{}; ///< its begin
    std::size_t m_nNewInMinute = 0;
    std::size_t m_nInRound = 0; ///< what was known before it, and what is new
};

} // namespace kxcc

#endif
