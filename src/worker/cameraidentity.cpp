#include "cameraidentity.h"

#include <QByteArray>

#include <ToolBase/lumointerface.h>

namespace {

struct Field
{
    const unsigned char *pText = nullptr;
    int nWidth = 0;
};

template <std::size_t nWidth>
Field FieldOf(const unsigned char (&text)[nWidth])
{
    return {text, static_cast<int>(nWidth)};
}

Field ModelField(const _STRUCT_DEVICE_INFO_ &info)
{
    switch (info.nDeviceType) {
    case KX_CC_TRANSPORT_GIGE:
        return FieldOf(info.stDevInfo.SpecialInfo.stGigEInfo.chModelName);
    case KX_CC_TRANSPORT_USB:
        return FieldOf(info.stDevInfo.SpecialInfo.stUsbInfo.chModelName);
    case KX_CC_TRANSPORT_PORT:
        return FieldOf(info.stDevInfo.SpecialInfo.stPortInfo.chModelName);
    default:
        return {};
    }
}

Field SerialField(const _STRUCT_DEVICE_INFO_ &info)
{
    switch (info.nDeviceType) {
    case KX_CC_TRANSPORT_GIGE:
        return FieldOf(info.stDevInfo.SpecialInfo.stGigEInfo.chSerialNumber);
    case KX_CC_TRANSPORT_USB:
        return FieldOf(info.stDevInfo.SpecialInfo.stUsbInfo.chSerialNumber);
    case KX_CC_TRANSPORT_PORT:
        return FieldOf(info.stDevInfo.SpecialInfo.stPortInfo.chSerialNumber);
    default:
        return {};
    }
}

QString Text(const Field &field, CameraIdentity::Reading reading)
{
    if (!field.pText)
        return QString();
    const int nLength = reading == CameraIdentity::Reading::Terminated ? -1 : field.nWidth;
    return LumoInterface::uchar2QString(field.pText, nLength, "UTF-8");
}

} // namespace

CameraIdentity::Names CameraIdentity::FileNameParts(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, Reading reading)
{
    return {Text(ModelField(stDeviceInfo), reading), Text(SerialField(stDeviceInfo), reading)};
}

QString CameraIdentity::FilePath(const QString &strDirectory, const Names &names)
{
    // Both places at once: a directory or a model with a '%' and a digit in it keeps them.
    const QString strFileName = QStringLiteral("%1_%2.kfb").arg(names.strModel, names.strSerial);
    return QStringLiteral("%1/%2").arg(strDirectory, strFileName);
}

bool CameraIdentity::HasModelName(const _STRUCT_DEVICE_INFO_ &stDeviceInfo)
{
    return ModelField(stDeviceInfo).pText != nullptr;
}

QString CameraIdentity::ModelNameInFile(const _STRUCT_DEVICE_INFO_ &stDeviceInfo)
{
    const Field field = ModelField(stDeviceInfo);
    const char *pText = reinterpret_cast<const char *>(field.pText);
    return QString::fromLatin1(pText, static_cast<int>(qstrnlen(pText, static_cast<uint>(field.nWidth))));
}
