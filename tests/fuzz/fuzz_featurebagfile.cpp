// The SDK's own file of features, from any file that a user picks.
#include <algorithm>

#include "features/featurefile.h"

#include "check.h"

using namespace kxcc;

namespace {

bool AreEqual(const std::vector<FeatureLine> &a, const std::vector<FeatureLine> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const FeatureLine &x, const FeatureLine &y) {
        return x.strName == y.strName && x.strValue == y.strValue;
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    const std::string strText(reinterpret_cast<const char *>(pData), nSize);
    const auto lines = ReadFeatureFile(strText);
    if (!lines)
        return 0;
    size_t nLength = 0;
    for (const FeatureLine &line : *lines) {
        FUZZ_CHECK(!line.strName.empty() && line.strName[0] != '#');
        FUZZ_CHECK(line.strName.find_first_of("\t\n") == std::string::npos);
        FUZZ_CHECK(line.strValue.find('\n') == std::string::npos);
        nLength += line.strName.size() + 1 + line.strValue.size();
        for (const auto &selector : line.selection) {
            FUZZ_CHECK(!selector.first.empty() && selector.first.find_first_of("\t\n=") == std::string::npos);
            FUZZ_CHECK(selector.second.find_first_of("\t\n") == std::string::npos);
            nLength += selector.first.size() + 1 + selector.second.size() + 1;
        }
    }
    FUZZ_CHECK(nLength <= strText.size());
    // A carriage return that ends a value is taken for a part of the line's end; the writer gets none.
    // An empty value is left out, and no line has a selection; a value that looks like one gets it back.
    std::vector<FeatureLine> writable;
    for (FeatureLine line : *lines) {
        line.strValue.erase(line.strValue.find_last_not_of('\r') + 1);
        if (!line.strValue.empty() && line.strValue[0] != '{')
            writable.push_back({line.strName, line.strValue, {}});
    }
    const auto again = ReadFeatureFile(WriteFeatureFile({"Device = Any -- Camera"}, writable));
    FUZZ_CHECK(again && AreEqual(*again, writable));
    return 0;
}
