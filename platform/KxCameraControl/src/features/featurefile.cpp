#include "features/featurefile.h"

#include <algorithm>

namespace kxcc {
namespace {

const char *const kMarker = "# {05D8C294-F295-4dfb-9D01-096BD04049F4}";

/// The line that begins at nPos, without its end (LF or CR LF); nPos moves to the next line.
std::string NextLine(const std::string &strText, std::size_t &nPos)
{
    const std::size_t nEnd = strText.find('\n', nPos);
    std::string strLine = strText.substr(nPos, nEnd == std::string::npos ? nEnd : nEnd - nPos);
    nPos = nEnd == std::string::npos ? strText.size() : nEnd + 1;
    if (!strLine.empty() && strLine.back() == '\r')
        strLine.pop_back();
    return strLine;
}

/// Takes "{Selector=Value[<TAB>Selector2=Value2]}<TAB>" off the front of the value. A value that does not
/// begin with all of that is a text with a brace.
void TakeSelection(FeatureLine &line)
{
    const std::string &strValue = line.strValue;
    const std::size_t nEnd = strValue.find("}\t");
    if (nEnd == std::string::npos || strValue[0] != '{')
        return;
    std::vector<std::pair<std::string, std::string>> selection;
    for (std::size_t nPos = 1; nPos <= nEnd;) {
        const std::size_t nPartEnd = std::min(strValue.find('\t', nPos), nEnd);
        const std::size_t nEqual = strValue.find('=', nPos);
        if (nEqual == nPos || nEqual >= nPartEnd)
            return;
        selection.emplace_back(strValue.substr(nPos, nEqual - nPos),
                               strValue.substr(nEqual + 1, nPartEnd - nEqual - 1));
        nPos = nPartEnd + 1;
    }
    line.selection = std::move(selection);
    line.strValue.erase(0, nEnd + 2);
}

} // namespace

std::string WriteFeatureFile(const std::vector<std::string> &comments, const std::vector<FeatureLine> &lines)
{
    std::string strText = std::string(kMarker) + "\n";
    for (const std::string &strComment : comments)
        strText += "# " + strComment + "\n";
    for (const FeatureLine &line : lines) {
        if (line.strValue.empty())
            strText += "# " + line.strName + " is empty\n";
        else
            strText += line.strName + "\t" + line.strValue + "\n";
    }
    return strText;
}

std::optional<std::vector<FeatureLine>> ReadFeatureFile(const std::string &strText)
{
    std::vector<FeatureLine> lines;
    std::size_t nPos = 0;
    if (NextLine(strText, nPos) != kMarker)
        return std::nullopt;
    while (nPos < strText.size()) {
        const std::string strLine = NextLine(strText, nPos);
        if (strLine.empty() || strLine[0] == '#')
            continue;
        const std::size_t nTab = strLine.find('\t');
        if (nTab == std::string::npos || nTab == 0)
            return std::nullopt;
        lines.push_back({strLine.substr(0, nTab), strLine.substr(nTab + 1), {}});
        TakeSelection(lines.back());
    }
    return lines;
}

} // namespace kxcc
