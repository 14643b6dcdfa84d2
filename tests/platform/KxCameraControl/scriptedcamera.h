#ifndef TESTS_KXCAMERACONTROL_SCRIPTEDCAMERA_H
#define TESTS_KXCAMERACONTROL_SCRIPTEDCAMERA_H

#include <QByteArray>

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
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
    /// Puts bytes into its memory; before or while it serves.
    void SetMemory(uint32_t nAddress, const QByteArray &bytes);
    uint32_t Register(uint32_t nAddress);

    /// Lets the action run in the camera's thread between carrying out its command number n and answering it;
    /// it is given the control channel privilege.
    void BeforeAnswer(int nCommand, std::function<void(uint32_t)> action);
    int CommandCount() const { return m_nCommands; }

    /// Answers each command so much later, and its repetitions not at all.
    void BeLate(unsigned int nMs) { m_nLateMs = nMs; }

    /// Refuses to read at this address; 0 for none.
    void Refuse(uint32_t nAddress) { m_nRefused = nAddress; }

    /// Answers every command with PENDING_ACK from now on, again and again.
    /// @param nPauseMs  between two of them
    void AskForTimeForEver(int nPauseMs = 100)
    {
        m_nPauseMs = nPauseMs;
        m_bPending = true;
    }
    /// Commands so far that write to its registers from 0x10000 on: all that are not the standard's.
    int Writes() const { return m_nWrites; }

private:
    void Run();
    QByteArray Answer(const QByteArray &request);
    QByteArray CarryOut(const QByteArray &request);
    QByteArray Read(uint32_t nAddress, int nSize) const;

    std::mutex m_mutex;                      ///< protects the next three
    std::map<uint32_t, QByteArray> m_memory; ///< blocks by address
    int m_nActionAt = 0;
    std::function<void(uint32_t)> m_action;
    std::atomic_int m_nCommands{0};
    std::atomic<uint32_t> m_nRefused{0};
    std::atomic<unsigned int> m_nLateMs{0};
    int m_nSocket = -1;
    bool m_bBound = false;
    std::atomic_bool m_bPending{false};
    std::atomic_int m_nPauseMs{100};
    std::atomic_int m_nWrites{0};
    std::atomic_bool m_bEnd{false};
    std::thread m_thread;
};

#endif
