#include <QtTest>

#include <DevListMgr/structdeviceinfo.h>

class tst_StructDeviceInfo : public QObject
{
    Q_OBJECT

private slots:
    void Default_EveryField_HasItsStartValue();
    void Layout_EveryField_LiesWhereOtherBuildsFindIt();
    void Copy_ChangedText_LeavesTheSource();
    void Variant_RecordStored_ComesBackWhole();
    void Variant_AnotherType_GivesTheDefaultRecord();
    void MetaType_Name_IsStructDeviceInfo();
};

void tst_StructDeviceInfo::Default_EveryField_HasItsStartValue()
{
    const _STRUCT_DEVICE_INFO_ record;
    QCOMPARE(record.nDeviceID, -1);
    QCOMPARE(record.nDeviceType, 1u);
    QCOMPARE(record.nAccessStatus, 0u);
    const QByteArray zeros(int(sizeof record.stDevInfo), '\0');
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(&record.stDevInfo), zeros.size()), zeros);
    QVERIFY(!record.stNetWorkInfo.bNetValid);
    QVERIFY(record.stNetWorkInfo.strNetText1.isEmpty() && record.stNetWorkInfo.strNetText3.isEmpty());
    QCOMPARE(record.stNetWorkInfo.nNetValue1, 1000);
    QCOMPARE(record.stNetWorkInfo.nNetValue2, -1);
    QCOMPARE(record.stNetWorkInfo.nNetValue3, -1);
    QCOMPARE(record.stNetWorkInfo.nNetValue4, -1);
    QCOMPARE(record.stUsbControllerInfo.nUsbValue, -1);
    QVERIFY(record.stUsbControllerInfo.strUsbText5.isEmpty());
    QVERIFY(!record.bReserveFlag);
    QCOMPARE(record.nReserveValue1, 0);
    QCOMPARE(record.nReserveValue2, 0);
}

void tst_StructDeviceInfo::Layout_EveryField_LiesWhereOtherBuildsFindIt()
{
    using Record = _STRUCT_DEVICE_INFO_;
    QCOMPARE(sizeof(Record), size_t{696});
    QCOMPARE(offsetof(Record, stNetWorkInfo), size_t{584});
    QCOMPARE(offsetof(Record, stUsbControllerInfo), size_t{632});
    QCOMPARE(offsetof(Record, bReserveFlag), size_t{680});
    QCOMPARE(offsetof(Record, nReserveValue1), size_t{684});
    QCOMPARE(offsetof(Record, nReserveValue2), size_t{688});

    using NetWork = _STRUCT_NET_WORK_INFO_;
    QCOMPARE(sizeof(NetWork), size_t{48});
    QCOMPARE(offsetof(NetWork, bNetValid), size_t{0});
    QCOMPARE(offsetof(NetWork, strNetText1), size_t{8});
    QCOMPARE(offsetof(NetWork, strNetText2), size_t{16});
    QCOMPARE(offsetof(NetWork, strNetText3), size_t{24});
    QCOMPARE(offsetof(NetWork, nNetValue1), size_t{32});
    QCOMPARE(offsetof(NetWork, nNetValue2), size_t{36});
    QCOMPARE(offsetof(NetWork, nNetValue3), size_t{40});
    QCOMPARE(offsetof(NetWork, nNetValue4), size_t{44});

    using Usb = _STRUCT_USB_CONTROLLER_INFO_;
    QCOMPARE(sizeof(Usb), size_t{48});
    QCOMPARE(offsetof(Usb, nUsbValue), size_t{0});
    QCOMPARE(offsetof(Usb, strUsbText1), size_t{8});
    QCOMPARE(offsetof(Usb, strUsbText2), size_t{16});
    QCOMPARE(offsetof(Usb, strUsbText3), size_t{24});
    QCOMPARE(offsetof(Usb, strUsbText4), size_t{32});
    QCOMPARE(offsetof(Usb, strUsbText5), size_t{40});
}

void tst_StructDeviceInfo::Copy_ChangedText_LeavesTheSource()
{
    _STRUCT_DEVICE_INFO_ source;
    source.stNetWorkInfo.strNetText2 = "eth0";
    _STRUCT_DEVICE_INFO_ copy = source;

    copy.stNetWorkInfo.strNetText2 = "eth1";

    QCOMPARE(source.stNetWorkInfo.strNetText2, QString("eth0"));
}

void tst_StructDeviceInfo::Variant_RecordStored_ComesBackWhole()
{
    _STRUCT_DEVICE_INFO_ source;
    source.nDeviceID = 7;
    source.stDevInfo.nMacAddrLow = 0x12345678;
    source.stUsbControllerInfo.strUsbText4 = "carried";
    source.nReserveValue2 = 5;

    const auto copy = QVariant::fromValue(source).value<StructDeviceInfo>();

    QCOMPARE(copy.nDeviceID, 7);
    QCOMPARE(copy.stDevInfo.nMacAddrLow, 0x12345678u);
    QCOMPARE(copy.stUsbControllerInfo.strUsbText4, QString("carried"));
    QCOMPARE(copy.nReserveValue2, 5);
}

void tst_StructDeviceInfo::Variant_AnotherType_GivesTheDefaultRecord()
{
    const auto record = QVariant("text").value<StructDeviceInfo>();
    QCOMPARE(record.nDeviceID, -1);
    QCOMPARE(record.nAccessStatus, 0u);
    QCOMPARE(record.stNetWorkInfo.nNetValue1, 1000);
}

void tst_StructDeviceInfo::MetaType_Name_IsStructDeviceInfo()
{
    const int nType = qMetaTypeId<StructDeviceInfo>();
    QCOMPARE(QByteArray(QMetaType::typeName(nType)), QByteArray("StructDeviceInfo"));
    const auto flags = QMetaType::typeFlags(nType);
    QVERIFY(flags & QMetaType::NeedsConstruction);
    QVERIFY(flags & QMetaType::NeedsDestruction);
    QVERIFY(!(flags & QMetaType::MovableType));
}

QTEST_APPLESS_MAIN(tst_StructDeviceInfo)
#include "tst_structdeviceinfo.moc"
