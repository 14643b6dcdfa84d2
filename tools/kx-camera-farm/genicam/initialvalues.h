#ifndef KXCAMERAFARM_INITIALVALUES_H
#define KXCAMERAFARM_INITIALVALUES_H

#include "genicam/nodeevaluator.h"
#include "wire/registermemory.h"

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

/// Gives the registers behind any description values that its features can have: those that the description
/// tells, enumerations one of their entries, numbers within their limits. With `everythingExists`, read-only
/// registers that decide whether a feature exists say that it does. Values in *pMemory that are fine stay.
void FillInitialValues(const NodeMap &map, RegisterMemory *pMemory, bool everythingExists);

} // namespace KxFarm

#endif
