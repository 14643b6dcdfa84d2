#ifndef KXCAMERACONTROL_CAMERA_OPENCAMERAS_H
#define KXCAMERACONTROL_CAMERA_OPENCAMERAS_H

#include <cstdint>
#include <map>
#include <mutex>

#include "KxCameraControl/kxdeviceinfo.h"
#include "camera/cameraorder.h"

namespace kxcc {

/// Which cameras this process has open. Thread-safe; its lock is held for moments only.
class OpenCameras
{
public:
    static OpenCameras &Instance();

    void Opened(const KX_CC_DEVICE_INFO &info);
    void Closed(const KX_CC_DEVICE_INFO &info);
    bool IsOpen(const KX_CC_DEVICE_INFO &info);

    /// A point in the order of openings and closings.
    std::uint64_t Now();
    /// True when the camera is open, or was closed after the point.
    bool WasOpenSince(const KX_CC_DEVICE_INFO &info, std::uint64_t nPoint);

private:
    struct Entry
    {
        int nHandles = 0;
        std::uint64_t nLastClosed = 0;
    };

    /// Nothing for a camera that was never open.
    Entry EntryOf(const KX_CC_DEVICE_INFO &info);

    std::mutex m_mutex;
    std::map<KX_CC_DEVICE_INFO, Entry, CameraOrder> m_entries; ///< every camera that was open once
    std::uint64_t m_nNow = 1;
};

} // namespace kxcc

#endif
