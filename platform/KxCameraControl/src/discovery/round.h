#ifndef KXCAMERACONTROL_DISCOVERY_ROUND_H
#define KXCAMERACONTROL_DISCOVERY_ROUND_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "KxCameraControl/kxdeviceinfo.h"
#include "discovery/accessreader.h"
#include "discovery/knowncameras.h"
#include "discovery/newcomers.h"
#include "gvcp/gvcpcodec.h"
#include "gvcp/gvcpsocket.h"

namespace kxcc {

/// The record of a camera that answered on an interface; access status unknown. Pure.
KX_CC_DEVICE_INFO GigeRecord(const DiscoveryAck &ack, const Interface &interface);

/// One round of discovery: asks, collects answers, and reads every camera's access status.
///
/// What an answer says decides where the round sends to: only to addresses of one device in the network of
/// an interface, or to the address that the caller named.
class Round
{
public:
    /// Of one round; more than any network has.
    static constexpr std::size_t kMostCameras = Newcomers::kMostCameras;

    /// @param pNewcomers  says which devices are followed; borrowed. Null: all of them
    explicit Round(Newcomers *pNewcomers = nullptr)
        : m_pNewcomers(pNewcomers)
    {
    }

    /// @return false when no interface could be asked
    bool Open(const std::vector<Interface> &interfaces);

    /// Broadcasts on every interface, again and again, and collects answers for nTimeoutMs. Ends earlier when
    /// at least nExpected cameras have answered, have said who controls them, and no more come.
    void Collect(int nTimeoutMs, std::size_t nExpected);
    /// Asks one address instead; ends with its answer, and takes no other.
    void CollectFrom(std::uint32_t nIp, int nTimeoutMs);
    /// Waits a moment for the access status of cameras that have not told it yet.
    void ReadAccess();

    /// The cameras found, with their access status; one that answered on two interfaces stands once.
    std::vector<KX_CC_DEVICE_INFO> Cameras() const;

private:
    using Clock = std::chrono::steady_clock;
    using Taker = std::function<void(const GvcpAck &, std::uint32_t, std::size_t)>;

    struct Found
    {
        KX_CC_DEVICE_INFO info;
        std::uint32_t nSender;
    };

    enum class Sockets
    {
        All,
        Access
    };

    void Ask(std::uint32_t nIp);
    void Broadcast();
    void AskAccess();
    void Wait(Sockets which, Clock::time_point until) const;
    static std::size_t Drain(const std::vector<GvcpSocket> &sockets, const Taker &take);
    std::size_t TakeAnswers();
    void TakeAccess();
    std::size_t WayTo(std::uint32_t nCameraIp, std::size_t nHeardOn) const;
    void TakeDiscovery(const GvcpAck &ack, std::uint32_t nSender, std::size_t nHeardOn);
    void Add(const Found &found, std::size_t nInterface);

    Newcomers *const m_pNewcomers;
    std::vector<Interface> m_interfaces;
    std::vector<GvcpSocket> m_sockets;    ///< by interface, for the search
    AccessReader m_access;                ///< its cameras are those of m_found
    Clock::time_point m_nextAccess{};     ///< when the cameras that have not answered it are asked again
    std::optional<std::uint32_t> m_asked; ///< the one address that is asked
    std::vector<Found> m_found;
    std::map<KX_CC_DEVICE_INFO, std::size_t, CameraOrder> m_indexOf; ///< into m_found
};

} // namespace kxcc

#endif
