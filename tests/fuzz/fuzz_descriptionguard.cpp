// A camera's description as its bytes come: cleaned, judged, and then read by the parser that follows.
#include <algorithm>
#include <cstring>

#include <libxml/parser.h>

#include "protocol/description.h"
#include "protocol/frame.h"

#include "check.h"

using namespace kxcc;

namespace {

/// What the parser meets, up to where it gives up.
struct Met
{
    int nDepth = 0;
    int nDeepest = 0;
    bool bDocumentType = false;
    bool bWellFormed = false;
};

Met MetByTheParser(const std::string &strText)
{
    Met met;
    xmlSAXHandler handler;
    std::memset(&handler, 0, sizeof handler);
    handler.startElement = [](void *pMet, const xmlChar *, const xmlChar **) {
        auto *p = static_cast<Met *>(pMet);
        p->nDeepest = std::max(p->nDeepest, ++p->nDepth);
    };
    handler.endElement = [](void *pMet, const xmlChar *) { --static_cast<Met *>(pMet)->nDepth; };
    handler.internalSubset = [](void *pMet, const xmlChar *, const xmlChar *, const xmlChar *) {
        static_cast<Met *>(pMet)->bDocumentType = true;
    };
    met.bWellFormed =
        xmlSAXUserParseMemory(&handler, &met, strText.data(), static_cast<int>(strText.size())) == 0;
    return met;
}

/// Nothing harmful passes, and nothing is refused but that and what the parser refuses.
void CheckVerdict(bool bGood, const Met &met)
{
    const bool bHarmless = met.nDeepest <= kMaxNesting && !met.bDocumentType;
    if (bGood)
        FUZZ_CHECK(bHarmless);
    else
        FUZZ_CHECK(!bHarmless || !met.bWellFormed);
}

void CheckUrl(const std::string &strUrl)
{
    const auto url = ParseDescriptionUrl(strUrl);
    if (!url)
        return;
    FUZZ_CHECK(url->nSize > 0 && url->nSize <= kMaxText);
    FUZZ_CHECK(uint64_t{url->nAddress} + url->nSize <= UINT32_MAX);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    const std::string strBytes(reinterpret_cast<const char *>(pData), nSize);
    CheckUrl(strBytes);
    const std::string strText = CleanDescription(strBytes);
    FUZZ_CHECK(strText.empty() || strText.front() == '<');
    FUZZ_CHECK(strText.empty() || strText.back() != '\0');
    FUZZ_CHECK(CleanDescription(strText) == strText);
    CheckVerdict(JudgeDescription(strText) == DescriptionVerdict::Good, MetByTheParser(strText));
    return 0;
}
