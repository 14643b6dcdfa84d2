#ifndef KXCAMERACONTROL_IPC_TIMEBUDGET_H
#define KXCAMERACONTROL_IPC_TIMEBUDGET_H

#include <chrono>

namespace kxcc {

/// The time that one camera may cost its application: what the calls on its handle take, from opening to
/// closing. Time between the calls does not count.
///
/// One thread at a time, but for the limits, which are thread-safe.
class TimeBudget
{
public:
    using Clock = std::chrono::steady_clock;

    /// Zero is no limit.
    struct Limits
    {
        std::chrono::milliseconds feature; ///< without a feature finished
        std::chrono::milliseconds total;
    };
    /// Those of handles that are opened from now on. At first they are those of KX_CAMERA_TIME_BUDGET in the
    /// environment, or those of the header.
    static Limits Standard();
    static void SetStandard(Limits limits);
    /// "FEATURE,TOTAL" in milliseconds; the header's limits for any other text and for none.
    static Limits Parse(const char *szText);

    explicit TimeBudget(Limits limits = Standard())
        : m_limits(limits)
    {
    }

    void BeginCall(Clock::time_point now = Clock::now());
    void EndCall(Clock::time_point now = Clock::now());
    /// During a call.
    void FinishFeature(Clock::time_point now = Clock::now());

    /// What the call that runs may still take; zero when the budget is spent.
    std::chrono::milliseconds Left(Clock::time_point now = Clock::now()) const;
    bool IsSpent(Clock::time_point now = Clock::now()) const { return Left(now).count() == 0; }

private:
    Clock::duration SpentAt(Clock::time_point now) const;

    Limits m_limits;
    Clock::duration m_spent{0};          ///< in calls that are over
    Clock::duration m_spentAtFeature{0}; ///< when the last feature was finished
    Clock::time_point m_begin;
    bool m_bInCall = false;
};

} // namespace kxcc

#endif
