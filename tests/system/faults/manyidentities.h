#ifndef TESTS_SYSTEM_MANYIDENTITIES_H
#define TESTS_SYSTEM_MANYIDENTITIES_H

#include <QByteArray>

#include <atomic>
#include <thread>

/// One device that answers a search as so many cameras, all at its own address, and every other command with
/// "access denied". Serves in a thread of its own.
class ManyIdentities
{
public:
    /// @param szAddress  in 127.0.0.0/8, no camera's
    ManyIdentities(const char *szAddress, int nIdentities);
    ~ManyIdentities();
    ManyIdentities(const ManyIdentities &) = delete;
    ManyIdentities &operator=(const ManyIdentities &) = delete;

    bool IsThere() const { return m_bBound; }

private:
    void Run();
    void Answer(int nSocket);
    QByteArray Identity(const QByteArray &request, int number) const;

    const quint32 m_nAddress;
    const int m_nIdentities;
    int m_nOwn = -1;    // bound to its address
    int m_nSearch = -1; // hears the searches that go to everybody
    bool m_bBound = false;
    std::atomic_bool m_bEnd{false};
    std::thread m_thread;
};

#endif
