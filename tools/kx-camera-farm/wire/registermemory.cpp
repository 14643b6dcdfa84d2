#include "wire/registermemory.h"

#include "wire/bytes.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace KxFarm {

RegisterMemory::RegisterMemory(std::shared_ptr<const RegisterMemory> pBase)
    : m_pBase(std::move(pBase))
{
}

const RegisterMemory::Page *RegisterMemory::FindPage(std::uint32_t number) const
{
    const auto found = m_mapPages.find(number);
    if (found != m_mapPages.end())
        return found->second.get();
    return m_pBase ? m_pBase->FindPage(number) : nullptr;
}

RegisterMemory::Page &RegisterMemory::OwnPage(std::uint32_t number)
{
    std::shared_ptr<Page> &page = m_mapPages[number];
    if (!page) {
        const Page *inherited = m_pBase ? m_pBase->FindPage(number) : nullptr;
        page = inherited ? std::make_shared<Page>(*inherited) : std::make_shared<Page>();
    } else if (page.use_count() > 1) {
        page = std::make_shared<Page>(*page); // a copy of this memory still looks at the old one
    }
    return *page;
}

void RegisterMemory::Read(std::uint32_t address, std::uint8_t *data, std::size_t size) const
{
    while (size > 0) {
        const std::uint32_t offset = address % kPageSize;
        const std::size_t part = std::min<std::size_t>(size, kPageSize - offset);
        if (const Page *page = FindPage(address / kPageSize))
            std::memcpy(data, page->data() + offset, part);
        else
            std::memset(data, 0, part);
        address += static_cast<std::uint32_t>(part);
        data += part;
        size -= part;
    }
}

void RegisterMemory::Write(std::uint32_t address, const std::uint8_t *data, std::size_t size)
{
    while (size > 0) {
        const std::uint32_t offset = address % kPageSize;
        const std::size_t part = std::min<std::size_t>(size, kPageSize - offset);
        std::memcpy(OwnPage(address / kPageSize).data() + offset, data, part);
        address += static_cast<std::uint32_t>(part);
        data += part;
        size -= part;
    }
}

void RegisterMemory::Fill(std::uint32_t address, std::size_t size, std::uint8_t value)
{
    const Bytes content(size, value);
    Write(address, content.data(), size);
}

std::uint32_t RegisterMemory::ReadWord(std::uint32_t address) const
{
    std::uint8_t bytes[4];
    Read(address, bytes, sizeof bytes);
    return LoadBe32(bytes);
}

void RegisterMemory::WriteWord(std::uint32_t address, std::uint32_t value)
{
    std::uint8_t bytes[4];
    StoreBe32(bytes, value);
    Write(address, bytes, sizeof bytes);
}

void RegisterMemory::CopyPages(const RegisterMemory &other, std::uint64_t first, std::uint64_t end)
{
    const auto inside = [first, end](std::uint64_t number) {
        return number * kPageSize >= first && (number + 1) * kPageSize <= end;
    };
    for (auto it = m_mapPages.begin(); it != m_mapPages.end();)
        it = inside(it->first) ? m_mapPages.erase(it) : std::next(it);
    for (const auto &[number, page] : other.m_mapPages) {
        if (inside(number))
            m_mapPages[number] = page;
    }
}

} // namespace KxFarm
