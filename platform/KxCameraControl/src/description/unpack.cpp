#include "description/unpack.h"

#include <algorithm>
#include <memory>
#include <vector>

#include <zip.h>

#include "ipc/frame.h"

namespace kxcc {
namespace {

struct ZipClose
{
    void operator()(zip_t *pZip) const { zip_discard(pZip); }
    void operator()(zip_file_t *pFile) const { zip_fclose(pFile); }
};

} // namespace

std::string UnpackFirstFile(const std::string &strArchive)
{
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t *pSource = zip_source_buffer_create(strArchive.data(), strArchive.size(), 0, &error);
    if (pSource == nullptr)
        return {};
    const std::unique_ptr<zip_t, ZipClose> zip(zip_open_from_source(pSource, ZIP_RDONLY, &error));
    if (!zip) {
        zip_source_free(pSource);
        return {};
    }
    const std::unique_ptr<zip_file_t, ZipClose> file(zip_fopen_index(zip.get(), 0, 0));
    std::string strText;
    std::vector<char> block(64 << 10);
    for (;;) {
        const zip_int64_t nRead = file ? zip_fread(file.get(), block.data(), block.size()) : -1;
        if (nRead == 0)
            return strText;
        // zip_fread() checks the sum at the end of the data, so damaged data ends here, too.
        if (nRead < 0 || strText.size() + static_cast<std::size_t>(nRead) > kMaxText)
            return {};
        strText.append(block.data(), static_cast<std::size_t>(nRead));
    }
}

} // namespace kxcc
