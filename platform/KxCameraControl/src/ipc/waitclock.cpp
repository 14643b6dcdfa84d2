#include "ipc/waitclock.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace kxcc {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::steady_clock;

namespace {

/// The start of a file of /proc; empty when it cannot be read.
std::string ReadProcFile(const std::string &strPath)
{
    char text[512];
    const int nFile = open(strPath.c_str(), O_RDONLY | O_CLOEXEC);
    if (nFile < 0)
        return {};
    const ssize_t nRead = read(nFile, text, sizeof text);
    close(nFile);
    return nRead > 0 ? std::string(text, static_cast<std::size_t>(nRead)) : std::string();
}

} // namespace

WaitClock::WaitClock(pid_t nPid, milliseconds deadline, milliseconds longest)
    : WaitClock("/proc/" + std::to_string(nPid), deadline, longest)
{
}

WaitClock::WaitClock(std::string strProcess, milliseconds deadline, milliseconds longest)
    : m_strProcess(std::move(strProcess))
    , m_deadline(deadline)
    , m_start(steady_clock::now())
    , m_busyAtStart(-1)
{
    SetLongest(longest);
}

void WaitClock::Restart()
{
    m_start = steady_clock::now();
    m_busyAtStart = Busy();
}

void WaitClock::SetLongest(milliseconds longest)
{
    m_end = steady_clock::now() + longest;
}

bool WaitClock::HasExpired() const
{
    // The state first: its stay in the queue is in the statistics once it has been seen to be over.
    return steady_clock::now() >= m_end || (!IsRunnable() && Waited() >= m_deadline);
}

milliseconds WaitClock::NextLook() const
{
    constexpr milliseconds kSoonest(20);
    const nanoseconds left = std::min(m_deadline - Waited(), nanoseconds(m_end - steady_clock::now()));
    return std::max(kSoonest, std::chrono::duration_cast<milliseconds>(left) + milliseconds(1));
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
    const std::string strText = ReadProcFile(m_strProcess + "/schedstat");
    char *pEnd = nullptr;
    const long long nOnProcessor = strtoll(strText.c_str(), &pEnd, 10);
    return nanoseconds(nOnProcessor + strtoll(pEnd, nullptr, 10));
}

bool WaitClock::IsRunnable() const
{
    // "PID (name) STATE ...": the name is the helper's own and holds no ')'.
    const std::string strText = ReadProcFile(m_strProcess + "/stat");
    const std::size_t nName = strText.rfind(')');
    return nName != std::string::npos && strText.compare(nName, 3, ") R") == 0;
}

} // namespace kxcc
