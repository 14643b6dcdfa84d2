#include "genicam/nodeevaluator.h"

#include <cmath>
#include <cstring>

namespace KxFarm {

namespace {

constexpr int kMaxDepth = 100;

/// Counts a level of recursion for as long as it lives.
class Level
{
public:
    explicit Level(int *pDepth)
        : m_pDepth(pDepth)
    {
        ++*m_pDepth;
    }
    ~Level() { --*m_pDepth; }
    Level(const Level &) = delete;
    Level &operator=(const Level &) = delete;
    bool IsTooDeep() const { return *m_pDepth > kMaxDepth; }

private:
    int *m_pDepth;
};

double ParseFloat(const QByteArray &text)
{
    return text.startsWith("0x") ? static_cast<double>(ParseDescriptionInteger(text)) : text.toDouble();
}

bool IsKnife(const Node &node)
{
    return node.Is("SwissKnife") || node.Is("IntSwissKnife");
}

bool IsConverter(const Node &node)
{
    return node.Is("Converter") || node.Is("IntConverter");
}

std::optional<std::int64_t> Rounded(std::optional<double> value)
{
    if (!value || !(std::fabs(*value) < 9.2e18))
        return std::nullopt;
    return static_cast<std::int64_t>(std::llround(*value));
}

std::uint64_t MaskOf(unsigned width)
{
    return width >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << width) - 1;
}

} // namespace

bool IsRegisterNode(const Node &node)
{
    return node.Is("IntReg") || node.Is("MaskedIntReg") || node.Is("StructEntry") || node.Is("FloatReg");
}

bool IsTextRegister(const Node &node)
{
    return node.Is("StringReg");
}

bool NodeEvaluator::IsFloat(int node) const
{
    const Node &it = m_map.At(node);
    return it.Is("Float") || it.Is("FloatReg") || it.Is("Converter") || it.Is("SwissKnife");
}

int NodeEvaluator::RegisterOf(int node) const
{
    for (int steps = 0; node >= 0 && steps < kMaxDepth; ++steps) {
        if (IsRegisterNode(m_map.At(node)) || IsTextRegister(m_map.At(node)))
            return node;
        node = m_map.At(node).Target("pValue");
    }
    return -1;
}

std::optional<double> NodeEvaluator::PropertyValue(const NodeProperty &property)
{
    if (property.tag.startsWith('p'))
        return property.target >= 0 ? Float(property.target) : std::nullopt;
    return ParseFloat(property.text);
}

std::optional<double> NodeEvaluator::Indexed(const Node &node)
{
    const auto index = Integer(node.Target("pIndex"));
    if (!index)
        return std::nullopt;
    const NodeProperty *pChosen = nullptr;
    for (const NodeProperty &property : node.properties) {
        const bool isDefault = property.tag == "ValueDefault" || property.tag == "pValueDefault";
        const bool isIndexed = property.tag == "ValueIndexed" || property.tag == "pValueIndexed";
        if (isIndexed && ParseDescriptionInteger(property.offset) == *index)
            return PropertyValue(property);
        if (isDefault)
            pChosen = &property;
    }
    return pChosen ? PropertyValue(*pChosen) : std::nullopt;
}

std::optional<double> NodeEvaluator::FloatVariable(const Node &node, const QByteArray &name,
                                                   std::optional<double> subject, const char *subjectName)
{
    if (name == subjectName)
        return subject;
    for (const NodeProperty &property : node.properties) {
        if (property.name != name)
            continue;
        if (property.tag == "Constant")
            return ParseFloat(property.text);
        if (property.tag == "pVariable" && property.target >= 0) {
            for (const char *which : {"Min", "Max", "Inc"}) {
                if (name.endsWith(QByteArray(".") + which))
                    return Limit(property.target, which);
            }
            return Float(property.target);
        }
        if (property.tag == "Expression") {
            Formula formula;
            return formula.Compile(property.text) ? FormulaValue(node, formula, subject, subjectName)
                                                  : std::nullopt;
        }
    }
    if (name == "PI")
        return M_PI;
    return name == "E" ? std::optional<double>(M_E) : std::nullopt;
}

std::optional<double> NodeEvaluator::FormulaValue(const Node &node, const Formula &formula,
                                                  std::optional<double> subject, const char *subjectName)
{
    const Level level(&m_nDepth); // an expression of the node may name itself
    if (level.IsTooDeep())
        return std::nullopt;
    const auto variable = [&](const QByteArray &name) {
        return FloatVariable(node, name, subject, subjectName);
    };
    if (node.Is("SwissKnife") || node.Is("Converter"))
        return formula.EvaluateFloat(variable);
    const auto integer =
        formula.EvaluateInteger([&](const QByteArray &name) { return Rounded(variable(name)); });
    return integer ? std::optional<double>(static_cast<double>(*integer)) : std::nullopt;
}

