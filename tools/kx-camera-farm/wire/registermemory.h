#ifndef KXCAMERAFARM_REGISTERMEMORY_H
#define KXCAMERAFARM_REGISTERMEMORY_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>

namespace KxFarm {

/// 4 GB of register memory in pages that exist only once written; everything else reads as zero.
///
/// Copies share their pages until one of them writes, so 400 cameras of one model and all their saved
/// user sets cost what they differ in. One thread at a time for a memory and all its copies.
class RegisterMemory
{
public:
    static constexpr std::uint32_t kPageSize = 256;

    /// Starts with the content of `pBase`, which stays shared. Null: all zero.
    explicit RegisterMemory(std::shared_ptr<const RegisterMemory> pBase = nullptr);

    /// `address + size` is at most 2^32.
    void Read(std::uint32_t address, std::uint8_t *data, std::size_t size) const;
    void Write(std::uint32_t address, const std::uint8_t *data, std::size_t size);
    void Fill(std::uint32_t address, std::size_t size, std::uint8_t value);

    std::uint32_t ReadWord(std::uint32_t address) const; ///< four bytes, big-endian
    void WriteWord(std::uint32_t address, std::uint32_t value);

    /// Makes the pages that lie wholly in [first, end) those of `other`. Both have the same base.
    void CopyPages(const RegisterMemory &other, std::uint64_t first, std::uint64_t end);

    std::size_t OwnPages() const { return m_mapPages.size(); } ///< pages written since the base

private:
    using Page = std::array<std::uint8_t, kPageSize>;

    const Page *FindPage(std::uint32_t number) const;
    Page &OwnPage(std::uint32_t number);

    std::shared_ptr<const RegisterMemory> m_pBase;
    std::unordered_map<std::uint32_t, std::shared_ptr<Page>> m_mapPages;
};

} // namespace KxFarm

#endif
