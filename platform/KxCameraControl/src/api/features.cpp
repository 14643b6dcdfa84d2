/// The C entry points for features, the description, and feature files.

#include <cstring>
#include <limits>

#include "KxCameraControl/kxcameracontrol.h"
#include "api/devicehandle.h"
#include "api/handletable.h"
#include "description/description.h"
#include "features/textfile.h"

using kxcc::Operation;
using kxcc::Reply;
using kxcc::Request;
using kxcc::Session;

namespace {

using Devices = kxcc::HandleTable<kxcc::DeviceHandle>;

/// No feature has a longer name; a longer one would not fit into a request.
constexpr std::size_t kLongestName = 4096;
constexpr auto kLongestDescription = static_cast<std::int64_t>(kxcc::kMaxDescription) + 1; // and its NUL

int CallFeature(void *hDevice, Operation operation, const char *szName, Request &request, Reply &reply)
{
    const auto device = Devices::Instance().Find(hDevice);
    if (!device)
        return KX_CC_E_HANDLE;
    if (szName == nullptr || *szName == '\0')
        return KX_CC_E_PARAMETER;
    request.operation = operation;
    request.strName.assign(szName, strnlen(szName, kLongestName));
    return device->Call(request, reply);
}

int Read(void *hDevice, Operation operation, const char *szName, const void *pOut, Reply &reply)
{
    if (!Devices::Instance().Find(hDevice))
        return KX_CC_E_HANDLE;
    if (pOut == nullptr)
        return KX_CC_E_PARAMETER;
    Request request;
    return CallFeature(hDevice, operation, szName, request, reply);
}

int ReadPattern(void *hDevice, Operation operation, const char *szName, const void *pOut,
                std::uint32_t &nPattern)
{
    Reply reply;
    const int nCode = Read(hDevice, operation, szName, pOut, reply);
    if (nCode != KX_CC_OK)
        return nCode;
    if (reply.nNumber < std::numeric_limits<std::int32_t>::min() ||
        reply.nNumber > std::numeric_limits<std::uint32_t>::max())
        return KX_CC_E_FEATURE_VALUE;
    nPattern = static_cast<std::uint32_t>(reply.nNumber);
    return KX_CC_OK;
}

int WriteNumber(void *hDevice, Operation operation, const char *szName, std::int64_t nNumber)
{
    Request request;
    Reply reply;
    request.nNumber = nNumber;
    return CallFeature(hDevice, operation, szName, request, reply);
}

} // namespace

int KX_CC_GetIntValue(void *hDevice, const char *szName, KX_CC_INT_VALUE *pValue)
{
    std::uint32_t nPattern = 0;
    const int nCode = ReadPattern(hDevice, Operation::GetInt, szName, pValue, nPattern);
    if (nCode == KX_CC_OK)
        *pValue = {nPattern, {}};
    return nCode;
}

int KX_CC_GetEnumValue(void *hDevice, const char *szName, KX_CC_ENUM_VALUE *pValue)
{
    std::uint32_t nPattern = 0;
    const int nCode = ReadPattern(hDevice, Operation::GetEnum, szName, pValue, nPattern);
    if (nCode == KX_CC_OK)
        *pValue = {nPattern, {}};
    return nCode;
}

int KX_CC_GetFloatValue(void *hDevice, const char *szName, KX_CC_FLOAT_VALUE *pValue)
{
    Reply reply;
    const int nCode = Read(hDevice, Operation::GetFloat, szName, pValue, reply);
    if (nCode != KX_CC_OK)
        return nCode;
    // Beyond single precision there is no value to give: infinity would be another one.
    if (!(reply.dReal >= -static_cast<double>(std::numeric_limits<float>::max()) &&
          reply.dReal <= static_cast<double>(std::numeric_limits<float>::max())))
        return KX_CC_E_FEATURE_VALUE;
    *pValue = {static_cast<float>(reply.dReal), {}};
    return KX_CC_OK;
}

int KX_CC_GetBoolValue(void *hDevice, const char *szName, bool *pValue)
{
    Reply reply;
    const int nCode = Read(hDevice, Operation::GetBool, szName, pValue, reply);
    if (nCode == KX_CC_OK)
        *pValue = reply.nNumber != 0;
    return nCode;
}

int KX_CC_SetIntValue(void *hDevice, const char *szName, unsigned int nValue)
{
    return WriteNumber(hDevice, Operation::SetInt, szName, nValue);
}

int KX_CC_SetEnumValue(void *hDevice, const char *szName, unsigned int nValue)
{
    return WriteNumber(hDevice, Operation::SetEnum, szName, nValue);
}

int KX_CC_SetFloatValue(void *hDevice, const char *szName, float fValue)
{
    Request request;
    Reply reply;
    request.dReal = static_cast<double>(fValue);
    return CallFeature(hDevice, Operation::SetFloat, szName, request, reply);
}

int KX_CC_SetBoolValue(void *hDevice, const char *szName, bool bValue)
{
    return WriteNumber(hDevice, Operation::SetBool, szName, bValue ? 1 : 0);
}

int KX_XML_GetGenICamXML(void *hDevice, unsigned char *pBuffer, unsigned int nBufferSize,
                         unsigned int *pnSize)
{
    const auto device = Devices::Instance().Find(hDevice);
    if (!device)
        return KX_CC_E_HANDLE;
    if (pnSize == nullptr || (pBuffer == nullptr && nBufferSize > 0))
        return KX_CC_E_PARAMETER;
    Request request;
    Reply reply;
    request.operation = Operation::Description;
    request.nNumber = nBufferSize;
    const int nCode = device->Call(request, reply);
    if (nCode != KX_CC_OK && nCode != KX_CC_E_BUFFER_TOO_SMALL)
        return nCode;
    // A helper that a camera has corrupted may say anything, and the caller takes memory of this size.
    const std::int64_t nSize =
        nCode == KX_CC_OK ? static_cast<std::int64_t>(reply.blob.size()) + 1 : reply.nNumber;
    if (nSize > kLongestDescription || (nSize <= nBufferSize) != (nCode == KX_CC_OK))
        return KX_CC_E_DEVICE_STATUS;
    *pnSize = static_cast<unsigned int>(nSize);
    if (nCode == KX_CC_OK) {
        std::memcpy(pBuffer, reply.blob.data(), reply.blob.size());
        pBuffer[reply.blob.size()] = '\0';
    }
    return nCode;
}

int KX_CC_FeatureSave(void *hDevice, const char *szFileName)
{
    const auto device = Devices::Instance().Find(hDevice);
    if (!device)
        return KX_CC_E_HANDLE;
    if (szFileName == nullptr || *szFileName == '\0')
        return KX_CC_E_PARAMETER;
    Request request;
    Reply reply;
    request.operation = Operation::SaveFeatures;
    const int nCode = device->Call(request, reply, Session::Progress::OfFeatures);
    return nCode == KX_CC_OK ? kxcc::ReplaceFile(szFileName, reply.blob) : nCode;
}

int KX_CC_FeatureLoad(void *hDevice, const char *szFileName)
{
    const auto device = Devices::Instance().Find(hDevice);
    if (!device)
        return KX_CC_E_HANDLE;
    if (szFileName == nullptr || *szFileName == '\0')
        return KX_CC_E_PARAMETER;
    Request request;
    Reply reply;
    request.operation = Operation::LoadFeatures;
    const int nCode = kxcc::ReadWholeFile(szFileName, request.blob);
    return nCode == KX_CC_OK ? device->Call(request, reply, Session::Progress::OfFeatures) : nCode;
}
