#ifndef KXCAMERACONTROL_LOG_LOG_H
#define KXCAMERACONTROL_LOG_LOG_H

#include <string>

#include "KxCameraControl/kxlog.h"

namespace kxcc {

/// As KX_CC_SetLogCallback().
int SetLogReceiver(unsigned int nLowestLevel, KX_CC_LOG_CALLBACK pCallback, void *pUser);

/// Hands a message to the application's callback. The text is made one printable line. Thread-safe.
void Log(unsigned int nLevel, const std::string &strCamera, const std::string &strText);

/// Valid UTF-8 of at most nWidth bytes, with '?' in place of what cannot be printed and of what steers a
/// terminal or the direction of the text.
std::string PrintableLine(const char *pText, std::size_t nSize, std::size_t nWidth);

} // namespace kxcc

#endif
