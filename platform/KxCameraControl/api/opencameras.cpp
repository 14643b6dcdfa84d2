#include "api/opencameras.h"

#include "discovery/enumerator.h"

namespace kxcc {

OpenCameras &OpenCameras::Instance()
{
    // Never destroyed: threads may still close cameras while static objects go.
    static auto *pInstance = new OpenCameras;
    return *pInstance;
}

OpenCameras::Entry *OpenCameras::Find(const KX_CC_DEVICE_INFO &info)
{
    for (Entry &entry : m_entries) {
        if (IsSameCamera(entry.info, info))
            return &entry;
    }
    return nullptr;
}

void OpenCameras::Opened(const KX_CC_DEVICE_INFO &info)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (Entry *pEntry = Find(info))
        ++pEntry->nHandles;
    else
        m_entries.push_back({info, 1, 0});
}

void OpenCameras::Closed(const KX_CC_DEVICE_INFO &info)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (Entry *pEntry = Find(info)) {
        --pEntry->nHandles;
        pEntry->nLastClosed = ++m_nNow;
    }
}

bool OpenCameras::IsOpen(const KX_CC_DEVICE_INFO &info)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Entry *pEntry = Find(info);
    return pEntry != nullptr && pEntry->nHandles > 0;
}

uint64_t OpenCameras::Now()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_nNow;
}

bool OpenCameras::WasOpenSince(const KX_CC_DEVICE_INFO &info, uint64_t nPoint)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Entry *pEntry = Find(info);
    return pEntry != nullptr && (pEntry->nHandles > 0 || pEntry->nLastClosed > nPoint);
}

} // namespace kxcc
