#ifndef TESTS_KXCAMERACONTROL_UDPDEVICE_H
#define TESTS_KXCAMERACONTROL_UDPDEVICE_H

#include <QByteArray>
#include <QVector>

#include <atomic>
#include <cstdint>
#include <functional>
#include <thread>

/// Something on this machine that hears searches, and says to them what a test wants it to say. Serves in a
/// thread of its own.
class UdpDevice
{
public:
    /// The datagrams that answer a request; called in the device's thread.
    using Answers = std::function<QVector<QByteArray>(const QByteArray &request)>;

    /// @param szAddress  127.x.y.z: it hears what is sent there, and to everyone in that network
    /// @param szFrom     the address that it answers from; null: the same
    UdpDevice(const char *szAddress, Answers answers, const char *szFrom = nullptr);
    ~UdpDevice();
    UdpDevice(const UdpDevice &) = delete;
    UdpDevice &operator=(const UdpDevice &) = delete;

    bool IsThere() const { return m_nEveryone >= 0 && m_nOwn >= 0 && m_nFrom >= 0; }

private:
    void Run();
    void Serve(int nSocket);

    const Answers m_answers;
    const int m_nEveryone; ///< sockets
    const int m_nOwn;
    const int m_nFrom;
    std::atomic_bool m_bEnd{false};
    std::thread m_thread;
};

bool IsSearch(const QByteArray &request);

/// DISCOVERY_ACK to a search, of a camera with this number in its MAC address (GigE Vision 2.0, 16.1.2).
QByteArray SearchAnswer(uint32_t nMac, uint32_t nIp, const QByteArray &model = "INVENTED");

#endif
