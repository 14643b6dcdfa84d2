#include <QTest>

#include "discovery/newcomers.h"
#include "discovery/round.h"
#include "log/log.h"

using namespace kxcc;

namespace {

using Clock = Newcomers::Clock;

constexpr uint32_t kDevice = 0x0A000001;
constexpr uint32_t kOther = 0x0A000002;
const Clock::time_point kStart = Clock::time_point() + std::chrono::hours(1);
const auto kMinute = std::chrono::minutes(1);

KX_CC_DEVICE_INFO Camera(uint32_t nMac)
{
    DiscoveryAck ack;
    ack.nMacLow = nMac;
    ack.nCurrentIp = kDevice;
    return GigeRecord(ack, {"eth0", kDevice + 100, 0xFFFFFF00, false});
}

/// Shows so many cameras; returns how many were admitted.
int Show(Newcomers &newcomers, uint32_t nSender, int nFirst, int nCount)
{
    int nAdmitted = 0;
    for (int i = 0; i < nCount; ++i)
        nAdmitted += newcomers.Admit(nSender, Camera(static_cast<uint32_t>(nFirst + i))) ? 1 : 0;
    return nAdmitted;
}

} // namespace

class tst_Newcomers : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { SetLogReceiver(KX_CC_LOG_DEBUG, nullptr, nullptr); }

    void Admit_AsManyAsAllowed_AreFollowed();
    void Admit_OneTooMany_BarsTheDeviceAlone();
    void Admit_AllowedAgainEachMinute_IsFollowed();
    void Admit_KnownCameras_DoNotCount();
    void Admit_KnownCameraOfABarredDevice_IsRefused();
    void Admit_BarredDeviceGoesOn_StaysBarred();
    void Admit_BarredDeviceShowsOneCameraFromNowOn_IsFollowedAfterAMinute();
    void Admit_ManyDevices_NotMoreThanAllMayShow();
    void Admit_AsManyKnownAsCanBe_NothingNew();
    void Admit_DeviceIsBarred_LogNamesItOnce();
    void Admit_ManyDevicesAreBarred_LogNamesTheFirst();
};

void tst_Newcomers::Admit_AsManyAsAllowed_AreFollowed()
{
    const KnownCameras known;
    Newcomers newcomers(known);
    newcomers.BeginRound(kStart);
    QCOMPARE(Show(newcomers, kDevice, 1, 300), 300);
    QVERIFY(!newcomers.IsBarred(kDevice));
}

void tst_Newcomers::Admit_OneTooMany_BarsTheDeviceAlone()
{
    const KnownCameras known;
    Newcomers newcomers(known);
    newcomers.BeginRound(kStart);
    QCOMPARE(Show(newcomers, kDevice, 1, 301), 300);
    QVERIFY(newcomers.IsBarred(kDevice));
    QCOMPARE(Show(newcomers, kDevice, 1, 1), 0);
    QCOMPARE(Show(newcomers, kOther, 1000, 1), 1);
    QVERIFY(!newcomers.IsBarred(kOther));
}

void tst_Newcomers::Admit_AllowedAgainEachMinute_IsFollowed()
{
    const KnownCameras known;
    Newcomers newcomers(known);
    newcomers.BeginRound(kStart);
    QCOMPARE(Show(newcomers, kDevice, 1, 300), 300);
    newcomers.BeginRound(kStart + kMinute);
    QCOMPARE(Show(newcomers, kDevice, 301, 300), 300);
    newcomers.BeginRound(kStart + kMinute * 2 - std::chrono::milliseconds(1));
    QCOMPARE(Show(newcomers, kDevice, 601, 1), 0);
}

void tst_Newcomers::Admit_KnownCameras_DoNotCount()
{
    KnownCameras known;
    known.Update({Camera(1), Camera(2)});
    Newcomers newcomers(known);
    newcomers.BeginRound(kStart);
    for (int i = 0; i < 400; ++i)
        QCOMPARE(Show(newcomers, kDevice, 1, 2), 2);
    QCOMPARE(Show(newcomers, kDevice, 3, 300), 300);
}

void tst_Newcomers::Admit_KnownCameraOfABarredDevice_IsRefused()
{
    KnownCameras known;
    known.Update({Camera(1)});
    Newcomers newcomers(known);
    newcomers.BeginRound(kStart);
    Show(newcomers, kDevice, 2, 301);
    QCOMPARE(Show(newcomers, kDevice, 1, 1), 0);
}

