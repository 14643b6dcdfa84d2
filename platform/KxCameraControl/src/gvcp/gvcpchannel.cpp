#include "gvcp/gvcpchannel.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kxcc {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// A command is repeated for 2.5 s, as Aravis does: that has proven itself against cameras that are slow after
// a change of mode, and stays below the deadline of a call.
constexpr milliseconds kGiveUp(2500);
// A write is repeated rarely, for a camera may carry it out twice. A read does no harm: it is repeated as
// soon as an answer is overdue, first after a multiple of the time that the last answer took, then at twice
// the distance up to a limit. So a lost datagram costs little, and a slow camera is not flooded.
constexpr milliseconds kWriteRepeat(500);
constexpr milliseconds kFirstReadRepeat(60);
constexpr milliseconds kLastReadRepeat(240);
constexpr int kOverdue = 4;
// However often a camera asks for more time, a command ends after this one: a call waits for 3 s only.
constexpr milliseconds kLongestCommand(5000);
// Datagrams that are no answer, until the command is sent again. A queue holds some hundred.
constexpr int kMostStrangers = 1000;
// A busy camera is asked again up to so often, at this distance.
constexpr int kBusyPauses = 10;
constexpr useconds_t kBusyPauseUs = 50000;

sockaddr_in Address(std::uint32_t nIp, std::uint16_t nPort)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(nIp);
    address.sin_port = htons(nPort);
    return address;
}

} // namespace

GvcpChannel::~GvcpChannel()
{
    if (m_nSocket >= 0)
        close(m_nSocket);
}

bool GvcpChannel::Open(std::uint32_t nInterfaceIp, std::uint32_t nCameraIp)
{
    m_nSocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (m_nSocket < 0)
        return false;
    const sockaddr_in local = Address(nInterfaceIp, 0);
    const sockaddr_in camera = Address(nCameraIp, kGvcpPort);
    // Connected, so that answers come from the camera's own address and port only.
    return bind(m_nSocket, reinterpret_cast<const sockaddr *>(&local), sizeof local) == 0 &&
           connect(m_nSocket, reinterpret_cast<const sockaddr *>(&camera), sizeof camera) == 0;
}

void GvcpChannel::SetProgress(std::function<void()> progress)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_progress = std::move(progress);
    m_progressThread = std::this_thread::get_id();
}

GvcpChannel::Result GvcpChannel::Command(GvcpCommand command, std::vector<std::uint8_t> bytes, GvcpAck &ack)
{
    for (int nPauses = 0;; ++nPauses) {
        if (m_bDead || !Exchange(command, bytes, ack)) {
            m_bDead = true;
            return Result::Timeout;
        }
        if (m_progress && std::this_thread::get_id() == m_progressThread)
            m_progress();
        if (ack.nStatus != kGvcpStatusBusy || m_bBusy || nPauses == kBusyPauses)
            return Judge(ack);
        usleep(kBusyPauseUs);
    }
}

