#include "genicam/formula.h"

#include <QtTest>

using KxFarm::Formula;

class tst_Formula : public QObject
{
    Q_OBJECT

private slots:
    void EvaluateInteger_Text_HasItsValue_data();
    void EvaluateInteger_Text_HasItsValue();
    void EvaluateFloat_Text_HasItsValue_data();
    void EvaluateFloat_Text_HasItsValue();
    void Compile_NoFormula_IsRefused_data();
    void Compile_NoFormula_IsRefused();
    void EvaluateInteger_DivisionByZero_HasNoValue();
    void EvaluateInteger_DivisionByZeroInTheOtherBranch_DoesNotMatter();
};

void tst_Formula::EvaluateInteger_Text_HasItsValue_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qint64>("value");
    QTest::newRow("precedence") << QByteArray("1 + 2 * 3") << qint64{7};
    QTest::newRow("left to right") << QByteArray("20 - 5 - 3") << qint64{12};
    QTest::newRow("power before sign") << QByteArray("-2 ** 2") << qint64{-4};
    QTest::newRow("hexadecimal and mask") << QByteArray("(X & 0xF0) >> 4") << qint64{2};
    QTest::newRow("shift before comparison") << QByteArray("1 << 4 = 16") << qint64{1};
    QTest::newRow("unequal") << QByteArray("X <> 0x2A") << qint64{0};
    QTest::newRow("and, or") << QByteArray("0 || X && 1") << qint64{1};
    QTest::newRow("nested condition") << QByteArray("X < 10 ? 1 : X < 50 ? 2 : 3") << qint64{2};
    QTest::newRow("complement") << QByteArray("~X & 0xFF") << qint64{0xD5};
    QTest::newRow("64 bits") << QByteArray("(1 << 40) | 1") << (qint64{1} << 40 | 1);
    QTest::newRow("negative remainder") << QByteArray("-7 % 3") << qint64{-1};
    QTest::newRow("xor") << QByteArray("X ^ 1") << qint64{43};
    QTest::newRow("two hundred terms") << QByteArray("1+").repeated(199) + "1" << qint64{200};
}

void tst_Formula::EvaluateInteger_Text_HasItsValue()
{
    QFETCH(QByteArray, text);
    QFETCH(qint64, value);
    Formula formula;
    QVERIFY(formula.Compile(text));

    const auto result = formula.EvaluateInteger([](const QByteArray &) { return std::int64_t{42}; });

    QVERIFY(result.has_value());
    QCOMPARE(qint64{*result}, value);
}

void tst_Formula::EvaluateFloat_Text_HasItsValue_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("value");
    QTest::newRow("fraction") << QByteArray("X / 4") << 0.625;
    QTest::newRow("exponent") << QByteArray("1.5e-3 * 2") << 0.003;
    QTest::newRow("functions") << QByteArray("ROUND(X) + TRUNC(-2.7) + SQRT(16)") << 5.0;
    QTest::newRow("logarithm") << QByteArray("20 * LG(10)") << 20.0;
    QTest::newRow("condition") << QByteArray("(X > 2.4) ? 1.25 : 0") << 1.25;
}

void tst_Formula::EvaluateFloat_Text_HasItsValue()
{
    QFETCH(QByteArray, text);
    QFETCH(double, value);
    Formula formula;
    QVERIFY(formula.Compile(text));

    const auto result = formula.EvaluateFloat([](const QByteArray &) { return 2.5; });

    QVERIFY(result.has_value());
    QCOMPARE(*result, value);
}

void tst_Formula::Compile_NoFormula_IsRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("open parenthesis") << QByteArray("(1 + 2");
    QTest::newRow("operand missing") << QByteArray("1 +");
    QTest::newRow("condition without else") << QByteArray("1 ? 2");
    QTest::newRow("unknown function") << QByteArray("MEDIAN(1)");
    QTest::newRow("two values") << QByteArray("1 2");
    QTest::newRow("too many terms") << QByteArray("1+").repeated(100000) + "1";
    QTest::newRow("too deep") << QByteArray("(").repeated(100000) + "1" + QByteArray(")").repeated(100000);
}

void tst_Formula::Compile_NoFormula_IsRefused()
{
    QFETCH(QByteArray, text);
    Formula formula;

    QVERIFY(!formula.Compile(text));
    QVERIFY(!formula.IsValid());
}

void tst_Formula::EvaluateInteger_DivisionByZero_HasNoValue()
{
    Formula formula;
    QVERIFY(formula.Compile("1 / X"));

    QVERIFY(!formula.EvaluateInteger([](const QByteArray &) { return std::int64_t{0}; }).has_value());
}

void tst_Formula::EvaluateInteger_DivisionByZeroInTheOtherBranch_DoesNotMatter()
{
    Formula formula;
    QVERIFY(formula.Compile("X = 0 ? 7 : 1 / X"));

    QCOMPARE(formula.EvaluateInteger([](const QByteArray &) { return std::int64_t{0}; }).value_or(-1),
             std::int64_t{7});
}

QTEST_APPLESS_MAIN(tst_Formula)
#include "tst_formula.moc"
