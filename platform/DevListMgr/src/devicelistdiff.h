#ifndef DEVLISTMGR_DEVICELISTDIFF_H
#define DEVLISTMGR_DEVICELISTDIFF_H

#include <QMap>
#include <QMetaType>
#include <QVector>

#include <functional>

#include <KxCameraControl/kxdeviceinfo.h>

#include "deviceidentity.h"

/// One difference between what is shown and what there is.
struct DeviceChange
{
    enum Kind
    {
        New,
        Update,
        Delete
    };

    Kind nKind = New;
    int nDeviceID = -1;
    KX_CC_DEVICE_INFO stDevInfo = {};
};

Q_DECLARE_METATYPE(DeviceChange)

/// Turns the camera lists of successive rounds into the changes from one to the next.
class DeviceListDiff
{
public:
    using IsOpen = std::function<bool(const KX_CC_DEVICE_INFO &)>;

    /// The changes that one more round brings: first what has gone, then what changed and what is new, in
    /// the order of the list.
    QVector<DeviceChange> Next(const QVector<KX_CC_DEVICE_INFO> &vecDevices, const IsOpen &isOpen);

private:
    struct Shown
    {
        KX_CC_DEVICE_INFO stDevInfo;
        bool bWasOpen; ///< in the last round
        int nRound;    ///< the last round that listed it
    };

    void AddMissing(const IsOpen &isOpen, QVector<DeviceChange> &vecChanges);
    void AddListed(int nDeviceID, const KX_CC_DEVICE_INFO &stDevInfo, const IsOpen &isOpen,
                   QVector<DeviceChange> &vecChanges);

    DeviceIdentity m_identity;
    QMap<int, Shown> m_mapShown;
    int m_nRound = 0;
};

#endif
