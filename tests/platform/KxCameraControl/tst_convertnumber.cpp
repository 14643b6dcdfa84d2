#include <QTest>

#include <cmath>
#include <limits>

#include "features/convertnumber.h"

using kxcc::ConvertNumber;

class tst_ConvertNumber : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ToInteger_Double_IsCutOffOrNothing_data();
    void ToInteger_Double_IsCutOffOrNothing();
    void ToDouble_Integer_IsTheNumber();
    void ToItself_AnyNumber_IsUnchanged();
};

void tst_ConvertNumber::ToInteger_Double_IsCutOffOrNothing_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("fits");
    QTest::addColumn<qint64>("number");
    QTest::newRow("whole") << 640.0 << true << qint64{640};
    QTest::newRow("fraction") << 2.9 << true << qint64{2};
    QTest::newRow("negative fraction") << -2.9 << true << qint64{-2};
    QTest::newRow("least") << -std::ldexp(1.0, 63) << true << std::numeric_limits<qint64>::min();
    QTest::newRow("below the least") << std::nextafter(-std::ldexp(1.0, 63), -HUGE_VAL) << false << qint64{0};
    QTest::newRow("greatest") << std::nextafter(std::ldexp(1.0, 63), 0.0) << true
                              << qint64{0x7FFFFFFFFFFFFC00};
    QTest::newRow("above the greatest") << std::ldexp(1.0, 63) << false << qint64{0};
    QTest::newRow("infinity") << HUGE_VAL << false << qint64{0};
    QTest::newRow("no number") << std::nan("") << false << qint64{0};
}

void tst_ConvertNumber::ToInteger_Double_IsCutOffOrNothing()
{
    QFETCH(double, value);
    QFETCH(bool, fits);
    QFETCH(qint64, number);

    const auto converted = ConvertNumber<std::int64_t>(value);

    QCOMPARE(converted.has_value(), fits);
    QCOMPARE(qint64{converted.value_or(0)}, number);
}

void tst_ConvertNumber::ToDouble_Integer_IsTheNumber()
{
    QCOMPARE(ConvertNumber<double>(std::int64_t{-5}).value_or(0), -5.0);
    QCOMPARE(ConvertNumber<double>(std::numeric_limits<std::int64_t>::min()).value_or(0),
             -std::ldexp(1.0, 63));
}

void tst_ConvertNumber::ToItself_AnyNumber_IsUnchanged()
{
    QCOMPARE(ConvertNumber<double>(1e300).value_or(0), 1e300);
    const std::int64_t nGreatest = std::numeric_limits<std::int64_t>::max(); // no double has it
    QVERIFY(ConvertNumber<std::int64_t>(nGreatest).value_or(0) == nGreatest);
}

QTEST_APPLESS_MAIN(tst_ConvertNumber)
#include "tst_convertnumber.moc"
