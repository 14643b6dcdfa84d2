#ifndef KXCAMERACONTROL_IPC_HELPERPROCESS_H
#define KXCAMERACONTROL_IPC_HELPERPROCESS_H

#include <string>
#include <utility>

#include <sys/types.h>

#include "ipc/helperoutput.h"

namespace kxcc {

/// The program of the camera sessions: the environment variable KX_CAMERA_SESSION, else
/// ../libexec/kx-camera-session next to the folder of this library.
std::string HelperProgram();

/// One helper process and our end of the socket to it.
///
/// Not thread-safe. Whatever happens, the process is reaped: no zombie outlives this object.
class HelperProcess
{
public:
    /// @param strCamera  whom its messages in the log are about
    explicit HelperProcess(std::string strCamera)
        : m_strCamera(std::move(strCamera))
    {
    }
    HelperProcess(const HelperProcess &) = delete;
    HelperProcess &operator=(const HelperProcess &) = delete;
    ~HelperProcess() { Kill(); }

    /// @return KX_CC_OK, KX_CC_E_RESOURCE (no descriptors, no processes) or KX_CC_E_SESSION (the program
    ///         cannot be executed).
    int Start();

    bool IsRunning() const { return m_nPid > 0; }
    pid_t Pid() const { return m_nPid; }
    int Socket() const { return m_nSocket; }

    /// To be polled together with the socket: what the helper writes to its standard error; -1 for nothing.
    int ErrorOutput() const { return m_output.Descriptor(); }
    /// Hands what is there to the log.
    void ReadErrorOutput() { m_output.Read(m_strCamera); }

    /// Tells the helper that nothing more comes, waits up to nWaitMs for its end, then kills it.
    void End(int nWaitMs);
    /// Ends it at once.
    void Kill();

private:
    void Reap();
    void LogEnd(int nStatus) const;

    const std::string m_strCamera;
    HelperOutput m_output;
    bool m_bKilled = false; ///< by us
    pid_t m_nPid = -1;
    int m_nSocket = -1;
};

} // namespace kxcc

#endif
