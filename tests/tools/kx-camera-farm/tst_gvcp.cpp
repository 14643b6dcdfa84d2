#include "wire/gvcp.h"

#include <QtTest>

using namespace KxFarm;

namespace {

QByteArray Hex(const Bytes &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()))
        .toHex(' ');
}

Gvcp::Parsed Parse(const QByteArray &bytes, Gvcp::Request *pRequest)
{
    return Gvcp::ParseRequest(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                              static_cast<std::size_t>(bytes.size()), pRequest);
}

} // namespace

class tst_Gvcp : public QObject
{
    Q_OBJECT

private slots:
    void ParseRequest_ReadregOfOneRegister_EveryFieldComesOut();
    void ParseRequest_Damaged_IsIgnoredOrRefused_data();
    void ParseRequest_Damaged_IsIgnoredOrRefused();
    void MakeAck_WithPayload_HeaderHasItsLength();
    void MakeErrorAck_OfWritereg_HasIndexZero();
    void MakePendingAck_OneSecond_IsTheStandardsPacket();
};

void tst_Gvcp::ParseRequest_ReadregOfOneRegister_EveryFieldComesOut()
{
    const QByteArray bytes = QByteArray::fromHex("42 01 0080 0004 1234 00000a00");
    Gvcp::Request request;

    QCOMPARE(Parse(bytes, &request), Gvcp::Parsed::Ok);

    QCOMPARE(request.command, std::uint16_t{Gvcp::READREG_CMD});
    QCOMPARE(request.id, std::uint16_t{0x1234});
    QVERIFY(request.AckRequired());
    QCOMPARE(request.size, std::size_t{4});
    QCOMPARE(LoadBe32(request.payload), 0x0A00U);
}

void tst_Gvcp::ParseRequest_Damaged_IsIgnoredOrRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("answered");
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("seven bytes") << QByteArray::fromHex("42 01 0080 0000 12") << false;
    QTest::newRow("wrong key") << QByteArray::fromHex("43 01 0002 0000 1234") << false;
    QTest::newRow("request id zero") << QByteArray::fromHex("42 01 0002 0000 0000") << false;
    QTest::newRow("length beyond the datagram")
        << QByteArray::fromHex("42 01 0080 0008 1234 00000a00") << true;
    QTest::newRow("length short of the datagram")
        << QByteArray::fromHex("42 01 0080 0000 1234 00000a00") << true;
    QTest::newRow("longer than a command may be")
        << QByteArray::fromHex("42 01 0086 0220 1234") + QByteArray(0x220, 0) << true;
}

void tst_Gvcp::ParseRequest_Damaged_IsIgnoredOrRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, answered);
    Gvcp::Request request;

    QCOMPARE(Parse(bytes, &request), answered ? Gvcp::Parsed::BadHeader : Gvcp::Parsed::Ignore);
    QCOMPARE(request.size, std::size_t{0});
}

void tst_Gvcp::MakeAck_WithPayload_HeaderHasItsLength()
{
    const std::uint8_t payload[] = {0xDE, 0xAD, 0xBE, 0xEF};

    QCOMPARE(Hex(Gvcp::MakeAck(Gvcp::STATUS_SUCCESS, 0x0081, 0x1234, payload, 4)),
             QByteArray("00 00 00 81 00 04 12 34 de ad be ef"));
}

void tst_Gvcp::MakeErrorAck_OfWritereg_HasIndexZero()
{
    Gvcp::Request request;
    request.command = Gvcp::WRITEREG_CMD;
    request.id = 7;

    QCOMPARE(Hex(Gvcp::MakeErrorAck(Gvcp::STATUS_ACCESS_DENIED, request)),
             QByteArray("80 06 00 83 00 04 00 07 00 00 00 00"));
}

void tst_Gvcp::MakePendingAck_OneSecond_IsTheStandardsPacket()
{
    QCOMPARE(Hex(Gvcp::MakePendingAck(0x1234, 1000)), QByteArray("00 00 00 89 00 04 12 34 00 00 03 e8"));
}

QTEST_APPLESS_MAIN(tst_Gvcp)
#include "tst_gvcp.moc"
