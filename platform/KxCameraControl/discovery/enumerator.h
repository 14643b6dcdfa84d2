#ifndef KXCAMERACONTROL_DISCOVERY_ENUMERATOR_H
#define KXCAMERACONTROL_DISCOVERY_ENUMERATOR_H

#include <cstddef>
#include <vector>

#include "KxCameraControl/kxdeviceinfo.h"

namespace kxcc {

class UsbLister;

/// What rounds of discovery have found, over time. Pure but for the list it keeps.
class KnownCameras
{
public:
    /// Takes over what a round found. A camera that was there before and is missing now becomes
    /// unreachable, and leaves with its third miss in a row.
    void Update(const std::vector<KX_CC_DEVICE_INFO> &found);

    /// Ordered by transport, then by address.
    const std::vector<KX_CC_DEVICE_INFO> &List() const { return m_list; }
    size_t CountOf(uint32_t nTransport) const;

private:
    struct Known
    {
        KX_CC_DEVICE_INFO info;
        int nMisses;
    };

    std::vector<Known> m_known;
    std::vector<KX_CC_DEVICE_INFO> m_list;
};

/// True when both records stand for the same camera: by MAC address and IP address, or by USB GUID.
bool IsSameCamera(const KX_CC_DEVICE_INFO &a, const KX_CC_DEVICE_INFO &b);

/// Asks the network, and the USB through a helper process.
class Enumerator
{
public:
    explicit Enumerator(unsigned int nTransports);
    Enumerator(const Enumerator &) = delete;
    Enumerator &operator=(const Enumerator &) = delete;
    ~Enumerator();

    /// @return KX_CC_OK, or KX_CC_E_RESOURCE when no interface could be asked
    int Run(int nTimeoutMs);
    const std::vector<KX_CC_DEVICE_INFO> &List() const { return m_known.List(); }

private:
    int FindGige(int nTimeoutMs, std::vector<KX_CC_DEVICE_INFO> &found);

    const unsigned int m_nTransports;
    KnownCameras m_known;
    UsbLister *m_pUsb;
};

} // namespace kxcc

#endif
