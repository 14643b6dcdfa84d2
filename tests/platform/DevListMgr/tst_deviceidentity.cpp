#include <QtTest>

#include <scripteddevices.h>

#include "deviceidentity.h"

class tst_DeviceIdentity : public QObject
{
    Q_OBJECT

private slots:
    void Assign_NewCameras_NumbersFromOneInListOrder();
    void Assign_SameCamerasInAnotherOrder_KeepTheirNumbers();
    void Assign_CameraGoneAndBack_KeepsItsNumber();
    void Assign_NumberOfOneGone_IsNotGivenToAnother();
    void Assign_CameraAtANewAddress_KeepsItsNumber();
    void Assign_FormerAddressStillListed_IsLeftOut();
    void Assign_TwoCamerasWithOneMac_AreToldApart();
    void Assign_OneOfTwoWithOneMacGoes_TheOtherKeepsItsNumber();
    void Assign_CamerasWithoutMac_AreToldApartByAddress();
    void Assign_UsbCameraInAnotherPlug_KeepsItsNumber();
    void Assign_UsbCamerasWithoutGuid_AreToldApartBySerial();
    void Assign_PortCameras_AreToldApartByPort();
    void Assign_MoreThanItKeeps_ForgetsThoseThatHaveGone();
};

namespace {

KX_CC_DEVICE_INFO At(KX_CC_DEVICE_INFO stInfo, quint32 nIp)
{
    stInfo.SpecialInfo.stGigEInfo.nCurrentIp = nIp;
    return stInfo;
}

} // namespace

void tst_DeviceIdentity::Assign_NewCameras_NumbersFromOneInListOrder()
{
    DeviceIdentity identity;
    QCOMPARE(identity.Assign({NetworkCamera(9), UsbCamera(1), NetworkCamera(3)}), QVector<int>({1, 2, 3}));
}

void tst_DeviceIdentity::Assign_SameCamerasInAnotherOrder_KeepTheirNumbers()
{
    DeviceIdentity identity;
    identity.Assign({NetworkCamera(1), NetworkCamera(2)});
    QCOMPARE(identity.Assign({NetworkCamera(2), NetworkCamera(1)}), QVector<int>({2, 1}));
}

void tst_DeviceIdentity::Assign_CameraGoneAndBack_KeepsItsNumber()
{
    DeviceIdentity identity;
    identity.Assign({NetworkCamera(1), NetworkCamera(2)});
    identity.Assign({NetworkCamera(1)});
    QCOMPARE(identity.Assign({NetworkCamera(1), NetworkCamera(2)}), QVector<int>({1, 2}));
}

void tst_DeviceIdentity::Assign_NumberOfOneGone_IsNotGivenToAnother()
{
    DeviceIdentity identity;
    identity.Assign({NetworkCamera(1)});
    QCOMPARE(identity.Assign({NetworkCamera(2)}), QVector<int>({2}));
}

void tst_DeviceIdentity::Assign_CameraAtANewAddress_KeepsItsNumber()
{
    DeviceIdentity identity;
    identity.Assign({NetworkCamera(1)});
    QCOMPARE(identity.Assign({At(NetworkCamera(1), 0x0A000099)}), QVector<int>({1}));
}

void tst_DeviceIdentity::Assign_FormerAddressStillListed_IsLeftOut()
{
    DeviceIdentity identity;
    identity.Assign({NetworkCamera(1)});
    QCOMPARE(identity.Assign({NetworkCamera(1, KX_CC_ACCESS_UNREACHABLE), At(NetworkCamera(1), 0x0A000099)}),
             QVector<int>({-1, 1}));
}

void tst_DeviceIdentity::Assign_TwoCamerasWithOneMac_AreToldApart()
{
    DeviceIdentity identity;
    const auto one = NetworkCamera(1);
    const auto other = At(one, 0x0A000099);
    QCOMPARE(identity.Assign({one, other}), QVector<int>({1, 2}));
    QCOMPARE(identity.Assign({other, one}), QVector<int>({2, 1}));
}

void tst_DeviceIdentity::Assign_OneOfTwoWithOneMacGoes_TheOtherKeepsItsNumber()
{
    DeviceIdentity identity;
    const auto one = NetworkCamera(1);
    const auto other = At(one, 0x0A000099);
    identity.Assign({one, other});
    QCOMPARE(identity.Assign({other}), QVector<int>({2}));
    QCOMPARE(identity.Assign({one, other}), QVector<int>({1, 2}));
}

void tst_DeviceIdentity::Assign_CamerasWithoutMac_AreToldApartByAddress()
{
    DeviceIdentity identity;
    auto one = NetworkCamera(1);
    auto other = NetworkCamera(2);
    one.nMacAddrHigh = one.nMacAddrLow = other.nMacAddrHigh = other.nMacAddrLow = 0;
    QCOMPARE(identity.Assign({one, other}), QVector<int>({1, 2}));
    QCOMPARE(identity.Assign({other}), QVector<int>({2}));
}

void tst_DeviceIdentity::Assign_UsbCameraInAnotherPlug_KeepsItsNumber()
{
    DeviceIdentity identity;
    auto camera = UsbCamera(1);
    identity.Assign({camera});
    camera.SpecialInfo.stUsbInfo.nBus = 4;
    QCOMPARE(identity.Assign({camera}), QVector<int>({1}));
}

void tst_DeviceIdentity::Assign_UsbCamerasWithoutGuid_AreToldApartBySerial()
{
    DeviceIdentity identity;
    auto one = UsbCamera(1);
    auto other = UsbCamera(2);
    for (auto *pCamera : {&one, &other})
        SetText(pCamera->SpecialInfo.stUsbInfo.chDeviceGuid, 64, "");
    QCOMPARE(identity.Assign({one, other}), QVector<int>({1, 2}));
    QCOMPARE(identity.Assign({other}), QVector<int>({2}));
}

void tst_DeviceIdentity::Assign_PortCameras_AreToldApartByPort()
{
    DeviceIdentity identity;
    QCOMPARE(identity.Assign({PortCamera(1), PortCamera(2)}), QVector<int>({1, 2}));
    QCOMPARE(identity.Assign({PortCamera(2)}), QVector<int>({2}));
}

void tst_DeviceIdentity::Assign_MoreThanItKeeps_ForgetsThoseThatHaveGone()
{
    DeviceIdentity identity;
    identity.Assign({NetworkCamera(1), NetworkCamera(2)});
    QVector<KX_CC_DEVICE_INFO> vecInvented{NetworkCamera(1)};
    for (int i = 0; i < DeviceIdentity::kMostKnown; ++i)
        vecInvented.append(NetworkCamera(3 + i));
    QCOMPARE(identity.Assign(vecInvented).first(), 1);

    const QVector<int> vecIDs = identity.Assign({NetworkCamera(1), NetworkCamera(2)});
    QCOMPARE(vecIDs.at(0), 1);
    QVERIFY2(vecIDs.at(1) > DeviceIdentity::kMostKnown, qPrintable(QString::number(vecIDs.at(1))));
}

QTEST_APPLESS_MAIN(tst_DeviceIdentity)
#include "tst_deviceidentity.moc"
