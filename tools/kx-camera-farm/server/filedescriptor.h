#ifndef KXCAMERAFARM_FILEDESCRIPTOR_H
#define KXCAMERAFARM_FILEDESCRIPTOR_H

#include <unistd.h>
#include <utility>

namespace KxFarm {

/// Owns a file descriptor.
class FileDescriptor
{
public:
    explicit FileDescriptor(int descriptor = -1)
        : m_nDescriptor(descriptor)
    {
    }
    ~FileDescriptor() { Reset(); }
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_nDescriptor(std::exchange(other.m_nDescriptor, -1))
    {
    }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        if (this != &other)
            Reset(std::exchange(other.m_nDescriptor, -1));
        return *this;
    }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    int Get() const { return m_nDescriptor; }
    bool IsOpen() const { return m_nDescriptor >= 0; }
    void Reset(int descriptor = -1)
    {
        if (m_nDescriptor >= 0)
            ::close(m_nDescriptor);
        m_nDescriptor = descriptor;
    }

private:
    int m_nDescriptor;
};

} // namespace KxFarm

#endif
