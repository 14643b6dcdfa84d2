#include "features/nodecheck.h"

#include <cerrno>
#include <string>

#include "features/formulanodes.h"
#include "features/nodeproperties.h"

namespace kxcc {
namespace {

constexpr std::int64_t kLongestNumber = 8;
constexpr std::int64_t kLongestRegister = 1 << 20;
// Reading so many bytes of a formula takes about as long as evaluating a node.
constexpr std::size_t kBytesPerStep = 16;

enum class Role
{
    None,
    Value,       ///< a pointer whose target's value the node's own is computed from
    ValueTarget, ///< and which is set when the node is
    Condition,   ///< a pointer for conditions and limits
    Port,
    Number, ///< a text that is a number
    Text    ///< of a formula
};

Role RoleOf(ArvGcPropertyNodeType type)
{
    switch (type) {
    case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE:
    case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE_INDEXED:
    case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE_DEFAULT:
        return Role::ValueTarget;
    case ARV_GC_PROPERTY_NODE_TYPE_P_ADDRESS:
    case ARV_GC_PROPERTY_NODE_TYPE_P_INDEX:
    case ARV_GC_PROPERTY_NODE_TYPE_P_LENGTH:
    case ARV_GC_PROPERTY_NODE_TYPE_P_VARIABLE:
    case ARV_GC_PROPERTY_NODE_TYPE_P_COMMAND_VALUE:
        return Role::Value;
    // These may lead back to the feature: the maximum of Width depends on OffsetX, and the maximum of
    // OffsetX on Width.
    case ARV_GC_PROPERTY_NODE_TYPE_P_IS_IMPLEMENTED:
    case ARV_GC_PROPERTY_NODE_TYPE_P_IS_AVAILABLE:
    case ARV_GC_PROPERTY_NODE_TYPE_P_IS_LOCKED:
    case ARV_GC_PROPERTY_NODE_TYPE_P_MINIMUM:
    case ARV_GC_PROPERTY_NODE_TYPE_P_MAXIMUM:
    case ARV_GC_PROPERTY_NODE_TYPE_P_INCREMENT:
        return Role::Condition;
    case ARV_GC_PROPERTY_NODE_TYPE_P_PORT:
        return Role::Port;
    case ARV_GC_PROPERTY_NODE_TYPE_VALUE:
    case ARV_GC_PROPERTY_NODE_TYPE_VALUE_INDEXED:
    case ARV_GC_PROPERTY_NODE_TYPE_VALUE_DEFAULT:
    case ARV_GC_PROPERTY_NODE_TYPE_MINIMUM:
    case ARV_GC_PROPERTY_NODE_TYPE_MAXIMUM:
    case ARV_GC_PROPERTY_NODE_TYPE_INCREMENT:
    case ARV_GC_PROPERTY_NODE_TYPE_ADDRESS:
    case ARV_GC_PROPERTY_NODE_TYPE_LENGTH:
    case ARV_GC_PROPERTY_NODE_TYPE_LSB:
    case ARV_GC_PROPERTY_NODE_TYPE_MSB:
    case ARV_GC_PROPERTY_NODE_TYPE_BIT:
    case ARV_GC_PROPERTY_NODE_TYPE_ON_VALUE:
    case ARV_GC_PROPERTY_NODE_TYPE_OFF_VALUE:
        return Role::Number;
    case ARV_GC_PROPERTY_NODE_TYPE_FORMULA:
    case ARV_GC_PROPERTY_NODE_TYPE_FORMULA_TO:
    case ARV_GC_PROPERTY_NODE_TYPE_FORMULA_FROM:
    case ARV_GC_PROPERTY_NODE_TYPE_EXPRESSION:
    case ARV_GC_PROPERTY_NODE_TYPE_CONSTANT:
        return Role::Text;
    default:
        return Role::None;
    }
}

bool IsAtEnd(const char *szEnd)
{
    while (g_ascii_isspace(*szEnd))
        ++szEnd;
    return *szEnd == '\0';
}

/// @return whether the text is a number of 64 bits, signed or unsigned, and nothing else
bool ParseWhole(const std::string &strText, std::int64_t &nValue)
{
    gchar *pEnd = nullptr;
    errno = 0;
    nValue = g_ascii_strtoll(strText.c_str(), &pEnd, 0);
    if (errno == ERANGE && nValue > 0) {
        errno = 0;
        g_ascii_strtoull(strText.c_str(), &pEnd, 0); // a limit of an unsigned register, used as the nearest
    }
    return pEnd != strText.c_str() && errno == 0 && IsAtEnd(pEnd);
}

bool IsReal(const std::string &strText)
{
    gchar *pEnd = nullptr;
    g_ascii_strtod(strText.c_str(), &pEnd);
    return pEnd != strText.c_str() && IsAtEnd(pEnd);
}

bool IsNumber(ArvGcNode *pOwner, const std::string &strText)
{
    std::int64_t nValue = 0;
    if (ARV_IS_GC_FLOAT_NODE(pOwner))
        return IsReal(strText);
    // The schema lets a boolean say "true", which Aravis reads as 0.
    return ParseWhole(strText, nValue) || (ARV_IS_GC_BOOLEAN(pOwner) && strText == "false");
}

bool HasNumber(ArvGcNode *pNode)
{
    return ARV_IS_GC_INTEGER(pNode) || ARV_IS_GC_FLOAT(pNode) || ARV_IS_GC_BOOLEAN(pNode);
}

/// A string, or a register of text; an enumeration has a text, too, but is a number.
bool IsText(ArvGcNode *pNode)
{
    return ARV_IS_GC_STRING(pNode) && !ARV_IS_GC_INTEGER(pNode);
}

bool IsRightTarget(ArvGcNode *pOwner, ArvGcNode *pTarget, Role role)
{
    if (pTarget == nullptr)
        return false;
    if (role == Role::Port)
        return ARV_IS_GC_PORT(pTarget) != FALSE;
    if (role == Role::ValueTarget && IsText(pOwner))
        return IsText(pTarget);
    if (role == Role::ValueTarget && ARV_IS_GC_CONVERTER(pOwner) && ARV_IS_GC_BOOLEAN(pTarget))
        return false;
    return HasNumber(pTarget);
}

bool Has(ArvGcNode *pNode, std::initializer_list<ArvGcPropertyNodeType> types)
{
    for (const ArvGcPropertyNodeType type : types) {
        if (PropertyOf(pNode, type) != nullptr)
            return true;
    }
    return false;
}

bool IsRegister(ArvGcNode *pNode)
{
    return ARV_IS_GC_REGISTER_NODE(pNode) || ARV_IS_GC_STRUCT_REG_NODE(pNode);
}

bool HasKnife(ArvGcNode *pNode)
{
    for (ArvDomNode *pChild = arv_dom_node_get_first_child(ARV_DOM_NODE(pNode)); pChild != nullptr;
         pChild = arv_dom_node_get_next_sibling(pChild)) {
        if (ARV_IS_GC_SWISS_KNIFE(pChild))
            return true;
    }
    return false;
}

/// The length of a register, when it is a number in the description; 0 when it is computed.
bool IsLengthPossible(ArvGcNode *pRegister, std::int64_t &nLength)
{
    nLength = 0;
    if (PropertyOf(pRegister, ARV_GC_PROPERTY_NODE_TYPE_P_LENGTH) != nullptr)
        return true;
    ArvGcPropertyNode *pLength = PropertyOf(pRegister, ARV_GC_PROPERTY_NODE_TYPE_LENGTH);
    if (pLength == nullptr || !ParseWhole(TextOf(pLength), nLength))
        return false;
    const bool bNumber =
        ARV_IS_GC_INTEGER(pRegister) || ARV_IS_GC_FLOAT(pRegister) || ARV_IS_GC_STRUCT_REG_NODE(pRegister);
    return nLength >= 1 && nLength <= (bNumber ? kLongestNumber : kLongestRegister);
}

bool AreBitsInside(ArvGcNode *pNode, std::int64_t nLength)
{
    for (ArvGcPropertyNode *pProperty : PropertiesOf(pNode)) {
        const ArvGcPropertyNodeType type = arv_gc_property_node_get_node_type(pProperty);
        std::int64_t nBit = 0;
        if ((type == ARV_GC_PROPERTY_NODE_TYPE_LSB || type == ARV_GC_PROPERTY_NODE_TYPE_MSB ||
             type == ARV_GC_PROPERTY_NODE_TYPE_BIT) &&
            (!ParseWhole(TextOf(pProperty), nBit) || nBit < 0 || nBit >= nLength * 8))
            return false;
    }
    return true;
}

bool IsRegisterWhole(ArvGcNode *pNode)
{
    std::int64_t nLength = 0;
    const bool bAddress =
        HasKnife(pNode) || Has(pNode, {ARV_GC_PROPERTY_NODE_TYPE_ADDRESS, ARV_GC_PROPERTY_NODE_TYPE_P_ADDRESS,
                                       ARV_GC_PROPERTY_NODE_TYPE_P_INDEX});
    return bAddress && Has(pNode, {ARV_GC_PROPERTY_NODE_TYPE_P_PORT}) && IsLengthPossible(pNode, nLength) &&
           AreBitsInside(pNode, nLength == 0 ? kLongestNumber : nLength);
}

/// Whether it has all that a node of its kind needs.
bool IsWhole(ArvGcNode *pNode)
{
    if (IsRegister(pNode))
        return IsRegisterWhole(pNode);
    if (ARV_IS_GC_ENUM_ENTRY(pNode))
        return Has(pNode, {ARV_GC_PROPERTY_NODE_TYPE_VALUE});
    if (ARV_IS_GC_CONVERTER(pNode))
        return Has(pNode, {ARV_GC_PROPERTY_NODE_TYPE_P_VALUE}) && AreFormulasSound(pNode);
    if (ARV_IS_GC_INTEGER_NODE(pNode) || ARV_IS_GC_FLOAT_NODE(pNode) || ARV_IS_GC_BOOLEAN(pNode) ||
        ARV_IS_GC_ENUMERATION(pNode) || IsText(pNode))
        return Has(pNode, {ARV_GC_PROPERTY_NODE_TYPE_VALUE, ARV_GC_PROPERTY_NODE_TYPE_P_VALUE,
                           ARV_GC_PROPERTY_NODE_TYPE_P_INDEX});
    return AreFormulasSound(pNode);
}

/// The node that an index is multiplied by; null when it is a number.
bool FindOffset(ArvGcPropertyNode *pIndex, ArvGcNode *&pOffset)
{
    pOffset = nullptr;
    const char *szOffset = IndexAttribute(pIndex, "Offset");
    const char *szNode = IndexAttribute(pIndex, "pOffset");
    std::int64_t nValue = 0;
    if (szOffset != nullptr && !ParseWhole(szOffset, nValue))
        return false;
    if (szNode == nullptr)
        return true;
    pOffset = arv_gc_get_node(arv_gc_node_get_genicam(ARV_GC_NODE(pIndex)), szNode);
    return pOffset != nullptr && HasNumber(pOffset);
}

void AddPointer(ArvGcNode *pNode, ArvGcPropertyNode *pProperty, Role role, NodeLinks &links)
{
    ArvGcNode *pTarget = arv_gc_property_node_get_linked_node(pProperty);
    bool &bSound = role == Role::Condition ? links.bConditionsSound : links.bSound;
    if (!IsRightTarget(pNode, pTarget, role)) {
        bSound = false;
        return;
    }
    if (role == Role::Condition)
        links.conditions.push_back(pTarget);
    else if (role != Role::Port)
        links.values.push_back(pTarget);
    if (role == Role::ValueTarget)
        links.valueTargets.push_back(pTarget);
    ArvGcNode *pOffset = nullptr;
    if (ARV_IS_GC_INDEX_NODE(pProperty) && !FindOffset(pProperty, pOffset))
        links.bSound = false;
    else if (pOffset != nullptr)
        links.values.push_back(pOffset);
}

void AddProperty(ArvGcNode *pNode, ArvGcPropertyNode *pProperty, NodeLinks &links)
{
    const ArvGcPropertyNodeType type = arv_gc_property_node_get_node_type(pProperty);
    const Role role = RoleOf(type);
    switch (role) {
    case Role::None:
        break;
    case Role::Text:
        links.nSteps += TextOf(pProperty).size() / kBytesPerStep;
        break;
    case Role::Number:
        if (!(type == ARV_GC_PROPERTY_NODE_TYPE_VALUE && IsText(pNode)) &&
            !IsNumber(pNode, TextOf(pProperty)))
            links.bSound = false;
        break;
    default:
        AddPointer(pNode, pProperty, role, links);
        break;
    }
}

} // namespace

NodeLinks LinksOf(ArvGcNode *pNode)
{
    NodeLinks links;
    for (ArvDomNode *pChild = arv_dom_node_get_first_child(ARV_DOM_NODE(pNode)); pChild != nullptr;
         pChild = arv_dom_node_get_next_sibling(pChild)) {
        if (ARV_IS_GC_PROPERTY_NODE(pChild))
            AddProperty(pNode, ARV_GC_PROPERTY_NODE(pChild), links);
        else if (ARV_IS_GC_SWISS_KNIFE(pChild)) // a register may hold the formula of its address
            links.values.push_back(ARV_GC_NODE(pChild));
    }
    // A StructEntry takes address, length and port from the StructReg around it.
    ArvDomNode *pParent = arv_dom_node_get_parent_node(ARV_DOM_NODE(pNode));
    if (ARV_IS_GC_STRUCT_ENTRY_NODE(pNode) && pParent != nullptr && ARV_IS_GC_NODE(pParent))
        links.values.push_back(ARV_GC_NODE(pParent));
    links.bSound = links.bSound && IsWhole(pNode);
    return links;
}

} // namespace kxcc
