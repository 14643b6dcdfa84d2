#include <QtTest>

#include "camerafinder.h"
#include "testcameras.h"

// Which of the found cameras a command works on, and how a camera is described.
class tst_CameraFinder : public QObject
{
    Q_OBJECT

private slots:
    void MakeCamera_Network_FillsTexts();
    void MakeCamera_Usb_FillsTexts();
    void MakeCamera_Port_HasNoUserName();
    void MakeCamera_UnknownTransport_HasNoTexts();
    void MakeCamera_AccessStatus_IsNamed();
    void Select_All_TakesEveryCamera();
    void Select_AllOfNone_MissesNothing();
    void Select_BySerial_TakesEveryCameraOfThatSerial();
    void Select_SeveralLists_TakesTheUnionOnce();
    void Select_NamesNotFound_AreMissing();
    void Select_ModelMustBeEqual_NotSimilar();
    void FindChosenCameras_SilentAddresses_AreAskedSideBySide();
};

static QVector<Camera> ThreeCameras()
{
    return {NetworkCamera("M1", "A", 0x7F000A01), NetworkCamera("M1", "B", 0x7F000A02),
            NetworkCamera("M2", "A", 0x7F000A03)};
}

static QStringList Addresses(const FoundCameras &found)
{
    QStringList addresses;
    for (const Camera &camera : found.cameras) {
        addresses << camera.strAddress;
    }
    return addresses;
}

void tst_CameraFinder::MakeCamera_Network_FillsTexts()
{
    KX_CC_DEVICE_INFO info = {};
    info.nTransportType = KX_CC_TRANSPORT_GIGE;
    info.SpecialInfo.stGigEInfo.nCurrentIp = 0xC0A80105;
    std::memcpy(info.SpecialInfo.stGigEInfo.chModelName, "Model", 5);
    std::memcpy(info.SpecialInfo.stGigEInfo.chSerialNumber, "0123456789ABCDEF", 16);
    std::memcpy(info.SpecialInfo.stGigEInfo.chUserDefinedName, "left", 4);
    const Camera camera = MakeCamera(info, 7);
    QCOMPARE(camera.record.nDeviceID, 7);
    QCOMPARE(camera.record.nDeviceType, 1U);
    QCOMPARE(camera.strModel, QString("Model"));
    QCOMPARE(camera.strSerial, QString("0123456789ABCDEF"));
    QCOMPARE(camera.strUserName, QString("left"));
    QCOMPARE(camera.strAddress, QString("192.168.1.5"));
    QCOMPARE(camera.strTransport, QString("gige"));
}

void tst_CameraFinder::MakeCamera_Usb_FillsTexts()
{
    KX_CC_DEVICE_INFO info = {};
    info.nTransportType = KX_CC_TRANSPORT_USB;
    std::memcpy(info.SpecialInfo.stUsbInfo.chModelName, "U", 1);
    std::memcpy(info.SpecialInfo.stUsbInfo.chSerialNumber, "S", 1);
    std::memcpy(info.SpecialInfo.stUsbInfo.chUserDefinedName, "right", 5);
    std::memcpy(info.SpecialInfo.stUsbInfo.chDeviceGuid, "1AB200000001", 12);
    const Camera camera = MakeCamera(info, 0);
    QCOMPARE(camera.strModel, QString("U"));
    QCOMPARE(camera.strSerial, QString("S"));
    QCOMPARE(camera.strUserName, QString("right"));
    QCOMPARE(camera.strAddress, QString("1AB200000001"));
    QCOMPARE(camera.strTransport, QString("usb3"));
}

void tst_CameraFinder::MakeCamera_Port_HasNoUserName()
{
    KX_CC_DEVICE_INFO info = {};
    info.nTransportType = KX_CC_TRANSPORT_PORT;
    std::memcpy(info.SpecialInfo.stPortInfo.chPortId, "port 2", 6);
    std::memcpy(info.SpecialInfo.stPortInfo.chModelName, "P", 1);
    const Camera camera = MakeCamera(info, 0);
    QCOMPARE(camera.strModel, QString("P"));
    QCOMPARE(camera.strUserName, QString());
    QCOMPARE(camera.strAddress, QString("port 2"));
    QCOMPARE(camera.strTransport, QString("port"));
}

