#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <KxCameraControl/kxcameracontrol.h>

#include "camerafarm.h"
#include "opencamera.h"
#include "udpdevice.h"

namespace {

const int kLimitMs = 10000;

bool Ip(const QString &strArguments)
{
    return QProcess::execute("ip", strArguments.split(' ')) == 0;
}

/// Two lines of headings, and one for each interface.
bool HasLoopbackOnly()
{
    QFile file("/proc/net/dev");
    return file.open(QIODevice::ReadOnly) && file.readAll().trimmed().count('\n') == 2;
}

bool WriteSetting(const QString &strName, const QByteArray &value)
{
    QFile file("/proc/sys/net/ipv4/conf/all/" + strName);
    return file.open(QIODevice::WriteOnly) && file.write(value) == value.size();
}

/// A camera of another origin in a network of its own, at the other end of one cable or two: Aravis' fake
/// one.
class FarCamera
{
public:
    FarCamera() { m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel); }
    ~FarCamera()
    {
        m_process.kill(); // and with the process its network and the cables
        m_process.waitForFinished(kLimitMs);
    }
    FarCamera(const FarCamera &) = delete;
    FarCamera &operator=(const FarCamera &) = delete;

    /// @param strAddress  the camera's, with the size of its net: "10.1.1.2/24"
    bool Start(const QString &strAddress, const QStringList &cables)
    {
        // A switch in front of the camera joins its cables. By the route it answers other subnets as well.
        QString strScript = "echo there; read _; ip link set lo up; ip link add switch type bridge; ";
        for (const QString &cable : cables)
            strScript += QString("ip link set far-%1 master switch; ip link set far-%1 up; ").arg(cable);
        strScript +=
            QString("ip addr add %1 dev switch; ip link set switch up; ip route add default dev switch; "
                    "exec arv-fake-gv-camera-0.8 -i switch -s FAR")
                .arg(strAddress);
        m_process.start("unshare", {"--net", "sh", "-e", "-c", strScript});
        return m_process.waitForReadyRead(kLimitMs) && LayCables(cables) && m_process.write("\n") == 1 &&
               m_process.waitForBytesWritten(kLimitMs);
    }

private:
    bool LayCables(const QStringList &cables) const
    {
        return std::all_of(cables.begin(), cables.end(), [this](const QString &cable) {
            return Ip(QString("link add %1 type veth peer name far-%1 netns %2")
                          .arg(cable)
                          .arg(m_process.processId()));
        });
    }

    QProcess m_process;
};

KX_CC_GIGE_INFO Gige(const KX_CC_DEVICE_INFO &info)
{
    return info.SpecialInfo.stGigEInfo;
}

QString InterfaceOf(const KX_CC_DEVICE_INFO &info)
{
    return reinterpret_cast<const char *>(info.SpecialInfo.stGigEInfo.chInterfaceName);
}

} // namespace

// Cameras beyond this machine: more than one interface, other subnets.
class tst_Interfaces : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void Enumerate_CameraOfOurSubnet_IsFreeAndOpens();
    void Enumerate_CameraOfAnotherSubnet_IsUnreachable();
    void Enumerate_CamerasOnTwoInterfaces_FindsBoth();
    void Enumerate_OneCameraOnTwoInterfaces_StandsWhereItIsReached_data();
    void Enumerate_OneCameraOnTwoInterfaces_StandsWhereItIsReached();
    void Enumerate_SubnetOfTwoInterfaces_StandsWhereItIsHeard_data();
    void Enumerate_SubnetOfTwoInterfaces_StandsWhereItIsHeard();
    void Enumerate_AnswerFromThisMachineNamesAnotherNetwork_IsUnreachable();
    void FindDevice_SubnetOfTwoInterfaces_AsksOnBoth();
    void FindDevice_BroadcastOfAnyNetworkHere_IsRefused();

private:
    static bool AddSpare(const QString &strAddress);
    std::vector<KX_CC_DEVICE_INFO> Search() const;
    /// The far camera's record; of transport 0 when it is not found in time.
    KX_CC_DEVICE_INFO Find() const;

    void *m_hEnumerator = nullptr;
};

void tst_Interfaces::initTestCase()
{
    for (const char *pProgram : {"ip", "unshare", "arv-fake-gv-camera-0.8"}) {
        if (QStandardPaths::findExecutable(pProgram).isEmpty())
            QSKIP(qPrintable(QString("%1 is not installed").arg(pProgram)));
    }
    if (!HasLoopbackOnly())
        QSKIP("not in a network of its own, and those of others are left alone");
    if (!Ip("link add cable0 type veth peer name cable1") || !Ip("link del cable0"))
        QSKIP("this system gives a test no interfaces of its own");
    // Each interface answers for its own address only, so that it is certain on which one a camera is heard.
    QVERIFY(WriteSetting("arp_ignore", "1") && WriteSetting("arp_announce", "2"));
}

