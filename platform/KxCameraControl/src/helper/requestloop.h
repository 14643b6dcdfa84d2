#ifndef KXCAMERACONTROL_HELPER_REQUESTLOOP_H
#define KXCAMERACONTROL_HELPER_REQUESTLOOP_H

#include <memory>

#include "features/featureaccess.h"
#include "helper/camera.h"
#include "helper/watcher.h"
#include "ipc/framesocket.h"

namespace kxcc {

/// Answers the requests of the library, one after the other, in the helper's main thread.
class RequestLoop
{
public:
    explicit RequestLoop(int nSocket)
        : m_socket(nSocket)
        , m_watcher(nSocket)
    {
    }

    /// Returns when the library has hung up; the watcher then ends the process.
    void Run();

private:
    void Answer(const Request &request, Reply &reply);
    int Open(const Request &request);
    int ReadFeature(const Request &request, Reply &reply);
    int WriteFeature(const Request &request);
    int GiveDescription(const Request &request, Reply &reply);
    int SaveFeatures(const Request &request, Reply &reply);
    int LoadFeatures(const Request &request);

    FrameSocket m_socket;
    Watcher m_watcher;
    std::unique_ptr<Camera> m_camera;
    std::unique_ptr<FeatureAccess> m_access;
};

} // namespace kxcc

#endif
