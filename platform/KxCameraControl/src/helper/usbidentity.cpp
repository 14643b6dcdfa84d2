#include "helper/usbidentity.h"

#include <array>
#include <cstdio>
#include <string>

#include "camera/idtext.h"

namespace kxcc {
namespace {

constexpr guint64 kRegisterSerialNumber = 0x144;

/// Cleaned as a record holds it.
std::string SerialOf(ArvDevice *pDevice)
{
    std::array<char, 64> text{};
    GError *pError = nullptr;
    if (arv_device_read_memory(pDevice, kRegisterSerialNumber, text.size(), text.data(), &pError) == FALSE)
        text.fill('\0');
    g_clear_error(&pError);
    return CleanIdText(text.data(), text.size(), text.size());
}

} // namespace

bool IsUsbCameraOf(ArvDevice *pDevice, const KX_CC_USB_INFO &info)
{
    if (info.chDeviceGuid[0] != '\0')
        return true;
    const std::string strSerial = SerialOf(pDevice);
    const std::string strMeant =
        CleanIdText(info.chSerialNumber, sizeof info.chSerialNumber, sizeof info.chSerialNumber);
    if (strSerial == strMeant)
        return true;
    std::fprintf(stderr, "another camera is there: serial number \"%s\" instead of \"%s\"\n",
                 strSerial.c_str(), strMeant.c_str());
    return false;
}

} // namespace kxcc
