#ifndef TESTS_SYSTEM_HELDSEARCH_H
#define TESTS_SYSTEM_HELDSEARCH_H

#include <atomic>
#include <memory>
#include <mutex>

/// The search of the cameras, as the window has it, with a brake: what a test does to a camera while it holds
/// the search is not in the device tree before it lets go.
///
/// For one device tree at a time, built while this object lives, which outlives it. GUI thread.
class HeldSearch
{
public:
    HeldSearch();
    ~HeldSearch();
    HeldSearch(const HeldSearch &) = delete;
    HeldSearch &operator=(const HeldSearch &) = delete;

    /// Waits for the round in progress; no other begins as long as the lock is held.
    std::unique_lock<std::mutex> Hold() { return std::unique_lock<std::mutex>(m_pState->round); }

    /// Runs the event loop until the tree shows what a round found that began after this call. False after
    /// 20 s.
    bool WaitForRound() const;

    struct State
    {
        std::mutex round; ///< locked during each round
        std::atomic_int nBegun{0};
    };

private:
    std::shared_ptr<State> m_pState;
};

#endif