bool GvcpChannel::Exchange(GvcpCommand command, std::vector<std::uint8_t> &bytes, GvcpAck &ack)
{
    m_nRequestId = m_nRequestId == UINT16_MAX ? 1 : static_cast<std::uint16_t>(m_nRequestId + 1);
    bytes[6] = static_cast<std::uint8_t>(m_nRequestId >> 8);
    bytes[7] = static_cast<std::uint8_t>(m_nRequestId);
    const bool bRead = command == GvcpCommand::ReadRegister || command == GvcpCommand::ReadMemory;
    milliseconds wait = bRead ? FirstReadRepeat() : kWriteRepeat;
    const milliseconds longestWait = std::max(wait, kLastReadRepeat);
    m_commandEnd = steady_clock::now() + kLongestCommand;
    for (milliseconds spent(0); spent < kGiveUp; spent += wait, wait = std::min(wait * 2, longestWait)) {
        // A send may give the error of an earlier one (port unreachable); the answer tells.
        if (send(m_nSocket, bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0)
            usleep(20000);
        if (Await(command, wait, ack))
            return true;
    }
    return false;
}

GvcpChannel::Result GvcpChannel::Judge(const GvcpAck &ack)
{
    // One that stays busy is not waited for again with every further command.
    m_bBusy = ack.nStatus == kGvcpStatusBusy;
    if (ack.nStatus == 0)
        return Result::Ok;
    m_nLastStatus = ack.nStatus;
    if (ack.nStatus == kGvcpStatusAccessDenied)
        ++m_nDenied;
    return Result::Status;
}

milliseconds GvcpChannel::FirstReadRepeat() const
{
    return std::clamp(m_answerTime * kOverdue, kFirstReadRepeat, kWriteRepeat);
}

bool GvcpChannel::Await(GvcpCommand command, milliseconds wait, GvcpAck &ack)
{
    const auto begin = steady_clock::now();
    auto end = begin + wait;
    for (int nStrangers = 0; nStrangers < kMostStrangers; ++nStrangers) {
        const auto left = std::chrono::duration_cast<milliseconds>(end - steady_clock::now());
        pollfd descriptor{m_nSocket, POLLIN, 0};
        const int nReady = poll(&descriptor, 1, static_cast<int>(std::max(milliseconds(0), left).count()));
        if (nReady < 0 && errno == EINTR)
            continue;
        if (nReady <= 0)
            return false;
        const ssize_t nSize = recv(m_nSocket, m_datagram.data(), m_datagram.size(), MSG_DONTWAIT);
        if (nSize < 0) {
            if (errno != ECONNREFUSED)
                continue;
            usleep(20000); // nobody listens: no use in waiting out the attempt
            return false;
        }
        const std::optional<GvcpAck> parsed = ParseAck(m_datagram.data(), static_cast<std::size_t>(nSize));
        if (!parsed || parsed->nRequestId != m_nRequestId)
            continue;
        if (parsed->nCommand == AckOf(command)) {
            ack = *parsed;
            m_answerTime = std::chrono::duration_cast<milliseconds>(steady_clock::now() - begin);
            return true;
        }
        if (parsed->nCommand == kGvcpPendingAck) {
            const milliseconds more(ParsePendingAck(*parsed).value_or(0));
            end = std::min(steady_clock::now() + kWriteRepeat + more, m_commandEnd);
        }
    }
    return false;
}

GvcpChannel::Result GvcpChannel::ReadRegister(std::uint32_t nAddress, std::uint32_t &nValue)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    GvcpAck ack;
    const Result result = Command(GvcpCommand::ReadRegister, BuildReadRegister(0, nAddress), ack);
    if (result != Result::Ok)
        return result;
    const std::optional<std::uint32_t> value = ParseRegisterAck(ack);
    nValue = value.value_or(0);
    return value ? Result::Ok : Result::Malformed;
}

GvcpChannel::Result GvcpChannel::WriteRegister(std::uint32_t nAddress, std::uint32_t nValue)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    GvcpAck ack;
    return Command(GvcpCommand::WriteRegister, BuildWriteRegister(0, nAddress, nValue), ack);
}

GvcpChannel::Result GvcpChannel::ReadMemory(std::uint32_t nAddress, void *pBuffer, std::size_t nSize)
{
    auto *pBytes = static_cast<std::uint8_t *>(pBuffer);
    while (nSize > 0) {
        const std::size_t nLead = nAddress % 4;
        const std::size_t nPart = std::min(nSize, kGvcpBlockSize - nLead);
        const std::size_t nAligned = (nLead + nPart + 3) / 4 * 4;
        std::array<std::uint8_t, kGvcpBlockSize> block{};
        const Result result = ReadBlock(nAddress - static_cast<std::uint32_t>(nLead), block.data(),
                                        static_cast<std::uint16_t>(nAligned));
        if (result != Result::Ok)
            return result;
        std::memcpy(pBytes, block.data() + nLead, nPart);
        pBytes += nPart;
        nAddress += static_cast<std::uint32_t>(nPart);
        nSize -= nPart;
    }
    return Result::Ok;
}

GvcpChannel::Result GvcpChannel::ReadBlock(std::uint32_t nAddress, std::uint8_t *pBuffer, std::uint16_t nSize)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    GvcpAck ack;
    const Result result = Command(GvcpCommand::ReadMemory, BuildReadMemory(0, nAddress, nSize), ack);
    if (result != Result::Ok)
        return result;
    const std::uint8_t *pData = ParseMemoryAck(ack, nAddress, nSize);
    if (pData == nullptr)
        return Result::Malformed;
    std::memcpy(pBuffer, pData, nSize);
    return Result::Ok;
}

GvcpChannel::Result GvcpChannel::WriteMemory(std::uint32_t nAddress, const void *pData, std::size_t nSize)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto *pBytes = static_cast<const std::uint8_t *>(pData);
    for (std::size_t nDone = 0; nDone < nSize; nDone += kGvcpBlockSize) {
        const std::size_t nPart = std::min(nSize - nDone, kGvcpBlockSize);
        GvcpAck ack;
        const Result result = Command(
            GvcpCommand::WriteMemory,
            BuildWriteMemory(0, nAddress + static_cast<std::uint32_t>(nDone), pBytes + nDone, nPart), ack);
        if (result != Result::Ok)
            return result;
    }
    return Result::Ok;
}

} // namespace kxcc
