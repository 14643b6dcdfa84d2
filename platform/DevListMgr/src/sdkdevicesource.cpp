#include "sdkdevicesource.h"

#include <QtDebug>

#include <KxCameraControl/kxcameracontrol.h>

namespace {

// Cameras answer within milliseconds; the rest is for slow ones and for a loaded network. Together with the
// pause between rounds a camera is shown within 1.2 s.
const unsigned int kRoundMs = 400;

} // namespace

DeviceSource::~DeviceSource() = default;

SdkDeviceSource::~SdkDeviceSource()
{
    KX_CC_DestroyEnumerator(m_hEnumerator);
}

std::optional<QVector<KX_CC_DEVICE_INFO>> SdkDeviceSource::search(unsigned int nTransports)
{
    if (!Prepare(nTransports))
        return std::nullopt;
    KX_CC_DEVICE_LIST list = {0, nullptr};
    const int nCode = KX_CC_Enumerate(m_hEnumerator, kRoundMs, &list);
    if (nCode != KX_CC_OK)
        Warn("KX_CC_Enumerate", nCode);
    m_nLastCode = nCode;
    if (nCode != KX_CC_OK && nCode != KX_CC_E_RESOURCE)
        return std::nullopt;

    QVector<KX_CC_DEVICE_INFO> vecDevices;
    vecDevices.reserve(static_cast<int>(list.nDeviceNum));
    for (unsigned int i = 0; i < list.nDeviceNum; ++i)
        vecDevices.append(list.pstDevices[i]);
    return vecDevices;
}

bool SdkDeviceSource::isOpen(const KX_CC_DEVICE_INFO &stDevInfo) const
{
    return KX_CC_IsDeviceOpen(&stDevInfo);
}

bool SdkDeviceSource::Prepare(unsigned int nTransports)
{
    if (m_hEnumerator && m_nTransports == nTransports)
        return true;
    KX_CC_DestroyEnumerator(m_hEnumerator);
    m_hEnumerator = nullptr;
    m_nTransports = nTransports;
    const int nCode = KX_CC_CreateEnumerator(&m_hEnumerator, nTransports);
    if (nCode == KX_CC_OK)
        return true;
    Warn("KX_CC_CreateEnumerator", nCode);
    m_nLastCode = nCode;
    return false;
}

void SdkDeviceSource::Warn(const char *pCall, int nCode)
{
    if (nCode != m_nLastCode)
        qWarning("Searching cameras: %s failed: %s", pCall, KX_CC_ErrorText(nCode));
}
