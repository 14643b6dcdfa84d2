#include <QTest>

#include "camera/opencameras.h"

using kxcc::OpenCameras;

namespace {

KX_CC_DEVICE_INFO Camera(std::uint32_t nIp)
{
    KX_CC_DEVICE_INFO info = {};
    info.nTransportType = KX_CC_TRANSPORT_GIGE;
    info.nMacAddrLow = nIp;
    info.SpecialInfo.stGigEInfo.nCurrentIp = nIp;
    return info;
}

} // namespace

class tst_OpenCameras : public QObject
{
    Q_OBJECT

private slots:
    void IsOpen_NeverOpened_IsFalse();
    void IsOpen_OneOfTwoHandlesClosed_IsTrue();
    void IsOpen_AnotherCameraOpen_IsFalse();
    void WasOpenSince_NeverOpened_IsFalse();
    void WasOpenSince_StillOpen_IsTrue();
    void WasOpenSince_ClosedAfterThePoint_IsTrue();
    void WasOpenSince_ClosedBeforeThePoint_IsFalse();
    void Now_AnotherCameraClosed_GoesOn();

private:
    const KX_CC_DEVICE_INFO m_camera = Camera(1);
    const KX_CC_DEVICE_INFO m_other = Camera(2);
};

void tst_OpenCameras::IsOpen_NeverOpened_IsFalse()
{
    OpenCameras cameras;

    QVERIFY(!cameras.IsOpen(m_camera));
}

void tst_OpenCameras::IsOpen_OneOfTwoHandlesClosed_IsTrue()
{
    OpenCameras cameras;
    cameras.Opened(m_camera);
    cameras.Opened(m_camera);

    cameras.Closed(m_camera);
    QVERIFY(cameras.IsOpen(m_camera));

    cameras.Closed(m_camera);
    QVERIFY(!cameras.IsOpen(m_camera));
}

void tst_OpenCameras::IsOpen_AnotherCameraOpen_IsFalse()
{
    OpenCameras cameras;
    cameras.Opened(m_other);

    QVERIFY(!cameras.IsOpen(m_camera));
    QVERIFY(cameras.IsOpen(m_other));
}

void tst_OpenCameras::WasOpenSince_NeverOpened_IsFalse()
{
    OpenCameras cameras;

    QVERIFY(!cameras.WasOpenSince(m_camera, 0));
}

void tst_OpenCameras::WasOpenSince_StillOpen_IsTrue()
{
    OpenCameras cameras;
    cameras.Opened(m_camera);

    QVERIFY(cameras.WasOpenSince(m_camera, cameras.Now()));
}

void tst_OpenCameras::WasOpenSince_ClosedAfterThePoint_IsTrue()
{
    OpenCameras cameras;
    cameras.Opened(m_camera);
    const std::uint64_t nPoint = cameras.Now();

    cameras.Closed(m_camera);

    QVERIFY(cameras.WasOpenSince(m_camera, nPoint));
}

void tst_OpenCameras::WasOpenSince_ClosedBeforeThePoint_IsFalse()
{
    OpenCameras cameras;
    cameras.Opened(m_camera);
    cameras.Closed(m_camera);

    QVERIFY(!cameras.WasOpenSince(m_camera, cameras.Now()));
}

void tst_OpenCameras::Now_AnotherCameraClosed_GoesOn()
{
    OpenCameras cameras;
    cameras.Opened(m_other);
    const std::uint64_t nPoint = cameras.Now();

    cameras.Closed(m_other);

    QVERIFY(cameras.Now() > nPoint);
    QVERIFY(!cameras.WasOpenSince(m_camera, nPoint));
}

QTEST_APPLESS_MAIN(tst_OpenCameras)
#include "tst_opencameras.moc"
