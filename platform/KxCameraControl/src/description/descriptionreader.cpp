#include "description/descriptionreader.h"

#include <memory>
#include <vector>

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

namespace kxcc {
namespace {

/// What has been met of the text so far, told by the parser.
struct Met
{
    struct Element
    {
        bool bPointer = false;
        std::size_t nText = 0;
    };
    std::vector<Element> open;
    std::size_t nTextOfPointers = 0;
    bool bTooMuch = false;
    bool bForeignName = false;
};

Met &Of(void *pMet)
{
    return *static_cast<Met *>(pMet);
}

/// Parsers disagree on which other letters a name may have, and GenICam has none with such.
bool IsAscii(const xmlChar *szName)
{
    for (; *szName != 0; ++szName) {
        if (*szName > 0x7F)
            return false;
    }
    return true;
}

void StartElement(void *pMet, const xmlChar *szName, const xmlChar **pAttributes)
{
    Met &met = Of(pMet);
    met.bForeignName = met.bForeignName || !IsAscii(szName);
    for (; pAttributes != nullptr && *pAttributes != nullptr; pAttributes += 2)
        met.bForeignName = met.bForeignName || !IsAscii(*pAttributes);
    met.open.push_back({*szName == 'p', 0});
}

void EndElement(void *pMet, const xmlChar * /*szName*/)
{
    Of(pMet).open.pop_back();
}

void Characters(void *pMet, const xmlChar * /*pText*/, int nLength)
{
    Met &met = Of(pMet);
    if (met.open.empty())
        return;
    Met::Element &element = met.open.back();
    element.nText += static_cast<std::size_t>(nLength);
    if (element.bPointer)
        met.nTextOfPointers += static_cast<std::size_t>(nLength);
    met.bTooMuch =
        met.bTooMuch || element.nText > kMaxTextOfElement || met.nTextOfPointers > kMaxTextOfPointers;
}

void Instruction(void *pMet, const xmlChar *szTarget, const xmlChar * /*szData*/)
{
    Met &met = Of(pMet);
    met.bForeignName = met.bForeignName || !IsAscii(szTarget);
}

struct FreeParser
{
    void operator()(xmlParserCtxt *pParser) const { xmlFreeParserCtxt(pParser); }
};

/// False when the text is not well-formed. A handler of SAX 1: names with their prefixes as they stand, like
/// the parsers that build trees of it.
bool Parse(const std::string &strText, Met *pMet)
{
    const std::unique_ptr<xmlParserCtxt, FreeParser> parser(
        xmlCreateMemoryParserCtxt(strText.data(), static_cast<int>(strText.size())));
    if (!parser)
        return false;
    xmlSAXHandler handler{};
    handler.startElement = StartElement;
    handler.endElement = EndElement;
    handler.characters = Characters;
    handler.ignorableWhitespace = Characters;
    handler.cdataBlock = Characters;
    handler.processingInstruction = Instruction;
    *parser->sax = handler;
    parser->userData = pMet;
    xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    xmlParseDocument(parser.get());
    return parser->wellFormed != 0;
}

} // namespace

DescriptionVerdict ReadDescription(const std::string &strText)
{
    const DescriptionVerdict verdict = JudgeDescription(strText);
    if (verdict != DescriptionVerdict::Good)
        return verdict;
    Met met;
    if (!Parse(strText, &met) || met.bForeignName)
        return DescriptionVerdict::NotWellFormed;
    return met.bTooMuch ? DescriptionVerdict::TooMuch : DescriptionVerdict::Good;
}

} // namespace kxcc
