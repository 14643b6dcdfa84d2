#ifndef DEVLISTMGR_DEVICEIDENTITY_H
#define DEVLISTMGR_DEVICEIDENTITY_H

#include <QByteArray>
#include <QHash>
#include <QVector>

#include <KxCameraControl/kxdeviceinfo.h>

/// Gives every camera a number, from 1, that it keeps for as long as this object lives.
///
/// A network camera is known by its MAC address, a USB camera by its GUID, a port camera by its port. A
/// network camera that comes back under another address is the same camera; two that claim one MAC
/// address at the same time are told apart by their addresses.
class DeviceIdentity
{
public:
    /// A device that invents cameras does not fill the memory: with more than this, those that have gone are
    /// forgotten, and get a new number when they come back.
    static const int kMostKnown = 65536;

    /// The numbers of one round's cameras, in the order of the list; -1 for an entry that is only the
    /// former address of a camera that also answers under a new one.
    QVector<int> Assign(const QVector<KX_CC_DEVICE_INFO> &vecDevices);

private:
    struct Known
    {
        quint32 nAddress;
        int nDeviceID;
    };

    void AssignSameKey(const QVector<KX_CC_DEVICE_INFO> &vecDevices, const QVector<int> &vecIndexes,
                       QVector<Known> &vecKnown, QVector<int> &vecIDs);

    void ForgetAllBut(const QHash<QByteArray, QVector<int>> &hashListed);

    QHash<QByteArray, QVector<Known>> m_hashKnown;
    int m_nKnown = 0; ///< cameras in it
    int m_nNextID = 1;
};

#endif
