#include <QTest>

#include "gvcp/gvcpcodec.h"

using namespace kxcc;

namespace {

std::vector<uint8_t> Bytes(const QByteArray &hex)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    return {bytes.begin(), bytes.end()};
}

/// A DISCOVERY_ACK by GigE Vision 2.0, table 16-2, written field by field.
QByteArray DiscoveryPayload()
{
    QByteArray payload = QByteArray::fromHex("00020000"   // version 2.0
                                             "80000001"   // device mode
                                             "0000a1b2"   // reserved, MAC high
                                             "c3d4e5f6"   // MAC low
                                             "00000007"   // IP configuration options
                                             "00000006"); // IP configuration current
    payload += QByteArray(12, '\0') + QByteArray::fromHex("7f140a01");
    payload += QByteArray(12, '\0') + QByteArray::fromHex("ff000000");
    payload += QByteArray(12, '\0') + QByteArray::fromHex("7f000001");
    payload += QByteArray("Maker").leftJustified(32, '\0');
    payload += QByteArray("Model").leftJustified(32, '\0');
    payload += QByteArray("1.2").leftJustified(32, '\0');
    payload += QByteArray("info").leftJustified(48, '\0');
    payload += QByteArray("0123456789ABCDEF"); // fills its field
    payload += QByteArray("left").leftJustified(16, '\0');
    return payload;
}

std::vector<uint8_t> DiscoveryDatagram(const QByteArray &payload, const QByteArray &status = "0000")
{
    QByteArray datagram = QByteArray::fromHex(status + "0003");
    datagram += static_cast<char>(payload.size() >> 8);
    datagram += static_cast<char>(payload.size() & 0xFF);
    datagram += QByteArray::fromHex("ffff") + payload;
    return {datagram.begin(), datagram.end()};
}

std::optional<DiscoveryAck> Parse(const std::vector<uint8_t> &datagram)
{
    const auto ack = ParseAck(datagram.data(), datagram.size());
    return ack ? ParseDiscoveryAck(*ack) : std::nullopt;
}

} // namespace

class tst_GvcpCodec : public QObject
{
    Q_OBJECT

private slots:
    void Build_EachCommand_GivesTheBytesOfTheStandard();
    void ParseAck_ShorterThanItsHeader_IsRefused();
    void ParseAck_LengthBeyondTheDatagram_IsRefused();
    void ParseDiscoveryAck_Complete_GivesEveryField();
    void ParseDiscoveryAck_EveryShorterPayload_IsRefused();
    void ParseDiscoveryAck_LongerPayload_IsAccepted();
    void ParseDiscoveryAck_ErrorStatusOrOtherCommand_IsRefused();
    void ParseRegisterAck_Short_IsRefused();
    void ParseMemoryAck_ShortOrOtherAddress_IsRefused();
    void ParsePendingAck_GivesTheTime();
};

void tst_GvcpCodec::Build_EachCommand_GivesTheBytesOfTheStandard()
{
    QCOMPARE(BuildDiscovery(0xFFFF, true), Bytes("42 11 0002 0000 ffff"));
    QCOMPARE(BuildDiscovery(1, false), Bytes("42 01 0002 0000 0001"));
    QCOMPARE(BuildReadRegister(0x1234, 0x0A00), Bytes("42 01 0080 0004 1234 00000a00"));
    QCOMPARE(BuildWriteRegister(2, 0x0A00, 2), Bytes("42 01 0082 0008 0002 00000a00 00000002"));
    QCOMPARE(BuildReadMemory(3, 0x0200, 512), Bytes("42 01 0084 0008 0003 00000200 0000 0200"));
    const uint8_t data[] = {1, 2, 3, 4, 5};
    QCOMPARE(BuildWriteMemory(4, 0x10000, data, sizeof data),
             Bytes("42 01 0086 0009 0004 00010000 0102030405"));
}

void tst_GvcpCodec::ParseAck_ShorterThanItsHeader_IsRefused()
{
    const std::vector<uint8_t> datagram = Bytes("0000 0081 0000 0001");
    QVERIFY(ParseAck(datagram.data(), 8));
    for (size_t nSize = 0; nSize < 8; ++nSize)
        QVERIFY(!ParseAck(datagram.data(), nSize));
}

