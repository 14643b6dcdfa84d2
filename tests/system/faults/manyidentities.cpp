#include "manyidentities.h"

#include <QtEndian>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

const quint16 kPort = 3956;
const quint16 kDiscovery = 0x0002;

int Bound(quint32 address)
{
    const int handle = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(handle, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in name = {};
    name.sin_family = AF_INET;
    name.sin_port = htons(kPort);
    name.sin_addr.s_addr = htonl(address);
    if (bind(handle, reinterpret_cast<const sockaddr *>(&name), sizeof name) == 0)
        return handle;
    close(handle);
    return -1;
}

// Acknowledge of a request: status, the next command number, length, the request's id.
QByteArray Header(quint16 status, const QByteArray &request, int length)
{
    QByteArray header(8, '\0');
    qToBigEndian(status, header.data());
    qToBigEndian(static_cast<quint16>(qFromBigEndian<quint16>(request.constData() + 2) + 1),
                 header.data() + 2);
    qToBigEndian(static_cast<quint16>(length), header.data() + 4);
    return header.replace(6, 2, request.mid(6, 2));
}

} // namespace

ManyIdentities::ManyIdentities(const char *szAddress, int nIdentities)
    : m_nAddress(ntohl(inet_addr(szAddress)))
    , m_nIdentities(nIdentities)
    , m_nOwn(Bound(m_nAddress))
    , m_nSearch(Bound(0x7FFFFFFF))
    , m_bBound(m_nOwn >= 0 && m_nSearch >= 0)
    , m_thread([this] { Run(); })
{
}

ManyIdentities::~ManyIdentities()
{
    m_bEnd = true;
    m_thread.join();
    close(m_nOwn);
    close(m_nSearch);
}

void ManyIdentities::Run()
{
    while (!m_bEnd) {
        pollfd heard[] = {{m_nOwn, POLLIN, 0}, {m_nSearch, POLLIN, 0}};
        poll(heard, 2, 100);
        for (const pollfd &one : heard) {
            if ((one.revents & POLLIN) != 0)
                Answer(one.fd);
        }
    }
}

void ManyIdentities::Answer(int nSocket)
{
    sockaddr_in from = {};
    socklen_t size = sizeof from;
    QByteArray request(64, '\0');
    const ssize_t count = recvfrom(nSocket, request.data(), static_cast<size_t>(request.size()), 0,
                                   reinterpret_cast<sockaddr *>(&from), &size);
    if (count < 8)
        return;
    const auto reply = [&](const QByteArray &bytes) {
        sendto(m_nOwn, bytes.constData(), static_cast<size_t>(bytes.size()), 0,
               reinterpret_cast<const sockaddr *>(&from), size);
        usleep(100); // what the other end can hold is limited
    };
    if (qFromBigEndian<quint16>(request.constData() + 2) != kDiscovery)
        return reply(Header(0x8006, request, 0)); // access denied
    for (int number = 0; number < m_nIdentities; ++number)
        reply(Identity(request, number));
}

/// DISCOVERY_ACK of a camera with a MAC address, model and serial number of its own (GigE
/// Vision 2.0, 16.1.2).
QByteArray ManyIdentities::Identity(const QByteArray &request, int number) const
{
    QByteArray payload(248, '\0');
    payload[10] = 0x02; // locally administered
    qToBigEndian(static_cast<quint32>(number + 1), payload.data() + 12);
    qToBigEndian(m_nAddress, payload.data() + 36);
    payload.replace(104, 5, "Rogue");
    const QByteArray serial = QByteArray::number(number);
    payload.replace(216, serial.size(), serial);
    return Header(0, request, payload.size()) + payload;
}