void tst_Interfaces::init()
{
    QCOMPARE(KX_CC_CreateEnumerator(&m_hEnumerator, KX_CC_TRANSPORT_GIGE), KX_CC_OK);
}

void tst_Interfaces::cleanup()
{
    KX_CC_DestroyEnumerator(m_hEnumerator);
    if (QFile::exists("/proc/sys/net/ipv4/conf/spare0"))
        QVERIFY(Ip("link del spare0"));
    // The cables went with the far end, a moment after it.
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists("/proc/sys/net/ipv4/conf/cable0"), kLimitMs);
}

/// One more interface, whose cable leads nowhere.
bool tst_Interfaces::AddSpare(const QString &strAddress)
{
    return Ip("link add spare0 type veth peer name spare1") && Ip("addr add " + strAddress + " dev spare0") &&
           Ip("link set spare0 up") && Ip("link set spare1 up");
}

std::vector<KX_CC_DEVICE_INFO> tst_Interfaces::Search() const
{
    KX_CC_DEVICE_LIST list{};
    KX_CC_Enumerate(m_hEnumerator, 500, &list);
    return {list.pstDevices, list.pstDevices + list.nDeviceNum};
}

KX_CC_DEVICE_INFO tst_Interfaces::Find() const
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kLimitMs) {
        for (const KX_CC_DEVICE_INFO &info : Search()) {
            if (QByteArray(reinterpret_cast<const char *>(Gige(info).chSerialNumber)) == "FAR")
                return info;
        }
    }
    return {};
}

void tst_Interfaces::Enumerate_CameraOfOurSubnet_IsFreeAndOpens()
{
    FarCamera camera;
    QVERIFY(camera.Start("10.1.1.2/24", {"cable0"}));
    QVERIFY(Ip("addr add 10.1.1.1/24 dev cable0") && Ip("link set cable0 up"));

    const KX_CC_DEVICE_INFO info = Find();

    QCOMPARE(Gige(info).nCurrentIp, 0x0A010102U);
    QCOMPARE(Gige(info).nInterfaceIp, 0x0A010101U);
    QCOMPARE(InterfaceOf(info), QString("cable0"));
    QCOMPARE(info.nAccessStatus, KX_CC_ACCESS_FREE);
    const OpenCamera opened(info);
    QCOMPARE(opened.Code(), KX_CC_OK);
    QCOMPARE(opened.Get("Width"), KX_CC_OK);
}

void tst_Interfaces::Enumerate_CameraOfAnotherSubnet_IsUnreachable()
{
    FarCamera camera;
    QVERIFY(camera.Start("10.9.9.2/24", {"cable0"}));
    QVERIFY(Ip("addr add 10.1.1.1/24 dev cable0") && Ip("link set cable0 up"));

    const KX_CC_DEVICE_INFO info = Find();

    QCOMPARE(Gige(info).nCurrentIp, 0x0A090902U);
    QCOMPARE(info.nAccessStatus, KX_CC_ACCESS_UNREACHABLE);
    QCOMPARE(OpenCamera(info).Code(), KX_CC_E_UNREACHABLE);
}

void tst_Interfaces::Enumerate_CamerasOnTwoInterfaces_FindsBoth()
{
    FarCamera camera;
    QVERIFY(camera.Start("10.1.1.2/24", {"cable0"}));
    QVERIFY(Ip("addr add 10.1.1.1/24 dev cable0") && Ip("link set cable0 up"));
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "1", "--first-address", "127.65.1.1"}), qPrintable(farm.Error()));

    QCOMPARE(InterfaceOf(Find()), QString("cable0"));
    const std::vector<KX_CC_DEVICE_INFO> all = Search();

    QCOMPARE(all.size(), size_t{2});
    QCOMPARE(InterfaceOf(all[1]), QString("lo"));
    QCOMPARE(all[1].nAccessStatus, KX_CC_ACCESS_FREE);
}

void tst_Interfaces::Enumerate_OneCameraOnTwoInterfaces_StandsWhereItIsReached_data()
{
    QTest::addColumn<QStringList>("cables"); // their order is that of the interfaces
    QTest::newRow("its subnet's is the first") << QStringList{"cable0", "cable2"};
    QTest::newRow("its subnet's is the second") << QStringList{"cable2", "cable0"};
}

