#include "features/genapiformula.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include <glib.h>

#include "features/convertnumber.h"

namespace kxcc {

namespace {

/// Of parentheses, signs and conditions; each costs stack. Real formulas stay below 90.
constexpr int kMaxDepth = 400;

struct Operator
{
    const char *szText;
    int nLevel; ///< the higher, the closer it binds
};

constexpr int kPowerLevel = 11;
// The longer ones first: "<" begins "<=", too.
constexpr Operator kOperators[] = {
    {"||", 1}, {"&&", 2}, {"<>", 6}, {"<=", 7}, {">=", 7}, {"<<", 8}, {">>", 8}, {"**", kPowerLevel},
    {"|", 3},  {"^", 4},  {"&", 5},  {"=", 6},  {"<", 7},  {">", 7},  {"+", 9},  {"-", 9},
    {"*", 10}, {"/", 10}, {"%", 10}};

double Sign(double x)
{
    return x > 0 ? 1 : (x < 0 ? -1 : 0);
}

struct Function
{
    const char *szName;
    double (*compute)(double);
};

constexpr Function kFunctions[] = {
    {"ATAN", [](double x) { return std::atan(x); }},   {"COS", [](double x) { return std::cos(x); }},
    {"SIN", [](double x) { return std::sin(x); }},     {"TAN", [](double x) { return std::tan(x); }},
    {"ABS", [](double x) { return std::fabs(x); }},    {"EXP", [](double x) { return std::exp(x); }},
    {"LN", [](double x) { return std::log(x); }},      {"LG", [](double x) { return std::log10(x); }},
    {"SQRT", [](double x) { return std::sqrt(x); }},   {"TRUNC", [](double x) { return std::trunc(x); }},
    {"FLOOR", [](double x) { return std::floor(x); }}, {"CEIL", [](double x) { return std::ceil(x); }},
    {"ROUND", [](double x) { return std::round(x); }}, {"ASIN", [](double x) { return std::asin(x); }},
    {"ACOS", [](double x) { return std::acos(x); }}};

bool IsNameStart(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool IsNamePart(char c)
{
    return IsNameStart(c) || std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '.';
}

/// Reads a formula from left to right, and computes what counts on the way.
template <typename T>
class Reader
{
public:
    Reader(const std::string &strText, FormulaScope<T> &scope, bool bCounts)
        : m_szAt(strText.c_str())
        , m_scope(scope)
        , m_bCounts(bCounts)
    {
    }

    std::optional<T> ReadAll()
    {
        const T value = ReadCondition();
        SkipSpace();
        if (m_bFailed || *m_szAt != '\0')
            return std::nullopt;
        return value;
    }

private:
    static constexpr bool kIntegral = std::is_same_v<T, std::int64_t>;

    T Fail()
    {
        m_bFailed = true;
        return T{};
    }

    void SkipSpace()
    {
        while (std::isspace(static_cast<unsigned char>(*m_szAt)) != 0)
            ++m_szAt;
    }

    bool Take(char c)
    {
        SkipSpace();
        if (*m_szAt != c)
            return false;
        ++m_szAt;
        return true;
    }

    const Operator *PeekOperator()
    {
        SkipSpace();
        for (const Operator &candidate : kOperators) {
            if (std::strncmp(m_szAt, candidate.szText, std::strlen(candidate.szText)) == 0)
                return &candidate;
        }
        return nullptr;
    }

    /// Reads on with nothing computed when bCounts is false.
    template <typename Read>
    T ReadIf(bool bCounts, Read read)
    {
        const bool bBefore = m_bCounts;
        m_bCounts = bBefore && bCounts;
        const T value = read();
        m_bCounts = bBefore;
        return value;
    }

    T ReadCondition()
    {
        const T condition = ReadBinary(1);
        if (m_bFailed || !Take('?'))
            return condition;
        if (++m_nDepth > kMaxDepth)
            return Fail();
        const T yes = ReadIf(condition != 0, [this] { return ReadCondition(); });
        if (m_bFailed || !Take(':'))
            return Fail();
        const T no = ReadIf(condition == 0, [this] { return ReadCondition(); });
        --m_nDepth;
        return condition != 0 ? yes : no;
    }

    T ReadBinary(int nLowest)
    {
        if (++m_nDepth > kMaxDepth)
            return Fail();
        T left = ReadUnary();
        const Operator *pOperator = nullptr;
        while (!m_bFailed && (pOperator = PeekOperator()) != nullptr && pOperator->nLevel >= nLowest) {
            m_szAt += std::strlen(pOperator->szText);
            const bool bDecided = (pOperator->szText[0] == '|' && pOperator->nLevel == 1 && left != 0) ||
                                  (pOperator->nLevel == 2 && left == 0);
            const int nNext = pOperator->nLevel == kPowerLevel ? kPowerLevel : pOperator->nLevel + 1;
            const T right = ReadIf(!bDecided, [this, nNext] { return ReadBinary(nNext); });
            if (m_bCounts && !m_bFailed)
                left = Combine(pOperator->szText, left, right);
        }
        --m_nDepth;
        return left;
    }

    T ReadUnary()
    {
        SkipSpace();
        if (IsNameStart(*m_szAt))
            return ReadName();
        if (std::isdigit(static_cast<unsigned char>(*m_szAt)) != 0 || *m_szAt == '.')
            return ReadNumber();
        if (++m_nDepth > kMaxDepth)
            return Fail();
        T value{};
        if (Take('('))
            value = ReadArgument();
        else if (Take('-'))
            value = Negated(ReadUnary());
        else if (Take('+'))
            value = ReadUnary();
        else if (Take('~'))
            value = static_cast<T>(~Whole(ReadUnary()));
        else
            return Fail();
        --m_nDepth;
        return value;
    }

    /// Behind an opening parenthesis, up to the closing one.
    T ReadArgument()
    {
        const T value = ReadCondition();
        return !m_bFailed && Take(')') ? value : Fail();
    }

    T ReadNumber()
    {
        gchar *pEnd = nullptr;
        gchar *pFloatEnd = nullptr;
        errno = 0;
        // Unsigned, for masks of all 64 bits.
        const guint64 nValue = g_ascii_strtoull(m_szAt, &pEnd, 0);
        const bool bTooLarge = errno == ERANGE;
        const double dValue = g_ascii_strtod(m_szAt, &pFloatEnd);
        const bool bFloat = pFloatEnd > pEnd || bTooLarge;
        m_szAt = std::max(pEnd, pFloatEnd);
        if (!bFloat)
            return kIntegral ? static_cast<T>(static_cast<std::int64_t>(nValue)) : static_cast<T>(nValue);
        const std::optional<T> value = ConvertNumber<T>(dValue);
        return value && std::isfinite(dValue) ? *value : Fail();
    }

    T ReadName()
    {
        const char *const szBegin = m_szAt;
        while (IsNamePart(*m_szAt))
            ++m_szAt;
        std::string strName(szBegin, m_szAt);
        if (m_scope.Has(strName))
            return ReadValue(strName);
        std::transform(strName.begin(), strName.end(), strName.begin(), g_ascii_toupper);
        const bool bOpen = Take('(');
        if (strName == "PI" || strName == "E")
            return !bOpen || Take(')') ? static_cast<T>(strName == "E" ? G_E : G_PI) : Fail();
        return bOpen && ++m_nDepth <= kMaxDepth ? ReadFunction(strName) : Fail();
    }

    T ReadValue(const std::string &strName)
    {
        if (!m_bCounts)
            return T{};
        const std::optional<T> value = m_scope.ValueOf(strName);
        return value ? *value : Fail();
    }

    T ReadFunction(const std::string &strName)
    {
        const T value = ReadCondition();
        double dScale = 1;
        if (!m_bFailed && strName == "ROUND" && Take(','))
            dScale = std::pow(10.0, static_cast<double>(ReadCondition()));
        --m_nDepth;
        if (m_bFailed || !Take(')'))
            return Fail();
        if (strName == "NEG")
            return Negated(value);
        if (strName == "SGN")
            return static_cast<T>(Sign(static_cast<double>(value)));
        for (const Function &function : kFunctions) {
            if (!kIntegral && strName == function.szName)
                return static_cast<T>(function.compute(static_cast<double>(value) * dScale) / dScale);
        }
        return Fail();
    }

    T Negated(T value)
    {
        if constexpr (kIntegral)
            return static_cast<T>(0 - static_cast<std::uint64_t>(value));
        else
            return -value;
    }

    std::int64_t Whole(T value)
    {
        const std::optional<std::int64_t> whole = ConvertNumber<std::int64_t>(value);
        return whole ? *whole : static_cast<std::int64_t>(Fail());
    }

    T Combine(const char *szOperator, T a, T b)
    {
        switch (szOperator[0]) {
        case '+':
            return kIntegral ? Wrapped(Bits(a) + Bits(b)) : a + b;
        case '-':
            return kIntegral ? Wrapped(Bits(a) - Bits(b)) : a - b;
        case '*':
            if (szOperator[1] == '*')
                return Power(a, b);
            return kIntegral ? Wrapped(Bits(a) * Bits(b)) : a * b;
        case '/':
            return kIntegral ? Divide(a, b, false) : (b != 0 ? a / b : Fail());
        case '%':
            return Divide(a, b, true);
        case '=':
            return static_cast<T>(a == b);
        case '<':
        case '>':
            return CompareOrShift(szOperator, a, b);
        default:
            return Bitwise(szOperator, a, b);
        }
    }

    T CompareOrShift(const char *szOperator, T a, T b)
    {
        const bool bLess = szOperator[0] == '<';
        switch (szOperator[1]) {
        case '=':
            return static_cast<T>(bLess ? a <= b : a >= b);
        case '\0':
            return static_cast<T>(bLess ? a < b : a > b);
        case '>':
            if (bLess)
                return static_cast<T>(a != b);
            [[fallthrough]];
        default:
            return Shift(Whole(a), Whole(b), bLess);
        }
    }

    T Bitwise(const char *szOperator, T a, T b)
    {
        if (szOperator[1] == '|')
            return static_cast<T>(a != 0 || b != 0);
        if (szOperator[1] == '&')
            return static_cast<T>(a != 0 && b != 0);
        const std::int64_t nA = Whole(a);
        const std::int64_t nB = Whole(b);
        switch (szOperator[0]) {
        case '|':
            return static_cast<T>(nA | nB);
        case '^':
            return static_cast<T>(nA ^ nB);
        default:
            return static_cast<T>(nA & nB);
        }
    }

    T Shift(std::int64_t nValue, std::int64_t nBits, bool bLeft)
    {
        if (nBits < 0)
            return Fail();
        if (bLeft)
            return static_cast<T>(
                nBits > 63 ? 0 : static_cast<std::int64_t>(static_cast<std::uint64_t>(nValue) << nBits));
        return static_cast<T>(nValue >> std::min<std::int64_t>(nBits, 63));
    }

    T Divide(T a, T b, bool bRemainder)
    {
        const std::int64_t nA = Whole(a);
        const std::int64_t nB = Whole(b);
        // The processor traps on both.
        if (nB == 0 || (nA == std::numeric_limits<std::int64_t>::min() && nB == -1))
            return Fail();
        return static_cast<T>(bRemainder ? nA % nB : nA / nB);
    }

    T Power(T a, T b)
    {
        const double dPower = std::pow(static_cast<double>(a), static_cast<double>(b));
        const std::optional<T> value = ConvertNumber<T>(dPower);
        return value && std::isfinite(dPower) ? *value : Fail();
    }

    static std::uint64_t Bits(T value) { return static_cast<std::uint64_t>(value); }
    static T Wrapped(std::uint64_t nBits) { return static_cast<T>(static_cast<std::int64_t>(nBits)); }

    const char *m_szAt; ///< ends with a NUL
    FormulaScope<T> &m_scope;
    bool m_bCounts; ///< what is read now is computed, too
    bool m_bFailed = false;
    int m_nDepth = 0;
};

} // namespace

template <typename T>
std::optional<T> GenApiFormula<T>::Evaluate(const std::string &strText, FormulaScope<T> &scope)
{
    const std::optional<T> value = Reader<T>(strText, scope, true).ReadAll();
    return value && std::isfinite(static_cast<double>(*value)) ? value : std::nullopt;
}

template <typename T>
bool GenApiFormula<T>::IsSound(const std::string &strText, FormulaScope<T> &scope)
{
    return Reader<T>(strText, scope, false).ReadAll().has_value();
}

template class GenApiFormula<std::int64_t>;
template class GenApiFormula<double>;

} // namespace kxcc
