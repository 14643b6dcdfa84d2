#include "ipc/frame.h"

#include <cstring>
#include <memory>

#include <glib.h>

namespace kxcc {
namespace {

const char *const kRequestType = "(uyayxd)";
const char *const kReplyType = "(ubixd)";

struct VariantUnref
{
    void operator()(GVariant *pVariant) const { g_variant_unref(pVariant); }
};
using Variant = std::unique_ptr<GVariant, VariantUnref>;

std::vector<std::uint8_t> Encode(GVariant *pFloating, const std::vector<std::uint8_t> &blob)
{
    const Variant variant(g_variant_ref_sink(pFloating));
    const gsize nBody = g_variant_get_size(variant.get());
    const std::uint32_t head[2] = {static_cast<std::uint32_t>(nBody),
                                   static_cast<std::uint32_t>(blob.size())};
    std::vector<std::uint8_t> bytes(kFrameHeadSize + nBody + blob.size());
    std::memcpy(bytes.data(), head, kFrameHeadSize);
    g_variant_store(variant.get(), bytes.data() + kFrameHeadSize);
    if (!blob.empty())
        std::memcpy(bytes.data() + kFrameHeadSize + nBody, blob.data(), blob.size());
    return bytes;
}

/// Null when the bytes are not what Encode() writes for the type.
Variant Decode(const char *szType, const std::vector<std::uint8_t> &body)
{
    GBytes *pBytes = g_bytes_new(body.data(), body.size());
    Variant variant(g_variant_ref_sink(g_variant_new_from_bytes(G_VARIANT_TYPE(szType), pBytes, FALSE)));
    g_bytes_unref(pBytes);
    if (!g_variant_is_normal_form(variant.get()))
        variant.reset();
    return variant;
}

} // namespace

std::optional<FrameHead> DecodeHead(const std::array<std::uint8_t, kFrameHeadSize> &bytes)
{
    FrameHead head;
    std::memcpy(&head.nBody, bytes.data(), 4);
    std::memcpy(&head.nBlob, bytes.data() + 4, 4);
    if (head.nBody == 0 || head.nBody > kMaxBody || head.nBlob > kMaxBlob)
        return std::nullopt;
    return head;
}

std::vector<std::uint8_t> EncodeRequest(const Request &request)
{
    GVariant *pName =
        g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, request.strName.data(), request.strName.size(), 1);
    return Encode(g_variant_new("(uy@ayxd)", request.nSerial, static_cast<guchar>(request.operation), pName,
                                static_cast<gint64>(request.nNumber), request.dReal),
                  request.blob);
}

std::vector<std::uint8_t> EncodeReply(const Reply &reply)
{
    return Encode(g_variant_new(kReplyType, reply.nSerial, static_cast<gboolean>(reply.bProgress),
                                reply.nCode, static_cast<gint64>(reply.nNumber), reply.dReal),
                  reply.blob);
}

std::optional<Request> DecodeRequest(const std::vector<std::uint8_t> &body)
{
    const Variant variant = Decode(kRequestType, body);
    if (!variant)
        return std::nullopt;
    Request request;
    guchar nOperation = 0;
    GVariant *pName = nullptr;
    gint64 nNumber = 0;
    g_variant_get(variant.get(), "(uy@ayxd)", &request.nSerial, &nOperation, &pName, &nNumber,
                  &request.dReal);
    const Variant name(pName);
    gsize nName = 0;
    const auto *pChars = static_cast<const char *>(g_variant_get_fixed_array(pName, &nName, 1));
    if (nName > 0)
        request.strName.assign(pChars, nName);
    request.nNumber = nNumber;
    if (nOperation < static_cast<guchar>(Operation::Open) ||
        nOperation > static_cast<guchar>(Operation::ListUsbCameras))
        return std::nullopt;
    request.operation = static_cast<Operation>(nOperation);
    return request;
}

std::optional<Reply> DecodeReply(const std::vector<std::uint8_t> &body)
{
    const Variant variant = Decode(kReplyType, body);
    if (!variant)
        return std::nullopt;
    Reply reply;
    gboolean bProgress = FALSE;
    gint64 nNumber = 0;
    g_variant_get(variant.get(), kReplyType, &reply.nSerial, &bProgress, &reply.nCode, &nNumber,
                  &reply.dReal);
    reply.bProgress = bProgress != FALSE;
    reply.nNumber = nNumber;
    return reply;
}

} // namespace kxcc