void tst_Interfaces::Enumerate_OneCameraOnTwoInterfaces_StandsWhereItIsReached()
{
    QFETCH(QStringList, cables);
    FarCamera camera;
    QVERIFY(camera.Start("10.1.1.2/24", cables));
    QVERIFY(Ip("addr add 192.168.5.1/24 dev cable2") && Ip("link set cable2 up"));
    QVERIFY(Ip("addr add 10.1.1.1/24 dev cable0") && Ip("link set cable0 up"));

    const KX_CC_DEVICE_INFO info = Find();

    QCOMPARE(InterfaceOf(info), QString("cable0"));
    QCOMPARE(info.nAccessStatus, KX_CC_ACCESS_FREE);
    QCOMPARE(Search().size(), size_t{1});
}

void tst_Interfaces::Enumerate_SubnetOfTwoInterfaces_StandsWhereItIsHeard_data()
{
    QTest::addColumn<bool>("bSpareFirst");
    QTest::newRow("it is heard on the first") << false;
    QTest::newRow("it is heard on the second") << true;
}

void tst_Interfaces::Enumerate_SubnetOfTwoInterfaces_StandsWhereItIsHeard()
{
    QFETCH(bool, bSpareFirst);
    QVERIFY(!bSpareFirst || AddSpare("10.1.1.9/24"));
    FarCamera camera;
    QVERIFY(camera.Start("10.1.1.2/24", {"cable0"}));
    QVERIFY(Ip("addr add 10.1.1.1/24 dev cable0") && Ip("link set cable0 up"));
    QVERIFY(bSpareFirst || AddSpare("10.1.1.9/24"));

    const KX_CC_DEVICE_INFO info = Find();

    QCOMPARE(InterfaceOf(info), QString("cable0"));
    QCOMPARE(Gige(info).nInterfaceIp, 0x0A010101U);
}

void tst_Interfaces::Enumerate_AnswerFromThisMachineNamesAnotherNetwork_IsUnreachable()
{
    FarCamera camera;
    QVERIFY(camera.Start("10.1.1.2/24", {"cable0"}));
    QVERIFY(Ip("addr add 10.1.1.1/24 dev cable0") && Ip("link set cable0 up"));
    QCOMPARE(Find().nAccessStatus, KX_CC_ACCESS_FREE);

    // It would lead to the far camera, which answers whoever asks.
    const UdpDevice device("127.65.1.1", [](const QByteArray &request) {
        return IsSearch(request) ? QVector<QByteArray>{SearchAnswer(7, 0x0A010102)} : QVector<QByteArray>();
    });
    QVERIFY(device.IsThere());
    QTRY_COMPARE(Search().size(), size_t{2});
    const std::vector<KX_CC_DEVICE_INFO> all = Search();
    const auto invented = std::find_if(all.begin(), all.end(),
                                       [](const KX_CC_DEVICE_INFO &info) { return info.nMacAddrLow == 7; });

    QVERIFY(invented != all.end());
    QCOMPARE(InterfaceOf(*invented), QString("lo"));
    QCOMPARE(invented->nAccessStatus, KX_CC_ACCESS_UNREACHABLE);
}

void tst_Interfaces::FindDevice_SubnetOfTwoInterfaces_AsksOnBoth()
{
    QVERIFY(AddSpare("10.1.1.9/24"));
    FarCamera camera;
    QVERIFY(camera.Start("10.1.1.2/24", {"cable0"}));
    QVERIFY(Ip("addr add 10.1.1.1/24 dev cable0") && Ip("link set cable0 up"));
    KX_CC_DEVICE_INFO info{};

    QTRY_COMPARE_WITH_TIMEOUT(KX_CC_FindDevice("10.1.1.2", 500, &info), KX_CC_OK, kLimitMs);

    QCOMPARE(InterfaceOf(info), QString("cable0"));
}

void tst_Interfaces::FindDevice_BroadcastOfAnyNetworkHere_IsRefused()
{
    // The first network is part of the second, in which its broadcast address looks like any other.
    QVERIFY(AddSpare("10.1.1.9/24") && Ip("addr add 10.1.2.9/16 dev spare0"));
    KX_CC_DEVICE_INFO info{};
    for (const char *szAddress : {"10.1.1.255", "10.1.1.0", "10.1.255.255", "10.1.0.0"})
        QCOMPARE(KX_CC_FindDevice(szAddress, 200, &info), KX_CC_E_PARAMETER);
    QCOMPARE(KX_CC_FindDevice("10.1.2.255", 200, &info), KX_CC_E_UNREACHABLE);
    QVERIFY(Ip("addr add 10.1.3.7/32 dev spare0") && Ip("addr add 10.1.4.6/31 dev spare0"));
    for (const char *szAddress : {"10.1.3.7", "10.1.4.6", "10.1.4.7"})
        QCOMPARE(KX_CC_FindDevice(szAddress, 200, &info), KX_CC_E_UNREACHABLE);
}

QTEST_GUILESS_MAIN(tst_Interfaces)
#include "tst_interfaces.moc"
