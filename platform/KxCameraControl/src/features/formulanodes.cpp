#include "features/formulanodes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "features/nodeproperties.h"
#include "features/nodescope.h"

namespace kxcc {
namespace {

bool HasFailed(GError **ppError)
{
    return ppError != nullptr && *ppError != nullptr;
}

template <typename T>
std::optional<T> Evaluate(ArvGcNode *pNode, ArvGcPropertyNodeType formula, NodeScope<T> &scope,
                          GError **ppError)
{
    ArvGcPropertyNode *pFormula = PropertyOf(pNode, formula);
    std::optional<T> value;
    if (pFormula != nullptr)
        value = GenApiFormula<T>::Evaluate(TextOf(pFormula), scope);
    if (!value)
        Report(ppError, pNode);
    return value;
}

template <typename T>
T KnifeValue(ArvGcNode *pNode, GError **ppError)
{
    NodeScope<T> scope(pNode);
    if (!scope.ReadVariables(ppError))
        return T{};
    return Evaluate(pNode, ARV_GC_PROPERTY_NODE_TYPE_FORMULA, scope, ppError).value_or(T{});
}

template <typename T>
T ConverterValue(ArvGcNode *pNode, GError **ppError)
{
    NodeScope<T> scope(pNode);
    if (!scope.ReadVariables(ppError))
        return T{};
    const std::optional<T> to = ValueOfNode<T>(ValueNode(pNode), ppError);
    if (!to) {
        Report(ppError, pNode);
        return T{};
    }
    scope.Set("TO", *to);
    return Evaluate(pNode, ARV_GC_PROPERTY_NODE_TYPE_FORMULA_FROM, scope, ppError).value_or(T{});
}

template <typename T>
void SetConverterValue(ArvGcNode *pNode, T value, GError **ppError)
{
    NodeScope<T> scope(pNode);
    if (!scope.ReadVariables(ppError))
        return;
    scope.Set("FROM", value);
    const std::optional<T> to = Evaluate(pNode, ARV_GC_PROPERTY_NODE_TYPE_FORMULA_TO, scope, ppError);
    if (!to)
        return;
    ArvGcNode *pTarget = ValueNode(pNode);
    const std::optional<std::int64_t> whole = ConvertNumber<std::int64_t>(*to);
    if (ARV_IS_GC_INTEGER(pTarget) && whole)
        arv_gc_integer_set_value(ARV_GC_INTEGER(pTarget), *whole, ppError);
    else if (ARV_IS_GC_FLOAT(pTarget))
        arv_gc_float_set_value(ARV_GC_FLOAT(pTarget), static_cast<double>(*to), ppError);
    else
        Report(ppError, pNode);
}

enum class Limit
{
    Minimum,
    Maximum
};

/// A limit of the node below a converter; nothing, without an error, when it has none.
template <typename T>
std::optional<T> LimitOfNode(ArvGcNode *pNode, Limit limit, GError **ppError)
{
    GError *pError = nullptr;
    std::optional<T> value;
    if (ARV_IS_GC_INTEGER(pNode)) {
        const std::int64_t nLimit = limit == Limit::Minimum
                                        ? arv_gc_integer_get_min(ARV_GC_INTEGER(pNode), &pError)
                                        : arv_gc_integer_get_max(ARV_GC_INTEGER(pNode), &pError);
        if (nLimit != std::numeric_limits<std::int64_t>::min() &&
            nLimit != std::numeric_limits<std::int64_t>::max())
            value = static_cast<T>(nLimit);
    } else if (ARV_IS_GC_FLOAT(pNode)) {
        const double dLimit = limit == Limit::Minimum ? arv_gc_float_get_min(ARV_GC_FLOAT(pNode), &pError)
                                                      : arv_gc_float_get_max(ARV_GC_FLOAT(pNode), &pError);
        if (std::fabs(dLimit) < std::numeric_limits<double>::max())
            value = ConvertNumber<T>(dLimit);
    }
    if (pError == nullptr)
        return value;
    if (g_error_matches(pError, ARV_GC_ERROR, ARV_GC_ERROR_PROPERTY_NOT_DEFINED))
        g_clear_error(&pError);
    else
        g_propagate_error(ppError, pError);
    return std::nullopt;
}

/// The limits of the node below, converted: a formula that falls swaps them.
template <typename T>
T ConverterLimit(ArvGcNode *pNode, Limit limit, GError **ppError)
{
    const bool bMinimum = limit == Limit::Minimum;
    const T noLimit = bMinimum ? std::numeric_limits<T>::lowest() : std::numeric_limits<T>::max();
    NodeScope<T> scope(pNode);
    if (!scope.ReadVariables(ppError))
        return noLimit;
    const std::optional<T> low = LimitOfNode<T>(ValueNode(pNode), Limit::Minimum, ppError);
    if (HasFailed(ppError))
        return noLimit;
    const std::optional<T> high = LimitOfNode<T>(ValueNode(pNode), Limit::Maximum, ppError);
    if (HasFailed(ppError) || (!low && !high))
        return noLimit;
    const auto convert = [&](T value) {
        NodeScope<T> given = scope;
        given.Set("TO", value);
        return Evaluate(pNode, ARV_GC_PROPERTY_NODE_TYPE_FORMULA_FROM, given, ppError);
    };
    // With one limit only, the next value tells on which side of all others it comes to lie.
    const std::optional<T> first = convert(low ? *low : *high - 1);
    const std::optional<T> last = convert(high ? *high : *low + 1);
    if (!first || !last)
        return noLimit;
    const bool bRises = *first <= *last;
    if (bMinimum == bRises ? !low : !high)
        return noLimit;
    return bMinimum ? std::min(*first, *last) : std::max(*first, *last);
}

template <typename T>
bool AreTextsSound(ArvGcNode *pNode)
{
    const NodeScope<T> scope(pNode);
    for (const auto &text : scope.Texts()) {
        NodeScope<T> given = scope;
        if (ARV_IS_GC_CONVERTER(pNode)) {
            given.Set("FROM", T{});
            given.Set("TO", T{});
        }
        if (!GenApiFormula<T>::IsSound(text.second, given))
            return false;
    }
    const auto isSound = [&](ArvGcPropertyNodeType type, const char *szGiven) {
        ArvGcPropertyNode *pFormula = PropertyOf(pNode, type);
        NodeScope<T> given = scope;
        if (szGiven != nullptr)
            given.Set(szGiven, T{});
        return pFormula != nullptr && GenApiFormula<T>::IsSound(TextOf(pFormula), given);
    };
    if (ARV_IS_GC_SWISS_KNIFE(pNode))
        return isSound(ARV_GC_PROPERTY_NODE_TYPE_FORMULA, nullptr);
    return isSound(ARV_GC_PROPERTY_NODE_TYPE_FORMULA_TO, "FROM") &&
           isSound(ARV_GC_PROPERTY_NODE_TYPE_FORMULA_FROM, "TO");
}

/// A function of an interface of Aravis, over one of ours. Its caller may want no error; ours do.
template <typename Interface, typename T, T (*read)(ArvGcNode *, GError **)>
T Read(Interface *pNode, GError **ppError)
{
    GError *pError = nullptr;
    const T value = read(ARV_GC_NODE(pNode), &pError);
    if (pError != nullptr)
        g_propagate_error(ppError, pError);
    return value;
}

template <typename Interface, typename T>
void Write(Interface *pNode, T value, GError **ppError)
{
    GError *pError = nullptr;
    SetConverterValue<T>(ARV_GC_NODE(pNode), value, &pError);
    if (pError != nullptr)
        g_propagate_error(ppError, pError);
}

template <typename T>
T Minimum(ArvGcNode *pNode, GError **ppError)
{
    return ConverterLimit<T>(pNode, Limit::Minimum, ppError);
}

template <typename T>
T Maximum(ArvGcNode *pNode, GError **ppError)
{
    return ConverterLimit<T>(pNode, Limit::Maximum, ppError);
}

template <typename T, typename Interface, typename Table>
void InstallConverter(Table *pTable)
{
    pTable->get_value = Read<Interface, T, ConverterValue<T>>;
    pTable->get_min = Read<Interface, T, Minimum<T>>;
    pTable->get_max = Read<Interface, T, Maximum<T>>;
    pTable->set_value = Write<Interface, T>;
}

/// The functions of a class for an interface; the class lives as long as the process.
template <typename Table>
Table *TableOf(GType type, GType interfaceType)
{
    return static_cast<Table *>(g_type_interface_peek(g_type_class_ref(type), interfaceType));
}

/// The register that a node's bytes lie in: for a StructEntry the StructReg around it.
ArvGcNode *RegisterOf(ArvGcNode *pNode)
{
    return ARV_IS_GC_STRUCT_ENTRY_NODE(pNode) ? ARV_GC_NODE(arv_dom_node_get_parent_node(ARV_DOM_NODE(pNode)))
                                              : pNode;
}

bool AreBitsBelow(ArvGcNode *pNode, guint64 nEnd)
{
    for (const ArvGcPropertyNodeType type :
         {ARV_GC_PROPERTY_NODE_TYPE_LSB, ARV_GC_PROPERTY_NODE_TYPE_MSB, ARV_GC_PROPERTY_NODE_TYPE_BIT}) {
        ArvGcPropertyNode *pBit = PropertyOf(pNode, type);
        if (pBit != nullptr && g_ascii_strtoull(TextOf(pBit).c_str(), nullptr, 0) >= nEnd)
            return false;
    }
    return true;
}

/// Aravis takes memory of the length for the register's bytes; without any it gives those on its stack, and
/// with more than there is the process ends.
bool HasLength(ArvGcNode *pNode, GError **ppError)
{
    ArvGcNode *const pRegister = RegisterOf(pNode);
    if (PropertyOf(pRegister, ARV_GC_PROPERTY_NODE_TYPE_P_LENGTH) == nullptr)
        return true; // looked at before
    constexpr guint64 kLongest = sizeof(gint64);
    GError *pError = nullptr;
    const guint64 nLength = arv_gc_register_get_length(ARV_GC_REGISTER(pRegister), &pError);
    if (pError == nullptr && (nLength < 1 || nLength > kLongest || !AreBitsBelow(pNode, nLength * 8)))
        Report(&pError, pNode);
    if (pError == nullptr)
        return true;
    g_propagate_error(ppError, pError);
    return false;
}

/// The functions that Aravis has for the registers of a class.
template <int nClass>
ArvGcIntegerInterface registerFunctions{};

template <int nClass>
gint64 ReadRegister(ArvGcInteger *pNode, GError **ppError)
{
    return HasLength(ARV_GC_NODE(pNode), ppError) ? registerFunctions<nClass>.get_value(pNode, ppError) : 0;
}

template <int nClass>
gint64 RegisterMinimum(ArvGcInteger *pNode, GError **ppError)
{
    return HasLength(ARV_GC_NODE(pNode), ppError) ? registerFunctions<nClass>.get_min(pNode, ppError) : 0;
}

template <int nClass>
gint64 RegisterMaximum(ArvGcInteger *pNode, GError **ppError)
{
    return HasLength(ARV_GC_NODE(pNode), ppError) ? registerFunctions<nClass>.get_max(pNode, ppError) : 0;
}

template <int nClass>
void WriteRegister(ArvGcInteger *pNode, gint64 nValue, GError **ppError)
{
    if (HasLength(ARV_GC_NODE(pNode), ppError))
        registerFunctions<nClass>.set_value(pNode, nValue, ppError);
}

template <int nClass>
void InstallRegister(GType type)
{
    auto *pTable = TableOf<ArvGcIntegerInterface>(type, ARV_TYPE_GC_INTEGER);
    registerFunctions<nClass> = *pTable;
    pTable->get_value = ReadRegister<nClass>;
    pTable->get_min = RegisterMinimum<nClass>;
    pTable->get_max = RegisterMaximum<nClass>;
    pTable->set_value = WriteRegister<nClass>;
}

ArvGcFloatInterface floatRegisterFunctions{};

double ReadFloatRegister(ArvGcFloat *pNode, GError **ppError)
{
    return HasLength(ARV_GC_NODE(pNode), ppError) ? floatRegisterFunctions.get_value(pNode, ppError) : 0;
}

void WriteFloatRegister(ArvGcFloat *pNode, double dValue, GError **ppError)
{
    if (HasLength(ARV_GC_NODE(pNode), ppError))
        floatRegisterFunctions.set_value(pNode, dValue, ppError);
}

void InstallFloatRegister()
{
    auto *pTable = TableOf<ArvGcFloatInterface>(ARV_TYPE_GC_FLOAT_REG_NODE, ARV_TYPE_GC_FLOAT);
    floatRegisterFunctions = *pTable;
    pTable->get_value = ReadFloatRegister;
    pTable->set_value = WriteFloatRegister;
}

// Aravis keeps the attributes of an index to itself.
decltype(ArvDomElementClass::set_attribute) setIndexAttribute = nullptr;

void SetIndexAttribute(ArvDomElement *pElement, const char *szName, const char *szValue)
{
    g_object_set_data_full(G_OBJECT(pElement), szName, g_strdup(szValue), g_free);
    setIndexAttribute(pElement, szName, szValue);
}

// Aravis makes the nodes of a description by their element's name and lets nobody choose their class. What
// it does with a node goes through these tables, so they are the one place where all values pass.
bool Install()
{
    TableOf<ArvGcIntegerInterface>(ARV_TYPE_GC_INT_SWISS_KNIFE_NODE, ARV_TYPE_GC_INTEGER)->get_value =
        Read<ArvGcInteger, gint64, KnifeValue<gint64>>;
    TableOf<ArvGcFloatInterface>(ARV_TYPE_GC_SWISS_KNIFE_NODE, ARV_TYPE_GC_FLOAT)->get_value =
        Read<ArvGcFloat, double, KnifeValue<double>>;
    InstallConverter<gint64, ArvGcInteger>(
        TableOf<ArvGcIntegerInterface>(ARV_TYPE_GC_INT_CONVERTER_NODE, ARV_TYPE_GC_INTEGER));
    InstallConverter<double, ArvGcFloat>(
        TableOf<ArvGcFloatInterface>(ARV_TYPE_GC_CONVERTER_NODE, ARV_TYPE_GC_FLOAT));
    InstallRegister<0>(ARV_TYPE_GC_INT_REG_NODE);
    InstallRegister<1>(ARV_TYPE_GC_MASKED_INT_REG_NODE);
    InstallRegister<2>(ARV_TYPE_GC_STRUCT_ENTRY_NODE);
    InstallFloatRegister();
    auto *pIndexClass = ARV_DOM_ELEMENT_CLASS(g_type_class_ref(ARV_TYPE_GC_INDEX_NODE));
    setIndexAttribute = pIndexClass->set_attribute;
    pIndexClass->set_attribute = SetIndexAttribute;
    return true;
}

} // namespace

void InstallFormulas()
{
    static const bool bInstalled = Install();
    static_cast<void>(bInstalled);
}

const char *IndexAttribute(ArvGcPropertyNode *pIndex, const char *szName)
{
    return static_cast<const char *>(g_object_get_data(G_OBJECT(pIndex), szName));
}

bool AreFormulasSound(ArvGcNode *pNode)
{
    if (!ARV_IS_GC_SWISS_KNIFE(pNode) && !ARV_IS_GC_CONVERTER(pNode))
        return true;
    return ARV_IS_GC_INTEGER(pNode) ? AreTextsSound<std::int64_t>(pNode) : AreTextsSound<double>(pNode);
}

} // namespace kxcc
