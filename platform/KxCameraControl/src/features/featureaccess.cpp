#include "features/featureaccess.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "KxCameraControl/kxerrors.h"
#include "features/nodeproperties.h"

namespace kxcc {
namespace {

int Availability(ArvGcFeatureNode *pNode)
{
    GError *pError = nullptr;
    const bool bUsable = arv_gc_feature_node_is_implemented(pNode, &pError) != FALSE && pError == nullptr &&
                         arv_gc_feature_node_is_available(pNode, &pError) != FALSE;
    if (pError != nullptr)
        return CodeOfError(pError);
    return bUsable ? KX_CC_OK : KX_CC_E_FEATURE_ACCESS;
}

int Lock(ArvGcFeatureNode *pNode)
{
    GError *pError = nullptr;
    const bool bLocked = arv_gc_feature_node_is_locked(pNode, &pError) != FALSE;
    if (pError != nullptr)
        return CodeOfError(pError);
    return bLocked ? KX_CC_E_FEATURE_ACCESS : KX_CC_OK;
}

/// Conditions hold for a feature when they hold for every node down to the register.
int Usability(ArvGcNode *pNode, bool bForWriting)
{
    ArvGcNode *const pFeature = pNode;
    for (; pNode != nullptr && ARV_IS_GC_FEATURE_NODE(pNode); pNode = ValueNode(pNode)) {
        if (bForWriting && pNode != pFeature && ARV_IS_GC_BOOLEAN(pNode))
            return KX_CC_E_FEATURE_BROKEN; // Aravis would write nothing, without an error
        int nCode = Availability(ARV_GC_FEATURE_NODE(pNode));
        if (nCode == KX_CC_OK && bForWriting)
            nCode = Lock(ARV_GC_FEATURE_NODE(pNode));
        if (nCode != KX_CC_OK)
            return nCode;
    }
    return KX_CC_OK;
}

/// No limit is as good as one that is never reached.
bool IsMissingLimit(GError *&pError)
{
    if (!g_error_matches(pError, ARV_GC_ERROR, ARV_GC_ERROR_PROPERTY_NOT_DEFINED))
        return false;
    g_clear_error(&pError);
    return true;
}

int IntegerLimits(ArvGcNode *pNode, std::int64_t &nMin, std::int64_t &nMax)
{
    GError *pError = nullptr;
    nMin = arv_gc_integer_get_min(ARV_GC_INTEGER(pNode), &pError);
    if (IsMissingLimit(pError))
        nMin = std::numeric_limits<std::int64_t>::min();
    if (pError == nullptr)
        nMax = arv_gc_integer_get_max(ARV_GC_INTEGER(pNode), &pError);
    if (IsMissingLimit(pError))
        nMax = std::numeric_limits<std::int64_t>::max();
    return pError == nullptr ? KX_CC_OK : CodeOfError(pError);
}

int FloatLimits(ArvGcNode *pNode, double &dMin, double &dMax)
{
    GError *pError = nullptr;
    dMin = arv_gc_float_get_min(ARV_GC_FLOAT(pNode), &pError);
    if (IsMissingLimit(pError))
        dMin = -std::numeric_limits<double>::max();
    if (pError == nullptr)
        dMax = arv_gc_float_get_max(ARV_GC_FLOAT(pNode), &pError);
    if (IsMissingLimit(pError))
        dMax = std::numeric_limits<double>::max();
    return pError == nullptr ? KX_CC_OK : CodeOfError(pError);
}

/// Whether the value's 32-bit pattern, written, would set this value again. A feature with a negative
/// minimum takes patterns from 2^31 on for negative values, even if its limits reach that far. Beyond 32
/// bits the caller notices.
int CheckPattern(ArvGcNode *pNode, std::int64_t nValue)
{
    if (nValue <= std::numeric_limits<std::int32_t>::max())
        return CheckSign(pNode, nValue);
    std::int64_t nMin = 0;
    std::int64_t nMax = 0;
    const int nCode = IntegerLimits(pNode, nMin, nMax);
    if (nCode != KX_CC_OK)
        return nCode;
    // Above the maximum it can only be a negative one, in a register whose description forgets the sign.
    return nMin >= 0 || nValue > nMax ? KX_CC_OK : KX_CC_E_FEATURE_VALUE;
}

int CodeOfEvaluation(int nGenICamError)
{
    switch (nGenICamError) {
    case ARV_GC_ERROR_OUT_OF_RANGE:
    case ARV_GC_ERROR_ENUM_ENTRY_NOT_FOUND:
    case ARV_GC_ERROR_INVALID_SYNTAX:
        return KX_CC_E_FEATURE_VALUE;
    case ARV_GC_ERROR_READ_ONLY:
    case ARV_GC_ERROR_NO_EVENT_IMPLEMENTATION:
        return KX_CC_E_FEATURE_ACCESS;
    default:
        return KX_CC_E_FEATURE_BROKEN;
    }
}

bool IsOneOf(const char *szTag, std::initializer_list<const char *> tags)
{
    for (const char *szCandidate : tags) {
        if (std::strcmp(szTag, szCandidate) == 0)
            return true;
    }
    return false;
}

} // namespace

int CheckSign(ArvGcNode *pInteger, std::int64_t nValue)
{
    if (nValue >= 0)
        return KX_CC_OK;
    std::int64_t nMin = 0;
    std::int64_t nMax = 0;
    const int nCode = IntegerLimits(pInteger, nMin, nMax);
    return nCode != KX_CC_OK || nMin < 0 ? nCode : KX_CC_E_FEATURE_VALUE;
}

FeatureKind KindOf(ArvGcNode *pNode)
{
    const char *szTag = arv_dom_node_get_node_name(ARV_DOM_NODE(pNode));
    if (IsOneOf(szTag, {"Integer", "IntReg", "MaskedIntReg", "IntSwissKnife", "IntConverter", "StructEntry"}))
        return FeatureKind::Integer;
    if (IsOneOf(szTag, {"Float", "FloatReg", "SwissKnife", "Converter"}))
        return FeatureKind::Float;
    if (IsOneOf(szTag, {"String", "StringReg"}))
        return FeatureKind::String;
    if (IsOneOf(szTag, {"Enumeration"}))
        return FeatureKind::Enumeration;
    return IsOneOf(szTag, {"Boolean"}) ? FeatureKind::Boolean : FeatureKind::None;
}

int CodeOfError(GError *&pError)
{
    int nCode = KX_CC_E_FEATURE_BROKEN;
    if (pError->domain == ARV_DEVICE_ERROR)
        nCode = pError->code == ARV_DEVICE_ERROR_TIMEOUT ? KX_CC_E_TIMEOUT : KX_CC_E_DEVICE_STATUS;
    else if (pError->domain == ARV_CHUNK_PARSER_ERROR)
        nCode = KX_CC_E_FEATURE_ACCESS; // a value of image data, and no images are taken
    else if (pError->domain == ARV_GC_ERROR)
        nCode = CodeOfEvaluation(pError->code);
    g_clear_error(&pError);
    return nCode;
}

int FeatureAccess::Find(const std::string &strName, FeatureKind kind, ArvGcNode *&pNode)
{
    pNode = arv_gc_get_node(m_pGenICam, strName.c_str());
    if (pNode == nullptr || !ARV_IS_GC_FEATURE_NODE(pNode))
        return KX_CC_E_FEATURE_UNKNOWN;
    if (kind == FeatureKind::None || KindOf(pNode) != kind)
        return KX_CC_E_FEATURE_TYPE;
    return m_check.IsSound(pNode) ? KX_CC_OK : KX_CC_E_FEATURE_BROKEN;
}

int FeatureAccess::FindForReading(const std::string &strName, FeatureKind kind, ArvGcNode *&pNode)
{
    const int nCode = Find(strName, kind, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    if (arv_gc_feature_node_get_actual_access_mode(ARV_GC_FEATURE_NODE(pNode)) == ARV_GC_ACCESS_MODE_WO)
        return KX_CC_E_FEATURE_ACCESS;
    return Usability(pNode, false);
}

int FeatureAccess::FindForWriting(const std::string &strName, FeatureKind kind, ArvGcNode *&pNode)
{
    const int nCode = Find(strName, kind, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    if (arv_gc_feature_node_get_actual_access_mode(ARV_GC_FEATURE_NODE(pNode)) == ARV_GC_ACCESS_MODE_RO)
        return KX_CC_E_FEATURE_ACCESS;
    return Usability(pNode, true);
}

int FeatureAccess::GetInt(const std::string &strName, std::int64_t &nValue)
{
    ArvGcNode *pNode = nullptr;
    const int nCode = FindForReading(strName, FeatureKind::Integer, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    GError *pError = nullptr;
    nValue = arv_gc_integer_get_value(ARV_GC_INTEGER(pNode), &pError);
    return pError == nullptr ? CheckPattern(pNode, nValue) : CodeOfError(pError);
}

int FeatureAccess::GetEnum(const std::string &strName, std::int64_t &nValue)
{
    ArvGcNode *pNode = nullptr;
    const int nCode = FindForReading(strName, FeatureKind::Enumeration, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    GError *pError = nullptr;
    nValue = arv_gc_enumeration_get_int_value(ARV_GC_ENUMERATION(pNode), &pError);
    return pError == nullptr ? KX_CC_OK : CodeOfError(pError);
}

int FeatureAccess::GetFloat(const std::string &strName, double &dValue)
{
    ArvGcNode *pNode = nullptr;
    const int nCode = FindForReading(strName, FeatureKind::Float, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    GError *pError = nullptr;
    dValue = arv_gc_float_get_value(ARV_GC_FLOAT(pNode), &pError);
    return pError == nullptr ? KX_CC_OK : CodeOfError(pError);
}

int FeatureAccess::GetBool(const std::string &strName, bool &bValue)
{
    ArvGcNode *pNode = nullptr;
    const int nCode = FindForReading(strName, FeatureKind::Boolean, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    GError *pError = nullptr;
    bValue = arv_gc_boolean_get_value(ARV_GC_BOOLEAN(pNode), &pError) != FALSE;
    return pError == nullptr ? KX_CC_OK : CodeOfError(pError);
}

int FeatureAccess::SetInt(const std::string &strName, std::uint32_t nPattern)
{
    ArvGcNode *pNode = nullptr;
    const int nCode = FindForWriting(strName, FeatureKind::Integer, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    std::int64_t nValue = nPattern;
    if (nPattern > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())) {
        GError *pError = nullptr;
        const std::int64_t nMin = arv_gc_integer_get_min(ARV_GC_INTEGER(pNode), &pError);
        if (!IsMissingLimit(pError) && pError != nullptr)
            return CodeOfError(pError);
        if (nMin < 0)
            nValue = static_cast<std::int32_t>(nPattern);
    }
    return WriteInteger(pNode, nValue);
}

int FeatureAccess::WriteInteger(ArvGcNode *pNode, std::int64_t nValue)
{
    std::int64_t nMin = 0;
    std::int64_t nMax = 0;
    const int nCode = IntegerLimits(pNode, nMin, nMax);
    if (nCode != KX_CC_OK)
        return nCode;
    if (nValue < nMin || nValue > nMax)
        return KX_CC_E_FEATURE_VALUE;
    GError *pError = nullptr;
    arv_gc_integer_set_value(ARV_GC_INTEGER(pNode), nValue, &pError);
    return pError == nullptr ? KX_CC_OK : CodeOfError(pError);
}

int FeatureAccess::SetEnum(const std::string &strName, std::uint32_t nPattern)
{
    ArvGcNode *pNode = nullptr;
    const int nCode = FindForWriting(strName, FeatureKind::Enumeration, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    ArvGcNode *pEntry = EntryByNumber(pNode, nPattern);
    if (pEntry == nullptr)
        pEntry = EntryByNumber(pNode, static_cast<std::int32_t>(nPattern));
    return pEntry == nullptr ? KX_CC_E_FEATURE_VALUE : WriteEntry(pNode, pEntry);
}

/// Not through arv_gc_enumeration_set_int_value(): that asks the camera whether each of the entries is
/// available, and only the chosen one matters.
int FeatureAccess::WriteEntry(ArvGcNode *pNode, ArvGcNode *pEntry)
{
    const int nCode = m_check.IsSound(pEntry) ? IsEntryUsable(pEntry) : KX_CC_E_FEATURE_BROKEN;
    if (nCode != KX_CC_OK)
        return nCode;
    ArvGcPropertyNode *pValue = PropertyOf(pNode, ARV_GC_PROPERTY_NODE_TYPE_P_VALUE);
    if (pValue == nullptr)
        pValue = PropertyOf(pNode, ARV_GC_PROPERTY_NODE_TYPE_VALUE);
    if (pValue == nullptr)
        return KX_CC_E_FEATURE_BROKEN;
    GError *pError = nullptr;
    const gint64 nValue = arv_gc_enum_entry_get_value(ARV_GC_ENUM_ENTRY(pEntry), &pError);
    if (pError == nullptr)
        arv_gc_property_node_set_int64(pValue, nValue, &pError);
    return pError == nullptr ? KX_CC_OK : CodeOfError(pError);
}

int FeatureAccess::SetFloat(const std::string &strName, float fValue)
{
    ArvGcNode *pNode = nullptr;
    const int nCode = FindForWriting(strName, FeatureKind::Float, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    return std::isfinite(fValue) ? WriteFloat(pNode, fValue, true) : KX_CC_E_FEATURE_VALUE;
}

int FeatureAccess::WriteFloat(ArvGcNode *pNode, double dValue, bool bSinglePrecision)
{
    double dMin = 0;
    double dMax = 0;
    const int nCode = FloatLimits(pNode, dMin, dMax);
    if (nCode != KX_CC_OK)
        return nCode;
    // A limit that was read in single precision may have been rounded past itself: 0.1 becomes
    // 0.100000001. Written back, it means the limit.
    const auto fValue = static_cast<float>(dValue);
    if (bSinglePrecision && dValue < dMin && fValue == static_cast<float>(dMin))
        dValue = dMin;
    if (bSinglePrecision && dValue > dMax && fValue == static_cast<float>(dMax))
        dValue = dMax;
    if (dValue < dMin || dValue > dMax)
        return KX_CC_E_FEATURE_VALUE;
    GError *pError = nullptr;
    arv_gc_float_set_value(ARV_GC_FLOAT(pNode), dValue, &pError);
    return pError == nullptr ? KX_CC_OK : CodeOfError(pError);
}

int FeatureAccess::SetBool(const std::string &strName, bool bValue)
{
    ArvGcNode *pNode = nullptr;
    const int nCode = FindForWriting(strName, FeatureKind::Boolean, pNode);
    if (nCode != KX_CC_OK)
        return nCode;
    GError *pError = nullptr;
    arv_gc_boolean_set_value(ARV_GC_BOOLEAN(pNode), bValue ? TRUE : FALSE, &pError);
    return pError == nullptr ? KX_CC_OK : CodeOfError(pError);
}

} // namespace kxcc
