#include <QTest>

#include <cstddef>

#include "camera/cameraorder.h"

using kxcc::CameraOrder;

namespace {

enum class Order
{
    Before,
    Same,
    After
};

template <std::size_t N>
void SetText(unsigned char (&field)[N], const char *szText)
{
    qstrncpy(reinterpret_cast<char *>(field), szText, N);
}

KX_CC_DEVICE_INFO Gige(std::uint32_t nIp, std::uint32_t nMacHigh, std::uint32_t nMacLow,
                       const char *szSerial = "")
{
    KX_CC_DEVICE_INFO info = {};
    info.nTransportType = KX_CC_TRANSPORT_GIGE;
    info.nMacAddrHigh = nMacHigh;
    info.nMacAddrLow = nMacLow;
    info.SpecialInfo.stGigEInfo.nCurrentIp = nIp;
    SetText(info.SpecialInfo.stGigEInfo.chSerialNumber, szSerial);
    return info;
}

KX_CC_DEVICE_INFO Usb(const char *szGuid, const char *szKey = "", const char *szSerial = "")
{
    KX_CC_DEVICE_INFO info = {};
    info.nTransportType = KX_CC_TRANSPORT_USB;
    KX_CC_USB_INFO &usb = info.SpecialInfo.stUsbInfo;
    SetText(usb.chDeviceGuid, szGuid);
    SetText(usb.chDeviceKey, szKey);
    SetText(usb.chSerialNumber, szSerial);
    return info;
}

} // namespace

Q_DECLARE_METATYPE(KX_CC_DEVICE_INFO)
Q_DECLARE_METATYPE(Order)

class tst_CameraOrder : public QObject
{
    Q_OBJECT

private slots:
    void Order_TwoRecords_AsTheirCameras_data();
    void Order_TwoRecords_AsTheirCameras();
};

void tst_CameraOrder::Order_TwoRecords_AsTheirCameras_data()
{
    QTest::addColumn<KX_CC_DEVICE_INFO>("a");
    QTest::addColumn<KX_CC_DEVICE_INFO>("b");
    QTest::addColumn<Order>("order");
    QTest::newRow("other words of one camera") << Gige(1, 2, 3, "A") << Gige(1, 2, 3, "B") << Order::Same;
    QTest::newRow("address decides first") << Gige(1, 9, 9) << Gige(2, 2, 3) << Order::Before;
    QTest::newRow("addresses count as numbers") << Gige(0x01000000, 1, 1) << Gige(0xFF, 1, 1) << Order::After;
    QTest::newRow("one address, upper half of the MAC address")
        << Gige(1, 1, 9) << Gige(1, 2, 3) << Order::Before;
    QTest::newRow("one address, lower half of the MAC address")
        << Gige(1, 2, 4) << Gige(1, 2, 3) << Order::After;
    QTest::newRow("transports apart")
        << Gige(0xFFFFFFFF, 9, 9) << Usb("A")
        << (KX_CC_TRANSPORT_GIGE < KX_CC_TRANSPORT_USB ? Order::Before : Order::After);
    QTest::newRow("one GUID, listed otherwise") << Usb("A", "x", "1") << Usb("A", "y", "2") << Order::Same;
    QTest::newRow("two GUIDs") << Usb("A", "y", "2") << Usb("B", "x", "1") << Order::Before;
    QTest::newRow("GUID and none") << Usb("A") << Usb("", "x", "1") << Order::After;
    QTest::newRow("no GUID, two keys") << Usb("", "y", "1") << Usb("", "x", "2") << Order::After;
    QTest::newRow("no GUID, one key, two serial numbers")
        << Usb("", "x", "1") << Usb("", "x", "2") << Order::Before;
    QTest::newRow("no GUID, all the same") << Usb("", "x", "1") << Usb("", "x", "1") << Order::Same;
}

void tst_CameraOrder::Order_TwoRecords_AsTheirCameras()
{
    QFETCH(KX_CC_DEVICE_INFO, a);
    QFETCH(KX_CC_DEVICE_INFO, b);
    QFETCH(Order, order);

    QCOMPARE(CameraOrder()(a, b), order == Order::Before);
    QCOMPARE(CameraOrder()(b, a), order == Order::After);
}

QTEST_APPLESS_MAIN(tst_CameraOrder)
#include "tst_cameraorder.moc"
