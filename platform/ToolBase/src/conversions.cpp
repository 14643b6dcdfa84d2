#include "lumointerface.h"

#include <QTextCodec>

#include <cstring>

QString LumoInterface::uchar2QString(const unsigned char *data, int length, const char *codec)
{
    if (data == nullptr) {
        return {};
    }
    const char *text = reinterpret_cast<const char *>(data);
    const size_t size = length < 0 ? std::strlen(text) : strnlen(text, static_cast<size_t>(length));
    const QByteArray bytes = QByteArray::fromRawData(text, static_cast<int>(size));
    const QTextCodec *pCodec = codec != nullptr ? QTextCodec::codecForName(codec) : nullptr;
    return pCodec != nullptr ? pCodec->toUnicode(bytes) : QString::fromUtf8(bytes);
}

QString LumoInterface::int2StringMacAddress(unsigned int high, unsigned int low)
{
    const quint64 mac = (static_cast<quint64>(high & 0xFFFFU) << 32) | low;
    QString text = QStringLiteral("%1").arg(mac, 12, 16, QLatin1Char('0')).toUpper();
    for (int pos = 10; pos > 0; pos -= 2) {
        text.insert(pos, QLatin1Char(':'));
    }
    return text;
}
