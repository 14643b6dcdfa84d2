#ifndef KXCAMERACONTROL_IPC_FRAME_H
#define KXCAMERACONTROL_IPC_FRAME_H

/**
 * @file
 * The frames between the library and the helper process of a camera.
 *
 * A frame is a head of two 32-bit sizes, a body and a blob. The body is a serialised GVariant of fixed
 * type; long bytes (a description, a feature file) travel in the blob, which needs no encoding. Both ends
 * run on the same machine, so everything is in the byte order of the host. Neither end trusts the other:
 * sizes are bounded before anything is allocated, and a body that is not in normal form is refused.
 */

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kxcc {

/// Longest file of a description, as it comes from the camera and unpacked, and longest feature file, in
/// bytes. What is taken of a description is kMaxDescription.
constexpr std::size_t kMaxText = std::size_t{64} << 20;
constexpr std::uint32_t kMaxBody = 64 << 10;
constexpr std::uint32_t kMaxBlob = kMaxText + (64 << 10);

struct FrameHead
{
    std::uint32_t nBody = 0;
    std::uint32_t nBlob = 0;
};
constexpr std::size_t kFrameHeadSize = 8;

/// Nothing when a size is out of bounds.
std::optional<FrameHead> DecodeHead(const std::array<std::uint8_t, kFrameHeadSize> &bytes);

enum class Operation : std::uint8_t
{
    Open = 1,       ///< blob: the KX_CC_DEVICE_INFO
    Description,    ///< number: room in the caller's buffer; reply: number = size with NUL, blob = text
    GetInt,         ///< name; reply: number
    GetEnum,        ///< name; reply: number
    GetFloat,       ///< name; reply: real
    GetBool,        ///< name; reply: number
    SetInt,         ///< name, number: the 32-bit pattern
    SetEnum,        ///< name, number: the 32-bit pattern
    SetFloat,       ///< name, real
    SetBool,        ///< name, number
    SaveFeatures,   ///< reply: blob = the feature file
    LoadFeatures,   ///< blob: the feature file
    ListUsbCameras, ///< reply: blob = KX_CC_DEVICE_INFO records
};

/// The helper's first frame, a reply to no request, carries this: from now on it takes requests.
constexpr std::uint32_t kReadySerial = 0;

struct Request
{
    std::uint32_t nSerial = 0; ///< repeated by the reply
    Operation operation = Operation::Open;
    std::string strName;
    std::int64_t nNumber = 0;
    double dReal = 0;
    std::vector<std::uint8_t> blob;
};

struct Reply
{
    std::uint32_t nSerial = 0;
    bool bProgress = false; ///< not the result yet: the camera answers and the deadline starts anew
    std::int32_t nCode = 0; ///< KX_CC_OK or KX_CC_E_...
    std::int64_t nNumber = 0;
    double dReal = 0;
    std::vector<std::uint8_t> blob;
};

/// Head and body and blob as one row of bytes.
std::vector<std::uint8_t> EncodeRequest(const Request &request);
std::vector<std::uint8_t> EncodeReply(const Reply &reply);

/// From the body alone; the blob is the caller's to move in. Nothing when the bytes are malformed.
std::optional<Request> DecodeRequest(const std::vector<std::uint8_t> &body);
std::optional<Reply> DecodeReply(const std::vector<std::uint8_t> &body);

} // namespace kxcc

#endif
