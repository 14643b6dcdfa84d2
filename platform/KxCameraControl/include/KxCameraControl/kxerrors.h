#ifndef KXCAMERACONTROL_KXERRORS_H
#define KXCAMERACONTROL_KXERRORS_H

/**
 * @file
 * Result codes of the camera SDK.
 *
 * Every call returns 0 for success and one of these otherwise. The numbers are part of the binary
 * interface: they are never reused for another meaning.
 */

#include "kxdefs.h"

KX_CC_BEGIN_DECLS

#define KX_CC_OK 0

/* The caller's mistakes: nothing was sent to a camera. */
#define KX_CC_E_HANDLE 101       /**< not a handle of this library, or a destroyed one */
#define KX_CC_E_PARAMETER 102    /**< a null pointer, an empty name, a value out of its documented range */
#define KX_CC_E_NOT_OPEN 103     /**< the call needs an open camera */
#define KX_CC_E_ALREADY_OPEN 104 /**< KX_CC_OpenDevice() on an open handle */
#define KX_CC_E_UNSUPPORTED 105  /**< this transport or access mode is not served */
#define KX_CC_E_BUFFER_TOO_SMALL 106 /**< the size needed was reported; the buffer was left alone */

/* This machine. */
#define KX_CC_E_RESOURCE 121 /**< out of memory, descriptors or processes */
#define KX_CC_E_SESSION 122  /**< the helper program of the camera could not be started */

/* The way to the camera. After any of these but ACCESS_DENIED and DEVICE_STATUS the handle is lost:
   every later call on it returns KX_CC_E_LOST at once, until it is closed and opened again. */
#define KX_CC_E_UNREACHABLE 141   /**< none or another answers under the address; no such USB camera */
#define KX_CC_E_ACCESS_DENIED 142 /**< another application controls the camera */
#define KX_CC_E_TIMEOUT 143       /**< the camera, or its helper process, did not answer in time */
#define KX_CC_E_LOST 144          /**< an earlier call lost the camera, or it took its control away */
#define KX_CC_E_SESSION_ENDED 145 /**< the helper process died under this call */
#define KX_CC_E_DEVICE_STATUS 146 /**< the camera answered with an error status or broken data */

/* The camera's description. */
#define KX_CC_E_DESCRIPTION 161 /**< missing, unreadable, or refused (DTD, nesting, size) */

/* A feature. The handle stays usable. */
#define KX_CC_E_FEATURE_UNKNOWN 181 /**< the description has no feature of this name */
#define KX_CC_E_FEATURE_TYPE 182    /**< the feature is of another type than the call */
#define KX_CC_E_FEATURE_ACCESS 183  /**< not implemented, not available, locked, read or write only */
#define KX_CC_E_FEATURE_VALUE 184   /**< out of range, or not representable in the call's value type */
#define KX_CC_E_FEATURE_BROKEN 185  /**< its description is faulty: dangling pointer, cycle */

/* A feature file (KX_CC_FeatureSave(), KX_CC_FeatureLoad()). */
#define KX_CC_E_FILE_OPEN 201    /**< cannot be opened for reading or writing */
#define KX_CC_E_FILE_FORMAT 202  /**< not a feature file */
#define KX_CC_E_FILE_WRITE 203   /**< writing failed; no file was left behind */
#define KX_CC_E_FILE_PARTIAL 204 /**< the camera refused some of the values; the others are set */

/**
 * English name of a result code, for logs; "unknown error" for any other number.
 *
 * @return static text, never NULL. Threads: any.
 */
KX_CC_API const char *KX_CC_ErrorText(int nCode);

KX_CC_END_DECLS

#endif
