#include "discovery/knowncameras.h"

#include <algorithm>

namespace kxcc {
namespace {

constexpr int kMissesUntilGone = 3;

} // namespace

std::size_t KnownCameras::CountOf(std::uint32_t nTransport) const
{
    return static_cast<std::size_t>(std::count_if(m_misses.begin(), m_misses.end(), [&](const auto &entry) {
        return entry.first.nTransportType == nTransport;
    }));
}

void KnownCameras::Update(const std::vector<KX_CC_DEVICE_INFO> &found)
{
    for (auto &entry : m_misses)
        ++entry.second;
    for (const KX_CC_DEVICE_INFO &info : found) {
        m_misses.erase(info); // the record that it gave last counts
        m_misses.emplace(info, 0);
    }
    m_list.clear();
    for (auto it = m_misses.begin(); it != m_misses.end();) {
        if (it->second >= kMissesUntilGone) {
            it = m_misses.erase(it);
            continue;
        }
        m_list.push_back(it->first);
        if (it->second > 0)
            m_list.back().nAccessStatus = KX_CC_ACCESS_UNREACHABLE;
        ++it;
    }
}

} // namespace kxcc