void tst_GvcpCodec::ParseAck_LengthBeyondTheDatagram_IsRefused()
{
    const std::vector<uint8_t> datagram = Bytes("0000 0081 0005 0001 00000000");
    QVERIFY(!ParseAck(datagram.data(), datagram.size()));
}

void tst_GvcpCodec::ParseDiscoveryAck_Complete_GivesEveryField()
{
    const auto answer = Parse(DiscoveryDatagram(DiscoveryPayload()));

    QVERIFY(answer);
    QCOMPARE(answer->nMacHigh, uint16_t{0xA1B2});
    QCOMPARE(answer->nMacLow, 0xC3D4E5F6U);
    QCOMPARE(answer->nCurrentIp, 0x7F140A01U);
    QCOMPARE(answer->nSubnetMask, 0xFF000000U);
    QCOMPARE(answer->nGateway, 0x7F000001U);
    QCOMPARE(reinterpret_cast<const char *>(answer->manufacturerName.data()), "Maker");
    QCOMPARE(reinterpret_cast<const char *>(answer->modelName.data()), "Model");
    QCOMPARE(reinterpret_cast<const char *>(answer->deviceVersion.data()), "1.2");
    QCOMPARE(reinterpret_cast<const char *>(answer->manufacturerInfo.data()), "info");
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(answer->serialNumber.data()), 16),
             QByteArray("0123456789ABCDEF"));
    QCOMPARE(reinterpret_cast<const char *>(answer->userDefinedName.data()), "left");
}

void tst_GvcpCodec::ParseDiscoveryAck_EveryShorterPayload_IsRefused()
{
    const QByteArray payload = DiscoveryPayload();
    QCOMPARE(payload.size(), 248);
    for (int nSize = 0; nSize < payload.size(); ++nSize)
        QVERIFY2(!Parse(DiscoveryDatagram(payload.left(nSize))), qPrintable(QString::number(nSize)));
}

void tst_GvcpCodec::ParseDiscoveryAck_LongerPayload_IsAccepted()
{
    QVERIFY(Parse(DiscoveryDatagram(DiscoveryPayload() + QByteArray(100, 'x'))));
}

void tst_GvcpCodec::ParseDiscoveryAck_ErrorStatusOrOtherCommand_IsRefused()
{
    QVERIFY(!Parse(DiscoveryDatagram(DiscoveryPayload(), "8001")));
    std::vector<uint8_t> other = DiscoveryDatagram(DiscoveryPayload());
    other[3] = 0x81;
    QVERIFY(!Parse(other));
}

void tst_GvcpCodec::ParseRegisterAck_Short_IsRefused()
{
    const std::vector<uint8_t> good = Bytes("0000 0081 0004 0001 00000002");
    const std::vector<uint8_t> bad = Bytes("0000 0081 0003 0001 00000002");
    QCOMPARE(ParseRegisterAck(*ParseAck(good.data(), good.size())).value_or(0), 2U);
    QVERIFY(!ParseRegisterAck(*ParseAck(bad.data(), bad.size())));
}

void tst_GvcpCodec::ParseMemoryAck_ShortOrOtherAddress_IsRefused()
{
    const std::vector<uint8_t> datagram = Bytes("0000 0085 0008 0001 00000200 41424344");
    const GvcpAck ack = *ParseAck(datagram.data(), datagram.size());
    QCOMPARE(ParseMemoryAck(ack, 0x200, 4), datagram.data() + 12);
    QVERIFY(ParseMemoryAck(ack, 0x200, 5) == nullptr);
    QVERIFY(ParseMemoryAck(ack, 0x204, 4) == nullptr);
}

void tst_GvcpCodec::ParsePendingAck_GivesTheTime()
{
    const std::vector<uint8_t> datagram = Bytes("0000 0089 0004 0001 0000 03e8");
    const GvcpAck ack = *ParseAck(datagram.data(), datagram.size());
    QCOMPARE(ParsePendingAck(ack).value_or(0), uint16_t{1000});
}

QTEST_APPLESS_MAIN(tst_GvcpCodec)
#include "tst_gvcpcodec.moc"
