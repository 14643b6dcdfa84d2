#include "devicerecordtexts.h"

#include <ToolBase/lumointerface.h>

namespace {

template <int nWidth>
QString Text(const unsigned char (&chField)[nWidth])
{
    return LumoInterface::uchar2QString(chField, nWidth, "UTF-8");
}

} // namespace

DeviceTexts TextsOfDevice(const _STRUCT_DEVICE_INFO_ &stDeviceInfo)
{
    const KX_CC_DEVICE_INFO &stInfo = stDeviceInfo.stDevInfo;
    DeviceTexts texts;
    if (stDeviceInfo.nDeviceType == NetworkDevice) {
        const KX_CC_GIGE_INFO &stGigE = stInfo.SpecialInfo.stGigEInfo;
        texts.strModel = Text(stGigE.chModelName);
        texts.strUserName = Text(stGigE.chUserDefinedName);
        texts.strSerial = Text(stGigE.chSerialNumber);
        texts.strMacAddress = LumoInterface::int2StringMacAddress(stInfo.nMacAddrHigh, stInfo.nMacAddrLow);
    } else if (stDeviceInfo.nDeviceType == UsbDevice) {
        const KX_CC_USB_INFO &stUsb = stInfo.SpecialInfo.stUsbInfo;
        texts.strModel = Text(stUsb.chModelName);
        texts.strUserName = Text(stUsb.chUserDefinedName);
        texts.strSerial = Text(stUsb.chSerialNumber);
    } else if (stDeviceInfo.nDeviceType == PortDevice) {
        const KX_CC_PORT_INFO &stPort = stInfo.SpecialInfo.stPortInfo;
        texts.strPortID = Text(stPort.chPortId);
        texts.strModel = Text(stPort.chModelName);
        texts.strSerial = Text(stPort.chSerialNumber);
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
