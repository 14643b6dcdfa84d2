#include "KxCameraControl/kxerrors.h"

const char *KX_CC_ErrorText(int nCode)
{
    switch (nCode) {
    case KX_CC_OK:
        return "success";
    case KX_CC_E_HANDLE:
        return "invalid handle";
    case KX_CC_E_PARAMETER:
        return "invalid parameter";
    case KX_CC_E_NOT_OPEN:
        return "camera is not open";
    case KX_CC_E_ALREADY_OPEN:
        return "camera is open already";
    case KX_CC_E_UNSUPPORTED:
        return "not supported";
    case KX_CC_E_BUFFER_TOO_SMALL:
        return "buffer is too small";
    case KX_CC_E_RESOURCE:
        return "out of system resources";
    case KX_CC_E_SESSION:
        return "camera helper program could not be started";
    case KX_CC_E_UNREACHABLE:
        return "camera does not answer";
    case KX_CC_E_ACCESS_DENIED:
        return "camera is controlled by another application";
    case KX_CC_E_TIMEOUT:
        return "camera did not answer in time";
    case KX_CC_E_LOST:
        return "camera was lost";
    case KX_CC_E_SESSION_ENDED:
        return "camera helper program ended unexpectedly";
    case KX_CC_E_DEVICE_STATUS:
        return "camera answered with an error";
    case KX_CC_E_DESCRIPTION:
        return "camera description is missing or was refused";
    case KX_CC_E_FEATURE_UNKNOWN:
        return "unknown feature";
    case KX_CC_E_FEATURE_TYPE:
        return "feature is of another type";
    case KX_CC_E_FEATURE_ACCESS:
        return "feature cannot be accessed now";
    case KX_CC_E_FEATURE_VALUE:
        return "feature value is out of range";
    case KX_CC_E_FEATURE_BROKEN:
        return "feature description is faulty";
    case KX_CC_E_FILE_OPEN:
        return "file cannot be opened";
    case KX_CC_E_FILE_FORMAT:
        return "not a feature file";
    case KX_CC_E_FILE_WRITE:
        return "file cannot be written";
    case KX_CC_E_FILE_PARTIAL:
        return "some values were refused";
    default:
        return "unknown error";
    }
}
