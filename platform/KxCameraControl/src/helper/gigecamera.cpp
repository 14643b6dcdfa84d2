#include "helper/camera.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <mutex>
#include <utility>

#include "KxCameraControl/kxerrors.h"
#include "camera/idtext.h"
#include "description/description.h"
#include "description/descriptionreader.h"
#include "description/unpack.h"
#include "gvcp/gvcpchannel.h"
#include "helper/gigedevice.h"

namespace kxcc {
namespace {

using Result = GvcpChannel::Result;

constexpr std::uint32_t kModeBigEndian = 0x80000000;
constexpr std::uint32_t kCapabilityWriteMemory = 0x00000002;
constexpr std::size_t kUrlSize = 512;

class GigeCamera : public Camera
{
public:
    ~GigeCamera() override
    {
        g_clear_object(&m_pGenICam);
        g_clear_object(&m_pDevice);
    }

    /// @return KX_CC_OK or the code of the failure; then control was given up again.
    int Open(const KX_CC_DEVICE_INFO &info, const OpeningWatch &watch);

    ArvGc *GenICam() const override { return m_pGenICam; }
    const std::string &Description() const override { return m_strDescription; }
    int State() override;
    void KeepAlive() override;
    void Release() override;

private:
    int TakeControl(const KX_CC_DEVICE_INFO &info);
    int WriteControl();
    int ReadHeartbeat();
    int CheckName(const KX_CC_DEVICE_INFO &info);
    template <std::size_t N>
    int CheckText(std::uint32_t nRegister, const unsigned char (&field)[N]);
    bool IsMeant(const KX_CC_DEVICE_INFO &info);
    int FetchDescription();
    int FetchFrom(std::uint32_t nUrlRegister);
    int BuildFeatures();
    bool HasControl();

    GvcpChannel m_channel;
    KxGigeDevice *m_pDevice = nullptr;
    ArvGc *m_pGenICam = nullptr;
    std::string m_strDescription;
    std::uint32_t m_nHeartbeatMs = 3000;
    unsigned int m_nDeniedSeen = 0;
    std::atomic_bool m_bControls{false}; ///< the camera has said so
    std::atomic_bool m_bControlLost{false};

