#ifndef KXCAMERACONTROL_KXCAMERACONTROL_H
#define KXCAMERACONTROL_KXCAMERACONTROL_H

/**
 * @file
 * Finding cameras, opening them, and reading and writing their features by name.
 *
 * Words used throughout:
 *  - A *handle* is made by KX_CC_CreateHandle(), is *owned* by the caller, and ends with
 *    KX_CC_DestroyHandle(). It is *closed* at first, *open* after KX_CC_OpenDevice(), and *lost* when the
 *    way to the camera broke: then every call returns KX_CC_E_LOST at once, until it is closed.
 *  - *Borrowed* memory stays with its owner; a pointer to it is valid as long as its declaration says.
 *  - *Thread-safe* calls may run in any number of threads at once. Calls on one handle may come from any
 *    thread, one at a time. No call waits for another handle's camera.
 *  - The *deadline* of a call is the longest time that it waits for the camera. It counts the time that
 *    the camera's helper process spends waiting; the time that process works or queues for a processor
 *    is granted on top, up to KX_CC_LONGEST_CALL_MS. While the camera is being opened, each part of its
 *    description that arrives starts the deadline anew: a long description is no silent camera.
 *  - The *time budget* of a handle is what its calls may take from its opening on: one time without a
 *    feature finished, read or written or refused, and one in all. Time between the calls does not count.
 *    The call that spends it returns KX_CC_E_TIMEOUT, and the handle is lost; the camera is released.
 *
 * Each open camera is served by a helper process of its own (kx-camera-session), because a faulty camera
 * can crash or block the code that talks to it. The helper ends with its handle and with this process.
 *
 * Every function returns KX_CC_OK (0) or a code of kxerrors.h. Texts are UTF-8 unless said otherwise.
 */

#include <stdbool.h>
#include <stdint.h>

#include "kxdefs.h"
#include "kxdeviceinfo.h"
#include "kxerrors.h"
#include "kxlog.h"

KX_CC_BEGIN_DECLS

/** Deadline of opening a camera and of one feature access, in milliseconds. */
#define KX_CC_DEADLINE_MS 3000
/** No call takes longer than this, in milliseconds, however busy the machine is; but opening a camera may
 * take as long again before, to start its helper process. */
#define KX_CC_LONGEST_CALL_MS 60000

/** Time budget of a handle, in milliseconds: without a feature finished, and in all. See
 * KX_CC_SetTimeBudget(). */
#define KX_CC_FEATURE_BUDGET_MS 60000
#define KX_CC_CAMERA_BUDGET_MS 300000
/** The largest values that may be set: a day. */
#define KX_CC_LONGEST_BUDGET_MS 86400000

/** Access modes of KX_CC_OpenDevice(). */
#define KX_CC_ACCESS_MODE_EXCLUSIVE 1u

/* ---- Finding cameras ------------------------------------------------------------------------------ */

/** What one round of an enumerator found; borrowed from the enumerator. */
typedef struct KX_CC_DEVICE_LIST_
{
    unsigned int nDeviceNum;
    const KX_CC_DEVICE_INFO *pstDevices; /**< nDeviceNum records, or NULL */
} KX_CC_DEVICE_LIST;

/**
 * Makes an enumerator, which keeps what it knows of the cameras from round to round.
 *
 * @param phEnumerator  Out: owned by the caller until KX_CC_DestroyEnumerator(); NULL on failure.
 * @param nTransports   KX_CC_TRANSPORT_... flags; transports that are not served find nothing.
 *
 * Threads: thread-safe; afterwards one thread at a time per enumerator. Does not block.
 *
 * @retval KX_CC_E_PARAMETER  phEnumerator is NULL
 * @retval KX_CC_E_RESOURCE   no memory or no socket
 */
KX_CC_API int KX_CC_CreateEnumerator(void **phEnumerator, unsigned int nTransports);

