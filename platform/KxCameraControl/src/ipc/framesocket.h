#ifndef KXCAMERACONTROL_IPC_FRAMESOCKET_H
#define KXCAMERACONTROL_IPC_FRAMESOCKET_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "ipc/frame.h"

namespace kxcc {

/// The helper's end of the socket. Blocks; one thread at a time.
class FrameSocket
{
public:
    explicit FrameSocket(int nSocket)
        : m_nSocket(nSocket)
    {
    }

    /// Nothing when the library hung up or sent what is no frame.
    std::optional<Request> Receive();
    /// @return false when the library hung up
    bool Send(const Reply &reply);

    /// Tells the library that the camera is alive, at most four times a second.
    void SendProgress(std::uint32_t nSerial);

private:
    bool ReadExactly(void *pBuffer, std::size_t nSize) const;

    const int m_nSocket;
    std::chrono::steady_clock::time_point m_lastProgress;
};

} // namespace kxcc

#endif
