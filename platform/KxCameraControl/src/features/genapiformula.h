#ifndef KXCAMERACONTROL_FEATURES_GENAPIFORMULA_H
#define KXCAMERACONTROL_FEATURES_GENAPIFORMULA_H

#include <cstdint>
#include <optional>
#include <string>

namespace kxcc {

/// What the names in a formula stand for.
///
/// T is std::int64_t for the formulas of integers, double for all others.
template <typename T>
class FormulaScope
{
public:
    virtual ~FormulaScope() = default;

    virtual bool Has(const std::string &strName) const = 0;
    /// Nothing when the name's value does not exist.
    virtual std::optional<T> ValueOf(const std::string &strName) = 0;
};

/// A formula of a swiss knife or a converter (GenICam GenApi 2.1, 2.8.14).
///
/// Aravis has an evaluator of its own, but its nodes take the result of a failed evaluation, 0, for a value;
/// and it computes both branches of a condition, so that "X = 0 ? 0 : 1 / X" fails where it matters.
template <typename T>
class GenApiFormula
{
public:
    /// Nothing when it is no formula, or has no value: a division by zero, a result beyond the type. What a
    /// condition leaves out does not matter.
    static std::optional<T> Evaluate(const std::string &strText, FormulaScope<T> &scope);

    /// Whether it is a formula of known names, and of functions that the type has, in every branch.
    static bool IsSound(const std::string &strText, FormulaScope<T> &scope);
};

} // namespace kxcc

#endif
