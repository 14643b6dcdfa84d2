#include <QTest>

#include "camera/usbrecord.h"
#include "discovery/knowncameras.h"
#include "discovery/round.h"

using namespace kxcc;

namespace {

KX_CC_DEVICE_INFO Camera(uint32_t nMac, uint32_t nIp)
{
    DiscoveryAck ack;
    ack.nMacLow = nMac;
    ack.nCurrentIp = nIp;
    KX_CC_DEVICE_INFO info = GigeRecord(ack, {"eth0", nIp + 100, 0xFFFFFF00, false});
    info.nAccessStatus = KX_CC_ACCESS_FREE;
    return info;
}

} // namespace

class tst_KnownCameras : public QObject
{
    Q_OBJECT

private slots:
    void Update_FoundInAnyOrder_IsListedByAddress();
    void Update_MissedOnce_IsUnreachable();
    void Update_MissedThreeTimes_IsGone();
    void Update_BackAfterTwoMisses_StartsCountingAnew();
    void Update_SameMacAtTwoAddresses_ListsBoth();
    void Update_NewRecordOfAKnownCamera_ReplacesTheOldOne();
    void Update_UsbCameras_AreKnownByTheirGuid_data();
    void Update_UsbCameras_AreKnownByTheirGuid();
    void GigeRecord_TextsThatFillTheirFields_AreWhole();
};

void tst_KnownCameras::Update_FoundInAnyOrder_IsListedByAddress()
{
    KnownCameras known;
    known.Update({Camera(1, 30), Camera(2, 10), Camera(3, 20)});

    QCOMPARE(known.List().size(), size_t{3});
    QCOMPARE(known.List()[0].SpecialInfo.stGigEInfo.nCurrentIp, 10U);
    QCOMPARE(known.List()[1].SpecialInfo.stGigEInfo.nCurrentIp, 20U);
    QCOMPARE(known.List()[2].SpecialInfo.stGigEInfo.nCurrentIp, 30U);
}

void tst_KnownCameras::Update_MissedOnce_IsUnreachable()
{
    KnownCameras known;
    known.Update({Camera(1, 10), Camera(2, 20)});
    known.Update({Camera(2, 20)});

    QCOMPARE(known.List()[0].nAccessStatus, KX_CC_ACCESS_UNREACHABLE);
    QCOMPARE(known.List()[1].nAccessStatus, KX_CC_ACCESS_FREE);
}

void tst_KnownCameras::Update_MissedThreeTimes_IsGone()
{
    KnownCameras known;
    known.Update({Camera(1, 10)});
    known.Update({});
    known.Update({});
    QCOMPARE(known.List().size(), size_t{1});
    known.Update({});
    QCOMPARE(known.List().size(), size_t{0});
}

void tst_KnownCameras::Update_BackAfterTwoMisses_StartsCountingAnew()
{
    KnownCameras known;
    known.Update({Camera(1, 10)});
    known.Update({});
    known.Update({});
    known.Update({Camera(1, 10)});
    known.Update({});
    known.Update({});
    QCOMPARE(known.List().size(), size_t{1});
}

void tst_KnownCameras::Update_SameMacAtTwoAddresses_ListsBoth()
{
    KnownCameras known;
    known.Update({Camera(1, 10), Camera(1, 20)});
    QCOMPARE(known.List().size(), size_t{2});
}

void tst_KnownCameras::Update_NewRecordOfAKnownCamera_ReplacesTheOldOne()
{
    KnownCameras known;
    known.Update({Camera(1, 10)});
    KX_CC_DEVICE_INFO held = Camera(1, 10);
    held.nAccessStatus = KX_CC_ACCESS_IN_USE;
    known.Update({held});

    QCOMPARE(known.List().size(), size_t{1});
    QCOMPARE(known.List()[0].nAccessStatus, KX_CC_ACCESS_IN_USE);
}

void tst_KnownCameras::Update_UsbCameras_AreKnownByTheirGuid_data()
{
    QTest::addColumn<QStringList>("one"); // GUID, key, serial number
    QTest::addColumn<QStringList>("other");
    QTest::addColumn<int>("cameras");
    const auto row = [](const char *szName, const QStringList &one, const QStringList &other, int nCameras) {
        QTest::newRow(szName) << one << other << nCameras;
    };
    row("different GUIDs, one key", {"G1", "maker-product-1", "1"}, {"G2", "maker-product-1", "1"}, 2);
    row("one GUID, different keys", {"G1", "maker-product-1", "1"}, {"G1", "maker-product-2", "2"}, 1);
    row("one of them without a GUID", {"", "maker-product-1", "1"}, {"G1", "maker-product-1", "1"}, 2);
    row("no GUIDs, different keys", {"", "maker-product-1", "1"}, {"", "maker-product-2", "1"}, 2);
    row("no GUIDs, one key that was cut", {"", "maker-product-", "1"}, {"", "maker-product-", "2"}, 2);
    row("no GUIDs, all the same", {"", "maker-product-1", "1"}, {"", "maker-product-1", "1"}, 1);
}

void tst_KnownCameras::Update_UsbCameras_AreKnownByTheirGuid()
{
    QFETCH(QStringList, one);
    QFETCH(QStringList, other);
    QFETCH(int, cameras);
    const auto record = [](const QStringList &texts) {
        UsbCameraTexts usb;
        usb.strGuid = texts[0].toStdString();
        usb.strKey = texts[1].toStdString();
        usb.strSerial = texts[2].toStdString();
        return UsbRecord(usb);
    };
    KnownCameras known;
    known.Update({record(one), record(other)});
    QCOMPARE(int(known.List().size()), cameras);
    known.Update({record(other), record(one)});
    QCOMPARE(int(known.List().size()), cameras);
}

void tst_KnownCameras::GigeRecord_TextsThatFillTheirFields_AreWhole()
{
    DiscoveryAck ack;
    ack.serialNumber.fill('S');
    ack.userDefinedName.fill('U');
    const KX_CC_DEVICE_INFO info = GigeRecord(ack, {"a-name-of-20-letters", 1, 2, false});

    QCOMPARE(QByteArray(reinterpret_cast<const char *>(info.SpecialInfo.stGigEInfo.chSerialNumber)),
             QByteArray(16, 'S'));
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(info.SpecialInfo.stGigEInfo.chUserDefinedName)),
             QByteArray(16, 'U'));
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(info.SpecialInfo.stGigEInfo.chInterfaceName)),
             QByteArray("a-name-of-20-let"));
}

QTEST_APPLESS_MAIN(tst_KnownCameras)
#include "tst_knowncameras.moc"
