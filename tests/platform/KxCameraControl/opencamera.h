#ifndef TESTS_KXCAMERACONTROL_OPENCAMERA_H
#define TESTS_KXCAMERACONTROL_OPENCAMERA_H

#include <QList>

#include <KxCameraControl/kxcameracontrol.h>

/// A handle for the camera at an address; closed and destroyed with this object.
class OpenCamera
{
public:
    /// Finds the camera and opens it. Code() tells how it went.
    explicit OpenCamera(const char *szAddress);
    explicit OpenCamera(const KX_CC_DEVICE_INFO &info);
    OpenCamera(const OpenCamera &) = delete;
    OpenCamera &operator=(const OpenCamera &) = delete;
    ~OpenCamera() { KX_CC_DestroyHandle(m_hDevice); }

    int Code() const { return m_nCode; }
    void *Handle() const { return m_hDevice; }

    int Get(const char *szName, uint32_t *pValue = nullptr) const;
    int Set(const char *szName, uint32_t nValue) const
    {
        return KX_CC_SetIntValue(m_hDevice, szName, nValue);
    }

private:
    void *m_hDevice = nullptr;
    int m_nCode = KX_CC_E_HANDLE;
};

/// Address n (1 to 254) of a network of this process's own, so that the same test may run twice at once.
/// The text lives as long as the process.
const char *TestAddress(int n);
/// That network, host order: its cameras have addresses TestNetwork() + n.
uint32_t TestNetwork();

/// A record that opens the camera at the address without asking it before.
KX_CC_DEVICE_INFO RecordFor(const char *szAddress);

/// Processes that this one has started and not yet reaped, ended ones included.
QList<int> ChildProcesses();
int OpenDescriptors();

#endif
