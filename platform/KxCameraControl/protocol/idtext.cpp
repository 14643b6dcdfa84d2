#include "protocol/idtext.h"

#include <glib.h>

namespace kxcc {
namespace {

/// C0, DEL and C1 controls, and the line and paragraph separators, which break a line as a control does.
bool IsUnsafe(gunichar nChar)
{
    return nChar < 0x20 || (nChar >= 0x7F && nChar < 0xA0) || nChar == 0x2028 || nChar == 0x2029 ||
           nChar == '/' || nChar == '\\';
}

} // namespace

std::string CleanIdText(const void *pText, size_t nSize, size_t nWidth)
{
    std::string text;
    const char *p = static_cast<const char *>(pText);
    const char *pEnd = p + nSize;
    while (p < pEnd && *p != '\0') {
        const gunichar nChar = g_utf8_get_char_validated(p, pEnd - p);
        const bool bInvalid = nChar == static_cast<gunichar>(-1) || nChar == static_cast<gunichar>(-2);
        const size_t nBytes = bInvalid ? 1 : static_cast<size_t>(g_utf8_next_char(p) - p);
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
