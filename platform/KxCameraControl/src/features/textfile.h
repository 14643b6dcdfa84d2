#ifndef KXCAMERACONTROL_FEATURES_TEXTFILE_H
#define KXCAMERACONTROL_FEATURES_TEXTFILE_H

#include <cstdint>
#include <vector>

namespace kxcc {

/// Regular files only, and never waits: a pipe without a writer cannot be opened.
/// @return KX_CC_OK, KX_CC_E_FILE_OPEN, or KX_CC_E_FILE_FORMAT when it is longer than kMaxText
int ReadWholeFile(const char *szPath, std::vector<std::uint8_t> &bytes);

/// Puts the bytes in the place of the file in one step: whoever opens it sees the old ones or the new ones.
/// A folder, device, pipe or socket of that name stays what it is, and cannot be opened.
/// @return KX_CC_OK, KX_CC_E_FILE_OPEN, or KX_CC_E_FILE_WRITE; nothing is left behind after a failure
int ReplaceFile(const char *szPath, const std::vector<std::uint8_t> &bytes);

} // namespace kxcc

#endif
