#include "helper/usblist.h"

#include <cstring>

#include <arv.h>

namespace kxcc {
namespace {

std::string Text(const char *szText)
{
    return szText != nullptr ? szText : "";
}

} // namespace

std::vector<uint8_t> ListUsbCameras()
{
    arv_disable_interface("GigEVision");
    arv_disable_interface("Fake");
    arv_update_device_list();
    std::vector<uint8_t> records;
    for (unsigned int i = 0; i < arv_get_n_devices(); ++i) {
        UsbCameraTexts texts;
        texts.strKey = Text(arv_get_device_id(i));
        texts.strGuid = Text(arv_get_device_physical_id(i));
        texts.strVendor = Text(arv_get_device_vendor(i));
        texts.strModel = Text(arv_get_device_model(i));
        texts.strSerial = Text(arv_get_device_serial_nbr(i));
        const KX_CC_DEVICE_INFO info = UsbRecord(texts);
        const size_t nEnd = records.size();
        records.resize(nEnd + sizeof info);
        std::memcpy(records.data() + nEnd, &info, sizeof info);
    }
    return records;
}

} // namespace kxcc
