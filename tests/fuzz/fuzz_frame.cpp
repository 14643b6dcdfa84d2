// Both ends of the socket between the library and a camera's helper process: neither may trust the other.
#include <algorithm>
#include <cstring>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

#include "ipc/frame.h"
#include "ipc/framesocket.h"

#include "check.h"

using namespace kxcc;

namespace {

using Bytes = std::vector<uint8_t>;

/// Larger claims are allowed, but only cost the time of filling the memory.
constexpr uint32_t kLargestBlobToReceive = 64 << 10;

std::optional<FrameHead> HeadOf(const Bytes &bytes)
{
    std::array<uint8_t, kFrameHeadSize> head{};
    if (bytes.size() < head.size())
        return std::nullopt;
    std::copy_n(bytes.begin(), head.size(), head.begin());
    return DecodeHead(head);
}

Bytes BodyOf(const Bytes &bytes, const FrameHead &head)
{
    const Bytes::const_iterator begin = bytes.begin() + kFrameHeadSize;
    return Bytes(begin, begin + std::min<ptrdiff_t>(head.nBody, bytes.end() - begin));
}

/// What was decoded encodes to the bytes it came from: there is one form of every frame.
void CheckBody(const Bytes &body)
{
    if (const auto request = DecodeRequest(body)) {
        FUZZ_CHECK(request->strName.size() < body.size());
        const Bytes bytes = EncodeRequest(*request);
        FUZZ_CHECK(Bytes(bytes.begin() + kFrameHeadSize, bytes.end()) == body);
    }
    if (const auto reply = DecodeReply(body)) {
        const Bytes bytes = EncodeReply(*reply);
        FUZZ_CHECK(Bytes(bytes.begin() + kFrameHeadSize, bytes.end()) == body);
    }
}

/// A frame of ours with fields from the input arrives as it was.
void CheckRoundTrip(const Bytes &input)
{
    Request request;
    std::memcpy(&request.nNumber, input.data(), std::min(input.size(), sizeof request.nNumber));
    request.nSerial = static_cast<uint32_t>(request.nNumber);
    request.operation = static_cast<Operation>(1 + input.size() % 13);
    request.strName.assign(input.begin(), input.end());
    request.blob = input;
    const Bytes bytes = EncodeRequest(request);
    const auto head = HeadOf(bytes);
    FUZZ_CHECK(head && bytes.size() == kFrameHeadSize + head->nBody + head->nBlob);
    FUZZ_CHECK(Bytes(bytes.end() - head->nBlob, bytes.end()) == input);
    const auto decoded = DecodeRequest(BodyOf(bytes, *head));
    FUZZ_CHECK(decoded && decoded->nSerial == request.nSerial && decoded->nNumber == request.nNumber);
    FUZZ_CHECK(decoded->operation == request.operation && decoded->strName == request.strName);
}

bool ClaimsTooMuch(const Bytes &bytes)
{
    for (size_t nPos = 0; nPos + kFrameHeadSize <= bytes.size();) {
        const auto head = HeadOf(Bytes(bytes.begin() + static_cast<ptrdiff_t>(nPos), bytes.end()));
        if (!head)
            return false;
        if (head->nBlob > kLargestBlobToReceive)
            return true;
        nPos += kFrameHeadSize + size_t{head->nBody} + head->nBlob;
    }
    return false;
}

/// The helper's end reads whole frames, and ends at the first that is none and where the bytes end.
void CheckReceive(const Bytes &bytes)
{
    int sockets[2];
    FUZZ_CHECK(socketpair(AF_UNIX, SOCK_STREAM, 0, sockets) == 0);
    const ssize_t nSent = send(sockets[0], bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    close(sockets[0]);
    FrameSocket socket(sockets[1]);
    size_t nTaken = 0;
    while (nSent >= 0) {
        const auto request = socket.Receive();
        if (!request)
            break;
        const Bytes frame = EncodeRequest(*request);
        FUZZ_CHECK(nTaken + frame.size() <= static_cast<size_t>(nSent));
        FUZZ_CHECK(std::equal(frame.begin(), frame.end(), bytes.begin() + static_cast<ptrdiff_t>(nTaken)));
        nTaken += frame.size();
    }
    close(sockets[1]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    if (nSize == 0 || nSize > kMaxBody / 2)
        return 0;
    const Bytes bytes(pData, pData + nSize);
    if (const auto head = HeadOf(bytes)) {
        FUZZ_CHECK(head->nBody > 0 && head->nBody <= kMaxBody && head->nBlob <= kMaxBlob);
        CheckBody(BodyOf(bytes, *head));
    }
    CheckBody(bytes);
    CheckRoundTrip(bytes);
    if (!ClaimsTooMuch(bytes))
        CheckReceive(bytes);
    return 0;
}