void tst_Newcomers::Admit_BarredDeviceGoesOn_StaysBarred()
{
    const KnownCameras known;
    Newcomers newcomers(known);
    for (int nMinute = 0; nMinute < 4; ++nMinute) {
        newcomers.BeginRound(kStart + kMinute * nMinute);
        QCOMPARE(Show(newcomers, kDevice, 1 + 400 * nMinute, 400), nMinute == 0 ? 300 : 0);
        QVERIFY(newcomers.IsBarred(kDevice));
    }
}

void tst_Newcomers::Admit_BarredDeviceShowsOneCameraFromNowOn_IsFollowedAfterAMinute()
{
    const KnownCameras known;
    Newcomers newcomers(known);
    newcomers.BeginRound(kStart);
    Show(newcomers, kDevice, 1, 301);
    newcomers.BeginRound(kStart + kMinute); // it was too much in the first one
    for (int i = 0; i < 1000; ++i)
        QCOMPARE(Show(newcomers, kDevice, 7, 1), 0);
    newcomers.BeginRound(kStart + kMinute * 2);
    QCOMPARE(Show(newcomers, kDevice, 7, 1), 1);
}

void tst_Newcomers::Admit_ManyDevices_NotMoreThanAllMayShow()
{
    const KnownCameras known;
    Newcomers newcomers(known);
    const auto showAll = [&](uint32_t nFirst) {
        int nAdmitted = 0;
        for (uint32_t i = 0; i < 5000; ++i)
            nAdmitted += Show(newcomers, nFirst + i, static_cast<int>(nFirst + i), 1);
        return nAdmitted;
    };
    newcomers.BeginRound(kStart);
    QCOMPARE(showAll(1), 4096);
    newcomers.BeginRound(kStart + std::chrono::seconds(1)); // another round of the same minute
    QCOMPARE(showAll(10000), 0);
    newcomers.BeginRound(kStart + kMinute);
    QCOMPARE(showAll(20000), 4096);
}

void tst_Newcomers::Admit_AsManyKnownAsCanBe_NothingNew()
{
    std::vector<KX_CC_DEVICE_INFO> all;
    for (uint32_t i = 1; i < Newcomers::kMostCameras; ++i)
        all.push_back(Camera(i));
    KnownCameras known;
    known.Update(all);
    Newcomers newcomers(known);
    newcomers.BeginRound(kStart);
    QCOMPARE(Show(newcomers, kDevice, 10000, 2), 1);
    QCOMPARE(Show(newcomers, kDevice, 1, 4095), 4095);
}

void tst_Newcomers::Admit_DeviceIsBarred_LogNamesItOnce()
{
    QStringList lines;
    SetLogReceiver(
        KX_CC_LOG_DEBUG,
        [](unsigned int nLevel, const char *, const char *szText, void *pLines) {
            *static_cast<QStringList *>(pLines) << QString("%1 %2").arg(nLevel).arg(szText);
        },
        &lines);
    const KnownCameras known;
    Newcomers newcomers(known);
    for (int nMinute = 0; nMinute < 5; nMinute += 2) {
        newcomers.BeginRound(kStart + kMinute * nMinute);
        Show(newcomers, kDevice, 1 + 400 * nMinute, 400);
    }
    QCOMPARE(lines,
             QStringList("3 search: the device at 10.0.0.1 shows more than 300 new cameras a minute and is "
                         "not followed"));
}

void tst_Newcomers::Admit_ManyDevicesAreBarred_LogNamesTheFirst()
{
    int nLines = 0;
    SetLogReceiver(
        KX_CC_LOG_DEBUG,
        [](unsigned int, const char *, const char *, void *pLines) { ++*static_cast<int *>(pLines); },
        &nLines);
    const KnownCameras known;
    Newcomers newcomers(known);
    newcomers.BeginRound(kStart);
    for (int i = 0; i < 5000; ++i)
        Show(newcomers, kDevice + static_cast<uint32_t>(i), 1 + i * 400, 400);
    QCOMPARE(nLines, int(Newcomers::kMostNamed));
}

QTEST_APPLESS_MAIN(tst_Newcomers)
#include "tst_newcomers.moc"
