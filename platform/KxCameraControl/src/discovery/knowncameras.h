#ifndef KXCAMERACONTROL_DISCOVERY_KNOWNCAMERAS_H
#define KXCAMERACONTROL_DISCOVERY_KNOWNCAMERAS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "KxCameraControl/kxdeviceinfo.h"
#include "camera/cameraorder.h"

namespace kxcc {

/// What rounds of discovery have found, over time. Pure but for the list it keeps.
class KnownCameras
{
public:
    /// Takes over what a round found. A camera that was there before and is missing now becomes
    /// unreachable, and leaves with its third miss in a row.
    void Update(const std::vector<KX_CC_DEVICE_INFO> &found);

    /// In the order of CameraOrder.
    const std::vector<KX_CC_DEVICE_INFO> &List() const { return m_list; }
    std::size_t CountOf(std::uint32_t nTransport) const;
    bool Contains(const KX_CC_DEVICE_INFO &info) const { return m_misses.count(info) != 0; }

private:
    std::map<KX_CC_DEVICE_INFO, int, CameraOrder> m_misses; ///< in a row, by camera
    std::vector<KX_CC_DEVICE_INFO> m_list;
};

} // namespace kxcc

#endif
