#ifndef FEATUREFILE_CAMERAIDENTITY_H
#define FEATUREFILE_CAMERAIDENTITY_H

#include <QString>

#include <DevListMgr/structdeviceinfo.h>

/// What a camera is called in its enumeration record. A transport that is none of network, USB and port
/// camera has no names: every text is empty. Pure; callable from any thread.
namespace CameraIdentity {

struct Names
{
    QString strModel;
    QString strSerial;
};

/// How far a text field is read; both ways stop at the first NUL.
enum class Reading
{
    FieldWidth, ///< not beyond the field
    Terminated, ///< as a C string: the word of zeros behind a full field ends it
};

/// Model name and serial number, decoded as UTF-8: the parts of a file name.
Names FileNameParts(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, Reading reading);

/// The name that the user gave the camera; empty for port cameras, which have none.
QString UserName(const _STRUCT_DEVICE_INFO_ &stDeviceInfo);

/// The port that a port camera is reached by; empty for every other one.
QString PortId(const _STRUCT_DEVICE_INFO_ &stDeviceInfo);

/// "MODEL_SERIAL.kfb" in the directory; "_.kfb" for a transport without names.
QString FilePath(const QString &strDirectory, const Names &names);

/// Whether this transport has a model name, so that a feature file carries one.
bool HasModelName(const _STRUCT_DEVICE_INFO_ &stDeviceInfo);

/// The model name as feature files carry it: its bytes taken as Latin-1, up to the first NUL.
QString ModelNameInFile(const _STRUCT_DEVICE_INFO_ &stDeviceInfo);

} // namespace CameraIdentity

#endif
