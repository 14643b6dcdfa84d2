#include "output.h"

#include <cstdio>

namespace {

void Write(FILE *pStream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), pStream);
    fflush(pStream);
}

} // namespace

void Output::Print(const QString &text)
{
    Write(stdout, text);
}

void Output::PrintError(const QString &text)
{
    Write(stderr, text);
}

bool Output::IsComplete()
{
    return ferror(stdout) == 0;
}
