#ifndef KXCAMERACONTROL_CAMERA_IDTEXT_H
#define KXCAMERACONTROL_CAMERA_IDTEXT_H

#include <cstddef>
#include <string>

namespace kxcc {

/// Makes an identification text of a camera safe to show and to use in a file name.
///
/// The result is valid UTF-8 of at most nWidth bytes: cut at the first NUL and before the character that
/// does not fit, with '_' in place of each control character, line or paragraph separator, character that
/// has no width or changes the direction of writing, '/', '\' and byte that is no UTF-8.
///
/// @param pText  bytes as the camera sent them, nSize of them; need not end with a NUL.
std::string CleanIdText(const void *pText, std::size_t nSize, std::size_t nWidth);

/// The same, written into a field of a record that is zero so far.
template <std::size_t N>
void SetIdField(unsigned char (&field)[N], const void *pText, std::size_t nSize)
{
    const std::string text = CleanIdText(pText, nSize, N);
    for (std::size_t i = 0; i < text.size(); ++i)
        field[i] = static_cast<unsigned char>(text[i]);
}

} // namespace kxcc

#endif
