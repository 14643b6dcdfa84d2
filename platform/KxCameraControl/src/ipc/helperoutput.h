#ifndef KXCAMERACONTROL_IPC_HELPEROUTPUT_H
#define KXCAMERACONTROL_IPC_HELPEROUTPUT_H

#include <cstddef>
#include <string>

namespace kxcc {

/// What one helper process says on its standard error, handed to the log line by line, up to
/// KX_CC_LOG_HELPER_LINES of them.
///
/// It comes through a pipe whose other end does not block: a helper that says more than is read loses the
/// rest and works on. Not thread-safe.
class HelperOutput
{
public:
    HelperOutput() = default;
    HelperOutput(const HelperOutput &) = delete;
    HelperOutput &operator=(const HelperOutput &) = delete;
    ~HelperOutput() { Close(); }

    /// Makes the pipe.
    /// @param nHelperEnd  Out: for the helper's descriptor 2; the caller closes it
    bool Open(int &nHelperEnd);

    /// To be polled for what can be read; -1 when nothing more is wanted or comes.
    int Descriptor() const { return IsWanted() ? m_nPipe : -1; }
    /// Hands on what is there. Does not block.
    void Read(const std::string &strCamera);
    /// The helper is gone: hands on the rest.
    void End(const std::string &strCamera);

private:
    bool IsWanted() const;
    void Take(const std::string &strCamera, const char *pText, std::size_t nSize);
    void EndLine(const std::string &strCamera);
    void Close();

    int m_nPipe = -1;
    bool m_bEnded = false;
    unsigned int m_nLines = 0;
    std::string m_strLine; ///< the beginning of one that is not complete
};

} // namespace kxcc

#endif
