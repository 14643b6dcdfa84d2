#include "server/controlsocket.h"

#include <QFile>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace KxFarm {

namespace {

constexpr int kMaxLine = 64 * 1024;

bool SomebodyListens(const sockaddr_un &name)
{
    const FileDescriptor probe(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return ::connect(probe.Get(), reinterpret_cast<const sockaddr *>(&name), sizeof name) == 0;
}

bool IsSocket(const char *path)
{
    struct stat status = {};
    return ::lstat(path, &status) == 0 && S_ISSOCK(status.st_mode);
}

bool SendAll(int socket, const QByteArray &bytes)
{
    int done = 0;
    while (done < bytes.size()) {
        const ssize_t sent =
            ::send(socket, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done),
                   MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent <= 0)
            return false; // a client that does not take its answers is no client, and no reason to wait
        done += static_cast<int>(sent);
    }
    return true;
}

} // namespace

ControlSocket::~ControlSocket()
{
    if (m_listener.IsOpen())
        ::unlink(m_path.constData());
}

bool ControlSocket::Listen(const QString &path, QString *pError)
{
    sockaddr_un name = {};
    name.sun_family = AF_UNIX;
    m_path = QFile::encodeName(path);
    if (m_path.size() >= static_cast<int>(sizeof name.sun_path)) {
        *pError = QStringLiteral("%1: the path is too long for a socket").arg(path);
        return false;
    }
    std::memcpy(name.sun_path, m_path.constData(), static_cast<std::size_t>(m_path.size()));
    if (IsSocket(m_path.constData()) && !SomebodyListens(name))
        ::unlink(m_path.constData());
    FileDescriptor listener(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (::bind(listener.Get(), reinterpret_cast<const sockaddr *>(&name), sizeof name) != 0 ||
        ::listen(listener.Get(), 16) != 0) {
        *pError = QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    }
    m_listener = std::move(listener);
    return true;
}

int ControlSocket::Accept()
{
    FileDescriptor socket(::accept4(m_listener.Get(), nullptr, nullptr, SOCK_CLOEXEC));
    const int descriptor = socket.Get();
    if (descriptor >= 0)
        m_mapClients[descriptor].socket = std::move(socket);
    return descriptor;
}

bool ControlSocket::Serve(int client, const Execute &execute)
{
    Client &state = m_mapClients[client];
    char buffer[4096];
    const ssize_t count = ::recv(client, buffer, sizeof buffer, MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return true;
    bool alive = count > 0;
    if (alive)
        state.input.append(buffer, static_cast<int>(count));
    for (int end = state.input.indexOf('\n'); alive && end >= 0; end = state.input.indexOf('\n')) {
        alive = SendAll(client, execute(state.input.left(end)) + '\n');
        state.input.remove(0, end + 1);
    }
    alive = alive && state.input.size() <= kMaxLine;
    if (!alive)
        m_mapClients.erase(client);
    return alive;
}

} // namespace KxFarm
