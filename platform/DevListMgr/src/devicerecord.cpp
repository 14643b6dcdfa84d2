#include "devicerecord.h"

namespace {

template <size_t nWidth>
QString Text(const unsigned char (&chField)[nWidth])
{
    const char *pText = reinterpret_cast<const char *>(chField);
    return QString::fromUtf8(pText, static_cast<int>(qstrnlen(pText, uint(nWidth))));
}

QString IpText(quint32 nIp)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(nIp >> 24)
        .arg((nIp >> 16) & 0xFF)
        .arg((nIp >> 8) & 0xFF)
        .arg(nIp & 0xFF);
}

void FillNetWork(const KX_CC_GIGE_INFO &stGigE, _STRUCT_NET_WORK_INFO_ &stNetWork)
{
    stNetWork.bNetValid = true;
    stNetWork.strNetText1 = Text(stGigE.chInterfaceName);
    stNetWork.strNetText2 = IpText(stGigE.nInterfaceIp);
    stNetWork.strNetText3 = IpText(stGigE.nInterfaceMask);
}

void FillUsb(const KX_CC_USB_INFO &stUsb, _STRUCT_USB_CONTROLLER_INFO_ &stController)
{
    stController.nUsbValue = static_cast<qint32>(stUsb.nBus);
    stController.strUsbText1 = QString::number(stUsb.nAddress);
    stController.strUsbText2 = QString::number(stUsb.nVendorId, 16);
    stController.strUsbText3 = QString::number(stUsb.nProductId, 16);
    stController.strUsbText4 = Text(stUsb.chVendorName);
    stController.strUsbText5 = Text(stUsb.chDeviceGuid);
}

QString NameAndSerial(const QString &strUser, const QString &strModel, const QString &strSerial)
{
    return QStringLiteral("%1 (%2)").arg(strUser.isEmpty() ? strModel : strUser, strSerial);
}

} // namespace

_STRUCT_DEVICE_INFO_ DeviceRecord(int nDeviceID, const KX_CC_DEVICE_INFO &stDevInfo)
{
    _STRUCT_DEVICE_INFO_ record;
    record.nDeviceID = nDeviceID;
    record.nDeviceType = stDevInfo.nTransportType;
    record.nAccessStatus = stDevInfo.nAccessStatus; // 1 free, 2 in use; the others count as unreachable
    record.stDevInfo = stDevInfo;
    if (stDevInfo.nTransportType == KX_CC_TRANSPORT_GIGE)
        FillNetWork(stDevInfo.SpecialInfo.stGigEInfo, record.stNetWorkInfo);
    else if (stDevInfo.nTransportType == KX_CC_TRANSPORT_USB)
        FillUsb(stDevInfo.SpecialInfo.stUsbInfo, record.stUsbControllerInfo);
    return record;
}

QString InterfaceText(const KX_CC_DEVICE_INFO &stDevInfo)
{
    switch (stDevInfo.nTransportType) {
    case KX_CC_TRANSPORT_GIGE:
        return QStringLiteral("GigE Vision - %1").arg(Text(stDevInfo.SpecialInfo.stGigEInfo.chInterfaceName));
    case KX_CC_TRANSPORT_USB:
        return QStringLiteral("USB3 Vision");
    default:
        return QStringLiteral("Port");
    }
}

QString CameraText(const KX_CC_DEVICE_INFO &stDevInfo)
{
    const auto &special = stDevInfo.SpecialInfo;
    switch (stDevInfo.nTransportType) {
    case KX_CC_TRANSPORT_GIGE:
        return NameAndSerial(Text(special.stGigEInfo.chUserDefinedName), Text(special.stGigEInfo.chModelName),
                             Text(special.stGigEInfo.chSerialNumber));
    case KX_CC_TRANSPORT_USB:
        return NameAndSerial(Text(special.stUsbInfo.chUserDefinedName), Text(special.stUsbInfo.chModelName),
                             Text(special.stUsbInfo.chSerialNumber));
    default:
        return NameAndSerial(QString(), Text(special.stPortInfo.chModelName),
                             Text(special.stPortInfo.chSerialNumber));
    }
}

QString AddressText(const KX_CC_DEVICE_INFO &stDevInfo)
{
    const auto &special = stDevInfo.SpecialInfo;
    switch (stDevInfo.nTransportType) {
    case KX_CC_TRANSPORT_GIGE:
        return IpText(special.stGigEInfo.nCurrentIp);
    case KX_CC_TRANSPORT_USB:
        return QStringLiteral("USB %1:%2").arg(special.stUsbInfo.nBus).arg(special.stUsbInfo.nAddress);
    default:
        return Text(special.stPortInfo.chPortId);
    }
}
