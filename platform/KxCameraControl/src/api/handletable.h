#ifndef KXCAMERACONTROL_API_HANDLETABLE_H
#define KXCAMERACONTROL_API_HANDLETABLE_H

#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace kxcc {

/// Gives out handles, and finds what they stand for. A number is never given out twice, so a handle that was
/// destroyed is known as such. Thread-safe; an object that is found stays until its user lets go of it.
template <typename T>
class HandleTable
{
public:
    /// Never destroyed: callers may still close handles while static objects go.
    static HandleTable &Instance()
    {
        static auto *pInstance = new HandleTable;
        return *pInstance;
    }

    void *Add(std::shared_ptr<T> object)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        // Odd numbers, so that no handle looks like the address of something.
        void *pHandle = reinterpret_cast<void *>(m_nNext);
        m_nNext += 2;
        m_objects.emplace(pHandle, std::move(object));
        return pHandle;
    }

    std::shared_ptr<T> Find(void *pHandle)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_objects.find(pHandle);
        return found == m_objects.end() ? nullptr : found->second;
    }

    /// What the handle stood for; null when it is none.
    std::shared_ptr<T> Remove(void *pHandle)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_objects.find(pHandle);
        if (found == m_objects.end())
            return nullptr;
        std::shared_ptr<T> object = std::move(found->second);
        m_objects.erase(found);
        return object;
    }

private:
    std::mutex m_mutex;
    uintptr_t m_nNext = 0x1001;
    std::unordered_map<void *, std::shared_ptr<T>> m_objects;
};

} // namespace kxcc

#endif
