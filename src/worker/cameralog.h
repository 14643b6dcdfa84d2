#ifndef WORKER_CAMERALOG_H
#define WORKER_CAMERALOG_H

/// Hands what the camera SDK tells on to Qt's message log, category "camera", each message with its camera's
/// name: "Model Serial (192.168.0.7): text".
///
/// Call it once, at the start of the process.
///
/// @param bAlsoOnStderr  the same lines on the standard error, for a person who asked for them
void FeedCameraLog(bool bAlsoOnStderr);

#endif
