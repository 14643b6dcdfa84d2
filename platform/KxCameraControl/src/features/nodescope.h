#ifndef KXCAMERACONTROL_FEATURES_NODESCOPE_H
#define KXCAMERACONTROL_FEATURES_NODESCOPE_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include <arv.h>

#include "features/convertnumber.h"
#include "features/genapiformula.h"
#include "features/nodeproperties.h"

namespace kxcc {

/// The error of a node that has no value; an earlier one stays.
inline void Report(GError **ppError, ArvGcNode *pNode)
{
    if (*ppError == nullptr)
        g_set_error(ppError, ARV_GC_ERROR, ARV_GC_ERROR_INVALID_PVALUE, "no value: %s",
                    arv_dom_node_get_node_name(ARV_DOM_NODE(pNode)));
}

/// The value of any node that has one, in the type of the formula.
template <typename T>
std::optional<T> ValueOfNode(ArvGcNode *pNode, GError **ppError)
{
    GError *pError = nullptr;
    std::optional<T> value;
    if (ARV_IS_GC_INTEGER(pNode))
        value = ConvertNumber<T>(std::int64_t{arv_gc_integer_get_value(ARV_GC_INTEGER(pNode), &pError)});
    else if (ARV_IS_GC_FLOAT(pNode))
        value = ConvertNumber<T>(arv_gc_float_get_value(ARV_GC_FLOAT(pNode), &pError));
    else if (ARV_IS_GC_BOOLEAN(pNode))
        value = static_cast<T>(arv_gc_boolean_get_value(ARV_GC_BOOLEAN(pNode), &pError) != FALSE);
    if (pError == nullptr)
        return value;
    g_propagate_error(ppError, pError);
    return std::nullopt;
}

/// The names in the formulas of one node.
template <typename T>
class NodeScope : public FormulaScope<T>
{
public:
    /// The names only, for a look at the formulas.
    explicit NodeScope(ArvGcNode *pNode)
        : m_pNode(pNode)
    {
        for (ArvGcPropertyNode *pProperty : PropertiesOf(pNode)) {
            const ArvGcPropertyNodeType type = arv_gc_property_node_get_node_type(pProperty);
            if (type == ARV_GC_PROPERTY_NODE_TYPE_CONSTANT || type == ARV_GC_PROPERTY_NODE_TYPE_EXPRESSION)
                m_texts[NameOf(pProperty)] = TextOf(pProperty);
            else if (type == ARV_GC_PROPERTY_NODE_TYPE_P_VARIABLE)
                m_values[NameOf(pProperty)] = T{};
        }
    }

    /// @return false with an error when a variable has no value
    bool ReadVariables(GError **ppError)
    {
        for (ArvGcPropertyNode *pProperty : PropertiesOf(m_pNode)) {
            if (arv_gc_property_node_get_node_type(pProperty) != ARV_GC_PROPERTY_NODE_TYPE_P_VARIABLE)
                continue;
            const std::optional<T> value =
                ValueOfNode<T>(arv_gc_property_node_get_linked_node(pProperty), ppError);
            if (!value) {
                Report(ppError, m_pNode);
                return false;
            }
            m_values[NameOf(pProperty)] = *value;
        }
        return true;
    }

    void Set(const char *szName, T value) { m_values[szName] = value; }
    const std::map<std::string, std::string> &Texts() const { return m_texts; }

    bool Has(const std::string &strName) const override
    {
        return m_values.count(strName) != 0 || m_texts.count(strName) != 0;
    }

    std::optional<T> ValueOf(const std::string &strName) override
    {
        const auto known = m_values.find(strName);
        if (known != m_values.end())
            return known->second;
        const auto text = m_texts.find(strName);
        // One that needs itself gets too deep, too.
        if (text == m_texts.end() || m_nDepth == kMaxExpressions)
            return std::nullopt;
        ++m_nDepth;
        const std::optional<T> value = GenApiFormula<T>::Evaluate(text->second, *this);
        --m_nDepth;
        if (value)
            m_values[strName] = *value; // computed once, however often it is named
        return value;
    }

private:
    /// Expressions within expressions; each level costs the stack of a formula.
    static constexpr int kMaxExpressions = 16;

    ArvGcNode *const m_pNode;
    std::map<std::string, T> m_values;
    std::map<std::string, std::string> m_texts; ///< constants and expressions
    int m_nDepth = 0;
};

} // namespace kxcc

#endif
