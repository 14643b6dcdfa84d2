#include "wire/gvcp.h"

#include <cstring>

namespace KxFarm::Gvcp {

Parsed ParseRequest(const std::uint8_t *data, std::size_t size, Request *pRequest)
{
    if (size < kHeaderSize || data[0] != kKey)
        return Parsed::Ignore;
    pRequest->flags = data[1];
    pRequest->command = LoadBe16(data + 2);
    pRequest->size = LoadBe16(data + 4);
    pRequest->id = LoadBe16(data + 6);
    pRequest->payload = data + kHeaderSize;
    if (pRequest->id == 0)
        return Parsed::Ignore;
    if (pRequest->size != size - kHeaderSize || pRequest->size > kMaxPayload) {
        pRequest->size = 0;
        return Parsed::BadHeader;
    }
    return Parsed::Ok;
}

Bytes MakeAck(std::uint16_t status, std::uint16_t command, std::uint16_t id, const std::uint8_t *payload,
              std::size_t size)
{
    Bytes ack(kHeaderSize + size);
    StoreBe16(ack.data(), status);
    StoreBe16(ack.data() + 2, command);
    StoreBe16(ack.data() + 4, static_cast<std::uint16_t>(size));
    StoreBe16(ack.data() + 6, id);
    if (size != 0)
        std::memcpy(ack.data() + kHeaderSize, payload, size);
    return ack;
}

Bytes MakeErrorAck(std::uint16_t status, const Request &request)
{
    const auto command = static_cast<std::uint16_t>(request.command + 1);
    // The writes say how far they came: reserved word, then the index.
    const std::uint8_t nothingWritten[4] = {};
    if (request.command == WRITEREG_CMD || request.command == WRITEMEM_CMD)
        return MakeAck(status, command, request.id, nothingWritten, sizeof nothingWritten);
    return MakeAck(status, command, request.id);
}

Bytes MakePendingAck(std::uint16_t id, std::uint16_t timeToCompletionMs)
{
    std::uint8_t payload[4] = {};
    StoreBe16(payload + 2, timeToCompletionMs);
    return MakeAck(STATUS_SUCCESS, PENDING_ACK, id, payload, sizeof payload);
}

} // namespace KxFarm::Gvcp
