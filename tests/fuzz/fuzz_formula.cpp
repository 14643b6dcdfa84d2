// Formulas of a description that somebody gives to the simulator.
#include <cmath>

#include "genicam/formula.h"

#include "check.h"

using KxFarm::Formula;

namespace {

constexpr std::size_t kLongestInput = 64 << 10;

std::optional<std::int64_t> IntegerOf(const Formula &formula, std::int64_t value)
{
    return formula.EvaluateInteger([value](const QByteArray &name) {
        return name == "NONE" ? std::optional<std::int64_t>() : std::optional<std::int64_t>(value);
    });
}

std::optional<double> FloatOf(const Formula &formula, double value)
{
    return formula.EvaluateFloat([value](const QByteArray &) { return value; });
}

/// Parentheses and a sum with nothing change no value.
void CheckInParentheses(const Formula &formula, const QByteArray &text)
{
    Formula same;
    if (!same.Compile("0 + (" + text + ")"))
        return; // one level too deep
    for (const std::int64_t value : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{42}, INT64_MIN})
        FUZZ_CHECK(IntegerOf(formula, value) == IntegerOf(same, value));
    const auto a = FloatOf(formula, 2.5);
    const auto b = FloatOf(same, 2.5);
    FUZZ_CHECK(a == b || (a && b && std::isnan(*a) && std::isnan(*b)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *pData, std::size_t nSize)
{
    if (nSize > kLongestInput)
        return 0;
    const QByteArray text(reinterpret_cast<const char *>(pData), static_cast<int>(nSize));
    Formula formula;
    const bool compiled = formula.Compile(text);
    FUZZ_CHECK(compiled == formula.IsValid());
    if (compiled)
        CheckInParentheses(formula, text);
    else
        FUZZ_CHECK(!IntegerOf(formula, 1) && !FloatOf(formula, 1));
    return 0;
}
