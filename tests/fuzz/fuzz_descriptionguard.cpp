// A camera's description as its bytes come: cleaned, judged, and then read by the parsers that follow.
#include <algorithm>
#include <cstring>

#include <QDomDocument>

#include <glib.h>
#include <libxml/parser.h>

#include "description/description.h"
#include "description/descriptionreader.h"
#include "ipc/frame.h"

#include "check.h"

using namespace kxcc;

namespace {

/// What the parser meets, up to where it gives up.
struct Met
{
    int nDepth = 0;
    int nDeepest = 0;
    int nElements = 0;
    int nAttributes = 0;
    bool bDocumentType = false;
    bool bWellFormed = false;
};

Met MetByTheParser(const std::string &strText)
{
    Met met;
    xmlSAXHandler handler;
    std::memset(&handler, 0, sizeof handler);
    handler.startElement = [](void *pMet, const xmlChar *, const xmlChar **pAttributes) {
        auto *p = static_cast<Met *>(pMet);
        p->nDeepest = std::max(p->nDeepest, ++p->nDepth);
        ++p->nElements;
        for (; pAttributes != nullptr && *pAttributes != nullptr; pAttributes += 2)
            ++p->nAttributes;
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
void CheckVerdict(DescriptionVerdict verdict, const Met &met)
{
    const bool bHarmless = met.nDeepest <= kMaxNesting && !met.bDocumentType && met.nElements <= kMaxNodes &&
                           met.nAttributes <= kMaxAttributes;
    if (verdict == DescriptionVerdict::Good)
        FUZZ_CHECK(bHarmless);
    else if (verdict != DescriptionVerdict::TooMuch) // of one element's attributes, of comments
        FUZZ_CHECK(!bHarmless || !met.bWellFormed);
}

/// What is read as a whole here is read as a whole in the tool.
void CheckReading(const std::string &strText, DescriptionVerdict verdict, const Met &met)
{
    const DescriptionVerdict reading = ReadDescription(strText);
    if (reading != DescriptionVerdict::Good)
        return;
    FUZZ_CHECK(verdict == DescriptionVerdict::Good && met.bWellFormed);
    FUZZ_CHECK(QDomDocument().setContent(QString::fromStdString(strText)));
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
    FUZZ_CHECK(g_utf8_validate(strText.data(), static_cast<gssize>(strText.size()), nullptr) != FALSE);
    const DescriptionVerdict verdict = JudgeDescription(strText);
    const Met met = MetByTheParser(strText);
    CheckVerdict(verdict, met);
    CheckReading(strText, verdict, met);
    return 0;
}
