#ifndef KXCAMERAFARM_FAULTVALUE_H
#define KXCAMERAFARM_FAULTVALUE_H

#include <QByteArray>
#include <QString>
#include <cstdint>

namespace KxFarm {

/// The number in `text`, decimal or 0x..., when it lies in [minimum, maximum]. Otherwise false and one line.
bool ParseNumber(const QByteArray &text, std::int64_t minimum, std::int64_t maximum, std::int64_t *pNumber,
                 QString *pError);

/// "127.0.10.1" as 0x7F000A01; false when it is no loopback address a camera can have.
bool ParseLoopbackAddress(const QString &text, std::uint32_t *pAddress);
QString AddressText(std::uint32_t address);

/// `text` without its escapes, \\ and \xNN, so that it may hold any byte.
QByteArray Unescaped(const QByteArray &text);

/// Whether `value` switches a fault off: empty, "0" or "off".
bool IsOff(const QByteArray &value);

} // namespace KxFarm

#endif
