#ifndef TESTS_UI_TABLEDEVICES_H
#define TESTS_UI_TABLEDEVICES_H

#include <QTreeWidgetItem>

#include <DevListMgr/lumodevicetree.h>
#include <scripteddevices.h>

/// Free network cameras with these numbers, "SN0001" for 1, all on one interface.
inline QVector<KX_CC_DEVICE_INFO> NetworkCameras(int nFirst, int nLast,
                                                 const QByteArray &interfaceName = "eth0")
{
    QVector<KX_CC_DEVICE_INFO> vecCameras;
    for (int n = nFirst; n <= nLast; ++n)
        vecCameras.append(NetworkCamera(n, KX_CC_ACCESS_FREE, interfaceName));
    return vecCameras;
}

/// An item as a tree hands it over, under a group of this name. The tree itself does not know it.
struct HandMadeItem
{
    HandMadeItem(const KX_CC_DEVICE_INFO &stInfo, quint32 nDeviceType, const QString &strGroup,
                 int nDeviceID = 77)
    {
        record.nDeviceID = nDeviceID;
        record.nDeviceType = nDeviceType;
        record.nAccessStatus = stInfo.nAccessStatus;
        record.stDevInfo = stInfo;
        group.setText(0, strGroup);
        pItem = new QTreeWidgetItem(&group);
        pItem->setData(0, LumoDeviceTree::RecordRole, QVariant::fromValue(record));
    }
    Q_DISABLE_COPY(HandMadeItem)

    StructDeviceInfo record;
    QTreeWidgetItem group;
    QTreeWidgetItem *pItem; // owned by the group
};

#endif
