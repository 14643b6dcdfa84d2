#include "helper/requestloop.h"

#include <cstring>

#include "KxCameraControl/kxerrors.h"
#include "camera/idtext.h"
#include "camera/usbrecord.h"
#include "features/featurebag.h"
#include "helper/usblist.h"

namespace kxcc {
namespace {

std::string TextOf(const char *szText)
{
    constexpr std::size_t kLongest = 256;
    return szText != nullptr ? CleanIdText(szText, std::strlen(szText), kLongest) : std::string();
}

} // namespace

void RequestLoop::Run()
{
    Reply ready;
    ready.nSerial = kReadySerial;
    if (!m_socket.Send(ready))
        return;
    while (const std::optional<Request> request = m_socket.Receive()) {
        Reply reply;
        Answer(*request, reply);
        reply.nSerial = request->nSerial;
        if (!m_socket.Send(reply))
            return;
    }
}

void RequestLoop::Answer(const Request &request, Reply &reply)
{
    if (request.operation == Operation::ListUsbCameras) {
        reply.blob = EncodeUsbRecords(ListUsbCameras());
        return;
    }
    if ((request.operation == Operation::Open) == (m_camera != nullptr)) {
        reply.nCode = KX_CC_E_PARAMETER;
        return;
    }
    switch (request.operation) {
    case Operation::Open:
        reply.nCode = Open(request);
        return;
    case Operation::Description:
        reply.nCode = GiveDescription(request, reply);
        return;
    case Operation::SaveFeatures:
        reply.nCode = SaveFeatures(request, reply);
        break;
    case Operation::LoadFeatures:
        reply.nCode = LoadFeatures(request);
        break;
    case Operation::GetInt:
    case Operation::GetEnum:
    case Operation::GetFloat:
    case Operation::GetBool:
        reply.nCode = ReadFeature(request, reply);
        break;
    default:
        reply.nCode = WriteFeature(request);
        break;
    }
    // A lost camera is the answer whatever the feature made of it: Aravis does not hand every error on.
    const int nState = m_camera->State();
    if (nState != KX_CC_OK)
        reply.nCode = nState;
}

int RequestLoop::Open(const Request &request)
{
    KX_CC_DEVICE_INFO info{};
    if (request.blob.size() != sizeof info)
        return KX_CC_E_PARAMETER;
    std::memcpy(&info, request.blob.data(), sizeof info);
    const OpeningWatch watch{[this, &request] { m_socket.SendProgress(request.nSerial); },
                             [this](Camera *pCamera) { m_watcher.SetCamera(pCamera); }};
    const int nCode = Camera::Open(info, watch, m_camera);
    if (nCode == KX_CC_OK)
        m_access = std::make_unique<FeatureAccess>(m_camera->GenICam());
    return nCode;
}

int RequestLoop::GiveDescription(const Request &request, Reply &reply)
{
    const std::string &strText = m_camera->Description();
    reply.nNumber = static_cast<std::int64_t>(strText.size()) + 1;
    if (reply.nNumber > request.nNumber)
        return KX_CC_E_BUFFER_TOO_SMALL;
    reply.blob.assign(strText.begin(), strText.end());
    return KX_CC_OK;
}

int RequestLoop::ReadFeature(const Request &request, Reply &reply)
{
    bool bValue = false;
    int nCode = KX_CC_OK;
    switch (request.operation) {
    case Operation::GetInt:
        return m_access->GetInt(request.strName, reply.nNumber);
    case Operation::GetEnum:
        return m_access->GetEnum(request.strName, reply.nNumber);
    case Operation::GetFloat:
        return m_access->GetFloat(request.strName, reply.dReal);
    default:
        nCode = m_access->GetBool(request.strName, bValue);
        reply.nNumber = bValue ? 1 : 0;
        return nCode;
    }
}

int RequestLoop::WriteFeature(const Request &request)
{
    switch (request.operation) {
    case Operation::SetInt:
        return m_access->SetInt(request.strName, static_cast<std::uint32_t>(request.nNumber));
    case Operation::SetEnum:
        return m_access->SetEnum(request.strName, static_cast<std::uint32_t>(request.nNumber));
    case Operation::SetFloat:
        return m_access->SetFloat(request.strName, static_cast<float>(request.dReal));
    default:
        return m_access->SetBool(request.strName, request.nNumber != 0);
    }
}

int RequestLoop::SaveFeatures(const Request &request, Reply &reply)
{
    FeatureBag bag(m_camera->GenICam(), *m_access, [this, &request] {
        m_socket.SendProgress(request.nSerial);
        return m_camera->State();
    });
    std::vector<FeatureLine> lines;
    const int nCode = bag.Save(lines);
    if (nCode != KX_CC_OK)
        return nCode;
    auto *pRoot = ARV_GC_REGISTER_DESCRIPTION_NODE(
        arv_dom_document_get_document_element(ARV_DOM_DOCUMENT(m_camera->GenICam())));
    // Borrowed from the description, for all that they are not const; cleaned to stay on their line.
    const std::string strDevice = TextOf(arv_gc_register_description_node_get_vendor_name(pRoot)) + " -- " +
                                  TextOf(arv_gc_register_description_node_get_model_name(pRoot));
    const std::string strText = WriteFeatureFile({"GenApi persistence file", "Device = " + strDevice}, lines);
    reply.blob.assign(strText.begin(), strText.end());
    return KX_CC_OK;
}

int RequestLoop::LoadFeatures(const Request &request)
{
    const auto lines = ReadFeatureFile(std::string(request.blob.begin(), request.blob.end()));
    if (!lines)
        return KX_CC_E_FILE_FORMAT;
    FeatureBag bag(m_camera->GenICam(), *m_access, [this, &request] {
        m_socket.SendProgress(request.nSerial);
        return m_camera->State();
    });
    return bag.Load(*lines);
}

} // namespace kxcc
