#ifndef KXCAMERACONTROL_HELPER_FEATURECHECK_H
#define KXCAMERACONTROL_HELPER_FEATURECHECK_H

#include <unordered_map>

#include <arv.h>

namespace kxcc {

/// Finds out whether a feature's description can be evaluated at all.
///
/// Aravis reads a pointer to a missing node as 0 without an error, and follows a cycle of pointers until the
/// stack is gone. So each feature's pointers are walked once before the feature is used, and the
/// result is kept.
class FeatureCheck
{
public:
    /// True when every pointer that the feature itself has leads to a node, and every value that is needed
    /// for them can be computed without needing itself.
    bool IsSound(ArvGcNode *pFeature);

private:
    enum class Mark
    {
        Visiting,
        Sound,
        Broken
    };

    bool IsValueSound(ArvGcNode *pNode, int nDepth);
    bool AreLinksSound(ArvDomNode *pNode, bool bAllLinks, int nDepth);
    bool IsLinkSound(ArvGcPropertyNode *pProperty, bool bAllLinks, int nDepth);

    std::unordered_map<ArvGcNode *, Mark> m_values;
    std::unordered_map<ArvGcNode *, bool> m_features;
};

} // namespace kxcc

#endif