void tst_CameraFinder::MakeCamera_UnknownTransport_HasNoTexts()
{
    KX_CC_DEVICE_INFO info = {};
    info.nTransportType = 2;
    const Camera camera = MakeCamera(info, 0);
    QCOMPARE(camera.strModel + camera.strSerial + camera.strAddress + camera.strTransport, QString());
}

void tst_CameraFinder::MakeCamera_AccessStatus_IsNamed()
{
    QCOMPARE(NetworkCamera("M", "S", 1, KX_CC_ACCESS_FREE).strAccess, QString("free"));
    QCOMPARE(NetworkCamera("M", "S", 1, KX_CC_ACCESS_IN_USE).strAccess, QString("in use"));
    QCOMPARE(NetworkCamera("M", "S", 1, KX_CC_ACCESS_UNREACHABLE).strAccess, QString("unreachable"));
    QCOMPARE(NetworkCamera("M", "S", 1, KX_CC_ACCESS_UNKNOWN).strAccess, QString("unknown"));
}

void tst_CameraFinder::Select_All_TakesEveryCamera()
{
    CameraChoice choice;
    choice.bAll = true;
    QCOMPARE(SelectCameras(ThreeCameras(), choice).cameras.size(), 3);
}

void tst_CameraFinder::Select_AllOfNone_MissesNothing()
{
    CameraChoice choice;
    choice.bAll = true;
    const FoundCameras found = SelectCameras({}, choice);
    QVERIFY(found.cameras.isEmpty() && found.missing.isEmpty());
}

void tst_CameraFinder::Select_BySerial_TakesEveryCameraOfThatSerial()
{
    CameraChoice choice;
    choice.serials = QStringList("A");
    QCOMPARE(Addresses(SelectCameras(ThreeCameras(), choice)), QStringList({"127.0.10.1", "127.0.10.3"}));
}

void tst_CameraFinder::Select_SeveralLists_TakesTheUnionOnce()
{
    CameraChoice choice;
    choice.serials = QStringList("B");
    choice.models = QStringList("M1");
    QCOMPARE(Addresses(SelectCameras(ThreeCameras(), choice)), QStringList({"127.0.10.1", "127.0.10.2"}));
}

void tst_CameraFinder::Select_NamesNotFound_AreMissing()
{
    CameraChoice choice;
    choice.serials = QStringList({"A", "Z"});
    choice.models = QStringList("M9");
    choice.addresses = QStringList("127.0.10.9");
    QCOMPARE(SelectCameras(ThreeCameras(), choice).missing,
             QStringList({"serial number Z", "model M9", "address 127.0.10.9"}));
}

void tst_CameraFinder::Select_ModelMustBeEqual_NotSimilar()
{
    CameraChoice choice;
    choice.models = QStringList("m1");
    QVERIFY(SelectCameras(ThreeCameras(), choice).cameras.isEmpty());
}

void tst_CameraFinder::FindChosenCameras_SilentAddresses_AreAskedSideBySide()
{
    CameraChoice choice;
    for (int i = 1; i <= 40; ++i) {
        choice.addresses << QString("127.50.24.%1").arg(i);
    }
    QElapsedTimer timer;
    timer.start();
    const FoundCameras found = FindChosenCameras(choice, 300);
    QVERIFY2(timer.elapsed() < 6000, qPrintable(QString::number(timer.elapsed()))); // 12 s one by one
    QCOMPARE(found.missing.size(), 40);
    QCOMPARE(found.missing.last(), QString("address 127.50.24.40"));
}

QTEST_GUILESS_MAIN(tst_CameraFinder)
#include "tst_camerafinder.moc"
