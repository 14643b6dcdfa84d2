/// The C entry points for finding, opening and closing cameras.

#include <cstring>
#include <memory>
#include <new>

#include <arpa/inet.h>

#include "KxCameraControl/kxcameracontrol.h"
#include "api/devicehandle.h"
#include "api/handletable.h"
#include "camera/opencameras.h"
#include "discovery/enumerator.h"
#include "discovery/round.h"

using kxcc::DeviceHandle;
using kxcc::Enumerator;

namespace {

using Devices = kxcc::HandleTable<DeviceHandle>;
using Enumerators = kxcc::HandleTable<Enumerator>;

constexpr unsigned int kLongestRoundMs = 10000;

bool IsTimeout(unsigned int nTimeoutMs)
{
    return nTimeoutMs >= 1 && nTimeoutMs <= kLongestRoundMs;
}

template <typename T, typename... Args>
int MakeHandle(void **ppHandle, Args &&...args)
{
    try {
        *ppHandle = kxcc::HandleTable<T>::Instance().Add(std::make_shared<T>(std::forward<Args>(args)...));
        return KX_CC_OK;
    } catch (const std::bad_alloc &) {
        return KX_CC_E_RESOURCE;
    }
}

/// Where the address may be reached: by the interfaces whose subnet it lies in, else by all that lead
/// outward.
std::vector<kxcc::Interface> InterfacesFor(std::uint32_t nIp, const std::vector<kxcc::Interface> &all)
{
    std::vector<kxcc::Interface> own;
    std::vector<kxcc::Interface> outward;
    for (const kxcc::Interface &interface : all) {
        if (interface.Contains(nIp))
            own.push_back(interface);
        if (!interface.bLoopback)
            outward.push_back(interface);
    }
    return own.empty() ? outward : own;
}

} // namespace

int KX_CC_CreateEnumerator(void **phEnumerator, unsigned int nTransports)
{
    if (phEnumerator == nullptr)
        return KX_CC_E_PARAMETER;
    *phEnumerator = nullptr;
    return MakeHandle<Enumerator>(phEnumerator, nTransports);
}

int KX_CC_Enumerate(void *hEnumerator, unsigned int nTimeoutMs, KX_CC_DEVICE_LIST *pstList)
{
    const auto enumerator = Enumerators::Instance().Find(hEnumerator);
    if (!enumerator)
        return KX_CC_E_HANDLE;
    if (pstList == nullptr || !IsTimeout(nTimeoutMs))
        return KX_CC_E_PARAMETER;
    const int nCode = enumerator->Run(static_cast<int>(nTimeoutMs));
    const auto &list = enumerator->List();
    pstList->nDeviceNum = static_cast<unsigned int>(list.size());
    pstList->pstDevices = list.empty() ? nullptr : list.data();
    return nCode;
}

int KX_CC_FindDevice(const char *szAddress, unsigned int nTimeoutMs, KX_CC_DEVICE_INFO *pstDevInfo)
{
    if (pstDevInfo == nullptr)
        return KX_CC_E_PARAMETER;
    *pstDevInfo = {};
    in_addr address{};
    if (szAddress == nullptr || !IsTimeout(nTimeoutMs) || inet_pton(AF_INET, szAddress, &address) != 1)
        return KX_CC_E_PARAMETER;
    const std::uint32_t nIp = ntohl(address.s_addr);
    const std::vector<kxcc::Interface> all = kxcc::ListInterfaces();
    if (!kxcc::IsOneDevice(nIp, all))
        return KX_CC_E_PARAMETER;
    kxcc::Round round;
    if (!round.Open(InterfacesFor(nIp, all)))
        return KX_CC_E_UNREACHABLE;
    const std::uint64_t nBefore = kxcc::OpenCameras::Instance().Now();
    round.CollectFrom(nIp, static_cast<int>(nTimeoutMs));
    round.ReadAccess();
    const auto cameras = round.Cameras();
    if (cameras.empty())
        return KX_CC_E_UNREACHABLE;
    *pstDevInfo = cameras.front();
    if (kxcc::OpenCameras::Instance().WasOpenSince(*pstDevInfo, nBefore))
        pstDevInfo->nAccessStatus = KX_CC_ACCESS_FREE;
    return KX_CC_OK;
}

int KX_CC_DestroyEnumerator(void *hEnumerator)
{
    if (hEnumerator == nullptr)
        return KX_CC_OK;
    return Enumerators::Instance().Remove(hEnumerator) ? KX_CC_OK : KX_CC_E_HANDLE;
}

bool KX_CC_IsDeviceOpen(const KX_CC_DEVICE_INFO *pstDevInfo)
{
    return pstDevInfo != nullptr && kxcc::OpenCameras::Instance().IsOpen(*pstDevInfo);
}

int KX_CC_CreateHandle(void **phDevice, const KX_CC_DEVICE_INFO *pstDevInfo)
{
    if (phDevice == nullptr)
        return KX_CC_E_PARAMETER;
    *phDevice = nullptr;
    if (pstDevInfo == nullptr)
        return KX_CC_E_PARAMETER;
    if (pstDevInfo->nTransportType != KX_CC_TRANSPORT_GIGE &&
        pstDevInfo->nTransportType != KX_CC_TRANSPORT_USB)
        return KX_CC_E_UNSUPPORTED;
    return MakeHandle<DeviceHandle>(phDevice, *pstDevInfo);
}

int KX_CC_OpenDevice(void *hDevice, unsigned int nAccessMode, unsigned short nSwitchoverKey)
{
    const auto device = Devices::Instance().Find(hDevice);
    if (!device)
        return KX_CC_E_HANDLE;
    if (nAccessMode != KX_CC_ACCESS_MODE_EXCLUSIVE || nSwitchoverKey != 0)
        return KX_CC_E_UNSUPPORTED;
    return device->Open();
}

int KX_CC_CloseDevice(void *hDevice)
{
    const auto device = Devices::Instance().Find(hDevice);
    if (!device)
        return KX_CC_E_HANDLE;
    device->Close();
    return KX_CC_OK;
}

int KX_CC_DestroyHandle(void *hDevice)
{
    const auto device = Devices::Instance().Remove(hDevice);
    if (!device)
        return KX_CC_E_HANDLE;
    device->Close();
    return KX_CC_OK;
}

int KX_CC_SetTimeBudget(unsigned int nFeatureMs, unsigned int nTotalMs)
{
    if (nFeatureMs > KX_CC_LONGEST_BUDGET_MS || nTotalMs > KX_CC_LONGEST_BUDGET_MS)
        return KX_CC_E_PARAMETER;
    kxcc::TimeBudget::SetStandard(
        {std::chrono::milliseconds(nFeatureMs), std::chrono::milliseconds(nTotalMs)});
    return KX_CC_OK;
}
