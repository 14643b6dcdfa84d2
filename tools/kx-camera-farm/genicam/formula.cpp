#include "genicam/formula.h"

#include "genicam/formulaparser.h"

#include <cmath>
#include <limits>
#include <type_traits>

namespace KxFarm {

namespace {

std::int64_t ToInteger(double value)
{
    // Conversions of what does not fit are undefined in C++; a camera would saturate.
    if (!(value > -9.2e18))
        return std::numeric_limits<std::int64_t>::min();
    return value < 9.2e18 ? static_cast<std::int64_t>(value) : std::numeric_limits<std::int64_t>::max();
}
std::int64_t ToInteger(std::int64_t value)
{
    return value;
}

/// Wraps instead of overflowing.
std::int64_t Wrapped(std::uint64_t value)
{
    return static_cast<std::int64_t>(value);
}

double Add(double a, double b)
{
    return a + b;
}
double Subtract(double a, double b)
{
    return a - b;
}
double Multiply(double a, double b)
{
    return a * b;
}
std::int64_t Add(std::int64_t a, std::int64_t b)
{
    return Wrapped(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}
std::int64_t Subtract(std::int64_t a, std::int64_t b)
{
    return Wrapped(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}
std::int64_t Multiply(std::int64_t a, std::int64_t b)
{
    return Wrapped(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}

std::optional<double> Divide(double a, double b)
{
    return b == 0.0 ? std::nullopt : std::optional<double>(a / b);
}
std::optional<std::int64_t> Divide(std::int64_t a, std::int64_t b)
{
    if (b == 0)
        return std::nullopt;
    return b == -1 ? Subtract(std::int64_t{0}, a) : a / b;
}

std::optional<double> Remainder(double a, double b)
{
    return b == 0.0 ? std::nullopt : std::optional<double>(std::fmod(a, b));
}
std::optional<std::int64_t> Remainder(std::int64_t a, std::int64_t b)
{
    if (b == 0)
        return std::nullopt;
    return b == -1 ? 0 : a % b;
}

std::int64_t Shift(std::int64_t value, std::int64_t by, bool left)
{
    if (by < 0 || by > 63)
        return 0;
    return left ? Wrapped(static_cast<std::uint64_t>(value) << static_cast<unsigned>(by))
                : value >> static_cast<unsigned>(by);
}

} // namespace

bool Formula::Compile(const QByteArray &text)
{
    m_listNodes.clear();
    FormulaParser parser(text, this);
    if (parser.Parse())
        return true;
    m_listNodes.clear();
    return false;
}

template <typename T>
std::optional<T> Formula::Combine(Op op, T a, T b)
{
    switch (op) {
    case Op::Or:
        return static_cast<T>(ToInteger(a) | ToInteger(b));
    case Op::Xor:
        return static_cast<T>(ToInteger(a) ^ ToInteger(b));
    case Op::And:
        return static_cast<T>(ToInteger(a) & ToInteger(b));
    case Op::Equal:
        return static_cast<T>(a == b);
    case Op::NotEqual:
        return static_cast<T>(a != b);
    case Op::LessEqual:
        return static_cast<T>(a <= b);
    case Op::GreaterEqual:
        return static_cast<T>(a >= b);
    case Op::Less:
        return static_cast<T>(a < b);
    case Op::Greater:
        return static_cast<T>(a > b);
    case Op::ShiftRight:
        return static_cast<T>(Shift(ToInteger(a), ToInteger(b), false));
    case Op::ShiftLeft:
        return static_cast<T>(Shift(ToInteger(a), ToInteger(b), true));
    case Op::Subtract:
        return Subtract(a, b);
    case Op::Add:
        return Add(a, b);
    case Op::Remainder:
        return Remainder(a, b);
    case Op::Divide:
        return Divide(a, b);
    case Op::Multiply:
        return Multiply(a, b);
    case Op::Power:
        if constexpr (std::is_integral_v<T>)
            return ToInteger(std::pow(static_cast<double>(a), static_cast<double>(b)));
        else
            return std::pow(a, b);
    default:
        return std::nullopt;
    }
}

template <typename T, typename Lookup>
std::optional<T> Formula::Evaluate(int index, const Lookup &lookup) const
{
    const Node &node = m_listNodes[static_cast<std::size_t>(index)];
    if (node.op == Op::Number)
        return std::is_integral_v<T> ? static_cast<T>(node.integer) : static_cast<T>(node.number);
    if (node.op == Op::Variable)
        return lookup(node.name);
    const std::optional<T> a = Evaluate<T>(node.operands[0], lookup);
    if (!a)
        return a;
    switch (node.op) {
    case Op::Condition: // only the branch that counts, the other one may divide by zero
        return Evaluate<T>(*a != 0 ? node.operands[1] : node.operands[2], lookup);
    case Op::Negate:
        return Subtract(T{0}, *a);
    case Op::Complement:
        return static_cast<T>(~ToInteger(*a));
    case Op::Function: {
        const double result = node.function(static_cast<double>(*a));
        return std::is_integral_v<T> ? static_cast<T>(ToInteger(result)) : static_cast<T>(result);
    }
    default:
        break;
    }
    if (node.op == Op::LogicalOr && *a != 0)
        return T{1};
    if (node.op == Op::LogicalAnd && *a == 0)
        return T{0};
    const std::optional<T> b = Evaluate<T>(node.operands[1], lookup);
    if (!b)
        return b;
    if (node.op == Op::LogicalOr || node.op == Op::LogicalAnd)
        return static_cast<T>(*b != 0);
    return Combine(node.op, *a, *b);
}

std::optional<double> Formula::EvaluateFloat(const Variable &variable) const
{
    return IsValid() ? Evaluate<double>(static_cast<int>(m_listNodes.size()) - 1, variable) : std::nullopt;
}

std::optional<std::int64_t> Formula::EvaluateInteger(const IntegerVariable &variable) const
{
    return IsValid() ? Evaluate<std::int64_t>(static_cast<int>(m_listNodes.size()) - 1, variable)
                     : std::nullopt;
}

} // namespace KxFarm
