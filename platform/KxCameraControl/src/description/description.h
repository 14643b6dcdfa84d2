#ifndef KXCAMERACONTROL_DESCRIPTION_DESCRIPTION_H
#define KXCAMERACONTROL_DESCRIPTION_DESCRIPTION_H

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

/// What a tree of a description costs, in the helper and again in the tool, follows from these. Descriptions
/// of real cameras have up to 28,000 elements in 1.3 MB, 16 attributes in one of them, 15 kB of text in one
/// and 70 kB in all pointers.
constexpr std::size_t kMaxDescription = std::size_t{16} << 20; ///< bytes, once it is UTF-8
constexpr int kMaxNodes = 200000; ///< elements, comments, instructions, CDATA sections
constexpr int kMaxAttributes = 200000;
constexpr int kMaxAttributesOfElement = 100; ///< parsers compare each with each other one
constexpr std::size_t kMaxTextOfElement = std::size_t{256} << 10; ///< bytes
constexpr std::size_t kMaxTextOfPointers = std::size_t{4}
                                           << 20; ///< bytes, of all elements whose names begin with 'p'

/// Where a description lies in the memory of its camera (GigE Vision 2.0, 17.3 and part 28, register
/// "First URL"): "Local:name.zip;address;length", numbers hexadecimal.
struct DescriptionUrl
{
    std::uint32_t nAddress = 0;
    std::uint32_t nSize = 0;
    bool bZip = false;
};

/// Nothing for other places than the camera's own memory, and for numbers that cannot be: a description
/// from elsewhere would let a camera choose what this machine reads.
std::optional<DescriptionUrl> ParseDescriptionUrl(const std::string &strUrl);

/// The text without byte-order mark and text before the XML declaration, up to the first NUL. It becomes
/// UTF-8, and its declaration says so, from UTF-16 with a byte-order mark and from any other encoding that
/// the declaration names. U+FFFD stands for each byte that is no UTF-8, for example a letter of another
/// encoding in a tool tip. Empty when UTF-16 cannot be converted, and when there is no '<'.
std::string CleanDescription(std::string strText);

enum class DescriptionVerdict
{
    Good,
    Empty,
    TooLong,       ///< more than kMaxDescription bytes
    TooMuch,       ///< more nodes, attributes or text than the bounds above
    DocumentType,  ///< a <!DOCTYPE, which can define entities that expand without end
    TooDeep,       ///< more than kMaxNesting levels
    NotWellFormed, ///< for JudgeDescription() only: it ends inside a tag, or closes more elements than it
                   ///< opened
};

/// Looks over a cleaned text once, from front to back, without building anything. What is good so far can
/// be given to a parser: ReadDescription() tells the rest.
DescriptionVerdict JudgeDescription(const std::string &strText);

} // namespace kxcc

#endif
