#include <QTest>

#include <cmath>

#include "features/genapiformula.h"

using namespace kxcc;

namespace {

/// X, and Zero, and Missing, which has no value.
template <typename T>
class Names : public FormulaScope<T>
{
public:
    explicit Names(T x)
        : m_x(x)
    {
    }

    bool Has(const std::string &strName) const override
    {
        return strName == "X" || strName == "Zero" || strName == "Missing" || strName == "A.B_1";
    }
    std::optional<T> ValueOf(const std::string &strName) override
    {
        if (strName == "Missing")
            return std::nullopt;
        return strName == "Zero" ? T{} : m_x;
    }

private:
    T m_x;
};

} // namespace

class tst_GenApiFormula : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Evaluate_Integer_HasItsValue_data();
    void Evaluate_Integer_HasItsValue();
    void Evaluate_Float_HasItsValue_data();
    void Evaluate_Float_HasItsValue();
    void Evaluate_NoValue_GivesNothing_data();
    void Evaluate_NoValue_GivesNothing();
    void IsSound_NoFormula_IsFalse_data();
    void IsSound_NoFormula_IsFalse();
    void IsSound_ValueDoesNotMatter_IsTrue();
    void IsSound_Nesting_IsBounded();
};

void tst_GenApiFormula::Evaluate_Integer_HasItsValue_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qint64>("value");
    const auto row = [](const char *szText, qint64 nValue) {
        QTest::newRow(szText) << QByteArray(szText) << nValue;
    };
    row("1 + 2 * 3", 7);
    row("20 - 5 - 3", 12);
    row("2 ** 3 ** 2", 512);
    row("-2 ** 2", 4);
    row("2*-3", -6);
    row("3 - -2", 5);
    row("+3", 3);
    row("7 / 2", 3);
    row("-7 / 2", -3);
    row("-7 % 3", -1);
    row("7 % -3", 1);
    row("(X & 0xF0) >> 4", 2);
    row("X ^ 3 | 64", 105);
    row("1 | 2 ^ 3 & 4", 3);
    row("5 & 3 = 3", 1);
    row("~X & 0xFF", 0xD5);
    row("1 << 4 = 16", 1);
    row("5 << 1 + 1", 20);
    row("1 << 63", std::numeric_limits<qint64>::min());
    row("1 << 64", 0);
    row("-8 >> 1", -4);
    row("-8 >> 70", -1);
    row("X = 42", 1);
    row("X <> 42", 0);
    row("X < 42", 0);
    row("X > 42", 0);
    row("X <= 42", 1);
    row("X >= 42", 1);
    row("X >= 43", 0);
    row("X <= 41", 0);
    row("0 || X", 1);
    row("0 || 0", 0);
    row("X && 1", 1);
    row("X && 0", 0);
    row("0 || X && 0", 0);
    row("1 || 1 / Zero", 1);
    row("0 && 1 / Zero", 0);
    row("X = 42 ? 1 : 1 / Zero", 1);
    row("X = 0 ? 1 / Zero : 2", 2);
    row("X < 10 ? 1 : X < 50 ? 2 : 3", 2);
    row("1 ? 2 : 0 ? 3 : 4", 2);
    row("SGN(-5) + NEG(3)", -4);
    row("SGN(0)", 0);
    row("SGN(7)", 1);
    row("0xFFFFFFFFFFFFFFFF", -1);
    row("0x7FFFFFFFFFFFFFFF + 1", std::numeric_limits<qint64>::min());
    row("010", 8);
    row("1.9 * 2", 2);
    row("1e3", 1000);
    row("PI", 3);
    row("E()", 2);
    row("A.B_1", 42);
    row("\t(X)\n", 42);
}

void tst_GenApiFormula::Evaluate_Integer_HasItsValue()
{
    QFETCH(QByteArray, text);
    QFETCH(qint64, value);
    Names<std::int64_t> names(42);
    const auto result = GenApiFormula<std::int64_t>::Evaluate(text.toStdString(), names);
    QVERIFY(result);
    QCOMPARE(qint64{*result}, value);
    QVERIFY(GenApiFormula<std::int64_t>::IsSound(text.toStdString(), names));
}

void tst_GenApiFormula::Evaluate_Float_HasItsValue_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("value");
    const auto row = [](const char *szText, double dValue) {
        QTest::newRow(szText) << QByteArray(szText) << dValue;
    };
    row("X / 4", 0.625);
    row("7 / 2 * 2", 7);
    row("5.5 % 2", 1);
    row("2 ** -1", 0.5);
    row("X - 1 + 0.25", 1.75);
    row("X > 2.4 ? X : 0", 2.5);
    row("X < 2.6", 1);
    row("X = 2.5", 1);
    row("X <> 2.5", 0);
    row("7.9 & 5.2", 5);
    row("1.5e-3 * 2", 0.003);
    row(".5 + 1.", 1.5);
    row("-X", -2.5);
    row("~0", -1);
    row("18446744073709551616", 18446744073709551616.0);
    row("ABS(-X) + NEG(1) + SGN(-3)", 0.5);
    row("SQRT(16)", 4);
    row("EXP(0)", 1);
    row("LN(E)", 1);
    row("LG(1000)", 3);
    row("SIN(0) + COS(0) + TAN(0)", 1);
    row("sin(PI / 2)", 1);
    row("ASIN(1) - PI / 2", 0);
    row("ACOS(1)", 0);
    row("ATAN(1) * 4 - PI()", 0);
    row("TRUNC(-2.7)", -2);
    row("FLOOR(-2.7)", -3);
    row("CEIL(-2.7)", -2);
    row("ROUND(-2.5)", -3);
    row("ROUND(2.345, 1)", 2.3);
}

