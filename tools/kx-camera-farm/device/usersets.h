#ifndef KXCAMERAFARM_USERSETS_H
#define KXCAMERAFARM_USERSETS_H

#include "wire/registermemory.h"

#include <map>

namespace KxFarm {

/// Settings that a camera keeps without power: numbered copies of the registers in one range of addresses.
///
/// Set 0 is the factory's: what the registers are after the first power-up. A set nobody saved equals it.
class UserSets
{
public:
    /// Registers in [first, end) belong to the sets; both are multiples of RegisterMemory::kPageSize.
    /// `factory` shares its base with every memory given later.
    UserSets(const RegisterMemory &factory, std::uint64_t first, std::uint64_t end);

    void Load(std::int64_t number, RegisterMemory *pMemory) const;
    bool Save(std::int64_t number, const RegisterMemory &memory); ///< false for the factory's

private:
    RegisterMemory m_factory;
    std::map<std::int64_t, RegisterMemory> m_mapSaved;
    const std::uint64_t m_nFirst;
    const std::uint64_t m_nEnd;
};

} // namespace KxFarm

#endif
