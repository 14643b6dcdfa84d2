#ifndef TESTS_SUPPORT_SCRIPTEDSDK_H
#define TESTS_SUPPORT_SCRIPTEDSDK_H

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <KxCameraControl/kxdeviceinfo.h>

/// A camera SDK that records its calls and does what a test told it. Linked into a test program, its
/// functions stand in for those of the shared library. Callable from any thread.
namespace ScriptedSdk {

/// Forgets calls, values, refusals and the description. Call it before every test case.
void Reset();

/// The calls so far, each with what it was given: "KX_CC_OpenDevice(1, 0)", "KX_CC_SetIntValue(Width, 640)".
/// The handle is left out; a call on a handle that is not alive begins with "BAD HANDLE ".
QStringList Calls();

/// The calls without those that open, describe and close the camera.
QStringList FeatureCalls();

/// Handles that were made and not destroyed yet.
int LivingHandles();

/// The record that the last KX_CC_CreateHandle() was given.
KX_CC_DEVICE_INFO LastDeviceInfo();

/// Makes a function fail with this code from now on; with a feature name, only for that feature.
void Refuse(const QString &strFunction, int nCode, const QString &strFeature = QString());

/// Makes KX_CC_CreateHandle() hand out a handle although it fails.
void HandOutHandleOfFailedCreate();

/// Values that the camera gives. A feature without a value is unknown to it.
void SetUnsigned(const QString &strName, quint32 nValue); // integers and enumerations
void SetFloat(const QString &strName, float fValue);
void SetBool(const QString &strName, bool bValue);

/// Any feature has a value: 1, 0.5 or true.
void AnswerEverything();

/// The description; its size is reported with the NUL.
void SetDescription(const QByteArray &text);

/// Reports another size than the description's from then on.
void ReportDescriptionSize(unsigned int nSize);

/// Reports the size without the NUL and leaves no room for it.
void ReportUnterminated();

/// Lets every KX_CC_OpenDevice() wait until ReleaseOpens(), 10 s at the most.
void HoldOpens();
void ReleaseOpens();

} // namespace ScriptedSdk

#endif
