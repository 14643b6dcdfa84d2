#ifndef KXCAMERACONTROL_FEATURES_CONVERTNUMBER_H
#define KXCAMERACONTROL_FEATURES_CONVERTNUMBER_H

#include <cstdint>
#include <optional>
#include <type_traits>

namespace kxcc {

/// A std::int64_t or double in the other type, or its own; nothing when that cannot hold it. The fraction is
/// cut off.
template <typename T, typename From>
std::optional<T> ConvertNumber(From value)
{
    if constexpr (std::is_same_v<T, std::int64_t> && std::is_same_v<From, double>) {
        constexpr double kBound = 9223372036854775808.0; // 2^63
        if (!(value >= -kBound && value < kBound))
            return std::nullopt;
    }
    return static_cast<T>(value);
}

} // namespace kxcc

#endif
