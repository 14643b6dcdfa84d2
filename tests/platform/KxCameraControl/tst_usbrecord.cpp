#include <QTest>

#include <cstring>

#include "camera/usbrecord.h"

using namespace kxcc;

namespace {

QByteArray Bytes(const unsigned char *pField)
{
    return QByteArray(reinterpret_cast<const char *>(pField));
}

} // namespace

class tst_UsbRecord : public QObject
{
    Q_OBJECT

private slots:
    void UsbRecord_Texts_AreCleanedAndCut();
    void DecodeUsbRecords_WhatWasEncoded_IsTheSame();
    void DecodeUsbRecords_ForeignBytes_BecomeProperRecords();
    void DecodeUsbRecords_IncompleteRecord_IsLeftOut();
};

void tst_UsbRecord::UsbRecord_Texts_AreCleanedAndCut()
{
    UsbCameraTexts texts;
    texts.strModel = "a/b";
    texts.strSerial = std::string(70, '1');
    const KX_CC_DEVICE_INFO info = UsbRecord(texts);

    QCOMPARE(info.nTransportType, KX_CC_TRANSPORT_USB);
    QCOMPARE(Bytes(info.SpecialInfo.stUsbInfo.chModelName), QByteArray("a_b"));
    QCOMPARE(Bytes(info.SpecialInfo.stUsbInfo.chSerialNumber), QByteArray(64, '1'));
}

void tst_UsbRecord::DecodeUsbRecords_WhatWasEncoded_IsTheSame()
{
    const std::vector<KX_CC_DEVICE_INFO> records{UsbRecord({"key", "guid", "Maker", "Model", "1"}),
                                                 UsbRecord({"key 2", "guid 2", "Maker", "Model", "2"})};
    const std::vector<KX_CC_DEVICE_INFO> decoded = DecodeUsbRecords(EncodeUsbRecords(records));

    QCOMPARE(decoded.size(), size_t{2});
    for (size_t i = 0; i < decoded.size(); ++i)
        QCOMPARE(std::memcmp(&decoded[i], &records[i], sizeof records[i]), 0);
    QVERIFY(DecodeUsbRecords(EncodeUsbRecords({})).empty());
}

void tst_UsbRecord::DecodeUsbRecords_ForeignBytes_BecomeProperRecords()
{
    KX_CC_DEVICE_INFO foreign;
    std::memset(&foreign, '/', sizeof foreign); // a wrong transport, texts without an end
    const KX_CC_DEVICE_INFO decoded = DecodeUsbRecords(EncodeUsbRecords({foreign})).front();

    QCOMPARE(decoded.nTransportType, KX_CC_TRANSPORT_USB);
    QCOMPARE(Bytes(decoded.SpecialInfo.stUsbInfo.chModelName), QByteArray(64, '_'));
    QCOMPARE(decoded.SpecialInfo.stUsbInfo.nZero0, 0U);
}

void tst_UsbRecord::DecodeUsbRecords_IncompleteRecord_IsLeftOut()
{
    std::vector<uint8_t> bytes = EncodeUsbRecords({UsbRecord({"key", "guid", "Maker", "Model", "1"})});
    bytes.push_back('x');
    QCOMPARE(DecodeUsbRecords(bytes).size(), size_t{1});
    bytes.resize(10);
    QVERIFY(DecodeUsbRecords(bytes).empty());
}

QTEST_APPLESS_MAIN(tst_UsbRecord)
#include "tst_usbrecord.moc"
