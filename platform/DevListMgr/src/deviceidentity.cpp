#include "deviceidentity.h"

#include <algorithm>

namespace {

QByteArray Text(const unsigned char *pField, int nWidth)
{
    return QByteArray(reinterpret_cast<const char *>(pField),
                      static_cast<int>(qstrnlen(reinterpret_cast<const char *>(pField), uint(nWidth))));
}

QByteArray UsbKey(const KX_CC_USB_INFO &stUsb)
{
    const QByteArray guid = Text(stUsb.chDeviceGuid, sizeof stUsb.chDeviceGuid);
    if (!guid.isEmpty())
        return "guid " + guid;
    return "usb " + Text(stUsb.chModelName, sizeof stUsb.chModelName) + '\n' +
           Text(stUsb.chSerialNumber, sizeof stUsb.chSerialNumber) + '\n' +
           Text(stUsb.chDeviceKey, sizeof stUsb.chDeviceKey);
}

/// What stays the same about a camera for as long as it exists.
QByteArray Key(const KX_CC_DEVICE_INFO &stInfo)
{
    switch (stInfo.nTransportType) {
    case KX_CC_TRANSPORT_GIGE:
        if (stInfo.nMacAddrHigh == 0 && stInfo.nMacAddrLow == 0)
            return "ip " + QByteArray::number(stInfo.SpecialInfo.stGigEInfo.nCurrentIp);
        return "mac " + QByteArray::number(stInfo.nMacAddrHigh) + ' ' +
               QByteArray::number(stInfo.nMacAddrLow);
    case KX_CC_TRANSPORT_USB:
        return UsbKey(stInfo.SpecialInfo.stUsbInfo);
    default: {
        const KX_CC_PORT_INFO &stPort = stInfo.SpecialInfo.stPortInfo;
        return QByteArray::number(stInfo.nTransportType) + ' ' +
               Text(stPort.chPortId, sizeof stPort.chPortId) + '\n' +
               Text(stPort.chSerialNumber, sizeof stPort.chSerialNumber);
    }
    }
}

/// What tells two cameras with one key apart.
quint32 Address(const KX_CC_DEVICE_INFO &stInfo)
{
    if (stInfo.nTransportType == KX_CC_TRANSPORT_GIGE)
        return stInfo.SpecialInfo.stGigEInfo.nCurrentIp;
    if (stInfo.nTransportType == KX_CC_TRANSPORT_USB)
        return (stInfo.SpecialInfo.stUsbInfo.nBus << 16) | stInfo.SpecialInfo.stUsbInfo.nAddress;
    return 0;
}

/// The entries that count among those with one key: of a camera that moved to a new address, the old one
/// is still listed as unreachable for some rounds.
QVector<int> WithoutFormerAddresses(const QVector<KX_CC_DEVICE_INFO> &vecDevices, QVector<int> vecIndexes)
{
    const auto isSilent = [&](int nIndex) {
        return vecDevices[nIndex].nAccessStatus == KX_CC_ACCESS_UNREACHABLE;
    };
    if (vecIndexes.size() > 1 && !std::all_of(vecIndexes.cbegin(), vecIndexes.cend(), isSilent))
        vecIndexes.erase(std::remove_if(vecIndexes.begin(), vecIndexes.end(), isSilent), vecIndexes.end());
    return vecIndexes;
}

} // namespace

QVector<int> DeviceIdentity::Assign(const QVector<KX_CC_DEVICE_INFO> &vecDevices)
{
    QHash<QByteArray, QVector<int>> hashIndexes;
    QVector<QByteArray> vecKeys;
    for (int i = 0; i < vecDevices.size(); ++i) {
        const QByteArray key = Key(vecDevices[i]);
        QVector<int> &vecIndexes = hashIndexes[key];
        if (vecIndexes.isEmpty())
            vecKeys.append(key);
        vecIndexes.append(i);
    }

    QVector<int> vecIDs(vecDevices.size(), -1);
    for (const QByteArray &key : qAsConst(vecKeys)) // in the order of the list: so are the new numbers
        AssignSameKey(vecDevices, WithoutFormerAddresses(vecDevices, hashIndexes.value(key)),
                      m_hashKnown[key], vecIDs);
    if (m_nKnown > kMostKnown)
        ForgetAllBut(hashIndexes);
    return vecIDs;
}

void DeviceIdentity::ForgetAllBut(const QHash<QByteArray, QVector<int>> &hashListed)
{
    for (auto it = m_hashKnown.begin(); it != m_hashKnown.end();) {
        if (hashListed.contains(it.key())) {
            ++it;
            continue;
        }
        m_nKnown -= it->size();
        it = m_hashKnown.erase(it);
    }
}

void DeviceIdentity::AssignSameKey(const QVector<KX_CC_DEVICE_INFO> &vecDevices,
                                   const QVector<int> &vecIndexes, QVector<Known> &vecKnown,
                                   QVector<int> &vecIDs)
{
    QVector<bool> vecTaken(vecKnown.size(), false);
    const auto take = [&](int nIndex, int nKnown) {
        vecTaken[nKnown] = true;
        vecKnown[nKnown].nAddress = Address(vecDevices[nIndex]);
        vecIDs[nIndex] = vecKnown[nKnown].nDeviceID;
    };

    for (int nIndex : vecIndexes) {
        for (int k = 0; k < vecKnown.size() && vecIDs[nIndex] < 0; ++k) {
            if (!vecTaken[k] && vecKnown[k].nAddress == Address(vecDevices[nIndex]))
                take(nIndex, k);
        }
    }
    for (int nIndex : vecIndexes) {
        for (int k = 0; k < vecKnown.size() && vecIDs[nIndex] < 0; ++k) {
            if (!vecTaken[k])
                take(nIndex, k);
        }
        if (vecIDs[nIndex] < 0) {
            vecKnown.append({0, m_nNextID++});
            ++m_nKnown;
            vecTaken.append(false);
            take(nIndex, vecKnown.size() - 1);
        }
    }
}
