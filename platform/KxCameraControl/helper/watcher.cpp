#include "helper/watcher.h"

#include <csignal>

#include <poll.h>
#include <unistd.h>

namespace kxcc {
namespace {

// A camera drops an application that was silent for 3 s (GigE Vision 2.0, register Heartbeat Timeout).
constexpr int kKeepAliveMs = 900;
// The library grants 1 s for the end of a helper; control is released within it, or not at all.
constexpr unsigned int kLastWordsSeconds = 1;

} // namespace

Watcher::Watcher(int nSocket)
    : m_nSocket(nSocket)
    , m_thread([this] { Run(); })
{
}

void Watcher::SetCamera(Camera *pCamera)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pCamera = pCamera;
}

void Watcher::Run()
{
    for (;;) {
        pollfd descriptor{m_nSocket, POLLRDHUP, 0};
        const int nReady = poll(&descriptor, 1, kKeepAliveMs);
        if (nReady > 0)
            EndProcess();
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (nReady == 0 && m_pCamera != nullptr)
            m_pCamera->KeepAlive();
    }
}

void Watcher::EndProcess()
{
    signal(SIGALRM, SIG_DFL);
    alarm(kLastWordsSeconds);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_pCamera != nullptr)
            m_pCamera->Release();
    }
    // The main thread may be deep in an access; destructors would pull the camera from under it.
    _exit(0);
}

} // namespace kxcc
