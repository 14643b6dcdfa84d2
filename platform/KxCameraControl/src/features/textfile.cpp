#include "features/textfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <glib.h>

#include "KxCameraControl/kxerrors.h"
#include "ipc/frame.h"

namespace kxcc {
namespace {

/// Something that is there and no regular file: a folder, a device, a pipe without a writer.
bool IsSomethingElse(const char *szPath)
{
    struct stat status = {};
    return stat(szPath, &status) == 0 && !S_ISREG(status.st_mode);
}

/// What the file system gives when there was a place for the file and then no room.
bool IsAboutWriting(const GError *pError)
{
    return g_error_matches(pError, G_FILE_ERROR, G_FILE_ERROR_NOSPC) != FALSE ||
           g_error_matches(pError, G_FILE_ERROR, G_FILE_ERROR_IO) != FALSE ||
           g_error_matches(pError, G_FILE_ERROR, G_FILE_ERROR_FAILED) != FALSE;
}

} // namespace

int ReadWholeFile(const char *szPath, std::vector<std::uint8_t> &bytes)
{
    // Opened without waiting, and looked at through the descriptor: nothing may take its place in between.
    const int nFile = open(szPath, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status = {};
    if (nFile < 0)
        return KX_CC_E_FILE_OPEN;
    std::uint8_t block[16384];
    ssize_t n = fstat(nFile, &status) == 0 && S_ISREG(status.st_mode) ? 0 : -1;
    while (n >= 0 && (n = read(nFile, block, sizeof block)) > 0 && bytes.size() <= kMaxText)
        bytes.insert(bytes.end(), block, block + n);
    close(nFile);
    if (n < 0)
        return KX_CC_E_FILE_OPEN;
    return bytes.size() > kMaxText ? KX_CC_E_FILE_FORMAT : KX_CC_OK;
}

int ReplaceFile(const char *szPath, const std::vector<std::uint8_t> &bytes)
{
    if (IsSomethingElse(szPath))
        return KX_CC_E_FILE_OPEN;
    GError *pError = nullptr;
    const auto *pText = reinterpret_cast<const gchar *>(bytes.data());
    g_file_set_contents_full(
        szPath, bytes.empty() ? "" : pText, static_cast<gssize>(bytes.size()),
        GFileSetContentsFlags(G_FILE_SET_CONTENTS_CONSISTENT | G_FILE_SET_CONTENTS_DURABLE), 0666, &pError);
    if (pError == nullptr)
        return KX_CC_OK;
    const int nCode = IsAboutWriting(pError) ? KX_CC_E_FILE_WRITE : KX_CC_E_FILE_OPEN;
    g_error_free(pError);
    return nCode;
}

} // namespace kxcc
