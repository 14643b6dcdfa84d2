#include "scripteddevices.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QThread>

#include <DevListMgr/lumodevicetree.h>

struct ScriptedDevices::State
{
    QMutex mutex;
    QVector<KX_CC_DEVICE_INFO> vecDevices;
    bool bOpen = false;
    bool bFailing = false;
    int nRoundMs = 0;
    int nPauseMs = 5;
    int nInventing = 0;
    int nInvented = 0;
    int nRounds = 0;
    unsigned int nTransports = 0;
};

namespace {

class ScriptedSource : public DeviceSource
{
public:
    explicit ScriptedSource(std::shared_ptr<ScriptedDevices::State> pState)
        : m_pState(std::move(pState))
    {
    }

    std::optional<QVector<KX_CC_DEVICE_INFO>> search(unsigned int nTransports) override
    {
        QThread::msleep(static_cast<unsigned long>(RoundMs()));
        const QMutexLocker locker(&m_pState->mutex);
        ++m_pState->nRounds;
        m_pState->nTransports = nTransports;
        if (m_pState->bFailing)
            return std::nullopt;
        QVector<KX_CC_DEVICE_INFO> vecDevices = m_pState->vecDevices;
        for (int i = 0; i < m_pState->nInventing; ++i)
            vecDevices.append(NetworkCamera(1000 + ++m_pState->nInvented));
        return vecDevices;
    }

    bool isOpen(const KX_CC_DEVICE_INFO &) const override
    {
        const QMutexLocker locker(&m_pState->mutex);
        return m_pState->bOpen;
    }

    int pauseMs() const override
    {
        const QMutexLocker locker(&m_pState->mutex);
        return m_pState->nPauseMs;
    }

private:
    int RoundMs() const
    {
        const QMutexLocker locker(&m_pState->mutex);
        return m_pState->nRoundMs;
    }

    std::shared_ptr<ScriptedDevices::State> m_pState;
};

QByteArray Numbered(const char *pPrefix, int n)
{
    return pPrefix + QByteArray::number(n).rightJustified(4, '0');
}

} // namespace

void SetText(unsigned char *pField, size_t nWidth, const QByteArray &text)
{
    for (size_t i = 0; i < nWidth; ++i)
        pField[i] = i < size_t(text.size()) ? static_cast<unsigned char>(text[int(i)]) : 0;
}

KX_CC_DEVICE_INFO NetworkCamera(int n, quint32 nAccessStatus, const QByteArray &interfaceName)
{
    KX_CC_DEVICE_INFO stInfo = {};
    stInfo.nTransportType = KX_CC_TRANSPORT_GIGE;
    stInfo.nMacAddrHigh = 0x0011;
    stInfo.nMacAddrLow = 0x1CF00000u + quint32(n);
    stInfo.nAccessStatus = nAccessStatus;
    KX_CC_GIGE_INFO &stGigE = stInfo.SpecialInfo.stGigEInfo;
    stGigE.nCurrentIp = 0x0A000000u + quint32(n);
    stGigE.nInterfaceIp = 0x0A00FF01u;
    SetText(stGigE.chInterfaceName, sizeof stGigE.chInterfaceName, interfaceName);
    SetText(stGigE.chModelName, sizeof stGigE.chModelName, "ABC-1000");
    SetText(stGigE.chSerialNumber, sizeof stGigE.chSerialNumber, Numbered("SN", n));
    SetText(stGigE.chUserDefinedName, sizeof stGigE.chUserDefinedName, "User " + QByteArray::number(n));
    return stInfo;
}

KX_CC_DEVICE_INFO UsbCamera(int n, quint32 nAccessStatus)
{
    KX_CC_DEVICE_INFO stInfo = {};
    stInfo.nTransportType = KX_CC_TRANSPORT_USB;
    stInfo.nAccessStatus = nAccessStatus;
    KX_CC_USB_INFO &stUsb = stInfo.SpecialInfo.stUsbInfo;
    SetText(stUsb.chModelName, sizeof stUsb.chModelName, "USB-2000");
    SetText(stUsb.chSerialNumber, sizeof stUsb.chSerialNumber, Numbered("US", n));
    SetText(stUsb.chUserDefinedName, sizeof stUsb.chUserDefinedName, "Cam " + QByteArray::number(n));
    SetText(stUsb.chDeviceGuid, sizeof stUsb.chDeviceGuid, Numbered("GUID0000", n));
    stUsb.nBus = 1;
    stUsb.nAddress = quint32(n);
    return stInfo;
}

KX_CC_DEVICE_INFO PortCamera(int n, quint32 nAccessStatus)
{
    KX_CC_DEVICE_INFO stInfo = {};
    stInfo.nTransportType = KX_CC_TRANSPORT_PORT;
    stInfo.nAccessStatus = nAccessStatus;
    KX_CC_PORT_INFO &stPort = stInfo.SpecialInfo.stPortInfo;
    SetText(stPort.chPortId, sizeof stPort.chPortId, "COM" + QByteArray::number(n));
    SetText(stPort.chModelName, sizeof stPort.chModelName, "PORT-3000");
    SetText(stPort.chSerialNumber, sizeof stPort.chSerialNumber, Numbered("PS", n));
    return stInfo;
}

ScriptedDevices::ScriptedDevices()
    : m_pState(std::make_shared<State>())
{
    const auto pState = m_pState;
    LumoDeviceTree::setSourceFactory(
        [pState] { return std::unique_ptr<DeviceSource>(new ScriptedSource(pState)); });
}

ScriptedDevices::~ScriptedDevices()
{
    LumoDeviceTree::setSourceFactory(nullptr);
}

void ScriptedDevices::Set(const QVector<KX_CC_DEVICE_INFO> &vecDevices)
{
    const QMutexLocker locker(&m_pState->mutex);
    m_pState->vecDevices = vecDevices;
}

void ScriptedDevices::SetOpen(bool bOpen)
{
    const QMutexLocker locker(&m_pState->mutex);
    m_pState->bOpen = bOpen;
}

void ScriptedDevices::SetFailing(bool bFailing)
{
    const QMutexLocker locker(&m_pState->mutex);
    m_pState->bFailing = bFailing;
}

void ScriptedDevices::SetRoundMs(int nMs)
{
    const QMutexLocker locker(&m_pState->mutex);
    m_pState->nRoundMs = nMs;
}

void ScriptedDevices::SetPauseMs(int nMs)
{
    const QMutexLocker locker(&m_pState->mutex);
    m_pState->nPauseMs = nMs;
}

void ScriptedDevices::SetInventing(int nCameras)
{
    const QMutexLocker locker(&m_pState->mutex);
    m_pState->nInventing = nCameras;
}

int ScriptedDevices::Rounds() const
{
    const QMutexLocker locker(&m_pState->mutex);
    return m_pState->nRounds;
}

unsigned int ScriptedDevices::Transports() const
{
    const QMutexLocker locker(&m_pState->mutex);
    return m_pState->nTransports;
}

bool ScriptedDevices::WaitForRound() const
{
    // Two more: the one in progress may have taken its list before this call, and a round is only over
    // when the next one has begun.
    const int nTarget = Rounds() + 3;
    const QDeadlineTimer deadline(20000);
    while (Rounds() < nTarget && !deadline.hasExpired())
        QThread::msleep(1);
    return Rounds() >= nTarget;
}
