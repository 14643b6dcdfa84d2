#include "helper/camera.h"

#include "KxCameraControl/kxerrors.h"
#include "description/description.h"
#include "features/formulanodes.h"

namespace kxcc {

int Camera::Open(const KX_CC_DEVICE_INFO &info, const OpeningWatch &watch, std::unique_ptr<Camera> &camera)
{
    int nCode = KX_CC_E_UNSUPPORTED;
    if (info.nTransportType == KX_CC_TRANSPORT_GIGE)
        camera = OpenGigeCamera(info, watch, nCode);
    else if (info.nTransportType == KX_CC_TRANSPORT_USB)
        camera = OpenUsbCamera(info.SpecialInfo.stUsbInfo, nCode);
    return nCode;
}

ArvGc *MakeGenICam(ArvDevice *pDevice, const std::string &strText)
{
    InstallFormulas();
    ArvGc *pGenICam = arv_gc_new(pDevice, strText.data(), strText.size());
    if (pGenICam == nullptr)
        return nullptr;
    ArvDomElement *pRoot = arv_dom_document_get_document_element(ARV_DOM_DOCUMENT(pGenICam));
    if (!ARV_IS_GC_REGISTER_DESCRIPTION_NODE(pRoot)) {
        g_object_unref(pGenICam);
        return nullptr;
    }
    // A register can change behind any other one's write, and behind another program's. Values are read
    // from the camera each time; limits are checked by the feature access, which reports them better.
    arv_gc_set_register_cache_policy(pGenICam, ARV_REGISTER_CACHE_POLICY_DISABLE);
    arv_gc_set_range_check_policy(pGenICam, ARV_RANGE_CHECK_POLICY_DISABLE);
    return pGenICam;
}

} // namespace kxcc
