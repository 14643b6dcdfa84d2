#include "helper/camera.h"

#include "KxCameraControl/kxerrors.h"
#include "protocol/description.h"

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

std::string FieldText(const unsigned char *pField, size_t nSize)
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
    // Aravis takes either. The GUID always fits its field, while the key, which is made of the maker's and
    // the camera's own texts, may have been cut or cleaned.
    const std::string strGuid = FieldText(info.chDeviceGuid, sizeof info.chDeviceGuid);
    const std::string strKey =
        strGuid.empty() ? FieldText(info.chDeviceKey, sizeof info.chDeviceKey) : strGuid;
    GError *pError = nullptr;
    arv_disable_interface("GigEVision");
    arv_disable_interface("Fake");
    m_pDevice = arv_open_device(strKey.c_str(), &pError);
    const int nFailure = m_pDevice == nullptr ? CodeOf(pError) : KX_CC_OK;
    g_clear_error(&pError);
    if (nFailure != KX_CC_OK)
        return nFailure;
    g_signal_connect(m_pDevice, "control-lost", G_CALLBACK(OnControlLost), this);
    size_t nSize = 0;
    const char *pText = arv_device_get_genicam_xml(m_pDevice, &nSize);
    if (pText != nullptr)
        m_strDescription = CleanDescription(std::string(pText, nSize));
    if (JudgeDescription(m_strDescription) != DescriptionVerdict::Good)
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
