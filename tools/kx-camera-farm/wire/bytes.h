#ifndef KXCAMERAFARM_BYTES_H
#define KXCAMERAFARM_BYTES_H

#include <cstddef>
#include <cstdint>
#include <vector>

/// Bytes on the wire and in registers. GVCP and the bootstrap registers are big-endian throughout.
namespace KxFarm {

using Bytes = std::vector<std::uint8_t>;

inline std::uint16_t LoadBe16(const std::uint8_t *p)
{
    return static_cast<std::uint16_t>((p[0] << 8U) | p[1]);
}

inline std::uint32_t LoadBe32(const std::uint8_t *p)
{
    return (std::uint32_t{p[0]} << 24U) | (std::uint32_t{p[1]} << 16U) | (std::uint32_t{p[2]} << 8U) | p[3];
}

inline void StoreBe16(std::uint8_t *p, std::uint16_t value)
{
    p[0] = static_cast<std::uint8_t>(value >> 8U);
    p[1] = static_cast<std::uint8_t>(value & 0xFFU);
}

inline void StoreBe32(std::uint8_t *p, std::uint32_t value)
{
    StoreBe16(p, static_cast<std::uint16_t>(value >> 16U));
    StoreBe16(p + 2, static_cast<std::uint16_t>(value & 0xFFFFU));
}

} // namespace KxFarm

#endif
