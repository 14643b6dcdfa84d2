#include "devicerecordtexts.h"

#include <ToolBase/lumointerface.h>
#include <featurefile/cameraidentity.h>

DeviceTexts TextsOfDevice(const _STRUCT_DEVICE_INFO_ &stDeviceInfo)
{
    const CameraIdentity::Names names =
        CameraIdentity::FileNameParts(stDeviceInfo, CameraIdentity::Reading::FieldWidth);
    DeviceTexts texts;
    texts.strPortID = CameraIdentity::PortId(stDeviceInfo);
    texts.strModel = names.strModel;
    texts.strUserName = CameraIdentity::UserName(stDeviceInfo);
    texts.strSerial = names.strSerial;
    if (stDeviceInfo.nDeviceType == NetworkDevice) {
        texts.strMacAddress = LumoInterface::int2StringMacAddress(stDeviceInfo.stDevInfo.nMacAddrHigh,
                                                                  stDeviceInfo.stDevInfo.nMacAddrLow);
    }
    return texts;
}

AccessState AccessStateOf(quint32 nAccessStatus)
{
    // Each kind of camera reports its access states in a range of its own.
    switch (nAccessStatus) {
    case 1:
    case 8:
    case 13:
    case 18:
        return AccessFree;
    case 2:
    case 4:
    case 9:
    case 14:
        return AccessInUse;
    default:
        return AccessUnreachable;
    }
}

QString AccessIconPath(AccessState nState)
{
    switch (nState) {
    case AccessFree:
        return QStringLiteral(":/Lumo/State/use.png");
    case AccessInUse:
        return QStringLiteral(":/Lumo/State/notuse.png");
    case AccessUnreachable:
        break;
    }
    return QStringLiteral(":/Lumo/State/notreach.png");
}
