// The description's way from the camera SDK into memory, whatever size the SDK reports.
#include "qoperatethread.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include <KxCameraControl/kxcameracontrol.h>

namespace {

/// Holds every description seen so far, so that one fetch is enough.
constexpr unsigned int kFirstBufferSize = 0x300000;

/// A longer text cannot be a QString.
constexpr std::size_t kLongestText = 0x3FFFFFFF;

struct Free
{
    void operator()(char *pBuffer) const { std::free(pBuffer); }
};
using Buffer = std::unique_ptr<char, Free>;

QString TextIn(const Buffer &buffer, std::size_t nSize)
{
    if (!buffer)
        return QString();
    const std::size_t nLength = strnlen(buffer.get(), nSize);
    return nLength > kLongestText ? QString() : QString::fromUtf8(buffer.get(), static_cast<int>(nLength));
}

} // namespace

char *QOperateThread::AllocateDescriptionBuffer(unsigned int nSize)
{
    // calloc() takes a large block from the system, which fills in pages as they are touched. A camera
    // that fails the fetch asks for 4 GiB here and uses one page of it.
    return static_cast<char *>(std::calloc(nSize, 1));
}

// The results of the fetches are not looked at, the size decides: a fetch that failed leaves it at its start
// value, which asks for the largest buffer.
std::optional<QString> QOperateThread::FetchDescription()
{
    Buffer buffer(AllocateDescriptionBuffer(kFirstBufferSize));
    if (!buffer)
        return std::nullopt;
    unsigned int nSize = 0xFFFFFFFF;
    KX_XML_GetGenICamXML(m_hDevice, reinterpret_cast<unsigned char *>(buffer.get()), kFirstBufferSize,
                         &nSize);
    if (nSize < kFirstBufferSize)
        return TextIn(buffer, kFirstBufferSize);

    const unsigned int nLargerSize = nSize;
    buffer.reset();
    buffer.reset(AllocateDescriptionBuffer(nLargerSize));
    if (buffer) {
        KX_XML_GetGenICamXML(m_hDevice, reinterpret_cast<unsigned char *>(buffer.get()), nLargerSize, &nSize);
    }
    return TextIn(buffer, nLargerSize);
}
