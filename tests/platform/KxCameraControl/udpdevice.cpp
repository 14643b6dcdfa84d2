#include "udpdevice.h"

#include <QtEndian>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr uint16_t kPort = 3956;

/// -1 when the address cannot be had.
int BoundSocket(const char *szAddress)
{
    const int nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int nOn = 1;
    setsockopt(nSocket, SOL_SOCKET, SO_REUSEADDR, &nOn, sizeof nOn);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kPort);
    if (inet_pton(AF_INET, szAddress, &address.sin_addr) == 1 &&
        bind(nSocket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return nSocket;
    close(nSocket);
    return -1;
}

} // namespace

UdpDevice::UdpDevice(const char *szAddress, Answers answers, const char *szFrom)
    : m_answers(std::move(answers))
    , m_nEveryone(BoundSocket("127.255.255.255"))
    , m_nOwn(BoundSocket(szAddress))
    , m_nFrom(szFrom == nullptr ? m_nOwn : BoundSocket(szFrom))
{
    m_thread = std::thread([this] { Run(); });
}

UdpDevice::~UdpDevice()
{
    m_bEnd = true;
    m_thread.join();
    close(m_nEveryone);
    close(m_nOwn);
    if (m_nFrom != m_nOwn)
        close(m_nFrom);
}

void UdpDevice::Run()
{
    while (!m_bEnd) {
        pollfd descriptors[] = {{m_nEveryone, POLLIN, 0}, {m_nOwn, POLLIN, 0}};
        if (poll(descriptors, 2, 50) <= 0)
            continue;
        Serve(m_nEveryone);
        Serve(m_nOwn);
    }
}

void UdpDevice::Serve(int nSocket)
{
    sockaddr_in from{};
    socklen_t nFrom = sizeof from;
    char buffer[1024];
    const ssize_t nSize =
        recvfrom(nSocket, buffer, sizeof buffer, 0, reinterpret_cast<sockaddr *>(&from), &nFrom);
    if (nSize <= 0)
        return;
    for (const QByteArray &answer : m_answers(QByteArray(buffer, static_cast<int>(nSize)))) {
        sendto(m_nFrom, answer.constData(), static_cast<size_t>(answer.size()), 0,
               reinterpret_cast<const sockaddr *>(&from), sizeof from);
    }
}

bool IsSearch(const QByteArray &request)
{
    return request.size() >= 8 && request[0] == '\x42' && request[3] == '\x02';
}

QByteArray SearchAnswer(uint32_t nMac, uint32_t nIp, const QByteArray &model)
{
    QByteArray payload(248, '\0');
    qToBigEndian(nMac, payload.data() + 12);
    qToBigEndian(nIp, payload.data() + 36);
    payload.replace(104, model.size(), model);
    return QByteArray::fromHex("0000000300f8ffff") + payload;
}