void tst_GenApiFormula::Evaluate_Float_HasItsValue()
{
    QFETCH(QByteArray, text);
    QFETCH(double, value);
    Names<double> names(2.5);
    const auto result = GenApiFormula<double>::Evaluate(text.toStdString(), names);
    QVERIFY(result);
    QVERIFY2(std::fabs(*result - value) < 1e-12, qPrintable(QString::number(*result)));
    QVERIFY(GenApiFormula<double>::IsSound(text.toStdString(), names));
}

void tst_GenApiFormula::Evaluate_NoValue_GivesNothing_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("integer");
    QTest::addColumn<bool>("real");
    const auto row = [](const char *szText, bool bInteger, bool bReal) {
        QTest::newRow(szText) << QByteArray(szText) << bInteger << bReal;
    };
    row("1 / Zero", false, false);
    row("1 % Zero", false, false);
    row("1 % 0.5", false, false);
    row("1 || Missing", true, true);
    row("0 || Missing", false, false);
    row("1 ? Missing : 2", false, false);
    row("1 << -1", false, false);
    row("(1 << 63) / -1", false, true);
    row("(1 << 63) % -1", false, false);
    row("0 ** -1", false, false);
    row("10 ** 19", false, true);
    row("10 ** 400", false, false);
    row("2 ** 63", false, true);
    row("LN(Zero)", false, false);
    row("SQRT(-1)", false, false);
    row("1e19", false, true);
    row("1e19 & 1", false, false);
    row("~1e19", false, false);
}

void tst_GenApiFormula::Evaluate_NoValue_GivesNothing()
{
    QFETCH(QByteArray, text);
    Names<std::int64_t> integers(1);
    Names<double> reals(1);
    QTEST(GenApiFormula<std::int64_t>::Evaluate(text.toStdString(), integers).has_value(), "integer");
    QTEST(GenApiFormula<double>::Evaluate(text.toStdString(), reals).has_value(), "real");
}

void tst_GenApiFormula::IsSound_NoFormula_IsFalse_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *szText : {"",
                               " ",
                               "1 +",
                               "* 1",
                               "(1",
                               "1)",
                               "()",
                               "1 2",
                               "X X",
                               "1 ? 2",
                               "1 : 2",
                               "1 ? : 2",
                               "Unknown",
                               "X(1)",
                               "MEDIAN(1)",
                               "SGN",
                               "SGN(",
                               "SGN(1",
                               "SGN 1",
                               "NEG(1, 2)",
                               "ROUND(1, )",
                               "PI(",
                               "0x",
                               "5abc",
                               "1 == 1",
                               "X != 1",
                               "!X",
                               ".",
                               "1e400",
                               "1 ? 2 : Unknown",
                               "0 && Unknown",
                               "0 && (1",
                               "1,5"})
        QTest::newRow(szText) << QByteArray(szText);
}

void tst_GenApiFormula::IsSound_NoFormula_IsFalse()
{
    QFETCH(QByteArray, text);
    Names<std::int64_t> integers(1);
    Names<double> reals(1);
    QVERIFY(!GenApiFormula<std::int64_t>::IsSound(text.toStdString(), integers));
    QVERIFY(!GenApiFormula<double>::IsSound(text.toStdString(), reals));
    QVERIFY(!GenApiFormula<double>::Evaluate(text.toStdString(), reals));
}

void tst_GenApiFormula::IsSound_ValueDoesNotMatter_IsTrue()
{
    Names<std::int64_t> names(1);
    for (const char *szText : {"1 / Zero", "Missing", "1 % (X - X)", "1 << -1"})
        QVERIFY(GenApiFormula<std::int64_t>::IsSound(szText, names));
}

void tst_GenApiFormula::IsSound_Nesting_IsBounded()
{
    Names<double> names(1);
    const auto nested = [](size_t n) {
        return QByteArray("(").repeated(static_cast<int>(n)).toStdString() + "1" + std::string(n, ')');
    };
    QVERIFY(GenApiFormula<double>::IsSound(nested(100), names));
    QVERIFY(!GenApiFormula<double>::IsSound(nested(100000), names));
    QVERIFY(!GenApiFormula<double>::IsSound(std::string(100000, '-') + "1", names));
    for (const char *szPart : {"2**", "1?2:", "SGN("}) {
        const std::string strText = QByteArray(szPart).repeated(100000).toStdString() + "1";
        QVERIFY(!GenApiFormula<double>::IsSound(strText, names));
    }
    // In a row is not in each other.
    QVERIFY(
        GenApiFormula<double>::IsSound(QByteArray("SGN(-(1))+").repeated(10000).toStdString() + "1", names));
    QVERIFY(GenApiFormula<double>::IsSound(QByteArray("X=1?2:").repeated(100).toStdString() + "1", names));
}

QTEST_APPLESS_MAIN(tst_GenApiFormula)
#include "tst_genapiformula.moc"
