#ifndef TESTS_KXCAMERACONTROL_SCRIPTEDCAMERA_H
#define TESTS_KXCAMERACONTROL_SCRIPTEDCAMERA_H

#include <QByteArray>

#include <atomic>
#include <cstdint>
#include <map>
#include <thread>

/// A camera of a few lines, for what no decent camera says: any URL, any bytes as description, and
/// requests for more time without end. Serves in a thread of its own.
class ScriptedCamera
{
public:
    /// @param url          the text of its first-URL register
    /// @param description  what lies at address 0x100000
    ScriptedCamera(const char *szAddress, const QByteArray &url, const QByteArray &description);
    ~ScriptedCamera();

    bool IsThere() const { return m_bBound; }
    /// Answers every command with PENDING_ACK from now on, again and again.
    void AskForTimeForEver() { m_bPending = true; }

private:
    void Run();
    QByteArray Answer(const QByteArray &request);
    QByteArray Read(uint32_t nAddress, int nSize) const;

    std::map<uint32_t, QByteArray> m_memory;
    int m_nSocket = -1;
    bool m_bBound = false;
    std::atomic_bool m_bPending{false};
    std::atomic_bool m_bEnd{false};
    std::thread m_thread;
};

#endif
