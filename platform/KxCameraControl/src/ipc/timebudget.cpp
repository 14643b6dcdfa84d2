#include "ipc/timebudget.h"

#include <algorithm>
#include <cstdlib>
#include <mutex>

#include "KxCameraControl/kxcameracontrol.h"

namespace kxcc {

using std::chrono::duration_cast;
using std::chrono::milliseconds;

namespace {

struct StandardLimits
{
    std::mutex mutex;
    TimeBudget::Limits limits = TimeBudget::Parse(getenv("KX_CAMERA_TIME_BUDGET"));
};

StandardLimits &TheStandard()
{
    // Never destroyed: threads may still open cameras while static objects go.
    static auto *pInstance = new StandardLimits;
    return *pInstance;
}

/// What is left of a limit; a day when there is none.
milliseconds LeftOf(milliseconds limit, TimeBudget::Clock::duration spent)
{
    if (limit.count() == 0)
        return std::chrono::hours(24);
    return std::max(milliseconds(0), limit - duration_cast<milliseconds>(spent));
}

/// A number of milliseconds that a call would take; false for any other text.
bool ReadNumber(const char *&szText, char cEnd, milliseconds &number)
{
    char *pEnd = nullptr;
    const unsigned long n = *szText >= '0' && *szText <= '9' ? strtoul(szText, &pEnd, 10) : 0;
    if (pEnd == nullptr || *pEnd != cEnd || n > KX_CC_LONGEST_BUDGET_MS)
        return false;
    szText = pEnd + 1;
    number = milliseconds(n);
    return true;
}

} // namespace

TimeBudget::Limits TimeBudget::Standard()
{
    StandardLimits &standard = TheStandard();
    const std::lock_guard<std::mutex> lock(standard.mutex);
    return standard.limits;
}

void TimeBudget::SetStandard(Limits limits)
{
    StandardLimits &standard = TheStandard();
    const std::lock_guard<std::mutex> lock(standard.mutex);
    standard.limits = limits;
}

TimeBudget::Limits TimeBudget::Parse(const char *szText)
{
    Limits limits{};
    if (szText != nullptr && ReadNumber(szText, ',', limits.feature) &&
        ReadNumber(szText, '\0', limits.total))
        return limits;
    return {milliseconds(KX_CC_FEATURE_BUDGET_MS), milliseconds(KX_CC_CAMERA_BUDGET_MS)};
}

void TimeBudget::BeginCall(Clock::time_point now)
{
    m_begin = now;
    m_bInCall = true;
}

void TimeBudget::EndCall(Clock::time_point now)
{
    m_spent = SpentAt(now);
    m_bInCall = false;
}

void TimeBudget::FinishFeature(Clock::time_point now)
{
    m_spentAtFeature = SpentAt(now);
}

milliseconds TimeBudget::Left(Clock::time_point now) const
{
    const Clock::duration spent = SpentAt(now);
    return std::min(LeftOf(m_limits.feature, spent - m_spentAtFeature), LeftOf(m_limits.total, spent));
}

TimeBudget::Clock::duration TimeBudget::SpentAt(Clock::time_point now) const
{
    return m_bInCall ? m_spent + (now - m_begin) : m_spent;
}

} // namespace kxcc
