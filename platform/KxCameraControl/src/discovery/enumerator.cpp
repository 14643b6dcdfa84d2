#include "discovery/enumerator.h"

#include "KxCameraControl/kxerrors.h"
#include "camera/opencameras.h"
#include "discovery/round.h"
#include "discovery/usblister.h"

namespace kxcc {

Enumerator::Enumerator(unsigned int nTransports)
    : m_nTransports(nTransports)
    , m_pUsb((nTransports & KX_CC_TRANSPORT_USB) != 0 ? new UsbLister : nullptr)
{
}

Enumerator::~Enumerator()
{
    delete m_pUsb;
}

int Enumerator::Run(int nTimeoutMs)
{
    std::vector<KX_CC_DEVICE_INFO> found;
    if (m_pUsb != nullptr)
        found = m_pUsb->List();
    int nCode = KX_CC_OK;
    if ((m_nTransports & KX_CC_TRANSPORT_GIGE) != 0)
        nCode = FindGige(nTimeoutMs, found);
    if (nCode == KX_CC_OK)
        m_known.Update(found);
    return nCode;
}

int Enumerator::FindGige(int nTimeoutMs, std::vector<KX_CC_DEVICE_INFO> &found)
{
    m_newcomers.BeginRound(Newcomers::Clock::now());
    Round round(&m_newcomers);
    if (!round.Open(ListInterfaces()))
        return KX_CC_E_RESOURCE;
    const auto before = OpenCameras::Instance().Now();
    round.Collect(nTimeoutMs, m_known.CountOf(KX_CC_TRANSPORT_GIGE));
    round.ReadAccess();
    for (KX_CC_DEVICE_INFO info : round.Cameras()) {
        // The camera said who holds it some time during the round; if that may have been this process,
        // nobody else does.
        if (OpenCameras::Instance().WasOpenSince(info, before))
            info.nAccessStatus = KX_CC_ACCESS_FREE;
        found.push_back(info);
    }
    return KX_CC_OK;
}

} // namespace kxcc
