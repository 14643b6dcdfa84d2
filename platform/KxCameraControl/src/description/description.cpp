#include "description/description.h"

#include <utility>

#include <glib.h>

#include "ipc/frame.h"

namespace kxcc {
namespace {

bool StartsWith(const std::string &strText, std::size_t nPos, const char *szWhat)
{
    return strText.compare(nPos, std::char_traits<char>::length(szWhat), szWhat) == 0;
}

std::optional<std::uint32_t> ParseHex(std::string strNumber)
{
    if (strNumber.size() > 2 && strNumber[0] == '0' && (strNumber[1] == 'x' || strNumber[1] == 'X'))
        strNumber.erase(0, 2);
    guint64 nValue = 0;
    if (g_ascii_string_to_unsigned(strNumber.c_str(), 16, 0, UINT32_MAX, &nValue, nullptr) == FALSE)
        return std::nullopt;
    return static_cast<std::uint32_t>(nValue);
}

std::string Lower(const std::string &strText)
{
    gchar *szLower = g_ascii_strdown(strText.c_str(), static_cast<gssize>(strText.size()));
    std::string strLower(szLower);
    g_free(szLower);
    return strLower;
}

/// Empty when it is no text of the encoding, or nobody knows the encoding.
std::string Converted(const char *pText, std::size_t nSize, const char *szEncoding)
{
    gsize nWritten = 0;
    gchar *pUtf8 =
        g_convert(pText, static_cast<gssize>(nSize), "UTF-8", szEncoding, nullptr, &nWritten, nullptr);
    if (pUtf8 == nullptr)
        return {};
    std::string strUtf8(pUtf8, nWritten);
    g_free(pUtf8);
    return strUtf8;
}

/// Position of the end of the XML declaration that the text begins with; npos without one.
std::size_t EndOfDeclaration(const std::string &strText)
{
    return StartsWith(strText, 0, "<?xml") ? strText.find("?>") : std::string::npos;
}

/// The declaration would name the encoding that the text no longer has.
void DeclareUtf8(std::string &strText)
{
    const std::size_t nEnd = EndOfDeclaration(strText);
    if (nEnd != std::string::npos)
        strText.replace(0, nEnd + 2, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
}

std::string FromUtf16(const std::string &strText, const char *szEncoding)
{
    std::string strUtf8 = Converted(strText.data() + 2, strText.size() - 2, szEncoding);
    DeclareUtf8(strUtf8);
    return strUtf8;
}

/// What stands in quotes behind the "encoding" at nPos; empty when that is no name.
std::string EncodingAt(const std::string &strDeclaration, std::size_t nPos)
{
    const std::size_t nQuote = strDeclaration.find_first_of("\"'", nPos);
    const std::size_t nEnd =
        nQuote == std::string::npos ? nQuote : strDeclaration.find(strDeclaration[nQuote], nQuote + 1);
    if (nEnd == std::string::npos)
        return {};
    const std::string strName = Lower(strDeclaration.substr(nQuote + 1, nEnd - nQuote - 1));
    const bool bName =
        strName.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789._-") == std::string::npos;
    return bName ? strName : std::string();
}

/// A parser follows the encoding that the declaration names, and some encodings write a '<' in a way that
/// JudgeDescription() would not see. So both get UTF-8.
std::string InUtf8(std::string strText)
{
    const std::size_t nEnd = EndOfDeclaration(strText);
    const std::string strDeclaration = strText.substr(0, nEnd == std::string::npos ? 0 : nEnd);
    const std::size_t nFirst = strDeclaration.find("encoding");
    if (nFirst == std::string::npos)
        return strText;
    const std::string strEncoding = EncodingAt(strDeclaration, nFirst);
    if (strEncoding == "utf-8" && strDeclaration.rfind("encoding") == nFirst)
        return strText;
    const std::string strUtf8 = Converted(strText.data(), strText.size(), strEncoding.c_str());
    // The name may be wrong: it cannot be UTF-16, for example, when it can be read here.
    if (EndOfDeclaration(strUtf8) != std::string::npos)
        strText = strUtf8;
    DeclareUtf8(strText);
    return strText;
}

/// Replaces each byte that is no UTF-8.
std::string MadeValid(std::string strText)
{
    const auto nSize = static_cast<gssize>(strText.size());
    if (g_utf8_validate(strText.data(), nSize, nullptr) != FALSE)
        return strText;
    gchar *pValid = g_utf8_make_valid(strText.data(), nSize);
    strText = pValid;
    g_free(pValid);
    return strText;
}

struct Tag
{
    std::size_t nEnd = std::string::npos; ///< behind its '>'; npos when it has none
    int nAttributes = 0;                  ///< texts in quotes
};

/// The tag that begins at nPos, minding '>' inside quotes.
Tag ReadTag(const std::string &strText, std::size_t nPos)
{
    Tag tag;
    char cQuote = '\0';
    for (; nPos < strText.size(); ++nPos) {
        const char c = strText[nPos];
        if (cQuote != '\0') {
            if (c == cQuote)
                cQuote = '\0';
        } else if (c == '"' || c == '\'') {
            cQuote = c;
            ++tag.nAttributes;
        } else if (c == '>') {
            tag.nEnd = nPos + 1;
            break;
        }
    }
    return tag;
}

std::size_t Behind(const std::string &strText, std::size_t nPos, const char *szEnd)
{
    const std::size_t nFound = strText.find(szEnd, nPos);
    return nFound == std::string::npos ? nFound : nFound + std::char_traits<char>::length(szEnd);
}

/// What JudgeDescription() has counted so far.
struct Counts
{
    int nDepth = 0;
    int nNodes = 0;
    int nAttributes = 0;
};

/// Goes over the tag at nPos. False when its attributes are too many.
bool JudgeTag(const std::string &strText, bool bClosing, std::size_t &nPos, Counts &counts)
{
    const Tag tag = ReadTag(strText, nPos);
    nPos = tag.nEnd;
    counts.nAttributes += tag.nAttributes;
    const bool bEmptyElement = nPos != std::string::npos && !bClosing && strText[nPos - 2] == '/';
    if (!bEmptyElement)
        counts.nDepth += bClosing ? -1 : 1;
    return tag.nAttributes <= kMaxAttributesOfElement && counts.nAttributes <= kMaxAttributes;
}

/// Goes over what begins with the '<' at nPos; to npos when it has no end.
DescriptionVerdict JudgeMarkup(const std::string &strText, std::size_t &nPos, Counts &counts)
{
    const bool bClosing = StartsWith(strText, nPos, "</");
    if (!bClosing && ++counts.nNodes > kMaxNodes)
        return DescriptionVerdict::TooMuch;
    if (StartsWith(strText, nPos, "<!--"))
        nPos = Behind(strText, nPos + 4, "-->");
    else if (StartsWith(strText, nPos, "<![CDATA["))
        nPos = Behind(strText, nPos, "]]>");
    else if (StartsWith(strText, nPos, "<?"))
        nPos = Behind(strText, nPos, "?>");
    else if (StartsWith(strText, nPos, "<!"))
        return DescriptionVerdict::DocumentType;
    else if (!JudgeTag(strText, bClosing, nPos, counts))
        return DescriptionVerdict::TooMuch;
    if (nPos == std::string::npos || counts.nDepth < 0)
        return DescriptionVerdict::NotWellFormed;
    return counts.nDepth > kMaxNesting ? DescriptionVerdict::TooDeep : DescriptionVerdict::Good;
}

} // namespace

std::optional<DescriptionUrl> ParseDescriptionUrl(const std::string &strUrl)
{
    const std::string strText = strUrl.substr(0, strUrl.find('\0'));
    const std::size_t nFirst = strText.find(';');
    const std::size_t nSecond = nFirst == std::string::npos ? nFirst : strText.find(';', nFirst + 1);
    if (nSecond == std::string::npos || Lower(strText.substr(0, 6)) != "local:")
        return std::nullopt;
    // A schema version may follow: "...;length?SchemaVersion=1.1.0".
    const std::size_t nEnd = strText.find_first_of("?; \t\r\n", nSecond + 1);
    const auto nAddress = ParseHex(strText.substr(nFirst + 1, nSecond - nFirst - 1));
    const auto nSize = ParseHex(
        strText.substr(nSecond + 1, nEnd == std::string::npos ? std::string::npos : nEnd - nSecond - 1));
    if (!nAddress || !nSize || *nSize == 0 || *nSize > kMaxText || *nAddress > UINT32_MAX - *nSize)
        return std::nullopt;
    const std::string strName = Lower(strText.substr(0, nFirst));
    const bool bZip = strName.size() >= 4 && strName.compare(strName.size() - 4, 4, ".zip") == 0;
    return DescriptionUrl{*nAddress, *nSize, bZip};
}

std::string CleanDescription(std::string strText)
{
    if (StartsWith(strText, 0, "\xFF\xFE"))
        strText = FromUtf16(strText, "UTF-16LE");
    else if (StartsWith(strText, 0, "\xFE\xFF"))
        strText = FromUtf16(strText, "UTF-16BE");
    std::size_t nStart = strText.find("<?xml");
    if (nStart == std::string::npos)
        nStart = strText.find('<');
    if (nStart == std::string::npos)
        return {};
    strText.erase(0, nStart);
    // Behind a NUL lies what fills the camera's memory. Among the text it would make the parser take it for
    // UTF-16.
    strText.resize(strText.find('\0') == std::string::npos ? strText.size() : strText.find('\0'));
    return MadeValid(InUtf8(std::move(strText)));
}

DescriptionVerdict JudgeDescription(const std::string &strText)
{
    if (strText.empty())
        return DescriptionVerdict::Empty;
    if (strText.size() > kMaxDescription)
        return DescriptionVerdict::TooLong;
    Counts counts;
    std::size_t nPos = 0;
    while ((nPos = strText.find('<', nPos)) != std::string::npos) {
        const DescriptionVerdict verdict = JudgeMarkup(strText, nPos, counts);
        if (verdict != DescriptionVerdict::Good)
            return verdict;
    }
    return counts.nDepth == 0 ? DescriptionVerdict::Good : DescriptionVerdict::NotWellFormed;
}

} // namespace kxcc
