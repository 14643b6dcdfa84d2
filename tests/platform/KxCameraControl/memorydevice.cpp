#include "memorydevice.h"

#include <QtEndian>

#include <cstring>

struct _MemoryDevice
{
    ArvDevice parent_instance;
    unsigned char memory[32768];
    int nAccesses;
    uint32_t nFailAt;
    int nFailCode;
};

// NOLINTNEXTLINE(bugprone-*,modernize-*)
G_DEFINE_TYPE(MemoryDevice, memory_device, ARV_TYPE_DEVICE)

namespace {

bool IsGood(MemoryDevice *pDevice, guint64 nAddress, guint32 nSize, GError **pError)
{
    ++pDevice->nAccesses;
    const bool bInside = nAddress + nSize <= sizeof pDevice->memory;
    const bool bFails = pDevice->nFailAt != 0 && nAddress == pDevice->nFailAt;
    if (bFails || !bInside)
        g_set_error_literal(pError, ARV_DEVICE_ERROR,
                            bFails ? pDevice->nFailCode : ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS,
                            "refused");
    return bInside && !bFails;
}

gboolean Read(ArvDevice *pArvDevice, guint64 nAddress, guint32 nSize, void *pBuffer, GError **pError)
{
    MemoryDevice *pDevice = TEST_MEMORY_DEVICE(pArvDevice);
    if (!IsGood(pDevice, nAddress, nSize, pError))
        return FALSE;
    std::memcpy(pBuffer, pDevice->memory + nAddress, nSize);
    return TRUE;
}

gboolean Write(ArvDevice *pArvDevice, guint64 nAddress, guint32 nSize, void *pBuffer, GError **pError)
{
    MemoryDevice *pDevice = TEST_MEMORY_DEVICE(pArvDevice);
    if (!IsGood(pDevice, nAddress, nSize, pError))
        return FALSE;
    std::memcpy(pDevice->memory + nAddress, pBuffer, nSize);
    return TRUE;
}

} // namespace

static void memory_device_class_init(MemoryDeviceClass *pClass)
{
    ARV_DEVICE_CLASS(pClass)->read_memory = Read;
    ARV_DEVICE_CLASS(pClass)->write_memory = Write;
}

static void memory_device_init(MemoryDevice * /*pDevice*/)
{
}

MemoryDevice *memory_device_new()
{
    return TEST_MEMORY_DEVICE(g_object_new(memory_device_get_type(), nullptr));
}

void memory_device_put(MemoryDevice *pDevice, uint32_t nAddress, uint32_t nValue)
{
    qToBigEndian(nValue, pDevice->memory + nAddress);
}

uint32_t memory_device_get(MemoryDevice *pDevice, uint32_t nAddress)
{
    return qFromBigEndian<uint32_t>(pDevice->memory + nAddress);
}

int memory_device_take_accesses(MemoryDevice *pDevice)
{
    const int nAccesses = pDevice->nAccesses;
    pDevice->nAccesses = 0;
    return nAccesses;
}

void memory_device_fail_at(MemoryDevice *pDevice, uint32_t nAddress, int nCode)
{
    pDevice->nFailAt = nAddress;
    pDevice->nFailCode = nCode;
}
