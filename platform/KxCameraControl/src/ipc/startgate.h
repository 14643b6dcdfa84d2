#ifndef KXCAMERACONTROL_IPC_STARTGATE_H
#define KXCAMERACONTROL_IPC_STARTGATE_H

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace kxcc {

/// Lets a few helper processes start at a time, as many as there are processors.
///
/// Starting is all work: the loader maps some fifty libraries. Hundreds of starts at once queue for the
/// kernel's locks on those files as well, which takes seconds in which a helper neither runs nor waits for
/// a processor, and can use up the deadline of its first call. A camera is not spoken to before the start is
/// over, so none is ever waited for in here.
///
/// Thread-safe.
class StartGate
{
public:
    static StartGate &Instance();

    explicit StartGate(unsigned int nPlaces)
        : m_nFree(nPlaces)
    {
    }

    /// A place, held while it lives. The constructor waits until there is one, but goes on without after the
    /// longest time: then starts hang for another reason, and each has a deadline of its own.
    class Place
    {
    public:
        Place(StartGate &gate, std::chrono::milliseconds longest);
        Place(const Place &) = delete;
        Place &operator=(const Place &) = delete;
        ~Place();

    private:
        StartGate &m_gate;
        bool m_bHeld = false;
    };

private:
    std::mutex m_mutex;
    std::condition_variable m_freed;
    unsigned int m_nFree;
};

} // namespace kxcc

#endif
