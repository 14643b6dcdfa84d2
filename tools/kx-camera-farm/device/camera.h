#ifndef KXCAMERAFARM_CAMERA_H
#define KXCAMERAFARM_CAMERA_H

#include "device/bootstrap.h"
#include "device/cameramodel.h"
#include "device/controlchannel.h"
#include "device/firmware.h"
#include "wire/gvcp.h"
#include "wire/registermemory.h"

#include <memory>
#include <vector>

namespace KxFarm {

/// One simulated camera: requests in, acknowledges out. No sockets and no clock of its own.
class Camera
{
public:
    Camera(std::shared_ptr<const CameraModel> pModel, CameraIdentity identity, std::uint32_t ipAddress);

    Camera(const Camera &) = delete;
    Camera &operator=(const Camera &) = delete;

    /// Carries `request` out and returns its acknowledge; empty when none is due.
    Bytes Handle(const Gvcp::Request &request, const Endpoint &from, TimePoint now);

    /// Back to the state after power-up. Saved user sets stay, as on a camera.
    void Reboot();

    void SetIdentity(const CameraIdentity &identity); ///< goes into the registers at once
    const CameraIdentity &Identity() const { return m_identity; }
    std::uint32_t IpAddress() const { return m_nIpAddress; }
    void SetIpAddress(std::uint32_t ipAddress);
    void SetDescription(std::shared_ptr<const PublishedDescription> pDescription);

    const CameraModel &Model() const { return *m_pModel; }
    const ControlChannel &Control() const { return m_control; }
    void SeizeControl(const Endpoint &owner); ///< see ControlChannel::Seize()
    void ReleaseControl();
    RegisterMemory &Memory() { return m_memory; }
    const RegisterMemory &Memory() const { return m_memory; }
    Firmware &Device() { return m_firmware; }
    std::chrono::milliseconds HeartbeatTimeout() const;

private:
    Bytes Discover(const Gvcp::Request &request) const;
    Bytes ForceIp(const Gvcp::Request &request);
    Bytes ReadRegisters(const Gvcp::Request &request, const Endpoint &from);
    Bytes WriteRegisters(const Gvcp::Request &request, const Endpoint &from, TimePoint now);
    Bytes ReadMemory(const Gvcp::Request &request, const Endpoint &from);
    Bytes WriteMemory(const Gvcp::Request &request, const Endpoint &from, TimePoint now);

    /// `address` and `size` are multiples of 4.
    Gvcp::Status Read(std::uint32_t address, std::uint8_t *data, std::size_t size, const Endpoint &from);
    Gvcp::Status CheckReadable(std::uint32_t address, std::size_t size) const;
    Gvcp::Status Write(std::uint32_t address, const std::uint8_t *data, std::size_t size,
                       const Endpoint &from, TimePoint now);
    Gvcp::Status WriteBootstrap(std::uint32_t address, std::uint32_t value, const Endpoint &from,
                                TimePoint now);
    bool IsInDescription(std::uint64_t address, std::size_t size) const;
    bool IsRegister(std::uint64_t address, std::size_t size) const;
    void PublishControl();
    void PublishUrls();
    void LatchTimestamp(std::uint32_t control, TimePoint now);

    const std::shared_ptr<const CameraModel> m_pModel;
    std::shared_ptr<const PublishedDescription> m_pDescription;
    CameraIdentity m_identity;
    std::uint32_t m_nIpAddress;
    std::uint32_t m_nPersistentIp; // after a reboot
    RegisterMemory m_memory;
    UserSets m_userSets;
    Firmware m_firmware;
    ControlChannel m_control;
    TimePoint m_timestampZero;
};

} // namespace KxFarm

#endif
