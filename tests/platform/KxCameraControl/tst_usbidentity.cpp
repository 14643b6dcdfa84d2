#include <QTest>

#include <algorithm>

#include "helper/usbidentity.h"
#include "memorydevice.h"

using namespace kxcc;

namespace {

constexpr uint32_t kSerialNumber = 0x144;

KX_CC_USB_INFO Info(const QByteArray &guid, const QByteArray &serial)
{
    KX_CC_USB_INFO info{};
    std::copy(guid.begin(), guid.end(), info.chDeviceGuid);
    std::copy(serial.begin(), serial.end(), info.chSerialNumber);
    return info;
}

} // namespace

class tst_UsbIdentity : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void IsUsbCameraOf_Record_IsCompared_data();
    void IsUsbCameraOf_Record_IsCompared();
    void IsUsbCameraOf_RegisterIsRefused_CountsAsEmpty();
};

void tst_UsbIdentity::IsUsbCameraOf_Record_IsCompared_data()
{
    QTest::addColumn<QByteArray>("camera");
    QTest::addColumn<QByteArray>("guid");
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<bool>("same");
    const auto row = [](const char *szName, const QByteArray &camera, const char *szGuid,
                        const QByteArray &record, bool bSame) {
        QTest::newRow(szName) << camera << QByteArray(szGuid) << record << bSame;
    };
    row("the same", "4711", "", "4711", true);
    row("another", "4712", "", "4711", false);
    row("the beginning only", "47", "", "4711", false);
    row("none in the camera", "", "", "4711", false);
    row("none in the record", "4711", "", "", false);
    row("none at all", "", "", "", true);
    row("cleaned in the record", "4/1\x01", "", "4_1_", true);
    row("as long as its register", QByteArray(64, '1'), "", QByteArray(64, '1'), true);
    row("as long as its register, unlike at the end", QByteArray(63, '1') + "2", "", QByteArray(64, '1'),
        false);
    row("another, but opened by its GUID", "4712", "0123456789AB", "4711", true);
}

void tst_UsbIdentity::IsUsbCameraOf_Record_IsCompared()
{
    QFETCH(QByteArray, camera);
    QFETCH(QByteArray, guid);
    QFETCH(QByteArray, record);
    QFETCH(bool, same);
    MemoryDevice *pDevice = memory_device_new();
    QByteArray text = camera.leftJustified(64, '\0');
    QVERIFY(arv_device_write_memory(ARV_DEVICE(pDevice), kSerialNumber, 64, text.data(), nullptr));
    const bool bIs = IsUsbCameraOf(ARV_DEVICE(pDevice), Info(guid, record));
    g_object_unref(pDevice);
    QCOMPARE(bIs, same);
}

void tst_UsbIdentity::IsUsbCameraOf_RegisterIsRefused_CountsAsEmpty()
{
    MemoryDevice *pDevice = memory_device_new();
    memory_device_put(pDevice, kSerialNumber, 0x31000000);
    memory_device_fail_at(pDevice, kSerialNumber, ARV_DEVICE_ERROR_PROTOCOL_ERROR_NOT_IMPLEMENTED);
    const bool bNumbered = IsUsbCameraOf(ARV_DEVICE(pDevice), Info("", "1"));
    const bool bNameless = IsUsbCameraOf(ARV_DEVICE(pDevice), Info("", ""));
    g_object_unref(pDevice);
    QVERIFY(!bNumbered);
    QVERIFY(bNameless);
}

QTEST_APPLESS_MAIN(tst_UsbIdentity)
#include "tst_usbidentity.moc"
