#include "faults/faultvalue.h"

#include <QtTest>

using namespace KxFarm;

/// How the words after a fault's name are read.
class tst_FaultValue : public QObject
{
    Q_OBJECT

private slots:
    void ParseNumber_Text_IsTheNumberOrRefused_data();
    void ParseNumber_Text_IsTheNumberOrRefused();
    void ParseNumber_Refused_ErrorTellsTextAndLimits();
    void ParseLoopbackAddress_Text_IsTheAddressOrRefused_data();
    void ParseLoopbackAddress_Text_IsTheAddressOrRefused();
    void Unescaped_Text_HasTheBytesMeant_data();
    void Unescaped_Text_HasTheBytesMeant();
    void IsOff_Text_IsOnlyForWhatSwitchesOff();
};

void tst_FaultValue::ParseNumber_Text_IsTheNumberOrRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("good");
    QTest::addColumn<qint64>("number");
    const auto row = [](const char *name, const char *text, bool good, qint64 number) {
        QTest::newRow(name) << QByteArray(text) << good << number;
    };
    row("decimal", "25", true, 25);
    row("hexadecimal", "0x1F", true, 31);
    row("leading zero", "010", true, 10);
    row("blanks around it", " 7 ", true, 7);
    row("the least", "-5", true, -5);
    row("less than the least", "-6", false, 0);
    row("the greatest", "1000", true, 1000);
    row("more than the greatest", "1001", false, 0);
    row("beyond 64 bits", "99999999999999999999", false, 0);
    row("empty", "", false, 0);
    row("0x alone", "0x", false, 0);
    row("with something behind it", "7 8", false, 0);
    row("fraction", "1.5", false, 0);
}

void tst_FaultValue::ParseNumber_Text_IsTheNumberOrRefused()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, good);
    QFETCH(qint64, number);
    std::int64_t parsed = 0;
    QString error;

    QCOMPARE(ParseNumber(text, -5, 1000, &parsed, &error), good);

    QCOMPARE(error.isEmpty(), good);
    if (good)
        QCOMPARE(qint64{parsed}, number);
}

void tst_FaultValue::ParseNumber_Refused_ErrorTellsTextAndLimits()
{
    std::int64_t parsed = 0;
    QString error;

    QVERIFY(!ParseNumber("many", -5, 1000, &parsed, &error));

    QCOMPARE(error, QString("\"many\" is no number from -5 to 1000"));
}

void tst_FaultValue::ParseLoopbackAddress_Text_IsTheAddressOrRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<std::uint32_t>("address"); // 0: refused
    QTest::newRow("loopback") << "127.0.10.1" << 0x7F000A01U;
    QTest::newRow("last host") << "127.255.255.254" << 0x7FFFFFFEU;
    QTest::newRow("network address") << "127.0.10.0" << 0U;
    QTest::newRow("broadcast address") << "127.0.10.255" << 0U;
    QTest::newRow("of a real network") << "192.168.0.1" << 0U;
    QTest::newRow("part beyond a byte") << "127.0.256.1" << 0U;
    QTest::newRow("three parts") << "127.0.1" << 0U;
    QTest::newRow("five parts") << "127.0.0.0.1" << 0U;
    QTest::newRow("empty part") << "127..0.1" << 0U;
    QTest::newRow("negative part") << "127.0.-1.1" << 0U;
    QTest::newRow("empty") << "" << 0U;
}

void tst_FaultValue::ParseLoopbackAddress_Text_IsTheAddressOrRefused()
{
    QFETCH(QString, text);
    QFETCH(std::uint32_t, address);
    std::uint32_t parsed = 0;

    QCOMPARE(ParseLoopbackAddress(text, &parsed), address != 0);

    if (address != 0) {
        QCOMPARE(parsed, address);
        QCOMPARE(AddressText(parsed), text);
    }
}

void tst_FaultValue::Unescaped_Text_HasTheBytesMeant_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing to do") << QByteArray("abc") << QByteArray("abc");
    QTest::newRow("bytes") << QByteArray("a\\xff\\x00b") << QByteArray("a\xff\0b", 4);
    QTest::newRow("byte at the end") << QByteArray("\\x41") << QByteArray("A");
    QTest::newRow("backslash") << QByteArray("a\\\\b") << QByteArray("a\\b");
    QTest::newRow("escaped backslash before x") << QByteArray("\\\\x41") << QByteArray("\\x41");
    QTest::newRow("backslash at the end") << QByteArray("a\\") << QByteArray("a\\");
    QTest::newRow("half a byte at the end") << QByteArray("\\x4") << QByteArray("x4");
}

void tst_FaultValue::Unescaped_Text_HasTheBytesMeant()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, bytes);

    QCOMPARE(Unescaped(text), bytes);
}

void tst_FaultValue::IsOff_Text_IsOnlyForWhatSwitchesOff()
{
    for (const char *text : {"", "0", "off"})
        QVERIFY2(IsOff(text), text);
    for (const char *text : {"1", "00", "on", "OFF", "off "})
        QVERIFY2(!IsOff(text), text);
}

QTEST_APPLESS_MAIN(tst_FaultValue)
#include "tst_faultvalue.moc"
