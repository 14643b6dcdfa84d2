#ifndef KXCAMERACONTROL_FEATURES_FEATURECHECK_H
#define KXCAMERACONTROL_FEATURES_FEATURECHECK_H

#include <cstdint>
#include <unordered_map>
#include <vector>

#include <arv.h>

namespace kxcc {

struct NodeLinks;

/// Finds out whether a feature's description can be evaluated at all, and at what cost.
///
/// Aravis reads a pointer to a missing node, a text that is no number and an integer without a value as 0,
/// without an error; it follows a cycle of pointers until the stack is gone, and a node that several others
/// need as often as they are needed themselves. So all that a feature can lead to is looked at once, before
/// it is used, and the result is kept.
class FeatureCheck
{
public:
    /// True when the feature, its conditions and limits, and everything that their values depend on have
    /// values, need no value for itself, and can be evaluated in a bounded number of steps. It does not
    /// matter in which order features are asked for.
    bool IsSound(ArvGcNode *pFeature);

private:
    /// What it takes to compute the value of a node.
    struct Effort
    {
        bool bSound = true;
        std::uint64_t nSteps = 0; ///< nodes evaluated, the same one as often as it is needed
        int nLevels = 0;          ///< nodes on the longest way
    };

    bool IsUsable(ArvGcNode *pFeature);
    Effort EffortOf(ArvGcNode *pNode);
    Effort EffortWith(const NodeLinks &links);

    std::unordered_map<ArvGcNode *, Effort> m_values;
    std::unordered_map<ArvGcNode *, bool> m_features;
};

} // namespace kxcc

#endif
