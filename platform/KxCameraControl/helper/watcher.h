#ifndef KXCAMERACONTROL_HELPER_WATCHER_H
#define KXCAMERACONTROL_HELPER_WATCHER_H

#include <mutex>
#include <thread>

#include "helper/camera.h"

namespace kxcc {

/// The helper's second thread: keeps the camera's control while nothing is asked, and ends the process when
/// the library hangs up.
///
/// The end of the library's process shows as a hang-up, too, whatever killed it. A signal on the parent's
/// death would not do: it comes when the thread that started the helper ends.
class Watcher
{
public:
    /// Starts the thread, which lives as long as the process.
    explicit Watcher(int nSocket);

    /// The camera to care for, or null. Waits for the care that is under way.
    void SetCamera(Camera *pCamera);

private:
    [[noreturn]] void Run();
    [[noreturn]] void EndProcess();

    const int m_nSocket;
    std::mutex m_mutex; ///< protects m_pCamera and what is done with it here
    Camera *m_pCamera = nullptr;
    std::thread m_thread;
};

} // namespace kxcc

#endif