std::optional<double> NodeEvaluator::Float(int index)
{
    const Level level(&m_nDepth);
    if (index < 0 || level.IsTooDeep())
        return std::nullopt;
    return NodeFloat(m_map.At(index), index);
}

std::optional<double> NodeEvaluator::NodeFloat(const Node &node, int index)
{
    if (IsRegisterNode(node)) {
        const auto field = Field(index);
        const auto raw = field ? Raw(*field) : std::nullopt;
        if (!raw)
            return std::nullopt;
        if (field->isFloat && field->size == 4) {
            const auto bits = static_cast<std::uint32_t>(*raw);
            float value = 0;
            std::memcpy(&value, &bits, sizeof value);
            return value;
        }
        if (field->isFloat) {
            double value = 0;
            std::memcpy(&value, &*raw, sizeof value);
            return value;
        }
        const auto integer = Integer(index);
        return integer ? std::optional<double>(static_cast<double>(*integer)) : std::nullopt;
    }
    if (IsKnife(node))
        return FormulaValue(node, node.formula, std::nullopt, "");
    if (IsConverter(node))
        return FormulaValue(node, node.formula, Float(node.Target("pValue")), "TO");
    if (node.Find("pIndex"))
        return Indexed(node);
    const NodeProperty *pValue = node.Find("pValue");
    if (!pValue)
        pValue = node.Find("Value");
    return pValue ? PropertyValue(*pValue) : std::nullopt;
}

std::optional<std::int64_t> NodeEvaluator::Integer(int index)
{
    const Level level(&m_nDepth);
    if (index < 0 || level.IsTooDeep())
        return std::nullopt;
    const Node &node = m_map.At(index);
    // Integers keep all their bits on the way from a register; what is computed does not need more than 53.
    if (IsRegisterNode(node) && !node.Is("FloatReg")) {
        const auto field = Field(index);
        const auto raw = field ? Raw(*field) : std::nullopt;
        if (!raw)
            return std::nullopt;
        const bool negative = field->isSigned && (*raw >> (field->width - 1) & 1U) != 0;
        return static_cast<std::int64_t>(negative ? *raw | ~MaskOf(field->width) : *raw);
    }
    const bool plain =
        node.Is("Integer") || node.Is("Enumeration") || node.Is("Boolean") || node.Is("Command");
    if (plain && !node.Find("pIndex")) {
        if (node.Find("pValue"))
            return Integer(node.Target("pValue"));
        if (const NodeProperty *pValue = node.Find("Value"))
            return ParseDescriptionInteger(pValue->text);
    }
    if (node.Is("EnumEntry"))
        return ParseDescriptionInteger(node.Text("Value"));
    return Rounded(NodeFloat(node, index));
}

bool NodeEvaluator::SetFloat(int index, double value)
{
    const Level level(&m_nDepth);
    if (index < 0 || level.IsTooDeep())
        return false;
    const Node &node = m_map.At(index);
    if (IsRegisterNode(node)) {
        const auto field = Field(index);
        if (!field)
            return false;
        if (!field->isFloat)
            return SetInteger(index, static_cast<std::int64_t>(std::llround(value)));
        std::uint64_t bits = 0;
        const auto single = static_cast<float>(value);
        if (field->size == 4)
            std::memcpy(&bits, &single, sizeof single);
        else
            std::memcpy(&bits, &value, sizeof value);
        return SetRaw(*field, bits);
    }
    if (IsConverter(node)) {
        const auto converted = FormulaValue(node, node.formulaTo, value, "FROM");
        return converted && SetFloat(node.Target("pValue"), *converted);
    }
    return SetFloat(node.Target("pValue"), value);
}

bool NodeEvaluator::SetInteger(int index, std::int64_t value)
{
    const Level level(&m_nDepth);
    if (index < 0 || level.IsTooDeep())
        return false;
    const Node &node = m_map.At(index);
    if (IsRegisterNode(node) && !node.Is("FloatReg")) {
        const auto field = Field(index);
        return field && SetRaw(*field, static_cast<std::uint64_t>(value));
    }
    if (IsRegisterNode(node) || IsConverter(node))
        return SetFloat(index, static_cast<double>(value));
    return SetInteger(node.Target("pValue"), value);
}

std::optional<double> NodeEvaluator::Limit(int index, const char *which)
{
    const Level level(&m_nDepth);
    if (index < 0 || level.IsTooDeep())
        return std::nullopt;
    const Node &node = m_map.At(index);
    const NodeProperty *pLimit = node.Find((QByteArray("p") + which).constData());
    if (!pLimit)
        pLimit = node.Find(which);
    return pLimit ? PropertyValue(*pLimit) : std::nullopt;
}

bool NodeEvaluator::Condition(int index, const char *pointer, bool otherwise)
{
    const auto value = Integer(m_map.At(index).Target(pointer));
    return value ? *value != 0 : otherwise;
}

} // namespace KxFarm
