#ifndef KXCAMERACONTROL_HELPER_WATCHER_H
#define KXCAMERACONTROL_HELPER_WATCHER_H

#include <mutex>
#include <thread>

#include "helper/camera.h"

namespace kxcc {

/// The helper's other threads: one keeps the camera's control while nothing is asked, one ends the process
/// when the library hangs up. The latter waits without a word to the camera, which could hold it up; only
/// then does it release the camera, and an alarm ends the process if that takes longer than 1 s.
///
/// The end of the library's process shows as a hang-up, too, whatever killed it. A signal on the parent's
/// death would not do: it comes when the thread that started the helper ends.
class Watcher
{
public:
    /// Starts the threads, which live as long as the process.
    explicit Watcher(int nSocket);

    /// The camera to care for, or null. Waits for the care that is under way.
    void SetCamera(Camera *pCamera);

private:
    [[noreturn]] void WatchSocket();
    [[noreturn]] void KeepAlive();
    [[noreturn]] void EndProcess();

    const int m_nSocket;
    std::mutex m_mutex; ///< protects m_pCamera and what is done with it here
    Camera *m_pCamera = nullptr;
    std::thread m_socketThread;
    std::thread m_careThread;
};

} // namespace kxcc

#endif
