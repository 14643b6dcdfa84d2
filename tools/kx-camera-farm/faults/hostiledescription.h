#ifndef KXCAMERAFARM_HOSTILEDESCRIPTION_H
#define KXCAMERAFARM_HOSTILEDESCRIPTION_H

#include "device/cameramodel.h"

namespace KxFarm {

/// The names that MakeHostileDescription() knows.
QList<QByteArray> HostileDescriptionNames();

/// The description of `model` damaged in the way that `name` says; null for an unknown name.
std::shared_ptr<const PublishedDescription> MakeHostileDescription(const QByteArray &name,
                                                                   const CameraModel &model);

} // namespace KxFarm

#endif