/**
 * Asks on every interface, loopback included, which cameras there are, and gives the list.
 *
 * A camera is known by its MAC address, or USB GUID; one that is seen on two interfaces is listed once,
 * two that claim the same MAC address at different IP addresses are listed both. A camera that answered
 * before and misses a round is listed as KX_CC_ACCESS_UNREACHABLE, and is gone after its third missed
 * round. The list is ordered by transport, then by address, so it is the same from round to round.
 *
 * The question is repeated every 300 ms, so a long search finds cameras of a network that loses much. A
 * network camera whose address does not lie in the network of an interface is listed as
 * KX_CC_ACCESS_UNREACHABLE; nothing is sent to such an address, nor to one that stands for several devices.
 * A device that shows more than 300 new cameras within a minute is not followed, and the log callback told so
 * once; 4096 network cameras are listed at the most.
 *
 * @param hEnumerator  From KX_CC_CreateEnumerator().
 * @param nTimeoutMs   How long answers are collected, 1 to 10000 milliseconds. The call may end earlier
 *                     when answers have stopped coming.
 * @param pstList      Out: the list; valid until the next call on this enumerator.
 *
 * Threads: one at a time per enumerator. Blocks for nTimeoutMs and the time of asking each camera for its
 * access status, 0.5 s more at the most.
 *
 * @retval KX_CC_E_HANDLE     not an enumerator
 * @retval KX_CC_E_PARAMETER  pstList is NULL or nTimeoutMs is out of range
 * @retval KX_CC_E_RESOURCE   no interface could be asked at all; the list holds what was known
 */
KX_CC_API int KX_CC_Enumerate(void *hEnumerator, unsigned int nTimeoutMs, KX_CC_DEVICE_LIST *pstList);

/**
 * Asks one network camera directly; for cameras behind a router and for scripts that know the address. Only
 * an answer counts that comes from this address and names it as the camera's.
 *
 * @param szAddress   IPv4 address of one device, in dotted form; no broadcast and no multicast address.
 * @param nTimeoutMs  Longest wait, 1 to 10000 milliseconds; ends with the answer.
 * @param pstDevInfo  Out: the camera's record; all zero on failure.
 *
 * Threads: thread-safe. Blocks up to nTimeoutMs, and 0.5 s more for the camera's access status.
 *
 * @retval KX_CC_E_PARAMETER    a null pointer, a timeout out of range, or not the IPv4 address of one device
 * @retval KX_CC_E_UNREACHABLE  nothing at this address that speaks GVCP answered
 */
KX_CC_API int KX_CC_FindDevice(const char *szAddress, unsigned int nTimeoutMs, KX_CC_DEVICE_INFO *pstDevInfo);

/** Ends an enumerator and its lists. NULL is ignored. Threads: one at a time per enumerator. */
KX_CC_API int KX_CC_DestroyEnumerator(void *hEnumerator);

/**
 * Tells whether a handle of this process has the camera open, or is just opening or closing it; a lost
 * handle counts until it is closed. Threads: thread-safe. Does not block.
 */
KX_CC_API bool KX_CC_IsDeviceOpen(const KX_CC_DEVICE_INFO *pstDevInfo);

/* ---- Time ----------------------------------------------------------------------------------------- */

/**
 * Sets the time budget of the handles that are opened from now on in this process.
 *
 * Before it is called, the environment variable KX_CAMERA_TIME_BUDGET gives the two numbers, as
 * "60000,300000", and the constants above if there is none. An application that keeps a camera open for hours
 * has to do without a limit in all.
 *
 * @param nFeatureMs  Longest time of calls without a feature finished, in milliseconds, up to
 *                    KX_CC_LONGEST_BUDGET_MS; 0 for no limit.
 * @param nTotalMs    Longest time of all calls, likewise.
 *
 * Threads: thread-safe. Does not block.
 *
 * @retval KX_CC_E_PARAMETER  a number is too large; nothing changes
 */
KX_CC_API int KX_CC_SetTimeBudget(unsigned int nFeatureMs, unsigned int nTotalMs);

/* ---- Opening and closing -------------------------------------------------------------------------- */

/**
 * Makes a closed handle for a camera. Nothing is sent to it yet.
 *
 * @param phDevice    Out: owned by the caller until KX_CC_DestroyHandle(); NULL on failure.
 * @param pstDevInfo  The camera, from an enumeration; copied.
 *
 * Threads: thread-safe. Does not block.
 *
 * @retval KX_CC_E_PARAMETER    a null pointer
 * @retval KX_CC_E_UNSUPPORTED  the record's transport is not served (KX_CC_TRANSPORT_PORT, or unknown)
 * @retval KX_CC_E_RESOURCE     no memory
 */
KX_CC_API int KX_CC_CreateHandle(void **phDevice, const KX_CC_DEVICE_INFO *pstDevInfo);

