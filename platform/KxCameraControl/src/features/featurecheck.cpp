#include "features/featurecheck.h"

#include <algorithm>
#include <unordered_set>

#include "features/nodecheck.h"

namespace kxcc {
namespace {

// Aravis evaluates with several stack frames per pointer; real descriptions need a dozen levels.
constexpr int kMaxLevels = 500;
// A step may be a register of the camera, 0.2 ms away. Real features need some hundred at the most.
constexpr std::uint64_t kMaxSteps = 10000;

} // namespace

bool FeatureCheck::IsSound(ArvGcNode *pFeature)
{
    const auto known = m_features.find(pFeature);
    if (known != m_features.end())
        return known->second;
    const bool bSound = EffortOf(pFeature).bSound && IsUsable(pFeature);
    m_features[pFeature] = bSound;
    return bSound;
}

/// Conditions and limits are asked of every node down to the register; all of their own targets are read.
bool FeatureCheck::IsUsable(ArvGcNode *pFeature)
{
    std::vector<ArvGcNode *> waiting{pFeature};
    std::unordered_set<ArvGcNode *> seen{pFeature};
    std::uint64_t nSteps = EffortOf(pFeature).nSteps;
    while (!waiting.empty()) {
        const NodeLinks links = LinksOf(waiting.back());
        waiting.pop_back();
        if (!links.bConditionsSound)
            return false;
        for (ArvGcNode *pCondition : links.conditions) {
            const Effort effort = EffortOf(pCondition);
            nSteps += effort.nSteps;
            if (!effort.bSound || nSteps > kMaxSteps)
                return false;
        }
        for (ArvGcNode *pTarget : links.valueTargets) {
            if (seen.insert(pTarget).second)
                waiting.push_back(pTarget);
        }
    }
    return true;
}

/// Of a node whose values have all been looked at.
FeatureCheck::Effort FeatureCheck::EffortWith(const NodeLinks &links)
{
    Effort effort{links.bSound, links.nSteps, 0};
    for (ArvGcNode *pNeeded : links.values) {
        const Effort &needed = m_values[pNeeded];
        effort.bSound = effort.bSound && needed.bSound;
        effort.nSteps = std::min(effort.nSteps + needed.nSteps, kMaxSteps + 1);
        effort.nLevels = std::max(effort.nLevels, needed.nLevels);
    }
    ++effort.nLevels;
    effort.bSound = effort.bSound && effort.nSteps <= kMaxSteps && effort.nLevels <= kMaxLevels;
    return effort;
}

/// Goes down to what has no pointers first, without recursion: a description may chain any number of nodes.
FeatureCheck::Effort FeatureCheck::EffortOf(ArvGcNode *pNode)
{
    struct Visit
    {
        ArvGcNode *pNode;
        NodeLinks links;
        std::size_t nNext = 0;
    };
    const auto known = m_values.find(pNode);
    if (known != m_values.end())
        return known->second;
    std::vector<Visit> way;
    const auto enter = [&](ArvGcNode *pNew) {
        way.push_back({pNew, LinksOf(pNew)});
        m_values[pNew] = {false, 0, 0}; // needed by itself, when it is met again before it is left
    };
    for (enter(pNode); !way.empty();) {
        Visit &visit = way.back();
        if (visit.nNext < visit.links.values.size()) {
            ArvGcNode *pNext = visit.links.values[visit.nNext++];
            if (m_values.count(pNext) == 0)
                enter(pNext);
            continue;
        }
        m_values[visit.pNode] = EffortWith(visit.links);
        way.pop_back();
    }
    return m_values[pNode];
}

} // namespace kxcc
