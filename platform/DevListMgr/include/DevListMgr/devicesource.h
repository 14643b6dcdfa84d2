#ifndef DEVLISTMGR_DEVICESOURCE_H
#define DEVLISTMGR_DEVICESOURCE_H

#include <QVector>

#include <functional>
#include <memory>
#include <optional>

#include <KxCameraControl/kxdeviceinfo.h>

#include "devlistmgrglobal.h"

/// Where a LumoDeviceTree learns which cameras there are: the camera SDK, or a script in tests.
///
/// Owned by the tree's search thread: made, used and destroyed there, so it may block.
class DEVLISTMGR_EXPORT DeviceSource
{
public:
    virtual ~DeviceSource();

    /// One round: the cameras that there are now.
    /// @param nTransports  KX_CC_TRANSPORT_... flags of what to look for
    /// @return nothing when the round failed; what was known then stays as it is
    virtual std::optional<QVector<KX_CC_DEVICE_INFO>> search(unsigned int nTransports) = 0;

    /// Whether this process has the camera open.
    virtual bool isOpen(const KX_CC_DEVICE_INFO &stDevInfo) const = 0;

    /// Pause between two rounds, in milliseconds.
    virtual int pauseMs() const { return 400; }
};

using DeviceSourceFactory = std::function<std::unique_ptr<DeviceSource>()>;

#endif
