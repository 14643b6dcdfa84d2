#include "protocol/featurefile.h"

namespace kxcc {
namespace {

const char *const kMarker = "# {05D8C294-F295-4dfb-9D01-096BD04049F4}";

/// The line that begins at nPos, without its end (LF or CR LF); nPos moves to the next line.
std::string NextLine(const std::string &strText, size_t &nPos)
{
    const size_t nEnd = strText.find('\n', nPos);
    std::string strLine = strText.substr(nPos, nEnd == std::string::npos ? nEnd : nEnd - nPos);
    nPos = nEnd == std::string::npos ? strText.size() : nEnd + 1;
    if (!strLine.empty() && strLine.back() == '\r')
        strLine.pop_back();
    return strLine;
}

} // namespace

std::string WriteFeatureFile(const std::vector<std::string> &comments, const std::vector<FeatureLine> &lines)
{
    std::string strText = std::string(kMarker) + "\n";
    for (const std::string &strComment : comments)
        strText += "# " + strComment + "\n";
    for (const FeatureLine &line : lines)
        strText += line.strName + "\t" + line.strValue + "\n";
    return strText;
}

std::optional<std::vector<FeatureLine>> ReadFeatureFile(const std::string &strText)
{
    std::vector<FeatureLine> lines;
    size_t nPos = 0;
    if (NextLine(strText, nPos) != kMarker)
        return std::nullopt;
    while (nPos < strText.size()) {
        const std::string strLine = NextLine(strText, nPos);
        if (strLine.empty() || strLine[0] == '#')
            continue;
        const size_t nTab = strLine.find('\t');
        if (nTab == std::string::npos || nTab == 0)
            return std::nullopt;
        lines.push_back({strLine.substr(0, nTab), strLine.substr(nTab + 1)});
    }
    return lines;
}

} // namespace kxcc
