#ifndef TESTS_UI_SCRIPTEDCAMERAS_H
#define TESTS_UI_SCRIPTEDCAMERAS_H

#include <QByteArray>
#include <QStringList>

/// A camera SDK whose cameras do what a test told them; known by their serial numbers. Its functions are
/// those of the whole test program. Callable from any thread.
namespace ScriptedCameras {

/// All cameras answer, and none is held. Only while no worker runs.
void Reset();

/// From now on this camera cannot be opened.
void FailOpen(const QByteArray &serial);

/// Opening this camera waits until Release(), 20 s at the most.
void Hold(const QByteArray &serial);
void Release(const QByteArray &serial);

/// No camera is open before this many are being opened. Without it a fast worker may have ended before the
/// next has begun, which counts as an end of the batch of its own.
void OpenTogether(int nCameras);

/// Cameras that are open, or being opened, now.
int OpenCount();
/// Serial numbers in the order in which the cameras were opened.
QStringList Opened();

} // namespace ScriptedCameras

#endif
