#ifndef KXCAMERAFARM_FAULTFILTER_H
#define KXCAMERAFARM_FAULTFILTER_H

#include "faults/fault.h"

#include <optional>

namespace KxFarm {

/// Whether `request` reads or writes the register byte at `address`.
bool Touches(const Gvcp::Request &request, std::uint32_t address);
bool IsWrite(const Gvcp::Request &request);

/// Which commands a fault meets.
class FaultFilter
{
public:
    explicit FaultFilter(Scope scope)
        : m_scope(scope)
    {
    }

    /// Splits `text` into the fault's own value and the words of the filter.
    bool Parse(const QByteArray &text, QByteArray *pValue, QString *pError);

    /// Whether the fault meets this command; counts it.
    bool Takes(const Gvcp::Request &request);

private:
    bool ParseWord(const QByteArray &key, const QByteArray &text, QString *pError);
    bool Matches(const Gvcp::Request &request) const;

    const Scope m_scope;
    std::optional<std::uint16_t> m_command;
    std::optional<std::uint32_t> m_address;
    std::int64_t m_nSkip = 0;
    std::int64_t m_nLeft = -1; // -1: without end
};

} // namespace KxFarm

#endif
