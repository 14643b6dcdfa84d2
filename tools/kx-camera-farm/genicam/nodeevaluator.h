#ifndef KXCAMERAFARM_NODEEVALUATOR_H
#define KXCAMERAFARM_NODEEVALUATOR_H

#include "genicam/nodemap.h"

#include <optional>

namespace KxFarm {

/// Where an evaluator finds register content.
class RegisterAccess
{
public:
    RegisterAccess() = default;
    virtual ~RegisterAccess() = default;
    RegisterAccess(const RegisterAccess &) = delete;
    RegisterAccess &operator=(const RegisterAccess &) = delete;
    virtual bool Read(std::uint32_t address, std::uint8_t *data, std::size_t size) = 0;
    virtual bool Write(std::uint32_t address, const std::uint8_t *data, std::size_t size) = 0;
};

/// Where a register lies in memory.
struct RegisterSpan
{
    std::uint32_t address = 0;
    std::size_t size = 0; ///< bytes, at least 1
};

/// Where a number lies in memory.
struct RegisterField
{
    std::uint32_t address = 0;
    std::size_t size = 0; ///< bytes, 1 to 8
    bool bigEndian = false;
    bool isSigned = false;
    bool isFloat = false;
    unsigned shift = 0; ///< of the lowest bit
    unsigned width = 0; ///< bits
};

/// Values of nodes: through pointers, formulas and converters down to registers and back.
///
/// The camera SDK has an evaluator as well, and this one shares nothing with it on purpose: a mask or a byte
/// order that is wrong in a shared one would agree with itself, and no test here would see it.
///
/// Everything returns nothing (or false) where the description does not lead to a value: dangling pointers,
/// cycles, division by zero, refused registers.
class NodeEvaluator
{
public:
    NodeEvaluator(const NodeMap &map, RegisterAccess *pAccess)
        : m_map(map)
        , m_pAccess(pAccess)
    {
    }

    std::optional<double> Float(int node);
    std::optional<std::int64_t> Integer(int node);
    bool SetFloat(int node, double value);
    bool SetInteger(int node, std::int64_t value);

    /// "Min", "Max" or "Inc" of a feature: the literal or what its pointer says.
    std::optional<double> Limit(int node, const char *which);

    /// Whether the condition that `pointer` ("pIsLocked", "pIsAvailable", "pIsImplemented") names holds;
    /// `otherwise` when the node has none or it has no value.
    bool Condition(int node, const char *pointer, bool otherwise);

    bool IsFloat(int node) const; ///< whether Float() rather than Integer() has its exact value
    std::optional<RegisterField> Field(int node); ///< of a register with a number
    std::optional<RegisterSpan> Span(int node);   ///< of any register

    /// The register below a feature, along pValue; -1 without one.
    int RegisterOf(int node) const;

    const NodeMap &Map() const { return m_map; }

private:
    std::optional<double> Indexed(const Node &node);
    std::optional<double> PropertyValue(const NodeProperty &property);
    std::optional<double> FloatVariable(const Node &node, const QByteArray &name,
                                        std::optional<double> subject, const char *subjectName);
    std::optional<double> FormulaValue(const Node &node, const Formula &formula,
                                       std::optional<double> subject, const char *subjectName);
    std::optional<double> NodeFloat(const Node &node, int index);
    std::optional<std::uint32_t> Address(const Node &node, std::size_t length);
    std::optional<std::uint64_t> Raw(const RegisterField &field);
    bool SetRaw(const RegisterField &field, std::uint64_t bits);

    const NodeMap &m_map;
    RegisterAccess *m_pAccess;
    int m_nDepth = 0; // of the pointers being followed; a cycle ends at a limit
};

bool IsRegisterNode(const Node &node); ///< a register with a number
bool IsTextRegister(const Node &node);

} // namespace KxFarm

#endif
