#ifndef KXCAMERACONTROL_GVCP_GVCPCHANNEL_H
#define KXCAMERACONTROL_GVCP_GVCPCHANNEL_H

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "gvcp/gvcpcodec.h"

namespace kxcc {

/// The control channel to one GigE Vision camera: one command at a time, repeated until acknowledged.
///
/// Thread-safe; a second command waits for the first. A camera that leaves a command without an answer is
/// taken for dead: from then on every command fails at once, so a dead camera costs one time-out only. One
/// that answers that it is busy is asked again for a while; one that asks for more time gets 5 s in all.
class GvcpChannel
{
public:
    enum class Result
    {
        Ok,
        Timeout,  ///< no answer, now or before
        Status,   ///< the camera answered with an error status, see LastStatus()
        Malformed ///< the answer is too short or belongs to another address
    };

    GvcpChannel() = default;
    GvcpChannel(const GvcpChannel &) = delete;
    GvcpChannel &operator=(const GvcpChannel &) = delete;
    ~GvcpChannel();

    /// @param nInterfaceIp  address of this machine to send from, host order; 0 leaves it to the system
    /// @return false when there is no such address or no socket
    bool Open(std::uint32_t nInterfaceIp, std::uint32_t nCameraIp);

    Result ReadRegister(std::uint32_t nAddress, std::uint32_t &nValue);
    Result WriteRegister(std::uint32_t nAddress, std::uint32_t nValue);
    /// Any address and size; commands are aligned to 4 bytes and split into blocks as the standard asks.
    Result ReadMemory(std::uint32_t nAddress, void *pBuffer, std::size_t nSize);
    Result WriteMemory(std::uint32_t nAddress, const void *pData, std::size_t nSize);

    /// Status of the last answer that carried an error.
    std::uint16_t LastStatus() const { return m_nLastStatus; }
    /// How often the camera has refused an access for want of control (ACCESS_DENIED).
    unsigned int DeniedCount() const { return m_nDenied; }
    bool IsDead() const { return m_bDead; }

    /// Called after each answered command of the thread that calls this, in it; empty for no more.
    void SetProgress(std::function<void()> progress);

private:
    /// Ok and Status: the acknowledge is in m_datagram.
    Result Command(GvcpCommand command, std::vector<std::uint8_t> bytes, GvcpAck &ack);
    /// One command under one id; false when it stays without an answer.
    bool Exchange(GvcpCommand command, std::vector<std::uint8_t> &bytes, GvcpAck &ack);
    bool Await(GvcpCommand command, std::chrono::milliseconds wait, GvcpAck &ack);
    Result Judge(const GvcpAck &ack);
    std::chrono::milliseconds FirstReadRepeat() const;
    Result ReadBlock(std::uint32_t nAddress, std::uint8_t *pBuffer, std::uint16_t nSize);

    std::mutex m_mutex;
    int m_nSocket = -1;
    std::uint16_t m_nRequestId = 0;
    bool m_bBusy = false;                               // it was at the end of the last command
    std::chrono::steady_clock::time_point m_commandEnd; // no request for more time reaches beyond
    std::chrono::milliseconds m_answerTime{0};          // of the last answer, since the command was last sent
    std::atomic<std::uint16_t> m_nLastStatus{0};
    std::atomic<unsigned int> m_nDenied{0};
    std::atomic_bool m_bDead{false};
    std::function<void()> m_progress;
    std::thread::id m_progressThread;
    std::array<std::uint8_t, kGvcpDatagramSize> m_datagram{};
};

} // namespace kxcc

#endif
