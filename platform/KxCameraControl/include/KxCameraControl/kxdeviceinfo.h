#ifndef KXCAMERACONTROL_KXDEVICEINFO_H
#define KXCAMERACONTROL_KXDEVICEINFO_H

/**
 * @file
 * KX_CC_DEVICE_INFO: one camera as the enumeration found it.
 *
 * The record is 572 bytes of plain data. It may be copied with memcpy(), stored and handed to another
 * process of the same machine; it holds everything that opening the camera needs. All integers are in
 * the byte order of the host.
 *
 * Texts are UTF-8, without control characters, line and paragraph separators, characters that have no
 * width or change the direction of writing, '/' and '\' (each replaced by '_'), cut at the first NUL the
 * camera sent and at the field's width without splitting a character. Unused bytes are zero. A text may
 * fill its field; the word of zeros behind each field ends it in that case, so every text may be read as a
 * C string as well as with its field's width.
 */

#include <stdint.h>

#include "kxdefs.h"

KX_CC_BEGIN_DECLS

/** Values of KX_CC_DEVICE_INFO::nTransportType; also flags of KX_CC_CreateEnumerator(). */
#define KX_CC_TRANSPORT_GIGE 1u /**< GigE Vision: stGigEInfo */
#define KX_CC_TRANSPORT_USB 4u  /**< USB3 Vision: stUsbInfo */
#define KX_CC_TRANSPORT_PORT 8u /**< a camera behind a numbered port of a serial interface: stPortInfo */

/** Values of KX_CC_DEVICE_INFO::nAccessStatus. */
#define KX_CC_ACCESS_UNKNOWN 0u     /**< not asked yet */
#define KX_CC_ACCESS_FREE 1u        /**< can be opened; also while this process has it open itself */
#define KX_CC_ACCESS_IN_USE 2u      /**< another application controls it */
#define KX_CC_ACCESS_UNREACHABLE 3u /**< known, but cannot be talked to: wrong subnet, silent, no rights */

/** A GigE Vision camera: fields of its DISCOVERY_ACK (GigE Vision 2.0, 16.1.2, table 16-2). */
typedef struct KX_CC_GIGE_INFO_
{
    uint32_t nCurrentIp;               /**< the camera's address, 0x7F000A01 for 127.0.10.1 */
    uint32_t nSubNetMask;              /**< its mask, same order */
    uint32_t nGateway;                 /**< its default gateway, same order */
    uint32_t nInterfaceIp;             /**< address of the interface of this machine that it was found on */
    uint32_t nInterfaceMask;           /**< mask of that interface */
    unsigned char chInterfaceName[16]; /**< name of that interface, "eth0" */
    uint32_t nZero0;
    unsigned char chManufacturerName[32];
    uint32_t nZero1;
    unsigned char chModelName[32];
    uint32_t nZero2;
    unsigned char chDeviceVersion[32];
    uint32_t nZero3;
    unsigned char chManufacturerInfo[48];
    uint32_t nZero4;
    unsigned char chSerialNumber[16];
    uint32_t nZero5;
    unsigned char chUserDefinedName[16];
    uint32_t nZero6;
    unsigned char chReserved[300];
} KX_CC_GIGE_INFO;

/** A USB3 Vision camera: texts of its USB descriptors (USB3 Vision 1.0, 4.2 Device information). */
typedef struct KX_CC_USB_INFO_
{
    unsigned char chModelName[64];
    uint32_t nZero0;
    unsigned char chUserDefinedName[64];
    uint32_t nZero1;
    unsigned char chSerialNumber[64];
    uint32_t nZero2;
    unsigned char chVendorName[64];
    uint32_t nZero3;
    unsigned char chDeviceGuid[64]; /**< its identity, 12 characters on a conforming camera. One without
                                         is told by its key and its serial number */
    uint32_t nZero4;
    unsigned char chDeviceVersion[64];
    uint32_t nZero5;
    unsigned char chDeviceKey[64]; /**< what it is listed by: "maker-product-serial"; not unique */
    uint32_t nZero6;
    uint32_t nVendorId;
    uint32_t nProductId;
    uint32_t nBus;
    uint32_t nAddress;
    unsigned char chReserved[48];
} KX_CC_USB_INFO;

/** A camera behind a numbered port of an interface. */
typedef struct KX_CC_PORT_INFO_
{
    unsigned char chPortId[64];
    uint32_t nZero0;
    unsigned char chModelName[64];
    uint32_t nZero1;
    unsigned char chSerialNumber[64];
    uint32_t nZero2;
    unsigned char chVendorName[64];
    uint32_t nZero3;
    unsigned char chDeviceVersion[64];
    uint32_t nZero4;
    unsigned char chReserved[200];
} KX_CC_PORT_INFO;

typedef struct KX_CC_DEVICE_INFO_
{
    uint32_t nTransportType; /**< offset 0: KX_CC_TRANSPORT_...; says which member of the union holds */
    uint32_t nMacAddrHigh;   /**< offset 4: upper 16 bits of the MAC address; 0 without one */
    uint32_t nMacAddrLow;    /**< offset 8: lower 32 bits of the MAC address */
    uint32_t nAccessStatus;  /**< offset 12: KX_CC_ACCESS_... when the record was made */
    uint32_t nReserved[4];   /**< offset 16: zero */
    union
    {
        KX_CC_GIGE_INFO stGigEInfo;
        KX_CC_USB_INFO stUsbInfo;
        KX_CC_PORT_INFO stPortInfo;
    } SpecialInfo; /**< offset 32, 540 bytes */
} KX_CC_DEVICE_INFO;

KX_CC_END_DECLS

#endif
