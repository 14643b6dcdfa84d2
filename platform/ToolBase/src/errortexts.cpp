#include "lumointerface.h"

#include <QCoreApplication>

#include <KxCameraControl/kxerrors.h>

#include <algorithm>
#include <iterator>

namespace {

// The tools count their own errors from here; the SDK's numbers follow unchanged, so that an error that
// an operator reads out can be found in both.
const int kSdkErrorBase = 1000;
const int kUnknownError = 1999;

struct ErrorText
{
    unsigned int sdkCode;
    const char *text;
};

const ErrorText kErrorTexts[] = {
    {KX_CC_E_HANDLE, QT_TRANSLATE_NOOP("LumoInterface", "The camera handle is not valid.")},
    {KX_CC_E_PARAMETER, QT_TRANSLATE_NOOP("LumoInterface", "A parameter is not valid.")},
    {KX_CC_E_NOT_OPEN, QT_TRANSLATE_NOOP("LumoInterface", "The camera is not open.")},
    {KX_CC_E_ALREADY_OPEN, QT_TRANSLATE_NOOP("LumoInterface", "The camera is open already.")},
    {KX_CC_E_UNSUPPORTED,
     QT_TRANSLATE_NOOP("LumoInterface", "This kind of camera or access is not supported.")},
    {KX_CC_E_BUFFER_TOO_SMALL, QT_TRANSLATE_NOOP("LumoInterface", "The buffer is too small.")},
    {KX_CC_E_RESOURCE,
     QT_TRANSLATE_NOOP("LumoInterface", "This computer is out of memory, files or processes.")},
    {KX_CC_E_SESSION, QT_TRANSLATE_NOOP("LumoInterface", "The camera session program could not be started.")},
    {KX_CC_E_UNREACHABLE, QT_TRANSLATE_NOOP("LumoInterface", "The camera does not answer.")},
    {KX_CC_E_ACCESS_DENIED, QT_TRANSLATE_NOOP("LumoInterface", "Another application controls the camera.")},
    {KX_CC_E_TIMEOUT, QT_TRANSLATE_NOOP("LumoInterface", "The camera did not answer in time.")},
    {KX_CC_E_LOST, QT_TRANSLATE_NOOP("LumoInterface", "The connection to the camera is lost.")},
    {KX_CC_E_SESSION_ENDED,
     QT_TRANSLATE_NOOP("LumoInterface", "The camera session program ended unexpectedly.")},
    {KX_CC_E_DEVICE_STATUS, QT_TRANSLATE_NOOP("LumoInterface", "The camera answered with an error.")},
    {KX_CC_E_DESCRIPTION,
     QT_TRANSLATE_NOOP("LumoInterface", "The camera's description is missing or faulty.")},
    {KX_CC_E_FEATURE_UNKNOWN, QT_TRANSLATE_NOOP("LumoInterface", "The camera has no such feature.")},
    {KX_CC_E_FEATURE_TYPE, QT_TRANSLATE_NOOP("LumoInterface", "The feature is of another type.")},
    {KX_CC_E_FEATURE_ACCESS, QT_TRANSLATE_NOOP("LumoInterface", "The feature cannot be accessed now.")},
    {KX_CC_E_FEATURE_VALUE, QT_TRANSLATE_NOOP("LumoInterface", "The value is out of range.")},
    {KX_CC_E_FEATURE_BROKEN, QT_TRANSLATE_NOOP("LumoInterface", "The camera describes the feature wrongly.")},
    {KX_CC_E_FILE_OPEN, QT_TRANSLATE_NOOP("LumoInterface", "The file cannot be opened.")},
    {KX_CC_E_FILE_FORMAT, QT_TRANSLATE_NOOP("LumoInterface", "The file is not a feature file.")},
    {KX_CC_E_FILE_WRITE, QT_TRANSLATE_NOOP("LumoInterface", "The file cannot be written.")},
    {KX_CC_E_FILE_PARTIAL, QT_TRANSLATE_NOOP("LumoInterface", "The camera refused some of the values.")},
};

const ErrorText *FindBySdkCode(unsigned int sdkCode)
{
    const auto *const found =
        std::find_if(std::begin(kErrorTexts), std::end(kErrorTexts),
                     [sdkCode](const ErrorText &entry) { return entry.sdkCode == sdkCode; });
    return found != std::end(kErrorTexts) ? found : nullptr;
}

} // namespace

int LumoInterface::SDKCode2LumoCode(unsigned int sdkCode)
{
    if (sdkCode == KX_CC_OK) {
        return 0;
    }
    return FindBySdkCode(sdkCode) != nullptr ? kSdkErrorBase + static_cast<int>(sdkCode) : kUnknownError;
}

QString LumoInterface::GenerateSDKCode(unsigned int lumoCode)
{
    if (lumoCode == 0) {
        return {};
    }
    return QLatin1Char(' ') + QCoreApplication::translate("LumoInterface", "(Error %1)").arg(lumoCode) +
           QLatin1Char(' ');
}

QString LumoInterface::GenerateLumoErrorDesc(int lumoCode)
{
    if (lumoCode == 0) {
        return {};
    }
    const ErrorText *pEntry = lumoCode > kSdkErrorBase
                                  ? FindBySdkCode(static_cast<unsigned int>(lumoCode - kSdkErrorBase))
                                  : nullptr;
    return pEntry != nullptr ? QCoreApplication::translate("LumoInterface", pEntry->text)
                             : QCoreApplication::translate("LumoInterface", "An unknown error occurred.");
}
