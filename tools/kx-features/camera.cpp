#include "camera.h"

#include <ToolBase/lumointerface.h>

#include <worker/cameraidentity.h>

namespace {

template <std::size_t N>
QString Text(const unsigned char (&field)[N])
{
    return LumoInterface::uchar2QString(field, N, "UTF-8");
}

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

void FillGigE(Camera &camera, const KX_CC_GIGE_INFO &info)
{
    camera.strTransport = QStringLiteral("gige");
    camera.strUserName = Text(info.chUserDefinedName);
    camera.strAddress = DottedAddress(info.nCurrentIp);
}

void FillUsb(Camera &camera, const KX_CC_USB_INFO &info)
{
    camera.strTransport = QStringLiteral("usb3");
    camera.strUserName = Text(info.chUserDefinedName);
    camera.strAddress = Text(info.chDeviceGuid);
}

void FillPort(Camera &camera, const KX_CC_PORT_INFO &info)
{
    camera.strTransport = QStringLiteral("port");
    camera.strAddress = Text(info.chPortId);
}

} // namespace

Camera MakeCamera(const KX_CC_DEVICE_INFO &info, int deviceId)
{
    Camera camera;
    camera.record.nDeviceID = deviceId;
    camera.record.nDeviceType = info.nTransportType;
    camera.record.nAccessStatus = info.nAccessStatus;
    camera.record.stDevInfo = info;
    camera.strAccess = AccessText(info.nAccessStatus);
    const CameraIdentity::Names names =
        CameraIdentity::FileNameParts(camera.record, CameraIdentity::Reading::FieldWidth);
    camera.strModel = names.strModel;
    camera.strSerial = names.strSerial;
    switch (info.nTransportType) {
    case KX_CC_TRANSPORT_GIGE:
        FillGigE(camera, info.SpecialInfo.stGigEInfo);
        break;
    case KX_CC_TRANSPORT_USB:
        FillUsb(camera, info.SpecialInfo.stUsbInfo);
        break;
    case KX_CC_TRANSPORT_PORT:
        FillPort(camera, info.SpecialInfo.stPortInfo);
        break;
    default:
        break;
    }
    return camera;
}
