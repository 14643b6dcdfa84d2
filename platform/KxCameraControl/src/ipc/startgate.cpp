#include "ipc/startgate.h"

#include <algorithm>
#include <thread>

namespace kxcc {

StartGate &StartGate::Instance()
{
    // Never destroyed: threads may still open cameras while static objects go.
    static auto *pInstance = new StartGate(std::max(2u, std::thread::hardware_concurrency()));
    return *pInstance;
}

StartGate::Place::Place(StartGate &gate, std::chrono::milliseconds longest)
    : m_gate(gate)
{
    std::unique_lock<std::mutex> lock(m_gate.m_mutex);
    m_bHeld = m_gate.m_freed.wait_for(lock, longest, [this] { return m_gate.m_nFree > 0; });
    if (m_bHeld)
        --m_gate.m_nFree;
}

StartGate::Place::~Place()
{
    if (!m_bHeld)
        return;
    {
        const std::lock_guard<std::mutex> lock(m_gate.m_mutex);
        ++m_gate.m_nFree;
    }
    m_gate.m_freed.notify_one();
}

} // namespace kxcc
