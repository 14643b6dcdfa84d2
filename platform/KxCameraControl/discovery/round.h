#ifndef KXCAMERACONTROL_DISCOVERY_ROUND_H
#define KXCAMERACONTROL_DISCOVERY_ROUND_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "KxCameraControl/kxdeviceinfo.h"
#include "discovery/gvcpsocket.h"
#include "discovery/knowncameras.h"
#include "protocol/gvcpcodec.h"

namespace kxcc {

/// The record of a camera that answered on an interface; access status unknown. Pure.
KX_CC_DEVICE_INFO GigeRecord(const DiscoveryAck &ack, const Interface &interface);

/// One round of discovery: asks, collects answers, then reads every camera's access status.
class Round
{
public:
    /// More than any network has; a device that invents cameras does not get further.
    static constexpr size_t MOST_CAMERAS = 4096;

    /// @return false when no interface could be asked
    bool Open(const std::vector<Interface> &interfaces);

    /// Broadcasts on every interface, and collects answers for nTimeoutMs. Ends earlier when at least
    /// nExpected cameras have answered and no more come.
    void Collect(int nTimeoutMs, size_t nExpected);
    /// Asks one address instead; ends with its answer.
    void CollectFrom(uint32_t nIp, int nTimeoutMs);
    /// Reads the control privilege of every camera found, all at once.
    void ReadAccess();

    /// The cameras found; one that answered on two interfaces stands once.
    const std::vector<KX_CC_DEVICE_INFO> &Cameras() const { return m_cameras; }

private:
    using Clock = std::chrono::steady_clock;
    using Taker = std::function<void(const std::optional<GvcpAck> &, uint32_t, size_t)>;

    void Ask(uint32_t nIp);
    void Broadcast();
    static bool Wait(const std::vector<GvcpSocket> &sockets, Clock::time_point until);
    static void Drain(const std::vector<GvcpSocket> &sockets, const Taker &take);
    size_t TakeAnswers();
    size_t WayTo(uint32_t nCameraIp, size_t nHeardOn) const;
    void Add(const DiscoveryAck &ack, size_t nHeardOn);
    void AskAccess(const std::vector<bool> &answered);
    size_t TakeAccess(std::vector<bool> &answered);

    std::vector<Interface> m_interfaces;
    std::vector<GvcpSocket> m_sockets; ///< by interface, for the search
    std::vector<GvcpSocket> m_routed;  ///< by interface, for the access status
    std::vector<KX_CC_DEVICE_INFO> m_cameras;
    std::vector<size_t> m_interfaceOf; ///< by camera
    std::set<KX_CC_DEVICE_INFO, CameraOrder> m_seen;
};

} // namespace kxcc

#endif