/**
 * Opens the camera: takes control of it, fetches its description and prepares its features.
 *
 * @param hDevice         A closed handle.
 * @param nAccessMode     KX_CC_ACCESS_MODE_EXCLUSIVE.
 * @param nSwitchoverKey  Key for taking over another application's control; 0, others are not served.
 *
 * Threads: one at a time per handle. Blocks up to the deadline.
 *
 * @retval KX_CC_E_HANDLE         not a handle
 * @retval KX_CC_E_ALREADY_OPEN   open already
 * @retval KX_CC_E_UNSUPPORTED    another access mode, or a key
 * @retval KX_CC_E_UNREACHABLE    the camera does not answer, or another one does at its address: the MAC
 *                                address, the model and the serial number are compared with the record. A
 *                                record with none of them means whoever is there
 * @retval KX_CC_E_ACCESS_DENIED  another application controls it
 * @retval KX_CC_E_DEVICE_STATUS  it answered with an error status or broken data
 * @retval KX_CC_E_DESCRIPTION    its description is missing or was refused: it is not well-formed, holds a
 *                                DTD or names that are not ASCII, is nested deeper than 256 levels, has more
 *                                than 16 MB as UTF-8, 200000 elements, comments and the like, 200000
 *                                attributes (100 of one element), 256 kB of text in one element or 4 MB in
 *                                all elements whose names begin with 'p', or is no GenICam description
 * @retval KX_CC_E_TIMEOUT        it fell silent, or its description took too long
 * @retval KX_CC_E_RESOURCE, KX_CC_E_SESSION, KX_CC_E_SESSION_ENDED  the helper process
 * After any failure the handle is closed and the camera released.
 */
KX_CC_API int KX_CC_OpenDevice(void *hDevice, unsigned int nAccessMode, unsigned short nSwitchoverKey);

/**
 * Releases the camera and ends its helper process. A closed handle stays closed and gives KX_CC_OK.
 *
 * Threads: one at a time per handle. Blocks at most 1 s: a helper that does not end by itself is killed.
 *
 * @retval KX_CC_E_HANDLE  not a handle
 */
KX_CC_API int KX_CC_CloseDevice(void *hDevice);

/**
 * Closes the handle if it is open and ends it; it must not be used again. NULL gives KX_CC_E_HANDLE.
 * Threads and blocking: as KX_CC_CloseDevice().
 */
KX_CC_API int KX_CC_DestroyHandle(void *hDevice);

/* ---- Features ------------------------------------------------------------------------------------- */

/**
 * Value of an integer feature. The value is carried as its 32-bit pattern: values from 0 to 2^32-1, or from
 * -2^31 to 2^31-1 when the feature's minimum is negative; any other is KX_CC_E_FEATURE_VALUE, because its
 * pattern would set another one. Limits are not part of the record, because each costs register accesses
 * of its own.
 */
typedef struct KX_CC_INT_VALUE_
{
    uint32_t nCurValue;
    uint32_t nReserved[7]; /**< zero */
} KX_CC_INT_VALUE;

/** Value of an enumeration feature: the number of the current entry, carried as in KX_CC_INT_VALUE. */
typedef struct KX_CC_ENUM_VALUE_
{
    uint32_t nCurValue;
    uint32_t nReserved[7]; /**< zero */
} KX_CC_ENUM_VALUE;

/** Value of a float feature, in the feature's own unit, rounded to single precision. */
typedef struct KX_CC_FLOAT_VALUE_
{
    float fCurValue;
    uint32_t nReserved[7]; /**< zero */
} KX_CC_FLOAT_VALUE;

/**
 * Reads one feature from the camera.
 *
 * @param hDevice  An open handle.
 * @param szName   Name of the feature, as its description writes it.
 * @param pValue   Out: the value; left alone on failure.
 *
 * Which features each call serves, by their GenICam interface: Int: IInteger; Bool: IBoolean;
 * Float: IFloat; Enum: IEnumeration.
 *
 * Threads: one at a time per handle. Blocks up to the deadline.
 *
 * @retval KX_CC_E_HANDLE, KX_CC_E_NOT_OPEN, KX_CC_E_PARAMETER  the caller's mistakes
 * @retval KX_CC_E_FEATURE_...                                  this feature; the handle stays open
 * @retval KX_CC_E_DEVICE_STATUS                                the camera refused; the handle stays open
 * @retval KX_CC_E_TIMEOUT, KX_CC_E_SESSION_ENDED, KX_CC_E_LOST the handle is lost
 */
