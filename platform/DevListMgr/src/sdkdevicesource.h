#ifndef DEVLISTMGR_SDKDEVICESOURCE_H
#define DEVLISTMGR_SDKDEVICESOURCE_H

#include "DevListMgr/devicesource.h"

/// The cameras that the camera SDK enumerates.
class SdkDeviceSource : public DeviceSource
{
public:
    SdkDeviceSource() = default;
    ~SdkDeviceSource() override;
    Q_DISABLE_COPY(SdkDeviceSource)

    std::optional<QVector<KX_CC_DEVICE_INFO>> search(unsigned int nTransports) override;
    bool isOpen(const KX_CC_DEVICE_INFO &stDevInfo) const override;

private:
    bool Prepare(unsigned int nTransports);
    void Warn(const char *pCall, int nCode);

    void *m_hEnumerator = nullptr;
    unsigned int m_nTransports = 0; ///< what the enumerator was made for
    int m_nLastCode = 0;            ///< result of the last round: each new failure is logged once
};

#endif
