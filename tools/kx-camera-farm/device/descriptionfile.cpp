#include "device/descriptionfile.h"

#include <vector>
#include <zip.h>

namespace KxFarm {

namespace {

constexpr int kMaxUnpacked = 64 * 1024 * 1024;

/// libzip writes into a buffer of its own; the source has to be kept beyond the closing of the archive.
QByteArray ContentOf(zip_source_t *pSource)
{
    QByteArray content;
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (zip_source_stat(pSource, &stat) != 0 || zip_source_open(pSource) != 0)
        return content;
    content.resize(static_cast<int>(stat.size));
    if (zip_source_read(pSource, content.data(), stat.size) != static_cast<zip_int64_t>(stat.size))
        content.clear();
    zip_source_close(pSource);
    return content;
}

} // namespace

namespace {

struct Entry
{
    QByteArray name;
    QByteArray content;
};

QByteArray ZipOfAll(const std::vector<Entry> &entries)
{
    zip_source_t *pBuffer = zip_source_buffer_create(nullptr, 0, 0, nullptr);
    if (!pBuffer)
        return {};
    zip_source_keep(pBuffer);
    QByteArray archive;
    if (zip_t *pZip = zip_open_from_source(pBuffer, ZIP_TRUNCATE, nullptr)) {
        for (const Entry &entry : entries) {
            zip_source_t *pFile = zip_source_buffer(pZip, entry.content.constData(),
                                                    static_cast<zip_uint64_t>(entry.content.size()), 0);
            if (pFile && zip_file_add(pZip, entry.name.constData(), pFile, 0) < 0)
                zip_source_free(pFile);
        }
        if (zip_close(pZip) == 0)
            archive = ContentOf(pBuffer);
        else
            zip_discard(pZip);
    }
    zip_source_free(pBuffer);
    return archive;
}

} // namespace

QByteArray ZipOf(const QByteArray &name, const QByteArray &content)
{
    return ZipOfAll({{name, content}});
}

QByteArray ZipOfTwo(const QByteArray &firstName, const QByteArray &first, const QByteArray &secondName,
                    const QByteArray &second)
{
    return ZipOfAll({{firstName, first}, {secondName, second}});
}

QByteArray FirstFileOfZip(const QByteArray &archive, QString *pError)
{
    QByteArray content;
    *pError = QStringLiteral("the zip archive cannot be read");
    zip_source_t *pSource =
        zip_source_buffer_create(archive.constData(), static_cast<zip_uint64_t>(archive.size()), 0, nullptr);
    if (!pSource)
        return content;
    zip_t *pZip = zip_open_from_source(pSource, ZIP_RDONLY, nullptr);
    if (!pZip) {
        zip_source_free(pSource);
        return content;
    }
    zip_stat_t stat;
    zip_stat_init(&stat);
    zip_file_t *pFile = zip_stat_index(pZip, 0, 0, &stat) == 0 ? zip_fopen_index(pZip, 0, 0) : nullptr;
    if (pFile && stat.size <= kMaxUnpacked) {
        content.resize(static_cast<int>(stat.size));
        if (zip_fread(pFile, content.data(), stat.size) == static_cast<zip_int64_t>(stat.size))
            pError->clear();
        else
            content = QByteArray();
    }
    if (pFile)
        zip_fclose(pFile);
    zip_close(pZip);
    return content;
}

bool LooksLikeZip(const QByteArray &content)
{
    return content.startsWith("PK\003\004");
}

} // namespace KxFarm
