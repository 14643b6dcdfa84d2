#include "helper/watcher.h"

#include <chrono>
#include <csignal>

#include <poll.h>
#include <unistd.h>

namespace kxcc {
namespace {

// A camera drops an application that was silent for 3 s (GigE Vision 2.0, register Heartbeat Timeout).
constexpr std::chrono::milliseconds kKeepAlive(900);
// The library grants 1 s for the end of a helper; control is released within it, or not at all.
constexpr unsigned int kLastWordsSeconds = 1;

} // namespace

Watcher::Watcher(int nSocket)
    : m_nSocket(nSocket)
    , m_socketThread([this] { WatchSocket(); })
    , m_careThread([this] { KeepAlive(); })
{
}

void Watcher::SetCamera(Camera *pCamera)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pCamera = pCamera;
}

void Watcher::WatchSocket()
{
    for (;;) {
        pollfd descriptor{m_nSocket, POLLRDHUP, 0};
        if (poll(&descriptor, 1, -1) > 0)
            EndProcess();
    }
}

void Watcher::KeepAlive()
{
    for (;;) {
        std::this_thread::sleep_for(kKeepAlive);
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_pCamera != nullptr)
            m_pCamera->KeepAlive();
    }
}

void Watcher::EndProcess()
{
    signal(SIGALRM, SIG_DFL);
    alarm(kLastWordsSeconds); // the camera may be holding up the thread that has the mutex
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_pCamera != nullptr)
            m_pCamera->Release();
    }
    // The main thread may be deep in an access; destructors would pull the camera from under it.
    _exit(0);
}

} // namespace kxcc
