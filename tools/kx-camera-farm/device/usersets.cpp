#include "device/usersets.h"

namespace KxFarm {

UserSets::UserSets(const RegisterMemory &factory, std::uint64_t first, std::uint64_t end)
    : m_factory(factory)
    , m_nFirst(first)
    , m_nEnd(end)
{
}

void UserSets::Load(std::int64_t number, RegisterMemory *pMemory) const
{
    const auto found = m_mapSaved.find(number);
    pMemory->CopyPages(found == m_mapSaved.end() ? m_factory : found->second, m_nFirst, m_nEnd);
}

bool UserSets::Save(std::int64_t number, const RegisterMemory &memory)
{
    if (number == 0)
        return false;
    m_mapSaved.insert_or_assign(number, memory);
    return true;
}

} // namespace KxFarm
