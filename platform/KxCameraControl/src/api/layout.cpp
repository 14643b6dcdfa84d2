/// The records are exchanged as raw bytes with programs that were built elsewhere: their layout never
/// changes. Compiling this file proves it.

#include <cstddef>
#include <type_traits>

#include "KxCameraControl/kxcameracontrol.h"

static_assert(std::is_trivially_copyable_v<KX_CC_DEVICE_INFO>);
static_assert(sizeof(KX_CC_DEVICE_INFO) == 572);
static_assert(offsetof(KX_CC_DEVICE_INFO, nTransportType) == 0);
static_assert(offsetof(KX_CC_DEVICE_INFO, nMacAddrHigh) == 4);
static_assert(offsetof(KX_CC_DEVICE_INFO, nMacAddrLow) == 8);
static_assert(offsetof(KX_CC_DEVICE_INFO, nAccessStatus) == 12);
static_assert(offsetof(KX_CC_DEVICE_INFO, nReserved) == 16);
static_assert(offsetof(KX_CC_DEVICE_INFO, SpecialInfo) == 32);

static_assert(sizeof(KX_CC_GIGE_INFO) == 540);
static_assert(offsetof(KX_CC_GIGE_INFO, nCurrentIp) == 0);
static_assert(offsetof(KX_CC_GIGE_INFO, nSubNetMask) == 4);
static_assert(offsetof(KX_CC_GIGE_INFO, nGateway) == 8);
static_assert(offsetof(KX_CC_GIGE_INFO, nInterfaceIp) == 12);
static_assert(offsetof(KX_CC_GIGE_INFO, nInterfaceMask) == 16);
static_assert(offsetof(KX_CC_GIGE_INFO, chInterfaceName) == 20);
static_assert(offsetof(KX_CC_GIGE_INFO, nZero0) == 36);
static_assert(offsetof(KX_CC_GIGE_INFO, chManufacturerName) == 40);
static_assert(offsetof(KX_CC_GIGE_INFO, nZero1) == 72);
static_assert(offsetof(KX_CC_GIGE_INFO, chModelName) == 76);
static_assert(offsetof(KX_CC_GIGE_INFO, nZero2) == 108);
static_assert(offsetof(KX_CC_GIGE_INFO, chDeviceVersion) == 112);
static_assert(offsetof(KX_CC_GIGE_INFO, nZero3) == 144);
static_assert(offsetof(KX_CC_GIGE_INFO, chManufacturerInfo) == 148);
static_assert(offsetof(KX_CC_GIGE_INFO, nZero4) == 196);
static_assert(offsetof(KX_CC_GIGE_INFO, chSerialNumber) == 200);
static_assert(offsetof(KX_CC_GIGE_INFO, nZero5) == 216);
static_assert(offsetof(KX_CC_GIGE_INFO, chUserDefinedName) == 220);
static_assert(offsetof(KX_CC_GIGE_INFO, nZero6) == 236);
static_assert(offsetof(KX_CC_GIGE_INFO, chReserved) == 240);

static_assert(sizeof(KX_CC_USB_INFO) == 540);
static_assert(offsetof(KX_CC_USB_INFO, chModelName) == 0);
static_assert(offsetof(KX_CC_USB_INFO, nZero0) == 64);
static_assert(offsetof(KX_CC_USB_INFO, chUserDefinedName) == 68);
static_assert(offsetof(KX_CC_USB_INFO, nZero1) == 132);
static_assert(offsetof(KX_CC_USB_INFO, chSerialNumber) == 136);
static_assert(offsetof(KX_CC_USB_INFO, nZero2) == 200);
static_assert(offsetof(KX_CC_USB_INFO, chVendorName) == 204);
static_assert(offsetof(KX_CC_USB_INFO, nZero3) == 268);
static_assert(offsetof(KX_CC_USB_INFO, chDeviceGuid) == 272);
static_assert(offsetof(KX_CC_USB_INFO, nZero4) == 336);
static_assert(offsetof(KX_CC_USB_INFO, chDeviceVersion) == 340);
static_assert(offsetof(KX_CC_USB_INFO, nZero5) == 404);
static_assert(offsetof(KX_CC_USB_INFO, chDeviceKey) == 408);
static_assert(offsetof(KX_CC_USB_INFO, nZero6) == 472);
static_assert(offsetof(KX_CC_USB_INFO, nVendorId) == 476);
static_assert(offsetof(KX_CC_USB_INFO, nProductId) == 480);
static_assert(offsetof(KX_CC_USB_INFO, nBus) == 484);
static_assert(offsetof(KX_CC_USB_INFO, nAddress) == 488);
static_assert(offsetof(KX_CC_USB_INFO, chReserved) == 492);

static_assert(sizeof(KX_CC_PORT_INFO) == 540);
static_assert(offsetof(KX_CC_PORT_INFO, chPortId) == 0);
static_assert(offsetof(KX_CC_PORT_INFO, nZero0) == 64);
static_assert(offsetof(KX_CC_PORT_INFO, chModelName) == 68);
static_assert(offsetof(KX_CC_PORT_INFO, nZero1) == 132);
static_assert(offsetof(KX_CC_PORT_INFO, chSerialNumber) == 136);
static_assert(offsetof(KX_CC_PORT_INFO, nZero2) == 200);
static_assert(offsetof(KX_CC_PORT_INFO, chVendorName) == 204);
static_assert(offsetof(KX_CC_PORT_INFO, nZero3) == 268);
static_assert(offsetof(KX_CC_PORT_INFO, chDeviceVersion) == 272);
static_assert(offsetof(KX_CC_PORT_INFO, nZero4) == 336);
static_assert(offsetof(KX_CC_PORT_INFO, chReserved) == 340);

static_assert(sizeof(KX_CC_INT_VALUE) == 32);
static_assert(sizeof(KX_CC_ENUM_VALUE) == 32);
static_assert(sizeof(KX_CC_FLOAT_VALUE) == 32);
