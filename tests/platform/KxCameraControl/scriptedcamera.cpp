#include "scriptedcamera.h"

#include <QtEndian>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kHeader = 8;

uint32_t Number(const QByteArray &bytes, int nAt)
{
    return bytes.size() >= nAt + 4 ? qFromBigEndian<uint32_t>(bytes.constData() + nAt) : 0;
}

QByteArray Ack(char cCommand, const QByteArray &request, const QByteArray &payload)
{
    QByteArray ack("\0\0\0", 3);
    ack += cCommand;
    ack += static_cast<char>(payload.size() >> 8);
    ack += static_cast<char>(payload.size() & 0xFF);
    return ack + request.mid(6, 2) + payload;
}

} // namespace

ScriptedCamera::ScriptedCamera(const char *szAddress, const QByteArray &url, const QByteArray &description)
    : m_memory{{0x200, url.leftJustified(512, '\0')}, {0x400, QByteArray(512, '\0')}, {0x100000, description}}
{
    m_nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(3956);
    inet_pton(AF_INET, szAddress, &address.sin_addr);
    m_bBound = bind(m_nSocket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    m_thread = std::thread([this] { Run(); });
}

ScriptedCamera::~ScriptedCamera()
{
    m_bEnd = true;
    m_thread.join();
    close(m_nSocket);
}

void ScriptedCamera::Run()
{
    sockaddr_in from{};
    QByteArray request;
    QByteArray lastId;
    while (!m_bEnd) {
        pollfd descriptor{m_nSocket, POLLIN, 0};
        const bool bNew = poll(&descriptor, 1, request.isEmpty() ? 100 : m_nPauseMs.load()) > 0;
        if (bNew) {
            socklen_t nFrom = sizeof from;
            request.resize(1024);
            request.resize(static_cast<int>(
                recvfrom(m_nSocket, request.data(), 1024, 0, reinterpret_cast<sockaddr *>(&from), &nFrom)));
        }
        if (request.size() < kHeader || (!bNew && !m_bPending))
            continue;
        const QByteArray id = request.mid(6, 2);
        if (m_nLateMs > 0 && id == lastId)
            continue;
        lastId = id;
        usleep(m_nLateMs * 1000);
        if (bNew)
            ++m_nCommands;
        const QByteArray answer =
            m_bPending ? Ack('\x89', request, QByteArray("\0\0\1\xF4", 4)) : Answer(request);
        sendto(m_nSocket, answer.constData(), static_cast<size_t>(answer.size()), 0,
               reinterpret_cast<const sockaddr *>(&from), sizeof from);
    }
}

void ScriptedCamera::SetMemory(uint32_t nAddress, const QByteArray &bytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_memory[nAddress] = bytes;
}

uint32_t ScriptedCamera::Register(uint32_t nAddress)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return Number(Read(nAddress, 4), 0);
}

void ScriptedCamera::BeforeAnswer(int nCommand, std::function<void(uint32_t)> action)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_nActionAt = nCommand;
    m_action = std::move(action);
}

QByteArray ScriptedCamera::Answer(const QByteArray &request)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QByteArray answer = CarryOut(request);
    if (m_action && m_nCommands == m_nActionAt)
        m_action(Number(Read(0xA00, 4), 0));
    return answer;
}

QByteArray ScriptedCamera::CarryOut(const QByteArray &request)
{
    const uint32_t nAddress = Number(request, kHeader);
    const bool bWrite = request[3] == '\x82' || request[3] == '\x86';
    m_nWrites += bWrite && nAddress >= 0x10000 ? 1 : 0;
    switch (request[3]) {
    case '\x80':
        return Ack('\x81', request, Read(nAddress, 4));
    case '\x82':
        m_memory[nAddress] = request.mid(kHeader + 4, 4);
        return Ack('\x83', request, QByteArray("\0\0\0\1", 4));
    case '\x84':
        if (nAddress == m_nRefused)
            return QByteArray("\x80\x03\0\x85\0\0", 6) + request.mid(6, 2);
        return Ack('\x85', request,
                   request.mid(kHeader, 4) + Read(nAddress, static_cast<int>(Number(request, 12))));
    case '\x86':
        return Ack('\x87', request, QByteArray("\0\0\0\0", 4));
    default:
        return {};
    }
}

QByteArray ScriptedCamera::Read(uint32_t nAddress, int nSize) const
{
    auto block = m_memory.upper_bound(nAddress);
    QByteArray bytes;
    if (block != m_memory.begin())
        bytes = (--block)->second.mid(static_cast<int>(nAddress - block->first), nSize);
    return bytes.leftJustified(nSize, '\0');
}
