#ifndef TESTS_SUPPORT_CAMERARECORD_H
#define TESTS_SUPPORT_CAMERARECORD_H

#include <algorithm>
#include <cstring>

#include <DevListMgr/structdeviceinfo.h>

/// A camera with these names in the fields of its transport.
inline _STRUCT_DEVICE_INFO_ CameraRecord(quint32 nDeviceType, const char *szModel, const char *szSerial,
                                         int nDeviceID = 7)
{
    _STRUCT_DEVICE_INFO_ info;
    info.nDeviceID = nDeviceID;
    info.nDeviceType = nDeviceType;
    info.stDevInfo.nTransportType = nDeviceType;
    auto &special = info.stDevInfo.SpecialInfo;
    const auto fill = [](unsigned char *pField, std::size_t nWidth, const char *szText) {
        std::copy_n(szText, qMin(nWidth, std::strlen(szText)), pField); // a full field has no NUL
    };
    if (nDeviceType == KX_CC_TRANSPORT_USB) {
        fill(special.stUsbInfo.chModelName, sizeof special.stUsbInfo.chModelName, szModel);
        fill(special.stUsbInfo.chSerialNumber, sizeof special.stUsbInfo.chSerialNumber, szSerial);
    } else if (nDeviceType == KX_CC_TRANSPORT_PORT) {
        fill(special.stPortInfo.chModelName, sizeof special.stPortInfo.chModelName, szModel);
        fill(special.stPortInfo.chSerialNumber, sizeof special.stPortInfo.chSerialNumber, szSerial);
    } else {
        fill(special.stGigEInfo.chModelName, sizeof special.stGigEInfo.chModelName, szModel);
        fill(special.stGigEInfo.chSerialNumber, sizeof special.stGigEInfo.chSerialNumber, szSerial);
    }
    return info;
}

#endif
