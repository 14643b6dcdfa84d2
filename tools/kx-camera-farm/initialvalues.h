#ifndef KXCAMERAFARM_INITIALVALUES_H
#define KXCAMERAFARM_INITIALVALUES_H

#include "nodeevaluator.h"
#include "registermemory.h"

namespace KxFarm {

/// Register memory as an evaluator sees it: every address exists.
class MemoryAccess : public RegisterAccess
{
public:
    explicit MemoryAccess(RegisterMemory *pMemory)
        : m_pMemory(pMemory)
    {
    }
    bool Read(std::uint32_t address, std::uint8_t *data, std::size_t size) override
    {
        m_pMemory->Read(address, data, size);
        return true;
    }
    bool Write(std::uint32_t address, const std::uint8_t *data, std::size_t size) override
    {
        m_pMemory->Write(address, data, size);
        return true;
    }

private:
    RegisterMemory *m_pMemory;
};

/// Gives the registers behind any description values that its features can have: what is read-only and
/// decides whether a feature exists says that it does, enumerations have one of their entries, numbers lie
/// within their limits. Values in *pMemory that are fine stay.
void FillInitialValues(const NodeMap &map, RegisterMemory *pMemory);

} // namespace KxFarm

#endif
