// A datagram on the discovery socket: acknowledge, record, texts. Any machine on the network can send one.
#include <algorithm>
#include <cstring>
#include <vector>

#include <glib.h>

#include "camera/idtext.h"
#include "discovery/round.h"
#include "gvcp/gvcpcodec.h"

#include "check.h"

using namespace kxcc;

namespace {

void CheckIdText(const std::string &strText)
{
    FUZZ_CHECK(g_utf8_validate(strText.data(), static_cast<gssize>(strText.size()), nullptr) != FALSE);
    const char *pEnd = strText.data() + strText.size();
    for (const char *p = strText.data(); p < pEnd; p = g_utf8_next_char(p)) {
        const gunichar nChar = g_utf8_get_char(p);
        FUZZ_CHECK(g_unichar_iscntrl(nChar) == FALSE);
        FUZZ_CHECK(g_unichar_type(nChar) != G_UNICODE_FORMAT);
        FUZZ_CHECK(nChar != '/' && nChar != '\\' && nChar != 0x2028 && nChar != 0x2029);
    }
}

/// The text is safe, and zeros are all that follows it.
template <size_t N>
void CheckField(const unsigned char (&field)[N], uint32_t nZero)
{
    const unsigned char *pEnd = std::find(field, field + N, '\0');
    CheckIdText(std::string(field, pEnd));
    FUZZ_CHECK(std::all_of(pEnd, field + N, [](unsigned char c) { return c == 0; }));
    FUZZ_CHECK(nZero == 0);
}

void CheckRecord(const DiscoveryAck &ack, const KX_CC_DEVICE_INFO &info)
{
    const KX_CC_GIGE_INFO &gige = info.SpecialInfo.stGigEInfo;
    FUZZ_CHECK(info.nTransportType == KX_CC_TRANSPORT_GIGE);
    FUZZ_CHECK(info.nAccessStatus == KX_CC_ACCESS_UNKNOWN);
    FUZZ_CHECK(info.nMacAddrHigh <= 0xFFFF);
    FUZZ_CHECK(gige.nCurrentIp == ack.nCurrentIp);
    CheckField(gige.chInterfaceName, gige.nZero0);
    CheckField(gige.chManufacturerName, gige.nZero1);
    CheckField(gige.chModelName, gige.nZero2);
    CheckField(gige.chDeviceVersion, gige.nZero3);
    CheckField(gige.chManufacturerInfo, gige.nZero4);
    CheckField(gige.chSerialNumber, gige.nZero5);
    CheckField(gige.chUserDefinedName, gige.nZero6);
    FUZZ_CHECK(std::all_of(std::begin(gige.chReserved), std::end(gige.chReserved),
                           [](unsigned char c) { return c == 0; }));
}

/// The other acknowledges that the same bytes may be; the sanitizer watches how far they are read.
void CheckPayload(const GvcpAck &ack, const uint8_t *pData, size_t nSize)
{
    FUZZ_CHECK(ack.pPayload >= pData && ack.pPayload + ack.nPayload <= pData + nSize);
    FUZZ_CHECK(ParseRegisterAck(ack).has_value() == (ack.nPayload >= 4));
    FUZZ_CHECK(ParsePendingAck(ack).has_value() == (ack.nPayload >= 4));
    const auto address = ParseRegisterAck(ack).value_or(0);
    for (const size_t nCount : {size_t{0}, size_t{4}, kGvcpBlockSize, ack.nPayload}) {
        const uint8_t *pMemory = ParseMemoryAck(ack, address, nCount);
        FUZZ_CHECK(pMemory == nullptr || pMemory + nCount <= pData + nSize);
        FUZZ_CHECK(ParseMemoryAck(ack, address + 4, nCount) == nullptr);
    }
}

/// Any text that a camera may have, at widths that split its characters.
void CheckCleanIdText(const uint8_t *pData, size_t nSize)
{
    for (const size_t nWidth : {size_t{1}, size_t{3}, size_t{16}, size_t{64}}) {
        const std::string strText = CleanIdText(pData, nSize, nWidth);
        FUZZ_CHECK(strText.size() <= nWidth && strText.size() <= nSize);
        CheckIdText(strText);
        FUZZ_CHECK(CleanIdText(strText.data(), strText.size(), nWidth) == strText);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    if (nSize > kGvcpDatagramSize)
        return 0;
    CheckCleanIdText(pData, nSize);
    const auto ack = ParseAck(pData, nSize);
    if (!ack)
        return 0;
    CheckPayload(*ack, pData, nSize);
    const auto answer = ParseDiscoveryAck(*ack);
    if (!answer)
        return 0;
    FUZZ_CHECK(ack->nPayload >= 248);
    Interface interface;
    interface.strName.assign(pData, pData + nSize);
    CheckRecord(*answer, GigeRecord(*answer, interface));
    return 0;
}
