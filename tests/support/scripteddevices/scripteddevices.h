#ifndef SUPPORT_SCRIPTEDDEVICES_H
#define SUPPORT_SCRIPTEDDEVICES_H

#include <QVector>

#include <memory>

#include <DevListMgr/devicesource.h>

/// A network camera with the number n: address 10.0.x.y, model "ABC-1000", serial "SN0007" for 7, user name
/// "User 7".
KX_CC_DEVICE_INFO NetworkCamera(int n, quint32 nAccessStatus = KX_CC_ACCESS_FREE,
                                const QByteArray &interfaceName = "eth0");
/// A USB camera: model "USB-2000", serial "US0007", user name "Cam 7".
KX_CC_DEVICE_INFO UsbCamera(int n, quint32 nAccessStatus = KX_CC_ACCESS_FREE);
/// A port camera on "COM7": model "PORT-3000", serial "PS0007".
KX_CC_DEVICE_INFO PortCamera(int n, quint32 nAccessStatus = KX_CC_ACCESS_FREE);

void SetText(unsigned char *pField, size_t nWidth, const QByteArray &text);

/// What trees that are built while this object lives find: a list that the test sets.
class ScriptedDevices
{
public:
    ScriptedDevices();
    ~ScriptedDevices();
    Q_DISABLE_COPY(ScriptedDevices)

    /// From the next round on there are these.
    void Set(const QVector<KX_CC_DEVICE_INFO> &vecDevices);
    /// Whether this process has every camera open.
    void SetOpen(bool bOpen);
    /// Lets rounds fail.
    void SetFailing(bool bFailing);
    /// Makes every round take this long.
    void SetRoundMs(int nMs);

    /// Makes the pause after every round this long, 5 ms at first.
    void SetPauseMs(int nMs);
    /// From the next round on there are this many network cameras more, others in each round.
    void SetInventing(int nCameras);

    int Rounds() const;
    /// The transports that the last round asked for.
    unsigned int Transports() const;
    /// Waits until a round that began after this call has ended; false after 20 s.
    bool WaitForRound() const;

    struct State;

private:
    std::shared_ptr<State> m_pState;
};

#endif
