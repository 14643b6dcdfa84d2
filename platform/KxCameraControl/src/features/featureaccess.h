#ifndef KXCAMERACONTROL_FEATURES_FEATUREACCESS_H
#define KXCAMERACONTROL_FEATURES_FEATUREACCESS_H

#include <cstdint>
#include <string>

#include <arv.h>

#include "features/featurecheck.h"

namespace kxcc {

/// The GenICam interface through which a feature's value is reached.
enum class FeatureKind
{
    None,
    Integer,
    Enumeration,
    Float,
    Boolean,
    String
};

FeatureKind KindOf(ArvGcNode *pNode);

/// Reads and writes features by name. Every function gives KX_CC_OK or a KX_CC_E_FEATURE_... code, or
/// KX_CC_E_DEVICE_STATUS or KX_CC_E_TIMEOUT from the camera.
///
/// Values are the camera's own: nothing is kept from one call to the next.
class FeatureAccess
{
public:
    /// @param pGenICam  borrowed; must outlive this object.
    explicit FeatureAccess(ArvGc *pGenICam)
        : m_pGenICam(pGenICam)
    {
    }

    /// @param nValue  one that its 32-bit pattern would set again, or one beyond 32 bits
    int GetInt(const std::string &strName, std::int64_t &nValue);
    int GetEnum(const std::string &strName, std::int64_t &nValue);
    int GetFloat(const std::string &strName, double &dValue);
    int GetBool(const std::string &strName, bool &bValue);
    /// @param nPattern  signed when the feature's minimum is negative, else unsigned
    int SetInt(const std::string &strName, std::uint32_t nPattern);
    int SetEnum(const std::string &strName, std::uint32_t nPattern);
    int SetFloat(const std::string &strName, float fValue);
    int SetBool(const std::string &strName, bool bValue);

    /// The value as a feature file writes it: enumerations by entry name, numbers in full.
    int GetText(const std::string &strName, std::string &strValue);
    int SetText(const std::string &strName, const std::string &strValue);

    /// KX_CC_OK when the feature exists, is of the kind, and can be read (or written) now.
    int FindForReading(const std::string &strName, FeatureKind kind, ArvGcNode *&pNode);
    int FindForWriting(const std::string &strName, FeatureKind kind, ArvGcNode *&pNode);

private:
    int Find(const std::string &strName, FeatureKind kind, ArvGcNode *&pNode);
    int WriteInteger(ArvGcNode *pNode, std::int64_t nValue);
    int WriteFloat(ArvGcNode *pNode, double dValue, bool bSinglePrecision);
    int WriteEntry(ArvGcNode *pNode, ArvGcNode *pEntry);

    ArvGc *const m_pGenICam;
    FeatureCheck m_check;
};

/// KX_CC_E_FEATURE_VALUE for a negative value of a feature that has none: a register of 64 bits without a
/// sign reads like that from 2^63 on.
int CheckSign(ArvGcNode *pInteger, std::int64_t nValue);

/// The result code of an evaluation; clears the error.
int CodeOfError(GError *&pError);

/// Entry of an enumeration by its number or name; null when there is none.
ArvGcNode *EntryByNumber(ArvGcNode *pEnumeration, std::int64_t nValue);
ArvGcNode *EntryByName(ArvGcNode *pEnumeration, const std::string &strName);
/// KX_CC_OK when the entry may be chosen now, KX_CC_E_FEATURE_VALUE when not.
int IsEntryUsable(ArvGcNode *pEntry);

} // namespace kxcc

#endif
