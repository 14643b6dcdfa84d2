#include "helper/usblist.h"

#include <arv.h>

#include "camera/usbrecord.h"

namespace kxcc {
namespace {

std::string Text(const char *szText)
{
    return szText != nullptr ? szText : "";
}

} // namespace

std::vector<KX_CC_DEVICE_INFO> ListUsbCameras()
{
    arv_disable_interface("GigEVision");
    arv_disable_interface("Fake");
    arv_update_device_list();
    std::vector<KX_CC_DEVICE_INFO> records;
    for (unsigned int i = 0; i < arv_get_n_devices(); ++i) {
        UsbCameraTexts texts;
        texts.strKey = Text(arv_get_device_id(i));
        texts.strGuid = Text(arv_get_device_physical_id(i));
        texts.strVendor = Text(arv_get_device_vendor(i));
        texts.strModel = Text(arv_get_device_model(i));
        texts.strSerial = Text(arv_get_device_serial_nbr(i));
        records.push_back(UsbRecord(texts));
    }
    return records;
}

} // namespace kxcc
