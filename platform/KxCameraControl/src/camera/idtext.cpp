#include "camera/idtext.h"

#include <algorithm>
#include <iterator>

#include <glib.h>

namespace kxcc {
namespace {

/// Characters without a shape that are not in the category of format characters: fillers, variation
/// selectors.
bool IsInvisible(gunichar nChar)
{
    static constexpr struct
    {
        gunichar nFirst;
        gunichar nLast;
    } kRanges[] = {{0x034F, 0x034F}, {0x115F, 0x1160}, {0x17B4, 0x17B5}, {0x180B, 0x180F},
                   {0x3164, 0x3164}, {0xFE00, 0xFE0F}, {0xFFA0, 0xFFA0}, {0xE0000, 0xE0FFF}};
    return std::any_of(std::begin(kRanges), std::end(kRanges),
                       [nChar](const auto &range) { return nChar >= range.nFirst && nChar <= range.nLast; });
}

/// Whatever would break a line or a path, turn the text around it, or make two different texts look alike.
bool IsUnsafe(gunichar nChar)
{
    switch (g_unichar_type(nChar)) {
    case G_UNICODE_CONTROL:
    case G_UNICODE_FORMAT: // bidirectional marks and overrides, zero-width spaces and joiners
    case G_UNICODE_LINE_SEPARATOR:
    case G_UNICODE_PARAGRAPH_SEPARATOR:
        return true;
    default:
        return nChar == '/' || nChar == '\\' || IsInvisible(nChar);
    }
}

} // namespace

std::string CleanIdText(const void *pText, std::size_t nSize, std::size_t nWidth)
{
    std::string text;
    const char *p = static_cast<const char *>(pText);
    const char *pEnd = p + nSize;
    while (p < pEnd && *p != '\0') {
        const gunichar nChar = g_utf8_get_char_validated(p, pEnd - p);
        const bool bInvalid = nChar == static_cast<gunichar>(-1) || nChar == static_cast<gunichar>(-2);
        const std::size_t nBytes = bInvalid ? 1 : static_cast<std::size_t>(g_utf8_next_char(p) - p);
        const bool bReplace = bInvalid || IsUnsafe(nChar);
        if (text.size() + (bReplace ? 1 : nBytes) > nWidth)
            break;
        if (bReplace)
            text += '_';
        else
            text.append(p, nBytes);
        p += nBytes;
    }
    return text;
}

} // namespace kxcc
