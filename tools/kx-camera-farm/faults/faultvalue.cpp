#include "faults/faultvalue.h"

#include <QStringList>

namespace KxFarm {

bool ParseNumber(const QByteArray &text, std::int64_t minimum, std::int64_t maximum, std::int64_t *pNumber,
                 QString *pError)
{
    bool good = false;
    const QByteArray trimmed = text.trimmed();
    // Base 10 first: a leading zero does not make a number octal here.
    *pNumber =
        trimmed.startsWith("0x") ? trimmed.mid(2).toLongLong(&good, 16) : trimmed.toLongLong(&good, 10);
    if (good && *pNumber >= minimum && *pNumber <= maximum)
        return true;
    *pError = QStringLiteral("\"%1\" is no number from %2 to %3")
                  .arg(QString::fromUtf8(text))
                  .arg(minimum)
                  .arg(maximum);
    return false;
}

bool ParseLoopbackAddress(const QString &text, std::uint32_t *pAddress)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != 4)
        return false;
    std::uint32_t address = 0;
    for (const QString &part : parts) {
        bool good = false;
        const uint number = part.toUInt(&good);
        if (!good || number > 255)
            return false;
        address = (address << 8U) | number;
    }
    const std::uint32_t host = address & 0xFFU;
    *pAddress = address;
    return (address >> 24U) == 127 && host != 0 && host != 255;
}

QString AddressText(std::uint32_t address)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(address >> 24U)
        .arg((address >> 16U) & 0xFFU)
        .arg((address >> 8U) & 0xFFU)
        .arg(address & 0xFFU);
}

QByteArray Unescaped(const QByteArray &text)
{
    QByteArray bytes;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == '\\' && i + 3 < text.size() && text.at(i + 1) == 'x') {
            bytes += QByteArray::fromHex(text.mid(i + 2, 2));
            i += 3;
        } else if (text.at(i) == '\\' && i + 1 < text.size()) {
            bytes += text.at(++i);
        } else {
            bytes += text.at(i);
        }
    }
    return bytes;
}

bool IsOff(const QByteArray &value)
{
    return value.isEmpty() || value == "0" || value == "off";
}

} // namespace KxFarm
