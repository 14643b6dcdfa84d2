#include "faultfixture.h"

#include <QtTest>

using namespace KxFarm;

/// What registers hold past all checks.
class tst_RegisterFaults : public QObject, private FaultFixture
{
    Q_OBJECT

private slots:
    void init() { Reset(); }

    void Value_Fitting_IsInTheRegister_data();
    void Value_Fitting_IsInTheRegister();
    void Value_NotFitting_IsRefused_data();
    void Value_NotFitting_IsRefused();
    void Value_SeveralFeatures_AllHoldTheirs();
    void Value_Masked_LeavesTheOtherBits();
    void Value_Ends_RegisterIsAsBefore();
    void Value_WrittenMeanwhile_StaysAsWritten();

private:
    QByteArray Register(const char *feature); // its bytes in hexadecimal
};

QByteArray tst_RegisterFaults::Register(const char *feature)
{
    NodeEvaluator evaluator(m_pCamera->Device().Model().nodes, m_pClient.get());
    const auto span = evaluator.Span(evaluator.RegisterOf(Feature(feature)));
    QByteArray bytes(span ? static_cast<int>(span->size) : 0, '\0');
    if (span)
        m_pClient->Read(span->address, reinterpret_cast<std::uint8_t *>(bytes.data()), span->size);
    return bytes.toHex();
}

void tst_RegisterFaults::Value_Fitting_IsInTheRegister_data()
{
    QTest::addColumn<QByteArray>("feature");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const char *feature, const char *value, const char *bytes) {
        QTest::newRow(name) << QByteArray(feature) << QByteArray(value) << QByteArray(bytes);
    };
    row("beyond the limit", "Width", "5000", "00001388");
    row("hexadecimal", "Width", "0xFFFFFFFF", "ffffffff");
    row("negative", "Width", "-2", "fffffffe");
    row("least", "EncoderPositionOffset", "-2147483648", "80000000");
    row("other byte order", "OffsetX", "1", "01000000");
    row("no entry", "ExposureMode", "77", "0000004d");
    row("neither on nor off", "GammaEnable", "9", "00000009");
    row("2^63", "LineFaultMask", "9223372036854775808", "8000000000000000");
    row("2^64 - 1", "LineFaultMask", "0xFFFFFFFFFFFFFFFF", "ffffffffffffffff");
    row("-1 in 64 bits", "LineFaultMask", "-1", "ffffffffffffffff");
    row("no number", "AcquisitionFrameRate", "nan", "7fc00000");
    row("infinity", "AcquisitionFrameRate", "inf", "7f800000");
    row("negative infinity in 64 bits", "TriggerDelay", "-inf", "000000000000f0ff");
    row("denormal", "AcquisitionFrameRate", "1e-45", "00000001");
    row("below a converter", "Gain", "3", "00000003");
    row("text", "DeviceNote", "a\\x20b\\\\",
        "6120625c00000000000000000000000000000000000000000000000000000000");
    row("text to the last byte", "DeviceNote", "0123456789abcdef0123456789abcde\\xff",
        "30313233343536373839616263646566303132333435363738396162636465ff");
    row("bootstrap text", "DeviceUserID", "\\xc3\\x28", "c3280000000000000000000000000000");
}

void tst_RegisterFaults::Value_Fitting_IsInTheRegister()
{
    QFETCH(QByteArray, feature);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, bytes);

    QCOMPARE(Set("value", feature + '=' + value), QByteArray());

    QCOMPARE(Register(feature), bytes);
    QCOMPARE(m_pCamera->Get("value"), feature + '=' + value);
}

void tst_RegisterFaults::Value_NotFitting_IsRefused_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("no value") << QByteArray("Width");
    QTest::newRow("no such feature") << QByteArray("Wideness=1");
    QTest::newRow("no number") << QByteArray("Width=wide");
    QTest::newRow("nothing") << QByteArray("Width=");
    QTest::newRow("33 bits") << QByteArray("Width=4294967296");
    QTest::newRow("negative, 33 bits") << QByteArray("Width=-2147483649");
    QTest::newRow("65 bits") << QByteArray("LineFaultMask=18446744073709551616");
    QTest::newRow("more than a field's bits") << QByteArray("DigitalShift=256");
    QTest::newRow("beyond single precision") << QByteArray("AcquisitionFrameRate=1e39");
    QTest::newRow("beyond double precision") << QByteArray("TriggerDelay=1e999");
    QTest::newRow("33 characters") << QByteArray("DeviceNote=0123456789abcdef0123456789abcdef0");
    QTest::newRow("no register") << QByteArray("WidthMax=1");
    QTest::newRow("the second of two") << QByteArray("Height=100 Width=wide");
}

void tst_RegisterFaults::Value_NotFitting_IsRefused()
{
    QFETCH(QByteArray, value);
    const std::int64_t height = Value("Height");

    QVERIFY(!Set("value", value).isEmpty());

    QVERIFY(m_pCamera->ActiveFaults().isEmpty());
    QCOMPARE(Value("Width"), std::int64_t{1936});
    QCOMPARE(Value("Height"), height);
}

void tst_RegisterFaults::Value_SeveralFeatures_AllHoldTheirs()
{
    QCOMPARE(Set("value", "Width=3 Height=0x10"), QByteArray());

    QCOMPARE(Value("Width"), std::int64_t{3});
    QCOMPARE(Value("Height"), std::int64_t{16});
}

void tst_RegisterFaults::Value_Masked_LeavesTheOtherBits()
{
    const QByteArray before = Register("DigitalShift");
    QCOMPARE(Set("value", "DigitalShift=7"), QByteArray());
    QCOMPARE(Value("DigitalShift"), std::int64_t{7});

    QCOMPARE(Set("value", "DigitalShift=0"), QByteArray());

    QCOMPARE(Register("DigitalShift"), before);
}

void tst_RegisterFaults::Value_Ends_RegisterIsAsBefore()
{
    const QByteArray width = Register("Width");
    const QByteArray note = Register("DeviceNote");
    QCOMPARE(Set("value", "Width=1 DeviceNote=\\xff Width=2"), QByteArray());
    QCOMPARE(Value("Width"), std::int64_t{2});

    QCOMPARE(Set("value", "off"), QByteArray());

    QCOMPARE(Register("Width"), width);
    QCOMPARE(Register("DeviceNote"), note);
}

void tst_RegisterFaults::Value_WrittenMeanwhile_StaysAsWritten()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(Set("value", "ExposureMode=77 Width=3"), QByteArray());
    QCOMPARE(SetFeature("Width", 640), Gvcp::STATUS_SUCCESS);

    m_pCamera->ClearFaults();

    QCOMPARE(Value("Width"), std::int64_t{640});
    QCOMPARE(Value("ExposureMode"), std::int64_t{0});
}

QTEST_APPLESS_MAIN(tst_RegisterFaults)
#include "tst_registerfaults.moc"
