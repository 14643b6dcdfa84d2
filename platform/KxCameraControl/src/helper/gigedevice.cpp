#include "helper/gigedevice.h"

#include <cstring>

using kxcc::GvcpChannel;

struct _KxGigeDevice
{
    ArvDevice parent_instance;
    GvcpChannel *pChannel;
    gboolean bWriteMemory;
    gboolean bRegisterCommands;
};

// The macro writes casts and parameters in the C manner.
// NOLINTNEXTLINE(bugprone-*,modernize-*)
G_DEFINE_TYPE(KxGigeDevice, kx_gige_device, ARV_TYPE_DEVICE)

namespace {

constexpr guint32 kRegisterSize = 4;

gboolean Report(KxGigeDevice *pDevice, GvcpChannel::Result result, GError **pError)
{
    switch (result) {
    case GvcpChannel::Result::Ok:
        return TRUE;
    case GvcpChannel::Result::Timeout:
        g_set_error_literal(pError, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_TIMEOUT, "no answer");
        break;
    case GvcpChannel::Result::Status: {
        const unsigned int nStatus = pDevice->pChannel->LastStatus();
        const int nCode = nStatus == kxcc::kGvcpStatusAccessDenied
                              ? ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED
                              : ARV_DEVICE_ERROR_PROTOCOL_ERROR;
        g_set_error(pError, ARV_DEVICE_ERROR, nCode, "status 0x%04x", nStatus);
        break;
    }
    case GvcpChannel::Result::Malformed:
        g_set_error_literal(pError, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_PROTOCOL_ERROR, "malformed answer");
        break;
    }
    return FALSE;
}

/// Descriptions can name addresses beyond the 32 bits of GVCP, and lengths that no register has.
bool IsPossible(guint64 nAddress, guint32 nSize, GError **pError)
{
    constexpr guint32 kLargestRegister = 1 << 20;
    if (nSize > 0 && nSize <= kLargestRegister && nAddress <= G_MAXUINT32 - nSize)
        return true;
    g_set_error_literal(pError, ARV_GC_ERROR, ARV_GC_ERROR_INVALID_LENGTH, "impossible address or length");
    return false;
}

gboolean ReadMemory(ArvDevice *pArvDevice, guint64 nAddress, guint32 nSize, void *pBuffer, GError **pError)
{
    KxGigeDevice *pDevice = KX_GIGE_DEVICE(pArvDevice);
    if (!IsPossible(nAddress, nSize, pError))
        return FALSE;
    if (pDevice->bRegisterCommands == FALSE || nSize != kRegisterSize)
        return Report(pDevice, pDevice->pChannel->ReadMemory(static_cast<guint32>(nAddress), pBuffer, nSize),
                      pError);
    guint32 nValue = 0;
    const auto result = pDevice->pChannel->ReadRegister(static_cast<guint32>(nAddress), nValue);
    nValue = GUINT32_TO_BE(nValue);
    std::memcpy(pBuffer, &nValue, kRegisterSize);
    return Report(pDevice, result, pError);
}

gboolean WriteMemory(ArvDevice *pArvDevice, guint64 nAddress, guint32 nSize, void *pBuffer, GError **pError)
{
    KxGigeDevice *pDevice = KX_GIGE_DEVICE(pArvDevice);
    if (!IsPossible(nAddress, nSize, pError))
        return FALSE;
    const auto nAt = static_cast<guint32>(nAddress);
    if (nSize != kRegisterSize || (pDevice->bWriteMemory != FALSE && pDevice->bRegisterCommands == FALSE))
        return Report(pDevice, pDevice->pChannel->WriteMemory(nAt, pBuffer, nSize), pError);
    guint32 nValue = 0;
    std::memcpy(&nValue, pBuffer, kRegisterSize);
    return Report(pDevice, pDevice->pChannel->WriteRegister(nAt, GUINT32_FROM_BE(nValue)), pError);
}

gboolean ReadRegister(ArvDevice *pArvDevice, guint64 nAddress, guint32 *pValue, GError **pError)
{
    KxGigeDevice *pDevice = KX_GIGE_DEVICE(pArvDevice);
    return Report(pDevice, pDevice->pChannel->ReadRegister(static_cast<guint32>(nAddress), *pValue), pError);
}

gboolean WriteRegister(ArvDevice *pArvDevice, guint64 nAddress, guint32 nValue, GError **pError)
{
    KxGigeDevice *pDevice = KX_GIGE_DEVICE(pArvDevice);
    return Report(pDevice, pDevice->pChannel->WriteRegister(static_cast<guint32>(nAddress), nValue), pError);
}

} // namespace

static void kx_gige_device_class_init(KxGigeDeviceClass *pClass)
{
    ArvDeviceClass *pDeviceClass = ARV_DEVICE_CLASS(pClass);
    pDeviceClass->read_memory = ReadMemory;
    pDeviceClass->write_memory = WriteMemory;
    pDeviceClass->read_register = ReadRegister;
    pDeviceClass->write_register = WriteRegister;
}

static void kx_gige_device_init(KxGigeDevice *pDevice)
{
    pDevice->bWriteMemory = TRUE;
}

KxGigeDevice *kx_gige_device_new(GvcpChannel *pChannel)
{
    KxGigeDevice *pDevice = KX_GIGE_DEVICE(g_object_new(kx_gige_device_get_type(), nullptr));
    pDevice->pChannel = pChannel;
    return pDevice;
}

void kx_gige_device_set_commands(KxGigeDevice *pDevice, bool bWriteMemory, bool bRegisterCommands)
{
    pDevice->bWriteMemory = bWriteMemory ? TRUE : FALSE;
    pDevice->bRegisterCommands = bRegisterCommands ? TRUE : FALSE;
}
