#ifndef KXCAMERAFARM_FARMSERVER_H
#define KXCAMERAFARM_FARMSERVER_H

#include "server/controlsocket.h"
#include "server/farm.h"
#include "server/filedescriptor.h"

#include <queue>

namespace KxFarm {

/// The cameras' place on the network: their UDP sockets, the delays of their answers, the control socket.
/// One thread; Run() is its loop.
class FarmServer
{
public:
    explicit FarmServer(Farm *pFarm);

    /// Opens everything; false and one line in *pError when an address or path is taken. An empty
    /// `controlPath` opens no control socket.
    bool Open(const QString &controlPath, QString *pError);

    /// Serves until SIGTERM or SIGINT. Open() has blocked both signals in this thread.
    void Run();

private:
    /// The camera's side of one address.
    struct Port
    {
        FileDescriptor socket;
        std::uint32_t address = 0; // that the socket is bound to
    };
    struct Delayed
    {
        TimePoint due;
        std::size_t camera = 0;
        Endpoint to;
        Reply reply;
        unsigned generation = 0;
        std::uint64_t order = 0; // of two due at once the older goes first
        bool operator<(const Delayed &other) const
        {
            return due != other.due ? due > other.due : order > other.order;
        }
    };

    bool OpenPort(std::size_t index, QString *pError);
    bool OpenBroadcast(QString *pError);
    bool OpenSignals();
    void SynchronisePorts();
    bool Watch(int descriptor, std::uint64_t tag);
    void OnEvent(std::uint64_t tag);
    void OnDatagram(std::size_t index);
    void OnBroadcast(int socket);
    void Answer(std::size_t index, const std::uint8_t *data, std::size_t size, const Endpoint &from,
                std::chrono::microseconds extraDelay);
    void Send(std::size_t index, const Endpoint &to, const Reply &reply);
    void SendDue(TimePoint now);
    int Wait();

    Farm *m_pFarm;
    FileDescriptor m_epoll;
    FileDescriptor m_signals;
    std::vector<FileDescriptor> m_listBroadcasts;
    FileDescriptor m_stranger; // answers from an address that is no camera's
    std::vector<Port> m_listPorts;
    std::priority_queue<Delayed> m_queue;
    std::uint64_t m_nOrder = 0;
    ControlSocket m_control;
    bool m_bStop = false;
};

} // namespace KxFarm

#endif
