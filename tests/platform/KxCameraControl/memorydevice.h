#ifndef TESTS_KXCAMERACONTROL_MEMORYDEVICE_H
#define TESTS_KXCAMERACONTROL_MEMORYDEVICE_H

#include <arv.h>

#include <cstdint>

/// A camera that is nothing but 32 KB of memory, big-endian, all zero at first.
G_DECLARE_FINAL_TYPE(MemoryDevice, memory_device, TEST, MEMORY_DEVICE, ArvDevice)

MemoryDevice *memory_device_new();
void memory_device_put(MemoryDevice *pDevice, std::uint32_t nAddress, std::uint32_t nValue);
std::uint32_t memory_device_get(MemoryDevice *pDevice, std::uint32_t nAddress);
/// Reads and writes since the last call.
int memory_device_take_accesses(MemoryDevice *pDevice);
/// Every access to the address fails with the code (ArvDeviceError) from now on.
void memory_device_fail_at(MemoryDevice *pDevice, std::uint32_t nAddress, int nCode);

#endif
