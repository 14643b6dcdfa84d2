#include "features/featureaccess.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <vector>

#include "KxCameraControl/kxerrors.h"

namespace kxcc {
namespace {

bool ParseInteger(const std::string &strText, std::int64_t &nValue)
{
    gchar *pEnd = nullptr;
    errno = 0; // beyond 64 bits the function gives the nearest number
    nValue = g_ascii_strtoll(strText.c_str(), &pEnd, 0);
    return !strText.empty() && *pEnd == '\0' && errno == 0;
}

bool ParseFloat(const std::string &strText, double &dValue)
{
    gchar *pEnd = nullptr;
    dValue = g_ascii_strtod(strText.c_str(), &pEnd);
    return !strText.empty() && *pEnd == '\0' && std::isfinite(dValue);
}

int IntegerText(ArvGcNode *pNode, std::string &strValue)
{
    GError *pError = nullptr;
    const std::int64_t nValue = arv_gc_integer_get_value(ARV_GC_INTEGER(pNode), &pError);
    if (pError != nullptr)
        return CodeOfError(pError);
    strValue = std::to_string(nValue);
    return CheckSign(pNode, nValue);
}

int FloatText(ArvGcNode *pNode, std::string &strValue)
{
    GError *pError = nullptr;
    const double dValue = arv_gc_float_get_value(ARV_GC_FLOAT(pNode), &pError);
    if (pError != nullptr)
        return CodeOfError(pError);
    char text[G_ASCII_DTOSTR_BUF_SIZE];
    strValue = g_ascii_dtostr(text, sizeof text, dValue);
    // What could not be loaded again has no place in a file.
    return std::isfinite(dValue) ? KX_CC_OK : KX_CC_E_FEATURE_VALUE;
}

/// Entries in the order of the description: Aravis keeps them the other way round.
std::vector<ArvGcNode *> EntriesOf(ArvGcNode *pEnumeration)
{
    std::vector<ArvGcNode *> entries;
    for (const GSList *pItem = arv_gc_enumeration_get_entries(ARV_GC_ENUMERATION(pEnumeration));
         pItem != nullptr; pItem = pItem->next)
        entries.push_back(static_cast<ArvGcNode *>(pItem->data));
    std::reverse(entries.begin(), entries.end());
    return entries;
}

} // namespace

ArvGcNode *EntryByNumber(ArvGcNode *pEnumeration, std::int64_t nValue)
{
    for (ArvGcNode *pEntry : EntriesOf(pEnumeration)) {
        GError *pError = nullptr;
        const bool bFound = arv_gc_enum_entry_get_value(ARV_GC_ENUM_ENTRY(pEntry), &pError) == nValue;
        if (pError == nullptr && bFound)
            return pEntry;
        g_clear_error(&pError);
    }
    return nullptr;
}

ArvGcNode *EntryByName(ArvGcNode *pEnumeration, const std::string &strName)
{
    for (ArvGcNode *pEntry : EntriesOf(pEnumeration)) {
        if (g_strcmp0(arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(pEntry)), strName.c_str()) == 0)
            return pEntry;
    }
    return nullptr;
}

int IsEntryUsable(ArvGcNode *pEntry)
{
    GError *pError = nullptr;
    ArvGcFeatureNode *pNode = ARV_GC_FEATURE_NODE(pEntry);
    const bool bUsable = arv_gc_feature_node_is_implemented(pNode, &pError) != FALSE && pError == nullptr &&
                         arv_gc_feature_node_is_available(pNode, &pError) != FALSE;
    if (pError != nullptr)
        return CodeOfError(pError);
    return bUsable ? KX_CC_OK : KX_CC_E_FEATURE_VALUE;
}

int FeatureAccess::GetText(const std::string &strName, std::string &strValue)
{
    ArvGcNode *pNode = arv_gc_get_node(m_pGenICam, strName.c_str());
    const FeatureKind kind = pNode == nullptr ? FeatureKind::None : KindOf(pNode);
    const int nCode = FindForReading(strName, kind, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    GError *pError = nullptr;
    const char *szText = nullptr;
    switch (kind) {
    case FeatureKind::Integer:
        return IntegerText(pNode, strValue);
    case FeatureKind::Float:
        return FloatText(pNode, strValue);
    case FeatureKind::Boolean:
        strValue = arv_gc_boolean_get_value(ARV_GC_BOOLEAN(pNode), &pError) != FALSE ? "1" : "0";
        return pError == nullptr ? KX_CC_OK : CodeOfError(pError);
    case FeatureKind::Enumeration:
        szText = arv_gc_enumeration_get_string_value(ARV_GC_ENUMERATION(pNode), &pError);
        break;
    default:
        szText = arv_gc_string_get_value(ARV_GC_STRING(pNode), &pError);
        break;
    }
    if (pError != nullptr)
        return CodeOfError(pError);
    if (szText == nullptr || std::strpbrk(szText, "\r\n") != nullptr)
        return KX_CC_E_FEATURE_VALUE; // no such entry, or a text that a line cannot hold
    strValue = szText;
    // An entry whose number is none would be found for 0.
    if (kind == FeatureKind::Enumeration && !m_check.IsSound(EntryByName(pNode, strValue)))
        return KX_CC_E_FEATURE_BROKEN;
    return KX_CC_OK;
}

int FeatureAccess::SetText(const std::string &strName, const std::string &strValue)
{
    ArvGcNode *pNode = arv_gc_get_node(m_pGenICam, strName.c_str());
    const FeatureKind kind = pNode == nullptr ? FeatureKind::None : KindOf(pNode);
    const int nCode = FindForWriting(strName, kind, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    std::int64_t nValue = 0;
    double dValue = 0;
    GError *pError = nullptr;
    switch (kind) {
    case FeatureKind::Integer:
        return ParseInteger(strValue, nValue) ? WriteInteger(pNode, nValue) : KX_CC_E_FEATURE_VALUE;
    case FeatureKind::Float:
        return ParseFloat(strValue, dValue) ? WriteFloat(pNode, dValue, false) : KX_CC_E_FEATURE_VALUE;
    case FeatureKind::Boolean:
        return strValue == "0" || strValue == "1" ? SetBool(strName, strValue == "1") : KX_CC_E_FEATURE_VALUE;
    case FeatureKind::Enumeration: {
        ArvGcNode *pEntry = EntryByName(pNode, strValue);
        return pEntry == nullptr ? KX_CC_E_FEATURE_VALUE : WriteEntry(pNode, pEntry);
    }
    default:
        arv_gc_string_set_value(ARV_GC_STRING(pNode), strValue.c_str(), &pError);
        return pError == nullptr ? KX_CC_OK : CodeOfError(pError);
    }
}

} // namespace kxcc
