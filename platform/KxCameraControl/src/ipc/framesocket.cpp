#include "ipc/framesocket.h"

#include <cerrno>

#include <sys/socket.h>

namespace kxcc {

std::optional<Request> FrameSocket::Receive()
{
    std::array<std::uint8_t, kFrameHeadSize> bytes{};
    if (!ReadExactly(bytes.data(), bytes.size()))
        return std::nullopt;
    const std::optional<FrameHead> head = DecodeHead(bytes);
    if (!head)
        return std::nullopt;
    std::vector<std::uint8_t> body(head->nBody);
    if (!ReadExactly(body.data(), body.size()))
        return std::nullopt;
    std::optional<Request> request = DecodeRequest(body);
    if (!request)
        return std::nullopt;
    request->blob.resize(head->nBlob);
    if (!ReadExactly(request->blob.data(), request->blob.size()))
        return std::nullopt;
    return request;
}

bool FrameSocket::Send(const Reply &reply)
{
    const std::vector<std::uint8_t> bytes = EncodeReply(reply);
    std::size_t nSent = 0;
    while (nSent < bytes.size()) {
        const ssize_t n = send(m_nSocket, bytes.data() + nSent, bytes.size() - nSent, MSG_NOSIGNAL);
        if (n > 0)
            nSent += static_cast<std::size_t>(n);
        else if (errno != EINTR)
            return false;
    }
    return true;
}

void FrameSocket::SendProgress(std::uint32_t nSerial)
{
    const auto now = std::chrono::steady_clock::now();
    if (now - m_lastProgress < std::chrono::milliseconds(250))
        return;
    m_lastProgress = now;
    Reply reply;
    reply.nSerial = nSerial;
    reply.bProgress = true;
    Send(reply);
}

bool FrameSocket::ReadExactly(void *pBuffer, std::size_t nSize) const
{
    auto *pBytes = static_cast<std::uint8_t *>(pBuffer);
    std::size_t nDone = 0;
    while (nDone < nSize) {
        const ssize_t n = recv(m_nSocket, pBytes + nDone, nSize - nDone, 0);
        if (n > 0)
            nDone += static_cast<std::size_t>(n);
        else if (n == 0 || errno != EINTR)
            return false;
    }
    return true;
}

} // namespace kxcc
