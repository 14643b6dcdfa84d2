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

/// The texts of a record; a transport leaves out those it does not have.
struct Fields
{
    Field model;
    Field serial;
    Field userName;
    Field portId;
};

Fields FieldsOf(const _STRUCT_DEVICE_INFO_ &info)
{
    const auto &special = info.stDevInfo.SpecialInfo;
    switch (info.nDeviceType) {
    case KX_CC_TRANSPORT_GIGE:
        return {FieldOf(special.stGigEInfo.chModelName), FieldOf(special.stGigEInfo.chSerialNumber),
                FieldOf(special.stGigEInfo.chUserDefinedName), Field()};
    case KX_CC_TRANSPORT_USB:
        return {FieldOf(special.stUsbInfo.chModelName), FieldOf(special.stUsbInfo.chSerialNumber),
                FieldOf(special.stUsbInfo.chUserDefinedName), Field()};
    case KX_CC_TRANSPORT_PORT:
        return {FieldOf(special.stPortInfo.chModelName), FieldOf(special.stPortInfo.chSerialNumber), Field(),
                FieldOf(special.stPortInfo.chPortId)};
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
    const Fields fields = FieldsOf(stDeviceInfo);
    return {Text(fields.model, reading), Text(fields.serial, reading)};
}

QString CameraIdentity::UserName(const _STRUCT_DEVICE_INFO_ &stDeviceInfo)
{
    return Text(FieldsOf(stDeviceInfo).userName, Reading::FieldWidth);
}

QString CameraIdentity::PortId(const _STRUCT_DEVICE_INFO_ &stDeviceInfo)
{
    return Text(FieldsOf(stDeviceInfo).portId, Reading::FieldWidth);
}

QString CameraIdentity::FilePath(const QString &strDirectory, const Names &names)
{
    // Both places at once: a directory or a model with a '%' and a digit in it keeps them.
    const QString strFileName = QStringLiteral("%1_%2.kfb").arg(names.strModel, names.strSerial);
    return QStringLiteral("%1/%2").arg(strDirectory, strFileName);
}

bool CameraIdentity::HasModelName(const _STRUCT_DEVICE_INFO_ &stDeviceInfo)
{
    return FieldsOf(stDeviceInfo).model.pText != nullptr;
}

QString CameraIdentity::ModelNameInFile(const _STRUCT_DEVICE_INFO_ &stDeviceInfo)
{
    const Field field = FieldsOf(stDeviceInfo).model;
    const char *pText = reinterpret_cast<const char *>(field.pText);
    return QString::fromLatin1(pText, static_cast<int>(qstrnlen(pText, static_cast<uint>(field.nWidth))));
}
