#ifndef KXCAMERACONTROL_DISCOVERY_ENUMERATOR_H
#define KXCAMERACONTROL_DISCOVERY_ENUMERATOR_H

#include <vector>

#include "KxCameraControl/kxdeviceinfo.h"
#include "discovery/knowncameras.h"
#include "discovery/newcomers.h"

namespace kxcc {

class UsbLister;

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
    Newcomers m_newcomers{m_known};
    UsbLister *m_pUsb;
};

} // namespace kxcc

#endif
