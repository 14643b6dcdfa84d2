/// A helper program that keeps to the protocol of sessions but for what KX_SCRIPT tells it:
///
///  wrong-serial       replies to every feature under the serial number of another request
///  noisy              writes some megabytes to its standard error before each reply
///  last-words         says why, and ends with an abort, when a feature is asked for
///  exit-code          ends with exit code 7 when a feature is asked for
///  slow MS            takes that long for each feature
///  hang-up MS         closes the socket when a feature is asked for, and ends so much later with code 7
///  work MS            computes that long, on a processor, for each feature
///  stubborn           does not end when the library hangs up
///  surroundings       a feature's value is 0 unless it was started as a helper is to be
///  too-small SIZE     says that a description has this size, and that the buffer is too small for it
///  progress MS COUNT  tells of progress so often, at that distance, before each reply to a save
///
/// An opening always succeeds, and a feature's value is 42.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "KxCameraControl/kxerrors.h"
#include "ipc/frame.h"

using namespace kxcc;

namespace {

constexpr int kSocket = 3;

std::int64_t nValue = 42;
bool bStubborn = false;

struct Script
{
    char szWhat[32] = "";
    unsigned int nMs = 0;
    unsigned int nCount = 0;

    bool Is(const char *szName) const { return std::strcmp(szWhat, szName) == 0; }
};

Script ReadScript()
{
    Script script;
    const char *szScript = getenv("KX_SCRIPT");
    if (szScript != nullptr)
        sscanf(szScript, "%31s %u %u", script.szWhat, &script.nMs, &script.nCount);
    return script;
}

void Receive(void *pBuffer, std::size_t nSize)
{
    if (nSize == 0 || recv(kSocket, pBuffer, nSize, MSG_WAITALL) == static_cast<ssize_t>(nSize))
        return;
    if (bStubborn)
        sleep(300);
    _exit(0);
}

/// Ends early, and with it this process, when the library hangs up.
void Pause(unsigned int nMs)
{
    pollfd descriptor{kSocket, POLLRDHUP, 0};
    if (poll(&descriptor, 1, static_cast<int>(nMs)) > 0)
        _exit(0);
}

Request ReceiveRequest()
{
    std::array<std::uint8_t, kFrameHeadSize> bytes{};
    Receive(bytes.data(), bytes.size());
    const FrameHead head = DecodeHead(bytes).value();
    std::vector<std::uint8_t> body(head.nBody);
    Receive(body.data(), body.size());
    std::vector<std::uint8_t> blob(head.nBlob);
    Receive(blob.data(), blob.size());
    return DecodeRequest(body).value();
}

void Send(std::uint32_t nSerial, bool bProgress, int nCode = KX_CC_OK)
{
    Reply reply;
    reply.nCode = nCode;
    reply.nSerial = nSerial;
    reply.bProgress = bProgress;
    reply.nNumber = nValue;
    const std::vector<std::uint8_t> bytes = EncodeReply(reply);
    if (send(kSocket, bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0)
        _exit(0);
}

bool IsNull(int nDescriptor)
{
    struct stat status
    {
    };
    struct stat null
    {
    };
    return fstat(nDescriptor, &status) == 0 && stat("/dev/null", &null) == 0 &&
           status.st_rdev == null.st_rdev;
}

/// Standard streams, no descriptor but the socket, default signals, a process group of its own.
bool IsStartedWell()
{
    sigset_t blocked;
    sigprocmask(SIG_BLOCK, nullptr, &blocked);
    struct sigaction action
    {
    };
    sigaction(SIGTERM, nullptr, &action);
    bool bClosed = true;
    for (int n = kSocket + 1; n < 256; ++n)
        bClosed = bClosed && fcntl(n, F_GETFD) < 0;
    return IsNull(0) && IsNull(1) && !IsNull(2) && bClosed && sigismember(&blocked, SIGTERM) == 0 &&
           action.sa_handler == SIG_DFL && getpgrp() == getpid();
}

void Play(const Script &script, const Request &request)
{
    if (script.Is("noisy")) {
        const std::string strLine(99, 'n');
        for (int i = 0; i < 30000; ++i)
            fprintf(stderr, "%s\n", strLine.c_str());
    }
    if (script.Is("last-words")) {
        fprintf(stderr, "so it ends");
        abort();
    }
    if (script.Is("exit-code"))
        _exit(7);
    if (script.Is("hang-up")) {
        close(kSocket);
        usleep(script.nMs * 1000);
        _exit(7);
    }
    if (script.Is("work")) {
        const auto nEnd = clock() + static_cast<clock_t>(script.nMs) * (CLOCKS_PER_SEC / 1000);
        while (clock() < nEnd) {
        }
    }
    if (script.Is("slow"))
        Pause(script.nMs);
    for (unsigned int i = 0; script.Is("progress") && i < script.nCount; ++i) {
        Pause(script.nMs);
        Send(request.nSerial, true);
    }
}

} // namespace

int main()
{
    const Script script = ReadScript();
    if (script.Is("surroundings"))
        nValue = IsStartedWell() ? 42 : 0;
    if (script.Is("stubborn"))
        bStubborn = true;
    if (script.Is("too-small"))
        nValue = script.nMs;
    Send(kReadySerial, false);
    for (;;) {
        const Request request = ReceiveRequest();
        if (request.operation != Operation::Open)
            Play(script, request);
        const bool bWrong = script.Is("wrong-serial") && request.operation != Operation::Open;
        const bool bTooSmall = script.Is("too-small") && request.operation == Operation::Description;
        Send(request.nSerial + (bWrong ? 1 : 0), false, bTooSmall ? KX_CC_E_BUFFER_TOO_SMALL : KX_CC_OK);
    }
}
