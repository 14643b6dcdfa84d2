#ifndef KXFEATURES_CAMERA_H
#define KXFEATURES_CAMERA_H

#include <QString>

#include <DevListMgr/structdeviceinfo.h>

/// One camera as a terminal shows it, with the record that the worker opens it by.
struct Camera
{
    StructDeviceInfo record;
    QString strModel;
    QString strSerial;
    QString strUserName;
    QString strAddress;   ///< IPv4 of a network camera, GUID of a USB camera, port of a port camera
    QString strTransport; ///< "gige", "usb3" or "port"
    QString strAccess;    ///< "free", "in use", "unreachable" or "unknown"
};

/// @param deviceId  what the worker's signals will call the camera
Camera MakeCamera(const KX_CC_DEVICE_INFO &info, int deviceId);

#endif
