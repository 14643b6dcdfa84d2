#include "server/farmserver.h"

#include "faults/faultvalue.h"

#include <arpa/inet.h>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/epoll.h>
#include <sys/signalfd.h>
#include <sys/socket.h>

namespace KxFarm {

namespace {

// What a watched descriptor is: the kind in the upper half of its tag, camera or descriptor in the lower.
constexpr std::uint64_t kTagCamera = 0;
constexpr std::uint64_t kTagBroadcast = std::uint64_t{1} << 32U;
constexpr std::uint64_t kTagSignal = std::uint64_t{2} << 32U;
constexpr std::uint64_t kTagListener = std::uint64_t{3} << 32U;
constexpr std::uint64_t kTagClient = std::uint64_t{4} << 32U;

// Discovery goes to the broadcast address of the loopback network, or, by other clients, to the one of all
// networks with a loopback address as its source.
constexpr std::uint32_t kBroadcastAddresses[] = {0x7FFFFFFF, 0xFFFFFFFF};
constexpr std::uint32_t kStrangerAddress = 0x7F000063; // 127.0.0.99
constexpr std::size_t kMaxDatagram = 2048;

// A discovery finds all cameras at once. Answers spread like this fit the finder's receive buffer, and even
// 400 of them arrive within 40 ms.
constexpr std::chrono::microseconds kDiscoverySpread(100);

sockaddr_in SocketAddress(std::uint32_t address, std::uint16_t port)
{
    sockaddr_in name = {};
    name.sin_family = AF_INET;
    name.sin_addr.s_addr = htonl(address);
    name.sin_port = htons(port);
    return name;
}

FileDescriptor BindUdp(std::uint32_t address, std::uint16_t port, bool shared)
{
    FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    const int on = 1;
    if (shared)
        ::setsockopt(socket.Get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const sockaddr_in name = SocketAddress(address, port);
    if (::bind(socket.Get(), reinterpret_cast<const sockaddr *>(&name), sizeof name) != 0)
        return FileDescriptor();
    return socket;
}

QString BindError(std::uint32_t address)
{
    const QString reason = errno == EADDRINUSE ? QStringLiteral("the address is in use")
                                               : QString::fromLocal8Bit(std::strerror(errno));
    return QStringLiteral("%1, UDP port %2: %3").arg(AddressText(address)).arg(Gvcp::kUdpPort).arg(reason);
}

ssize_t Receive(int socket, std::uint8_t *buffer, Endpoint *pFrom)
{
    sockaddr_in name = {};
    socklen_t size = sizeof name;
    const ssize_t count =
        ::recvfrom(socket, buffer, kMaxDatagram, 0, reinterpret_cast<sockaddr *>(&name), &size);
    *pFrom = Endpoint{ntohl(name.sin_addr.s_addr), ntohs(name.sin_port)};
    return count;
}

} // namespace

FarmServer::FarmServer(Farm *pFarm)
    : m_pFarm(pFarm)
    , m_epoll(::epoll_create1(EPOLL_CLOEXEC))
    , m_listPorts(pFarm->Size())
{
}

bool FarmServer::Watch(int descriptor, std::uint64_t tag)
{
    epoll_event event = {};
    event.events = EPOLLIN;
    event.data.u64 = tag;
    return ::epoll_ctl(m_epoll.Get(), EPOLL_CTL_ADD, descriptor, &event) == 0;
}

bool FarmServer::Open(const QString &controlPath, QString *pError)
{
    for (std::size_t i = 0; i < m_listPorts.size(); ++i) {
        if (m_pFarm->At(i).IsPortOpen() && !OpenPort(i, pError))
            return false;
    }
    m_stranger = BindUdp(kStrangerAddress, 0, true);
    if (!OpenBroadcast(pError))
        return false;
    if (!controlPath.isEmpty()) {
        if (!m_control.Listen(controlPath, pError))
            return false;
        Watch(m_control.Listener(), kTagListener);
    }
    if (OpenSignals())
        return true;
    *pError = QStringLiteral("signals: %1").arg(QString::fromLocal8Bit(std::strerror(errno)));
    return false;
}

bool FarmServer::OpenPort(std::size_t index, QString *pError)
{
    // Not shared: two cameras on one address would take each other's commands.
    const std::uint32_t address = m_pFarm->At(index).Device().IpAddress();
    FileDescriptor socket = BindUdp(address, Gvcp::kUdpPort, false);
    if (!socket.IsOpen() || !Watch(socket.Get(), kTagCamera | index)) {
        *pError = BindError(address);
        return false;
    }
    m_listPorts[index].socket = std::move(socket);
    m_listPorts[index].address = address;
    return true;
}

bool FarmServer::OpenBroadcast(QString *pError)
{
    for (const std::uint32_t address : kBroadcastAddresses) {
        FileDescriptor socket = BindUdp(address, Gvcp::kUdpPort, true);
        if (!socket.IsOpen() ||
            !Watch(socket.Get(), kTagBroadcast | static_cast<std::uint64_t>(socket.Get()))) {
            *pError = BindError(address);
            return false;
        }
        m_listBroadcasts.push_back(std::move(socket));
    }
    return true;
}

bool FarmServer::OpenSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    if (::pthread_sigmask(SIG_BLOCK, &signals, nullptr) != 0)
        return false;
    m_signals.Reset(::signalfd(-1, &signals, SFD_CLOEXEC));
    return m_signals.IsOpen() && Watch(m_signals.Get(), kTagSignal);
}

void FarmServer::SynchronisePorts()
{
    for (std::size_t i = 0; i < m_listPorts.size(); ++i) {
        SimulatedCamera &camera = m_pFarm->At(i);
        Port &port = m_listPorts[i];
        const bool moved = port.address != camera.Device().IpAddress();
        if (port.socket.IsOpen() && (moved || !camera.IsPortOpen()))
            port.socket.Reset();
        QString ignored; // an address somebody else took meanwhile leaves the camera unreachable
        if (!port.socket.IsOpen() && camera.IsPortOpen())
            OpenPort(i, &ignored);
    }
}

int FarmServer::Wait()
{
    timespec left = {};
    const timespec *pTimeout = nullptr;
    if (!m_queue.empty()) {
        const auto ns = std::max<std::int64_t>(
            0, std::chrono::nanoseconds(m_queue.top().due - std::chrono::steady_clock::now()).count());
        left.tv_sec = ns / 1000000000;
        left.tv_nsec = ns % 1000000000;
        pTimeout = &left;
    }
    epoll_event events[64];
    const int count = ::epoll_pwait2(m_epoll.Get(), events, 64, pTimeout, nullptr);
    for (int i = 0; i < count; ++i)
        OnEvent(events[i].data.u64);
    return count;
}

void FarmServer::Run()
{
    while (!m_bStop) {
        if (Wait() < 0 && errno != EINTR)
            return;
        SendDue(std::chrono::steady_clock::now());
    }
}

void FarmServer::OnEvent(std::uint64_t tag)
{
    const std::uint64_t number = tag & 0xFFFFFFFFU;
    const std::uint64_t kind = tag - number;
    if (kind == kTagCamera) {
        OnDatagram(number);
    } else if (kind == kTagBroadcast) {
        OnBroadcast(static_cast<int>(number));
    } else if (kind == kTagSignal) {
        m_bStop = true;
    } else if (kind == kTagListener) {
        const int client = m_control.Accept();
        if (client >= 0)
            Watch(client, kTagClient | static_cast<std::uint64_t>(client));
    } else {
        m_control.Serve(static_cast<int>(number), [this](const QByteArray &line) {
            QByteArray answer = m_pFarm->Execute(line, std::chrono::steady_clock::now());
            SynchronisePorts();
            return answer;
        });
    }
}

void FarmServer::OnDatagram(std::size_t index)
{
    std::uint8_t buffer[kMaxDatagram];
    Endpoint from;
    const ssize_t count = Receive(m_listPorts[index].socket.Get(), buffer, &from);
    if (count > 0)
        Answer(index, buffer, static_cast<std::size_t>(count), from, std::chrono::microseconds(0));
}

void FarmServer::OnBroadcast(int socket)
{
    std::uint8_t buffer[kMaxDatagram];
    Endpoint from;
    const ssize_t count = Receive(socket, buffer, &from);
    Gvcp::Request request;
    // What a machine on a real network asks is not for us.
    if (count <= 0 || (from.address >> 24U) != 127 ||
        Gvcp::ParseRequest(buffer, static_cast<std::size_t>(count), &request) != Gvcp::Parsed::Ok ||
        (request.command != Gvcp::DISCOVERY_CMD && request.command != Gvcp::FORCEIP_CMD))
        return; // nothing else is meant for more than one camera
    for (std::size_t i = 0; i < m_listPorts.size(); ++i)
        Answer(i, buffer, static_cast<std::size_t>(count), from, kDiscoverySpread * i);
}

void FarmServer::Answer(std::size_t index, const std::uint8_t *data, std::size_t size, const Endpoint &from,
                        std::chrono::microseconds extraDelay)
{
    if (!m_listPorts[index].socket.IsOpen())
        return;
    SimulatedCamera &camera = m_pFarm->At(index);
    const TimePoint now = std::chrono::steady_clock::now();
    std::vector<Reply> replies;
    camera.Receive(data, size, from, now, &replies);
    for (Reply &reply : replies) {
        reply.delay += extraDelay;
        if (reply.delay.count() <= 0 && reply.repeat.count() == 0)
            Send(index, from, reply);
        else
            m_queue.push({now + reply.delay, index, from, std::move(reply), camera.Generation(), ++m_nOrder});
    }
    if (m_listPorts[index].address != camera.Device().IpAddress() || !camera.IsPortOpen())
        SynchronisePorts();
}

void FarmServer::Send(std::size_t index, const Endpoint &to, const Reply &reply)
{
    const FileDescriptor &socket = reply.foreignSource ? m_stranger : m_listPorts[index].socket;
    const sockaddr_in name = SocketAddress(to.address, to.port);
    // A full or closed receiver loses the datagram, as on any network.
    (void)::sendto(socket.Get(), reply.bytes.data(), reply.bytes.size(), MSG_DONTWAIT,
                   reinterpret_cast<const sockaddr *>(&name), sizeof name);
}

void FarmServer::SendDue(TimePoint now)
{
    while (!m_queue.empty() && m_queue.top().due <= now) {
        Delayed next = m_queue.top();
        m_queue.pop();
        const SimulatedCamera &camera = m_pFarm->At(next.camera);
        if (camera.IsSilent(now))
            continue;
        Send(next.camera, next.to, next.reply);
        if (next.reply.repeat.count() > 0 && next.generation == camera.Generation()) {
            next.due = now + next.reply.repeat;
            m_queue.push(std::move(next));
        }
    }
}

} // namespace KxFarm
