#ifndef DEVLISTMGR_DEVICERECORD_H
#define DEVLISTMGR_DEVICERECORD_H

#include <QString>

#include "DevListMgr/structdeviceinfo.h"

/// The record that the tree hands out for a camera of the SDK.
_STRUCT_DEVICE_INFO_ DeviceRecord(int nDeviceID, const KX_CC_DEVICE_INFO &stDevInfo);

/// Name of the interface that a camera hangs on: "GigE Vision - eth0", "USB3 Vision", "Port". The names of
/// the standards are the same in every language.
QString InterfaceText(const KX_CC_DEVICE_INFO &stDevInfo);

/// What a person knows the camera by: its user-defined name, else its model, with the serial number in
/// parentheses.
QString CameraText(const KX_CC_DEVICE_INFO &stDevInfo);

/// Address of the camera as a person writes it: an IP address, a USB bus and number, or a port.
QString AddressText(const KX_CC_DEVICE_INFO &stDevInfo);

#endif
