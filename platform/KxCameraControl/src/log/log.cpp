#include "log/log.h"

#include <mutex>
#include <shared_mutex>

#include <glib.h>

#include "KxCameraControl/kxerrors.h"

namespace kxcc {
namespace {

constexpr std::size_t kLongestLine = 400;

struct Receiver
{
    std::shared_mutex mutex; ///< held shared while the callback runs
    unsigned int nLowestLevel = 0;
    KX_CC_LOG_CALLBACK pCallback = nullptr;
    void *pUser = nullptr;
};

Receiver &TheReceiver()
{
    // Never destroyed: threads may still close cameras while static objects go.
    static auto *pInstance = new Receiver;
    return *pInstance;
}

/// Controls, formats such as a change of direction, and separators of lines are not.
bool IsPrintable(gunichar nChar)
{
    return g_unichar_isprint(nChar) != FALSE && nChar != 0x2028 && nChar != 0x2029;
}

} // namespace

int SetLogReceiver(unsigned int nLowestLevel, KX_CC_LOG_CALLBACK pCallback, void *pUser)
{
    if (nLowestLevel < KX_CC_LOG_DEBUG || nLowestLevel > KX_CC_LOG_ERROR)
        return KX_CC_E_PARAMETER;
    Receiver &receiver = TheReceiver();
    const std::unique_lock<std::shared_mutex> lock(receiver.mutex);
    receiver.nLowestLevel = nLowestLevel;
    receiver.pCallback = pCallback;
    receiver.pUser = pUser;
    return KX_CC_OK;
}

void Log(unsigned int nLevel, const std::string &strCamera, const std::string &strText)
{
    Receiver &receiver = TheReceiver();
    const std::shared_lock<std::shared_mutex> lock(receiver.mutex);
    if (receiver.pCallback == nullptr || nLevel < receiver.nLowestLevel)
        return;
    const std::string strCameraLine = PrintableLine(strCamera.data(), strCamera.size(), kLongestLine);
    const std::string strTextLine = PrintableLine(strText.data(), strText.size(), kLongestLine);
    receiver.pCallback(nLevel, strCameraLine.c_str(), strTextLine.c_str(), receiver.pUser);
}

std::string PrintableLine(const char *pText, std::size_t nSize, std::size_t nWidth)
{
    std::string strLine;
    for (const char *p = pText, *pEnd = pText + nSize; p < pEnd;) {
        const gunichar nChar = g_utf8_get_char_validated(p, pEnd - p);
        // An invalid sequence gives the two largest numbers, and a NUL gives 0: neither can be printed.
        const bool bKeep = nChar < 0x110000 && IsPrintable(nChar);
        const std::size_t nBytes =
            nChar < 0x110000 ? static_cast<std::size_t>(g_unichar_to_utf8(nChar, nullptr)) : 1;
        if (strLine.size() + (bKeep ? nBytes : 1) > nWidth)
            break;
        if (bKeep)
            strLine.append(p, nBytes);
        else
            strLine += '?';
        p += nBytes;
    }
    return strLine;
}

} // namespace kxcc
