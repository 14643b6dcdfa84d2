#ifndef UI_DEVICERECORDTEXTS_H
#define UI_DEVICERECORDTEXTS_H

#include <QString>

#include <DevListMgr/structdeviceinfo.h>

/// What the device table shows of a camera; a text that its transport does not have is empty.
struct DeviceTexts
{
    QString strPortID; ///< port cameras only
    QString strModel;
    QString strUserName; ///< never of port cameras
    QString strSerial;
    QString strMacAddress; ///< network cameras only
};

/// Whether a camera can be worked on. The numbers are the sort order of the table's Status column.
enum AccessState
{
    AccessFree = 1,
    AccessUnreachable = 2,
    AccessInUse = 3
};

/// Values of _STRUCT_DEVICE_INFO_::nDeviceType that have texts of their own.
enum DeviceType : quint32
{
    NetworkDevice = KX_CC_TRANSPORT_GIGE,
    UsbDevice = KX_CC_TRANSPORT_USB,
    PortDevice = KX_CC_TRANSPORT_PORT
};

DeviceTexts TextsOfDevice(const _STRUCT_DEVICE_INFO_ &stDeviceInfo);

/// The state that stands behind a value of _STRUCT_DEVICE_INFO_::nAccessStatus.
AccessState AccessStateOf(quint32 nAccessStatus);

/// Resource path of the icon of a state.
QString AccessIconPath(AccessState nState);

#endif
