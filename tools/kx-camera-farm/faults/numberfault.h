#ifndef KXCAMERAFARM_NUMBERFAULT_H
#define KXCAMERAFARM_NUMBERFAULT_H

#include "faults/fault.h"
#include "faults/faultvalue.h"

namespace KxFarm {

/// More than any test waits for, and still safe to add up.
constexpr std::int64_t kMaxCount = 1000000000;

/// FaultKind::make of a fault whose value is one number from `minimum` to `maximum`.
template <typename Made, std::int64_t minimum, std::int64_t maximum>
std::unique_ptr<Fault> MakeOfNumber(const QByteArray &value, const Camera & /*camera*/, QString *pError)
{
    std::int64_t number = 0;
    return ParseNumber(value, minimum, maximum, &number, pError) ? std::make_unique<Made>(number) : nullptr;
}

/// FaultKind::make of a fault that is on or off.
template <typename Made>
std::unique_ptr<Fault> MakeSwitched(const QByteArray &value, const Camera & /*camera*/, QString *pError)
{
    std::int64_t on = 0;
    return ParseNumber(value, 1, 1, &on, pError) ? std::make_unique<Made>() : nullptr;
}

} // namespace KxFarm

#endif
