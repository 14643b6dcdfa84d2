#ifndef DEVLISTMGR_STRUCTDEVICEINFO_H
#define DEVLISTMGR_STRUCTDEVICEINFO_H

#include <QMetaType>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <KxCameraControl/kxdeviceinfo.h>

/// Network details of a camera, filled by the enumeration and carried unchanged by the tool.
struct _STRUCT_NET_WORK_INFO_
{
    bool bNetValid = false;
    QString strNetText1;
    QString strNetText2;
    QString strNetText3;
    qint32 nNetValue1 = 1000; // intended: only the first of the four starts at 1000
    qint32 nNetValue2 = -1;
    qint32 nNetValue3 = -1;
    qint32 nNetValue4 = -1;
};

/// USB controller details of a camera, filled by the enumeration and carried unchanged by the tool.
struct _STRUCT_USB_CONTROLLER_INFO_
{
    qint32 nUsbValue = -1;
    QString strUsbText1;
    QString strUsbText2;
    QString strUsbText3;
    QString strUsbText4;
    QString strUsbText5;
};

/// One camera, as the device tree hands it to the tool.
///
/// The device tree writes it and the tool reads it, each possibly from a build of its own, so the order,
/// widths and defaults of the fields are an exchange format and must stay as they are. The first four
/// fields are one block of plain data.
///
/// Travels inside a QVariant under the meta-type name "StructDeviceInfo"; the type is registered by its
/// first use there.
struct _STRUCT_DEVICE_INFO_
{
    qint32 nDeviceID = -1;     ///< the camera within this run of the program; -1: no camera
    quint32 nDeviceType = 1;   ///< KX_CC_TRANSPORT_GIGE, _USB or _PORT
    quint32 nAccessStatus = 0; ///< access state, as the device tree reports it
    KX_CC_DEVICE_INFO stDevInfo;
    _STRUCT_NET_WORK_INFO_ stNetWorkInfo;
    _STRUCT_USB_CONTROLLER_INFO_ stUsbControllerInfo;
    bool bReserveFlag = false;
    qint32 nReserveValue1 = 0;
    qint32 nReserveValue2 = 0;

    _STRUCT_DEVICE_INFO_() { std::memset(&stDevInfo, 0, sizeof stDevInfo); }
};

// The plain block: three words and the SDK's record, without a gap, so that it can be copied as bytes.
static_assert(std::is_trivially_copyable<KX_CC_DEVICE_INFO>::value, "the SDK's record is plain data");
static_assert(sizeof(KX_CC_DEVICE_INFO) == 572, "the SDK's record has 572 bytes");
static_assert(offsetof(_STRUCT_DEVICE_INFO_, nDeviceID) == 0, "field 1");
static_assert(offsetof(_STRUCT_DEVICE_INFO_, nDeviceType) == 4, "field 2");
static_assert(offsetof(_STRUCT_DEVICE_INFO_, nAccessStatus) == 8, "field 3");
static_assert(offsetof(_STRUCT_DEVICE_INFO_, stDevInfo) == 12, "field 4");
static_assert(offsetof(_STRUCT_DEVICE_INFO_, stNetWorkInfo) == 584, "field 5 follows the plain block");

using StructDeviceInfo = _STRUCT_DEVICE_INFO_;
Q_DECLARE_METATYPE(StructDeviceInfo)

#endif
