#include "camera/opencameras.h"

namespace kxcc {

OpenCameras &OpenCameras::Instance()
{
    // Never destroyed: threads may still close cameras while static objects go.
    static auto *pInstance = new OpenCameras;
    return *pInstance;
}

OpenCameras::Entry OpenCameras::EntryOf(const KX_CC_DEVICE_INFO &info)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto it = m_entries.find(info);
    return it != m_entries.end() ? it->second : Entry();
}

void OpenCameras::Opened(const KX_CC_DEVICE_INFO &info)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_entries[info].nHandles;
}

void OpenCameras::Closed(const KX_CC_DEVICE_INFO &info)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Entry &entry = m_entries[info];
    --entry.nHandles;
    entry.nLastClosed = ++m_nNow;
}

bool OpenCameras::IsOpen(const KX_CC_DEVICE_INFO &info)
{
    return EntryOf(info).nHandles > 0;
}

std::uint64_t OpenCameras::Now()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_nNow;
}

bool OpenCameras::WasOpenSince(const KX_CC_DEVICE_INFO &info, std::uint64_t nPoint)
{
    const Entry entry = EntryOf(info);
    return entry.nHandles > 0 || entry.nLastClosed > nPoint;
}

} // namespace kxcc
