#include "camera/cameraname.h"

#include <arpa/inet.h>

#include "camera/idtext.h"

namespace kxcc {
namespace {

/// The record may come from anywhere.
template <std::size_t N>
std::string Text(const unsigned char (&field)[N])
{
    return CleanIdText(field, N, N);
}

std::string Name(const std::string &strModel, const std::string &strSerial, const std::string &strWhere)
{
    std::string strName;
    for (const std::string &strPart : {strModel, strSerial}) {
        if (!strPart.empty())
            strName += strPart + " ";
    }
    return strName + "(" + strWhere + ")";
}

} // namespace

std::string DottedAddress(std::uint32_t nIp)
{
    char text[INET_ADDRSTRLEN] = "";
    const in_addr address{htonl(nIp)};
    inet_ntop(AF_INET, &address, text, sizeof text);
    return text;
}

std::string CameraName(const KX_CC_DEVICE_INFO &info)
{
    const KX_CC_GIGE_INFO &gige = info.SpecialInfo.stGigEInfo;
    const KX_CC_USB_INFO &usb = info.SpecialInfo.stUsbInfo;
    if (info.nTransportType == KX_CC_TRANSPORT_GIGE)
        return Name(Text(gige.chModelName), Text(gige.chSerialNumber), DottedAddress(gige.nCurrentIp));
    return Name(Text(usb.chModelName), Text(usb.chSerialNumber), "USB");
}

} // namespace kxcc
