#ifndef KXFEATURES_CAMERAFINDER_H
#define KXFEATURES_CAMERAFINDER_H

#include <QStringList>
#include <QVector>

#include "camera.h"
#include "camerachoice.h"

/// Cameras of a search, in the SDK's order: by transport, then by address.
struct FoundCameras
{
    QVector<Camera> cameras;
    QStringList missing; ///< what was named but not found: "serial number 4711", "address 10.0.0.7"
};

/// Every camera that can be found within the time. Blocks for about that time.
QVector<Camera> FindAllCameras(int searchMs);

/// The cameras that the choice names. Cameras named by address alone are asked directly: that ends with
/// their answers.
FoundCameras FindChosenCameras(const CameraChoice &choice, int searchMs);

/// The choice applied to what is there; apart from the search so that it can be tested without one.
FoundCameras SelectCameras(const QVector<Camera> &found, const CameraChoice &choice);

#endif
