#include "ipc/helperoutput.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include "log/log.h"

namespace kxcc {
namespace {

/// A longer line is taken for several, so that one without an end is bounded, too.
constexpr std::size_t kLongestLine = 300;

} // namespace

bool HelperOutput::IsWanted() const
{
    return m_nPipe >= 0 && !m_bEnded && m_nLines < KX_CC_LOG_HELPER_LINES;
}

bool HelperOutput::Open(int &nHelperEnd)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return false;
    Close();
    m_nPipe = ends[0];
    m_bEnded = false;
    m_nLines = 0;
    m_strLine.clear();
    nHelperEnd = ends[1];
    return true;
}

void HelperOutput::Read(const std::string &strCamera)
{
    char block[4096];
    while (IsWanted()) {
        const ssize_t n = read(m_nPipe, block, sizeof block);
        if (n > 0)
            Take(strCamera, block, static_cast<std::size_t>(n));
        else if (n < 0 && errno == EAGAIN)
            return;
        else
            m_bEnded = n == 0 || errno != EINTR;
    }
}

void HelperOutput::Take(const std::string &strCamera, const char *pText, std::size_t nSize)
{
    for (std::size_t i = 0; i < nSize && IsWanted(); ++i) {
        if (pText[i] != '\n')
            m_strLine += pText[i];
        if (pText[i] == '\n' || m_strLine.size() == kLongestLine)
            EndLine(strCamera);
    }
}

/// Empty lines are not handed on, but count: nothing may go on for ever.
void HelperOutput::EndLine(const std::string &strCamera)
{
    if (!m_strLine.empty())
        Log(KX_CC_LOG_INFO, strCamera, "helper process: " + m_strLine);
    m_strLine.clear();
    if (++m_nLines == KX_CC_LOG_HELPER_LINES)
        Log(KX_CC_LOG_INFO, strCamera, "helper process: what it says beyond these lines is left out");
}

void HelperOutput::End(const std::string &strCamera)
{
    Read(strCamera);
    if (!m_strLine.empty())
        EndLine(strCamera);
    Close();
}

void HelperOutput::Close()
{
    if (m_nPipe >= 0)
        close(m_nPipe);
    m_nPipe = -1;
}

} // namespace kxcc
