#ifndef KXCAMERAFARM_FEATUREINDEX_H
#define KXCAMERAFARM_FEATUREINDEX_H

#include "genicam/nodeevaluator.h"
#include "wire/registermemory.h"

#include <vector>

namespace KxFarm {

/// Which features lie behind which registers. Shared by all cameras of a model; never changes.
class FeatureIndex
{
public:
    /// `memory` holds what addresses are computed from.
    FeatureIndex(const NodeMap &map, const RegisterMemory &memory);

    /// Features whose register may cover any of the `size` bytes from `address` on; with selectors, several.
    std::vector<int> Candidates(std::uint32_t address, std::size_t size) const;

    /// Numbers with limits that move, features with locks and conditions: what other writes may disturb.
    const std::vector<int> &Dependents() const { return m_listDependents; }

    /// Whether a write to these bytes may disturb one of them.
    bool Disturbs(std::uint32_t address, std::size_t size) const;

private:
    struct Span
    {
        std::uint32_t first;
        std::uint64_t end;
        int feature;
    };
    void AddSources(const NodeMap &map, NodeEvaluator *pEvaluator, int node, std::vector<bool> *pVisited);

    std::vector<Span> m_listSpans;
    std::vector<Span> m_listSources; // registers that limits, conditions and indices are computed from
    std::vector<int> m_listDependents;
};

/// Whether a feature, or the register node `target` behind it, can only be read.
bool IsReadOnly(const Node &feature, const Node &target);
bool IsNumber(const Node &node); ///< a feature with limits

} // namespace KxFarm

#endif
