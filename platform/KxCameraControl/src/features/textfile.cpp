#include "features/textfile.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "KxCameraControl/kxerrors.h"
#include "ipc/frame.h"

namespace kxcc {
namespace {

bool WriteAll(int nFile, const std::vector<std::uint8_t> &bytes)
{
    std::size_t nDone = 0;
    while (nDone < bytes.size()) {
        const ssize_t n = write(nFile, bytes.data() + nDone, bytes.size() - nDone);
        if (n > 0)
            nDone += static_cast<std::size_t>(n);
        else if (errno != EINTR)
            return false;
    }
    return fsync(nFile) == 0;
}

/// A new file beside the one to replace; its rights are those of any new file.
int CreateBeside(const char *szPath, std::string &strTemporary)
{
    static std::atomic<unsigned int> nCount{0};
    strTemporary = std::string(szPath) + "." + std::to_string(getpid()) + "-" + std::to_string(nCount++);
    return open(strTemporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
}

} // namespace

int ReadWholeFile(const char *szPath, std::vector<std::uint8_t> &bytes)
{
    const int nFile = open(szPath, O_RDONLY | O_CLOEXEC);
    if (nFile < 0)
        return KX_CC_E_FILE_OPEN;
    std::uint8_t block[16384];
    ssize_t n = 0;
    while ((n = read(nFile, block, sizeof block)) > 0 && bytes.size() <= kMaxText)
        bytes.insert(bytes.end(), block, block + n);
    close(nFile);
    if (n < 0)
        return KX_CC_E_FILE_OPEN;
    return bytes.size() > kMaxText ? KX_CC_E_FILE_FORMAT : KX_CC_OK;
}

int ReplaceFile(const char *szPath, const std::vector<std::uint8_t> &bytes)
{
    std::string strTemporary;
    const int nFile = CreateBeside(szPath, strTemporary);
    if (nFile < 0)
        return KX_CC_E_FILE_OPEN;
    bool bDone = WriteAll(nFile, bytes);
    bDone = close(nFile) == 0 && bDone;
    bDone = bDone && rename(strTemporary.c_str(), szPath) == 0;
    if (!bDone)
        unlink(strTemporary.c_str());
    return bDone ? KX_CC_OK : KX_CC_E_FILE_WRITE;
}

} // namespace kxcc
