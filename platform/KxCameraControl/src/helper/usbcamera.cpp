#include "helper/camera.h"

#include "KxCameraControl/kxerrors.h"
#include "description/description.h"
#include "description/descriptionreader.h"
#include "helper/usbidentity.h"

namespace kxcc {
namespace {

/// A USB3 Vision camera on Aravis' own transport.
class UsbCamera : public Camera
{
public:
    ~UsbCamera() override
    {
        g_clear_object(&m_pGenICam);
        g_clear_object(&m_pDevice);
    }

    int Open(const KX_CC_USB_INFO &info);

    ArvGc *GenICam() const override { return m_pGenICam; }
    const std::string &Description() const override { return m_strDescription; }
    int State() override { return m_bLost ? KX_CC_E_LOST : KX_CC_OK; }
    /// The kernel releases the interface when the helper ends.
    void Release() override {}

private:
    static void OnControlLost(ArvDevice * /*pDevice*/, gpointer pCamera)
    {
        static_cast<UsbCamera *>(pCamera)->m_bLost = true;
    }

    ArvDevice *m_pDevice = nullptr;
    ArvGc *m_pGenICam = nullptr;
    std::string m_strDescription;
    bool m_bLost = false;
};

std::string FieldText(const unsigned char *pField, std::size_t nSize)
{
    const std::string strField(reinterpret_cast<const char *>(pField), nSize);
    return strField.substr(0, strField.find('\0'));
}

int CodeOf(const GError *pError)
{
    if (g_error_matches(pError, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_GENICAM_NOT_FOUND))
        return KX_CC_E_DESCRIPTION;
    if (g_error_matches(pError, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED) ||
        g_error_matches(pError, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_PROTOCOL_ERROR_BUSY))
        return KX_CC_E_ACCESS_DENIED;
    return KX_CC_E_UNREACHABLE;
}

int UsbCamera::Open(const KX_CC_USB_INFO &info)
{
    // Not by the key, which several cameras may share: Aravis would open the one that it has listed last.
    const std::string strGuid = FieldText(info.chDeviceGuid, sizeof info.chDeviceGuid);
    GError *pError = nullptr;
    if (!strGuid.empty())
        m_pDevice = arv_uv_device_new_from_guid(strGuid.c_str(), &pError);
    else
        m_pDevice =
            arv_uv_device_new(FieldText(info.chVendorName, sizeof info.chVendorName).c_str(),
                              FieldText(info.chModelName, sizeof info.chModelName).c_str(),
                              FieldText(info.chSerialNumber, sizeof info.chSerialNumber).c_str(), &pError);
    const int nFailure = m_pDevice == nullptr ? CodeOf(pError) : KX_CC_OK;
    g_clear_error(&pError);
    if (nFailure != KX_CC_OK)
        return nFailure;
    if (!IsUsbCameraOf(m_pDevice, info))
        return KX_CC_E_UNREACHABLE;
    g_signal_connect(m_pDevice, "control-lost", G_CALLBACK(OnControlLost), this);
    std::size_t nSize = 0;
    const char *pText = arv_device_get_genicam_xml(m_pDevice, &nSize);
    if (pText != nullptr)
        m_strDescription = CleanDescription(std::string(pText, nSize));
    if (ReadDescription(m_strDescription) != DescriptionVerdict::Good)
        return KX_CC_E_DESCRIPTION;
    m_pGenICam = MakeGenICam(m_pDevice, m_strDescription);
    return m_pGenICam == nullptr ? KX_CC_E_DESCRIPTION : KX_CC_OK;
}

} // namespace

std::unique_ptr<Camera> OpenUsbCamera(const KX_CC_USB_INFO &info, int &nCode)
{
    auto camera = std::make_unique<UsbCamera>();
    nCode = camera->Open(info);
    if (nCode != KX_CC_OK)
        camera.reset();
    return camera;
}

} // namespace kxcc
