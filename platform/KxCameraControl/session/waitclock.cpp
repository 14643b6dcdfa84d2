#include "session/waitclock.h"

#include <algorithm>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace kxcc {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::steady_clock;

WaitClock::WaitClock(pid_t nPid, milliseconds deadline, milliseconds longest)
    : m_strStatistics("/proc/" + std::to_string(nPid) + "/schedstat")
    , m_deadline(deadline)
    , m_longest(longest)
    , m_begin(steady_clock::now())
    , m_start(m_begin)
    , m_busyAtStart(-1)
{
}

void WaitClock::Restart()
{
    m_start = steady_clock::now();
    m_busyAtStart = Busy();
}

bool WaitClock::HasExpired() const
{
    return Waited() >= m_deadline || steady_clock::now() - m_begin >= m_longest;
}

milliseconds WaitClock::NextLook() const
{
    const nanoseconds left =
        std::min(m_deadline - Waited(), m_longest - nanoseconds(steady_clock::now() - m_begin));
    return std::max(milliseconds(1), std::chrono::duration_cast<milliseconds>(left) + milliseconds(1));
}

nanoseconds WaitClock::Waited() const
{
    const nanoseconds wall = steady_clock::now() - m_start;
    // Most calls are answered long before the deadline; they do not pay for reading the statistics.
    if (wall < m_deadline)
        return wall;
    return wall - std::max(nanoseconds(0), Busy() - m_busyAtStart);
}

nanoseconds WaitClock::Busy() const
{
    char text[128] = "";
    const int nFile = open(m_strStatistics.c_str(), O_RDONLY | O_CLOEXEC);
    if (nFile < 0)
        return nanoseconds(0);
    const ssize_t nRead = read(nFile, text, sizeof text - 1);
    close(nFile);
    if (nRead <= 0)
        return nanoseconds(0);
    char *pEnd = text;
    const long long nOnProcessor = strtoll(text, &pEnd, 10);
    return nanoseconds(nOnProcessor + strtoll(pEnd, nullptr, 10));
}

} // namespace kxcc
