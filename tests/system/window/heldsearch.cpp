#include "heldsearch.h"

#include <QtTest>

#include <DevListMgr/devicesource.h>
#include <DevListMgr/lumodevicetree.h>
#include <KxCameraControl/kxcameracontrol.h>

namespace {

const unsigned int kRoundMs = 400;
const int kPauseMs = 200; // tests wait for rounds

/// What the camera SDK enumerates, unless it is held.
class HeldSource : public DeviceSource
{
public:
    explicit HeldSource(std::shared_ptr<HeldSearch::State> pState)
        : m_pState(std::move(pState))
    {
    }
    ~HeldSource() override { KX_CC_DestroyEnumerator(m_hEnumerator); }
    Q_DISABLE_COPY(HeldSource)

    std::optional<QVector<KX_CC_DEVICE_INFO>> search(unsigned int nTransports) override
    {
        const std::lock_guard<std::mutex> lock(m_pState->round);
        ++m_pState->nBegun;
        if (!m_hEnumerator && KX_CC_CreateEnumerator(&m_hEnumerator, nTransports) != KX_CC_OK)
            return std::nullopt;
        KX_CC_DEVICE_LIST list = {0, nullptr};
        if (KX_CC_Enumerate(m_hEnumerator, kRoundMs, &list) != KX_CC_OK)
            return std::nullopt;
        QVector<KX_CC_DEVICE_INFO> vecDevices;
        for (unsigned int i = 0; i < list.nDeviceNum; ++i)
            vecDevices.append(list.pstDevices[i]);
        return vecDevices;
    }
    bool isOpen(const KX_CC_DEVICE_INFO &stDevInfo) const override { return KX_CC_IsDeviceOpen(&stDevInfo); }
    int pauseMs() const override { return kPauseMs; }

private:
    const std::shared_ptr<HeldSearch::State> m_pState;
    void *m_hEnumerator = nullptr;
};

} // namespace

HeldSearch::HeldSearch()
    : m_pState(std::make_shared<State>())
{
    LumoDeviceTree::setSourceFactory([pState = m_pState] { return std::make_unique<HeldSource>(pState); });
}

HeldSearch::~HeldSearch()
{
    LumoDeviceTree::setSourceFactory(nullptr);
}

bool HeldSearch::WaitForRound() const
{
    // When the second round from now begins, the results of the first are on their way.
    const int nWanted = m_pState->nBegun + 2;
    const bool bDone = QTest::qWaitFor([&] { return m_pState->nBegun >= nWanted; }, 20000);
    QCoreApplication::processEvents(); // takes them into the queue of the tree,
    QCoreApplication::processEvents(); // and from there
    return bDone;
}