    std::mutex m_controlMutex;  ///< held while control is taken or given up; protects the two below
    bool m_bMayControl = false; ///< it was asked for control and did not refuse
    bool m_bReleased = false;
};

bool IsHeld(std::uint32_t nPrivilege)
{
    return (nPrivilege & (kPrivilegeControl | kPrivilegeExclusive)) != 0;
}

int CodeOf(Result result)
{
    switch (result) {
    case Result::Ok:
        return KX_CC_OK;
    case Result::Timeout:
        return KX_CC_E_TIMEOUT;
    default:
        return KX_CC_E_DEVICE_STATUS;
    }
}

int GigeCamera::Open(const KX_CC_DEVICE_INFO &info, const OpeningWatch &watch)
{
    const KX_CC_GIGE_INFO &gige = info.SpecialInfo.stGigEInfo;
    if (!m_channel.Open(gige.nInterfaceIp, gige.nCurrentIp))
        return KX_CC_E_UNREACHABLE;
    m_channel.SetProgress(watch.progress);
    // From before control is taken: the library may go at any moment, and then the camera must be released.
    // And parsing a description takes some 50 ms, but seconds when some hundred helpers do it at once: the
    // camera must not take them for a dead application's.
    watch.careFor(this);
    int nCode = TakeControl(info);
    if (nCode == KX_CC_OK)
        nCode = FetchDescription();
    if (nCode == KX_CC_OK)
        nCode = BuildFeatures();
    m_channel.SetProgress(nullptr);
    if (nCode != KX_CC_OK) {
        Release();
        watch.careFor(nullptr);
    }
    return nCode;
}

/// Control first: a camera that another application holds is left alone, and one that is silent shows it
/// before anything else is asked of it.
int GigeCamera::TakeControl(const KX_CC_DEVICE_INFO &info)
{
    // Read before it is written: some cameras do not answer the write of a stranger at all.
    std::uint32_t nPrivilege = 0;
    Result result = m_channel.ReadRegister(kRegisterControlPrivilege, nPrivilege);
    if (result == Result::Timeout)
        return KX_CC_E_UNREACHABLE;
    if (result == Result::Ok && IsHeld(nPrivilege))
        return KX_CC_E_ACCESS_DENIED;
    if (!IsMeant(info))
        return KX_CC_E_UNREACHABLE;
    int nCode = WriteControl();
    if (nCode == KX_CC_OK)
        nCode = ReadHeartbeat();
    return nCode == KX_CC_OK ? CheckName(info) : nCode;
}

int GigeCamera::WriteControl()
{
    const std::lock_guard<std::mutex> lock(m_controlMutex);
    if (m_bReleased)
        return KX_CC_E_LOST;
    // The camera obeys before its answer is here.
    m_bMayControl = true;
    const Result result = m_channel.WriteRegister(kRegisterControlPrivilege, kPrivilegeControl);
    if (result == Result::Status && m_channel.LastStatus() == kGvcpStatusAccessDenied) {
        m_bMayControl = false;
        return KX_CC_E_ACCESS_DENIED;
    }
    m_bControls = result == Result::Ok;
    return CodeOf(result);
}

int GigeCamera::ReadHeartbeat()
{
    std::uint32_t nHeartbeatMs = 0;
    if (m_channel.ReadRegister(kRegisterHeartbeatTimeout, nHeartbeatMs) == Result::Ok && nHeartbeatMs > 0)
        m_nHeartbeatMs = nHeartbeatMs;
    return m_channel.IsDead() ? KX_CC_E_TIMEOUT : KX_CC_OK;
}

/// Whether the camera that is controlled now has the name of the record: a discovery answer can claim the
/// address of another camera together with its MAC address, and files are written and read under the name.
/// A record without any identity means whoever is there.
int GigeCamera::CheckName(const KX_CC_DEVICE_INFO &info)
{
    const KX_CC_GIGE_INFO &gige = info.SpecialInfo.stGigEInfo;
    const bool bAnyone = info.nMacAddrHigh == 0 && info.nMacAddrLow == 0 && gige.chModelName[0] == '\0' &&
                         gige.chSerialNumber[0] == '\0';
    if (bAnyone)
        return KX_CC_OK;
    const int nCode = CheckText(kRegisterModelName, gige.chModelName);
    return nCode == KX_CC_OK ? CheckText(kRegisterSerialNumber, gige.chSerialNumber) : nCode;
}

/// The record holds the text as it was cleaned, so the camera's is compared cleaned.
template <std::size_t N>
int GigeCamera::CheckText(std::uint32_t nRegister, const unsigned char (&field)[N])
{
    std::array<char, N> text{};
    const Result result = m_channel.ReadMemory(nRegister, text.data(), N);
    if (result == Result::Status)
        text.fill('\0'); // it has no such register, thus no such text
    else if (result != Result::Ok)
        return CodeOf(result);
    const std::string strText = CleanIdText(text.data(), N, N);
    const std::string strMeant = CleanIdText(field, N, N);
    if (strText == strMeant)
        return KX_CC_OK;
    std::fprintf(stderr, "another camera is there: \"%s\" instead of \"%s\"\n", strText.c_str(),
                 strMeant.c_str());
    return KX_CC_E_UNREACHABLE;
}

/// Whether the camera at the address is the one of the record. Two may have got the same address, and one
/// may claim another's; settings of the wrong camera must not be read or written. A record without a MAC
/// address means whoever is there, and a camera that does not tell its own is taken for the right one.
bool GigeCamera::IsMeant(const KX_CC_DEVICE_INFO &info)
{
    if (info.nMacAddrHigh == 0 && info.nMacAddrLow == 0)
        return true;
    bool bTold = false;
    for (const std::uint32_t nRegister :
         {kRegisterMacHigh0, kRegisterMacHigh1, kRegisterMacHigh2, kRegisterMacHigh3}) {
        std::uint32_t nHigh = 0;
        std::uint32_t nLow = 0;
        if (m_channel.ReadRegister(nRegister, nHigh) != Result::Ok ||
            m_channel.ReadRegister(nRegister + 4, nLow) != Result::Ok)
            break; // it has no more interfaces
        nHigh &= 0xFFFFU;
        if (nHigh == info.nMacAddrHigh && nLow == info.nMacAddrLow)
            return true;
        bTold = bTold || nHigh != 0 || nLow != 0;
    }
    return !bTold;
}

int GigeCamera::FetchDescription()
{
    int nCode = FetchFrom(kRegisterDescriptionUrl0);
    if (nCode == KX_CC_E_DESCRIPTION)
        nCode = FetchFrom(kRegisterDescriptionUrl1);
    return nCode;
}

int GigeCamera::FetchFrom(std::uint32_t nUrlRegister)
{
    std::array<char, kUrlSize> text{};
    Result result = m_channel.ReadMemory(nUrlRegister, text.data(), text.size());
    if (result != Result::Ok)
        return result == Result::Timeout ? KX_CC_E_TIMEOUT : KX_CC_E_DESCRIPTION;
    const auto url = ParseDescriptionUrl(std::string(text.data(), text.size()));
    if (!url)
        return KX_CC_E_DESCRIPTION;
    std::string strFile(url->nSize, '\0');
    result = m_channel.ReadMemory(url->nAddress, strFile.data(), strFile.size());
    if (result != Result::Ok)
        return CodeOf(result);
    // Some cameras name a packed description ".xml"; the archive's own mark tells.
    if (url->bZip || strFile.compare(0, 4, "PK\x03\x04") == 0)
        strFile = UnpackFirstFile(strFile);
    m_strDescription = CleanDescription(std::move(strFile));
    return ReadDescription(m_strDescription) == DescriptionVerdict::Good ? KX_CC_OK : KX_CC_E_DESCRIPTION;
}

int GigeCamera::BuildFeatures()
{
    m_pDevice = kx_gige_device_new(&m_channel);
    m_pGenICam = MakeGenICam(ARV_DEVICE(m_pDevice), m_strDescription);
    if (m_pGenICam == nullptr)
        return KX_CC_E_DESCRIPTION;
    std::uint32_t nMode = 0;
    std::uint32_t nCapability = 0;
    m_channel.ReadRegister(kRegisterDeviceMode, nMode);
    m_channel.ReadRegister(kRegisterCapability, nCapability);
    // Only a big-endian camera's memory has the bytes that a register command would carry.
    const bool bWriteMemory = (nCapability & kCapabilityWriteMemory) != 0 || (nMode & kModeBigEndian) == 0;
    auto *pRoot =
        ARV_GC_REGISTER_DESCRIPTION_NODE(arv_dom_document_get_document_element(ARV_DOM_DOCUMENT(m_pGenICam)));
    const bool bSchema10 = arv_gc_register_description_node_compare_schema_version(pRoot, 1, 1, 0) < 0;
    kx_gige_device_set_commands(m_pDevice, bWriteMemory, bSchema10);
    return m_channel.IsDead() ? KX_CC_E_TIMEOUT : KX_CC_OK;
}

int GigeCamera::State()
{
    if (m_channel.IsDead())
        return KX_CC_E_TIMEOUT;
    if (m_channel.DeniedCount() != m_nDeniedSeen && !HasControl())
        m_bControlLost = true;
    m_nDeniedSeen = m_channel.DeniedCount();
    return m_bControlLost ? KX_CC_E_LOST : KX_CC_OK;
}

/// Writes the heartbeat time-out as it is: harmless, and allowed to the application in control only. The
/// privilege register cannot tell, because it does not say who is in control.
bool GigeCamera::HasControl()
{
    return m_channel.WriteRegister(kRegisterHeartbeatTimeout, m_nHeartbeatMs) != Result::Status ||
           m_channel.LastStatus() != kGvcpStatusAccessDenied;
}

void GigeCamera::KeepAlive()
{
    if (!m_bControls || m_channel.IsDead())
        return;
    std::uint32_t nPrivilege = 0;
    const Result result = m_channel.ReadRegister(kRegisterControlPrivilege, nPrivilege);
    const bool bGone = result == Result::Ok && !IsHeld(nPrivilege);
    if (bGone || (result == Result::Status && m_channel.LastStatus() == kGvcpStatusAccessDenied))
        m_bControlLost = true;
}

void GigeCamera::Release()
{
    const std::lock_guard<std::mutex> lock(m_controlMutex);
    m_bReleased = true;
    if (std::exchange(m_bMayControl, false) && !m_bControlLost && !m_channel.IsDead())
        m_channel.WriteRegister(kRegisterControlPrivilege, 0);
    m_bControls = false;
}

} // namespace

std::unique_ptr<Camera> OpenGigeCamera(const KX_CC_DEVICE_INFO &info, const OpeningWatch &watch, int &nCode)
{
    auto camera = std::make_unique<GigeCamera>();
    nCode = camera->Open(info, watch);
    if (nCode != KX_CC_OK)
        camera.reset();
    return camera;
}

} // namespace kxcc
