#ifndef KXCAMERACONTROL_FEATURES_NODECHECK_H
#define KXCAMERACONTROL_FEATURES_NODECHECK_H

#include <cstdint>
#include <vector>

#include <arv.h>

namespace kxcc {

/// What one node says about itself and needs of others, as Aravis follows it.
struct NodeLinks
{
    bool bSound = true;                  ///< its own texts have a meaning, and no pointer of a value dangles
    bool bConditionsSound = true;        ///< the same for the pointers of its conditions and limits
    std::uint64_t nSteps = 1;            ///< to evaluate it alone
    std::vector<ArvGcNode *> values;     ///< nodes that its value is computed from
    std::vector<ArvGcNode *> conditions; ///< nodes that say whether and within what limits it can be used
    std::vector<ArvGcNode *> valueTargets; ///< those of its values that it hands its own value on to
};

NodeLinks LinksOf(ArvGcNode *pNode);

} // namespace kxcc

#endif
