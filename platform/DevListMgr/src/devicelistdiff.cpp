#include "devicelistdiff.h"

#include <cstring>

namespace {

bool Same(const KX_CC_DEVICE_INFO &stOne, const KX_CC_DEVICE_INFO &stOther)
{
    return std::memcmp(&stOne, &stOther, sizeof stOne) == 0;
}

} // namespace

QVector<DeviceChange> DeviceListDiff::Next(const QVector<KX_CC_DEVICE_INFO> &vecDevices, const IsOpen &isOpen)
{
    ++m_nRound;
    const QVector<int> vecIDs = m_identity.Assign(vecDevices);
    for (int nID : vecIDs) {
        const auto it = m_mapShown.find(nID);
        if (it != m_mapShown.end())
            it->nRound = m_nRound;
    }

    QVector<DeviceChange> vecChanges;
    AddMissing(isOpen, vecChanges);
    for (int i = 0; i < vecDevices.size(); ++i) {
        if (vecIDs[i] >= 0)
            AddListed(vecIDs[i], vecDevices[i], isOpen, vecChanges);
    }
    return vecChanges;
}

void DeviceListDiff::AddMissing(const IsOpen &isOpen, QVector<DeviceChange> &vecChanges)
{
    for (auto it = m_mapShown.begin(); it != m_mapShown.end();) {
        if (it->nRound == m_nRound) {
            ++it;
            continue;
        }
        const bool bOpen = isOpen(it->stDevInfo);
        if (!bOpen && !it->bWasOpen) {
            vecChanges.append({DeviceChange::Delete, it.key(), it->stDevInfo});
            it = m_mapShown.erase(it);
            continue;
        }
        // Someone is still at work with it. The round after the closing leaves time for the last
        // messages of that work to arrive.
        it->bWasOpen = bOpen;
        if (it->stDevInfo.nAccessStatus != KX_CC_ACCESS_UNREACHABLE) {
            it->stDevInfo.nAccessStatus = KX_CC_ACCESS_UNREACHABLE;
            vecChanges.append({DeviceChange::Update, it.key(), it->stDevInfo});
        }
        ++it;
    }
}

void DeviceListDiff::AddListed(int nDeviceID, const KX_CC_DEVICE_INFO &stDevInfo, const IsOpen &isOpen,
                               QVector<DeviceChange> &vecChanges)
{
    const bool bOpen = isOpen(stDevInfo);
    const auto it = m_mapShown.find(nDeviceID);
    if (it == m_mapShown.end()) {
        m_mapShown.insert(nDeviceID, {stDevInfo, bOpen, m_nRound});
        vecChanges.append({DeviceChange::New, nDeviceID, stDevInfo});
        return;
    }
    it->bWasOpen = bOpen;
    if (!Same(it->stDevInfo, stDevInfo)) {
        it->stDevInfo = stDevInfo;
        vecChanges.append({DeviceChange::Update, nDeviceID, stDevInfo});
    }
}
