#ifndef KXCAMERAFARM_FORMULA_H
#define KXCAMERAFARM_FORMULA_H

#include <QByteArray>
#include <QVector>
#include <functional>
#include <optional>
#include <vector>

namespace KxFarm {

/// A formula of a swiss knife or converter (GenICam GenApi 2.1, 2.8.14: operators, functions, constants).
///
/// Compiled once, evaluated often. Immutable after Compile().
class Formula
{
public:
    /// The value of a variable; nothing when it cannot be had.
    using Variable = std::function<std::optional<double>(const QByteArray &name)>;
    using IntegerVariable = std::function<std::optional<std::int64_t>(const QByteArray &name)>;

    /// False when `text` is no formula; IsValid() stays false.
    bool Compile(const QByteArray &text);
    bool IsValid() const { return !m_listNodes.empty(); }

    /// Nothing when a variable is missing or the value does not exist (division by zero).
    std::optional<double> EvaluateFloat(const Variable &variable) const;
    std::optional<std::int64_t> EvaluateInteger(const IntegerVariable &variable) const;

private:
    friend class FormulaParser;

    enum class Op
    {
        Number,
        Variable,
        Condition, // three operands
        LogicalOr,
        LogicalAnd,
        Or,
        Xor,
        And,
        Equal,
        NotEqual,
        LessEqual,
        GreaterEqual,
        Less,
        Greater,
        ShiftRight,
        ShiftLeft,
        Subtract,
        Add,
        Remainder,
        Divide,
        Multiply,
        Power,
        Negate, // one operand from here on
        Complement,
        Function,
    };
    struct Node
    {
        Op op = Op::Number;
        int operands[3] = {-1, -1, -1}; // places in m_listNodes
        int height = 1;                 // levels of nodes at and below this one; evaluating recurses so deep
        double number = 0;
        std::int64_t integer = 0;
        QByteArray name; // of a variable
        double (*function)(double) = nullptr;
    };

    template <typename T, typename Lookup>
    std::optional<T> Evaluate(int index, const Lookup &lookup) const;
    template <typename T>
    static std::optional<T> Combine(Op op, T a, T b);

    std::vector<Node> m_listNodes; // the last one is the root
};

} // namespace KxFarm

#endif
