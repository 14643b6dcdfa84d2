#ifndef KXCAMERACONTROL_HELPER_CAMERA_H
#define KXCAMERACONTROL_HELPER_CAMERA_H

#include <functional>
#include <memory>
#include <string>

#include <arv.h>

#include "KxCameraControl/kxdeviceinfo.h"

namespace kxcc {

class Camera;

/// Who wants to know how an opening goes on.
struct OpeningWatch
{
    std::function<void()> progress; ///< from time to time while the description arrives
    /// Control is about to be taken: from now on the camera has to be kept alive, and released when the
    /// library goes; null: no more.
    std::function<void(Camera *)> careFor;
};

/// An open camera: its transport, its description, and the evaluator of its features.
///
/// Lives in the helper's main thread, but for KeepAlive() and Release(), which its watcher calls.
class Camera
{
public:
    virtual ~Camera() = default;

    /// Opens the camera of the record.
    ///
    /// @param camera  Out: the camera; null on failure
    /// @return KX_CC_OK or what KX_CC_OpenDevice() returns for the failure
    static int Open(const KX_CC_DEVICE_INFO &info, const OpeningWatch &watch,
                    std::unique_ptr<Camera> &camera);

    virtual ArvGc *GenICam() const = 0;
    /// The cleaned text, without a NUL.
    virtual const std::string &Description() const = 0;

    /// The code of a camera that can no longer be used, or KX_CC_OK. Costs no access unless the camera has
    /// just refused one for want of control.
    virtual int State() = 0;

    /// Keeps the control of the camera, once it has been taken, while no feature is asked for; call about
    /// once a second.
    virtual void KeepAlive() {}
    /// Gives up control, so that the camera is free at once; waits for a taking of it that is under way, and
    /// forbids a later one. May be called by both threads. Nothing else may be called afterwards.
    virtual void Release() = 0;
};

/// A description that was judged good, as evaluator; null when it is no GenICam description.
/// @param strText  cleaned and judged; must outlive the result
ArvGc *MakeGenICam(ArvDevice *pDevice, const std::string &strText);

std::unique_ptr<Camera> OpenGigeCamera(const KX_CC_DEVICE_INFO &info, const OpeningWatch &watch, int &nCode);
std::unique_ptr<Camera> OpenUsbCamera(const KX_CC_USB_INFO &info, int &nCode);

} // namespace kxcc

#endif
