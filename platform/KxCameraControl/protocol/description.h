#ifndef KXCAMERACONTROL_PROTOCOL_DESCRIPTION_H
#define KXCAMERACONTROL_PROTOCOL_DESCRIPTION_H

/**
 * @file
 * What is done with a camera's description before anything parses it into a tree. Pure functions.
 */

#include <cstdint>
#include <optional>
#include <string>

namespace kxcc {

/// Deepest nesting of elements that a description may have. Walks and destructors of trees recurse.
constexpr int kMaxNesting = 256;

/// Where a description lies in the memory of its camera (GigE Vision 2.0, 17.3 and part 28, register
/// "First URL"): "Local:name.zip;address;length", numbers hexadecimal.
struct DescriptionUrl
{
    uint32_t nAddress = 0;
    uint32_t nSize = 0;
    bool bZip = false;
};

/// Nothing for other places than the camera's own memory, and for numbers that cannot be: a description
/// from elsewhere would let a camera choose what this machine reads.
std::optional<DescriptionUrl> ParseDescriptionUrl(const std::string &strUrl);

/// The text without byte-order mark and text before the XML declaration, up to the first NUL. It becomes
/// UTF-8, and its declaration says so, from UTF-16 with a byte-order mark and from any other encoding that
/// the declaration names. Empty when UTF-16 cannot be converted, and when there is no '<'.
std::string CleanDescription(std::string strText);

enum class DescriptionVerdict
{
    Good,
    Empty,
    TooLong,       ///< more than kMaxText bytes
    DocumentType,  ///< a <!DOCTYPE, which can define entities that expand without end
    TooDeep,       ///< more than kMaxNesting levels
    NotWellFormed, ///< ends inside a tag, or closes more elements than it opened
};

/// Looks over a cleaned text once, from front to back, without building anything.
DescriptionVerdict JudgeDescription(const std::string &strText);

} // namespace kxcc

#endif
