#ifndef TESTS_TESTCAMERAS_H
#define TESTS_TESTCAMERAS_H

#include <cstring>

#include "camera.h"

inline Camera NetworkCamera(const char *model, const char *serial, quint32 address,
                            quint32 access = KX_CC_ACCESS_FREE)
{
    KX_CC_DEVICE_INFO info = {};
    info.nTransportType = KX_CC_TRANSPORT_GIGE;
    info.nAccessStatus = access;
    KX_CC_GIGE_INFO &gige = info.SpecialInfo.stGigEInfo;
    gige.nCurrentIp = address;
    std::memcpy(gige.chModelName, model, std::strlen(model));
    std::memcpy(gige.chSerialNumber, serial, std::strlen(serial));
    return MakeCamera(info, 0);
}

#endif