KX_CC_API int KX_CC_GetIntValue(void *hDevice, const char *szName, KX_CC_INT_VALUE *pValue);
KX_CC_API int KX_CC_GetEnumValue(void *hDevice, const char *szName, KX_CC_ENUM_VALUE *pValue);
KX_CC_API int KX_CC_GetFloatValue(void *hDevice, const char *szName, KX_CC_FLOAT_VALUE *pValue);
KX_CC_API int KX_CC_GetBoolValue(void *hDevice, const char *szName, bool *pValue);

/**
 * Writes one feature to the camera.
 *
 * The 32-bit pattern of an integer is taken as signed when the feature's minimum is negative, so a value
 * read by KX_CC_GetIntValue() is written back as what it was. An enumeration takes the number of an entry.
 * Parameters, threads and results are those of reading.
 */
KX_CC_API int KX_CC_SetIntValue(void *hDevice, const char *szName, unsigned int nValue);
KX_CC_API int KX_CC_SetEnumValue(void *hDevice, const char *szName, unsigned int nValue);
KX_CC_API int KX_CC_SetFloatValue(void *hDevice, const char *szName, float fValue);
KX_CC_API int KX_CC_SetBoolValue(void *hDevice, const char *szName, bool bValue);

/* ---- The description ------------------------------------------------------------------------------ */

/**
 * Gives the camera's GenICam description as text.
 *
 * The text is as the camera sent it, unpacked, in UTF-8, without a byte-order mark, text before the XML
 * declaration and trailing NULs, with U+FFFD for each byte that was no UTF-8, and with a NUL at its end. It
 * is well-formed and keeps the bounds of KX_CC_OpenDevice().
 *
 * @param hDevice    An open handle.
 * @param pBuffer    Where the text goes, owned by the caller. Only the reported size is touched.
 * @param nBufferSize  Its size in bytes. When it is too small, nothing is written into it.
 * @param pnSize     Out: size of the text in bytes with its NUL; also when the buffer is too small. Left
 *                   alone on any other failure.
 *
 * Threads: one at a time per handle. Blocks up to the deadline.
 *
 * @retval KX_CC_E_HANDLE, KX_CC_E_NOT_OPEN, KX_CC_E_PARAMETER  the caller's mistakes
 * @retval KX_CC_E_BUFFER_TOO_SMALL                             see pnSize
 * @retval KX_CC_E_DEVICE_STATUS                                the helper process gave what is none
 * @retval KX_CC_E_TIMEOUT, KX_CC_E_SESSION_ENDED, KX_CC_E_LOST the handle is lost
 */
KX_CC_API int KX_XML_GetGenICamXML(void *hDevice, unsigned char *pBuffer, unsigned int nBufferSize,
                                   unsigned int *pnSize);

/* ---- Feature files -------------------------------------------------------------------------------- */

/**
 * Writes the camera's streamable features into a file, in the text form of the GenApi persistence that
 * GenICam software exchanges: the marker line, comment lines with '#', then a line "Name<TAB>Value" per
 * feature, with every selector replayed before the values that it selects.
 *
 * @param szFileName  Path of the file; an existing one is replaced only when everything was read.
 *
 * Threads: one at a time per handle. Blocks up to the deadline per feature, and up to the time budget.
 *
 * @retval KX_CC_E_FILE_OPEN, KX_CC_E_FILE_WRITE  the file; nothing is left behind
 * and the results of reading a feature that concern the handle
 */
KX_CC_API int KX_CC_FeatureSave(void *hDevice, const char *szFileName);

/**
 * Sets the camera's features from such a file, line by line. A refused value does not stop it; the refused
 * lines are tried again until a pass sets none of them. A value whose selector is refused is left alone.
 *
 * Lines with selectors of their own, "Name<TAB>{Selector=Value}<TAB>Value" (GenApi 3.4), are read, too; their
 * selectors have the values of lines of their own afterwards, or those from before.
 *
 * @param szFileName  Path of the file.
 *
 * Threads and blocking: as KX_CC_FeatureSave().
 *
 * @retval KX_CC_E_FILE_OPEN     it cannot be opened, or is no regular file
 * @retval KX_CC_E_FILE_FORMAT   its first line is not the marker, a line is malformed, or it has more than
 *                               64 MB; nothing was set
 * @retval KX_CC_E_FILE_PARTIAL  some values were refused in the end
 * and the results of writing a feature that concern the handle
 */
KX_CC_API int KX_CC_FeatureLoad(void *hDevice, const char *szFileName);

KX_CC_END_DECLS

#endif
