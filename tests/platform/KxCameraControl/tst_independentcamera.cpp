#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include "opencamera.h"

// Against a camera and a client of another origin: those of Aravis.
class tst_IndependentCamera : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void Enumerate_FindsIt();
    void Set_AnotherClientReadsTheValue();
    void Get_ReadsWhatAnotherClientWrote();
    void Open_AnotherClientIsInControl_IsDenied();

private:
    static QByteArray Tool(const QStringList &arguments);

    QProcess m_camera;
};

// The camera serves addresses of the machine only, so it cannot move out of another test's way.
const char *const kAddress = "127.0.0.1";

void tst_IndependentCamera::initTestCase()
{
    const QString program = QStandardPaths::findExecutable("arv-fake-gv-camera-0.8");
    if (program.isEmpty() || QStandardPaths::findExecutable("arv-tool-0.8").isEmpty())
        QSKIP("aravis-tools is not installed");
    m_camera.setProcessChannelMode(QProcess::MergedChannels);
    m_camera.start(program, {"-i", kAddress, "-s", "INDEPENDENT"});
    QVERIFY(m_camera.waitForStarted());
    KX_CC_DEVICE_INFO info{};
    QTRY_VERIFY(KX_CC_FindDevice(kAddress, 200, &info) == KX_CC_OK ||
                m_camera.state() == QProcess::NotRunning);
    if (m_camera.state() == QProcess::NotRunning)
        QSKIP("another program serves the camera port of 127.0.0.1");
}

void tst_IndependentCamera::cleanupTestCase()
{
    m_camera.kill();
    m_camera.waitForFinished();
}

QByteArray tst_IndependentCamera::Tool(const QStringList &arguments)
{
    QProcess tool;
    tool.start("arv-tool-0.8", QStringList{"-a", kAddress} + arguments);
    tool.waitForFinished();
    return tool.readAllStandardOutput();
}

void tst_IndependentCamera::Enumerate_FindsIt()
{
    void *hEnumerator = nullptr;
    QCOMPARE(KX_CC_CreateEnumerator(&hEnumerator, KX_CC_TRANSPORT_GIGE | KX_CC_TRANSPORT_USB), KX_CC_OK);
    KX_CC_DEVICE_INFO found{};
    const auto find = [&] {
        KX_CC_DEVICE_LIST list{};
        KX_CC_Enumerate(hEnumerator, 500, &list);
        for (unsigned int i = 0; i < list.nDeviceNum; ++i) {
            if (list.pstDevices[i].SpecialInfo.stGigEInfo.nCurrentIp == 0x7F000001)
                found = list.pstDevices[i];
        }
        return found.nTransportType == KX_CC_TRANSPORT_GIGE;
    };
    QTRY_VERIFY(find());
    QCOMPARE(found.nAccessStatus, KX_CC_ACCESS_FREE);
    QCOMPARE(reinterpret_cast<const char *>(found.SpecialInfo.stGigEInfo.chSerialNumber), "INDEPENDENT");
    QCOMPARE(reinterpret_cast<const char *>(found.SpecialInfo.stGigEInfo.chInterfaceName), "lo");
    QCOMPARE(KX_CC_DestroyEnumerator(hEnumerator), KX_CC_OK);
}

void tst_IndependentCamera::Set_AnotherClientReadsTheValue()
{
    {
        const OpenCamera camera(kAddress);
        QCOMPARE(camera.Code(), KX_CC_OK);
        QCOMPARE(camera.Set("Width", 264), KX_CC_OK);
    }
    QVERIFY(Tool({"control", "Width"}).startsWith("Width = 264"));
}

void tst_IndependentCamera::Get_ReadsWhatAnotherClientWrote()
{
    Tool({"control", "Height=136"});
    const OpenCamera camera(kAddress);
    uint32_t nHeight = 0;
    KX_CC_FLOAT_VALUE exposure{};
    QCOMPARE(camera.Get("Height", &nHeight), KX_CC_OK);
    QCOMPARE(nHeight, 136U);
    QCOMPARE(KX_CC_SetFloatValue(camera.Handle(), "ExposureTimeAbs", 2000.0F), KX_CC_OK);
    QCOMPARE(KX_CC_GetFloatValue(camera.Handle(), "ExposureTimeAbs", &exposure), KX_CC_OK);
    QCOMPARE(exposure.fCurValue, 2000.0F);
}

void tst_IndependentCamera::Open_AnotherClientIsInControl_IsDenied()
{
    const OpenCamera camera(kAddress);
    QCOMPARE(camera.Code(), KX_CC_OK);
    QCOMPARE(OpenCamera(kAddress).Code(), KX_CC_E_ACCESS_DENIED);
}

QTEST_GUILESS_MAIN(tst_IndependentCamera)
#include "tst_independentcamera.moc"
