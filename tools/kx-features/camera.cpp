#include "camera.h"

#include <ToolBase/lumointerface.h>

#include <featurefile/cameraidentity.h>

namespace {

QString DottedAddress(quint32 address)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(address >> 24)
        .arg((address >> 16) & 0xFFU)
        .arg((address >> 8) & 0xFFU)
        .arg(address & 0xFFU);
}

QString AccessText(quint32 accessStatus)
{
    switch (accessStatus) {
    case KX_CC_ACCESS_FREE:
        return QStringLiteral("free");
    case KX_CC_ACCESS_IN_USE:
        return QStringLiteral("in use");
    case KX_CC_ACCESS_UNREACHABLE:
        return QStringLiteral("unreachable");
    default:
        return QStringLiteral("unknown");
    }
}

/// What a user finds the camera by.
QString AddressText(const StructDeviceInfo &record)
{
    const auto &special = record.stDevInfo.SpecialInfo;
    switch (record.nDeviceType) {
    case KX_CC_TRANSPORT_GIGE:
        return DottedAddress(special.stGigEInfo.nCurrentIp);
    case KX_CC_TRANSPORT_USB:
        return LumoInterface::uchar2QString(special.stUsbInfo.chDeviceGuid,
                                            sizeof special.stUsbInfo.chDeviceGuid, "UTF-8");
    default:
        return CameraIdentity::PortId(record);
    }
}

QString TransportText(quint32 transportType)
{
    switch (transportType) {
    case KX_CC_TRANSPORT_GIGE:
        return QStringLiteral("gige");
    case KX_CC_TRANSPORT_USB:
        return QStringLiteral("usb3");
    case KX_CC_TRANSPORT_PORT:
        return QStringLiteral("port");
    default:
        return {};
    }
}

} // namespace

Camera MakeCamera(const KX_CC_DEVICE_INFO &info, int deviceId)
{
    Camera camera;
    camera.record.nDeviceID = deviceId;
    camera.record.nDeviceType = info.nTransportType;
    camera.record.nAccessStatus = info.nAccessStatus;
    camera.record.stDevInfo = info;
    const CameraIdentity::Names names =
        CameraIdentity::FileNameParts(camera.record, CameraIdentity::Reading::FieldWidth);
    camera.strModel = names.strModel;
    camera.strSerial = names.strSerial;
    camera.strUserName = CameraIdentity::UserName(camera.record);
    camera.strAddress = AddressText(camera.record);
    camera.strTransport = TransportText(info.nTransportType);
    camera.strAccess = AccessText(info.nAccessStatus);
    return camera;
}
