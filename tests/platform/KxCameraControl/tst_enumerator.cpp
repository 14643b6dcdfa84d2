#include <QElapsedTimer>
#include <QStringList>
#include <QTest>

#include <KxCameraControl/kxcameracontrol.h>

#include "camerafarm.h"
#include "udpdevice.h"

namespace {

const qint64 kSoonMs = 10000;
const uint32_t kCamera = 0x7F440101; // 127.68.1.1

/// Rounds of one enumerator.
class Rounds
{
public:
    Rounds() { KX_CC_CreateEnumerator(&m_hEnumerator, KX_CC_TRANSPORT_GIGE); }
    ~Rounds() { KX_CC_DestroyEnumerator(m_hEnumerator); }
    Rounds(const Rounds &) = delete;
    Rounds &operator=(const Rounds &) = delete;

    std::vector<KX_CC_DEVICE_INFO> Run(int nMs)
    {
        KX_CC_DEVICE_LIST list{};
        KX_CC_Enumerate(m_hEnumerator, static_cast<unsigned int>(nMs), &list);
        std::vector<KX_CC_DEVICE_INFO> cameras;
        for (unsigned int i = 0; i < list.nDeviceNum; ++i)
            cameras.push_back(list.pstDevices[i]);
        return cameras;
    }

private:
    void *m_hEnumerator = nullptr;
};

/// Of the camera at 127.68.1.1; 0 when it is not listed.
uint32_t StatusOf(const std::vector<KX_CC_DEVICE_INFO> &cameras)
{
    for (const KX_CC_DEVICE_INFO &info : cameras) {
        if (info.SpecialInfo.stGigEInfo.nCurrentIp == kCamera)
            return info.nAccessStatus;
    }
    return 0;
}

} // namespace

class tst_Enumerator : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Enumerate_KnownCamerasHaveAnswered_EndsEarly();
    void Enumerate_AccessAnswerOfAnotherAddress_DoesNotCount();
    void Enumerate_DeviceThatInventsCameras_IsNotFollowed();
    void FindDevice_BadAddress_IsRefused_data();
    void FindDevice_BadAddress_IsRefused();
    void FindDevice_AnswerNamesAnotherCamera_IsUnreachable();
    void FindDevice_AnswerOfAnotherAddress_IsUnreachable();

private:
    CameraFarm m_farm;
    QStringList m_log;
};

void tst_Enumerator::init()
{
    QVERIFY2(m_farm.Start({"--count", "2", "--first-address", "127.68.1.1"}), qPrintable(m_farm.Error()));
    m_log.clear();
    KX_CC_SetLogCallback(
        KX_CC_LOG_DEBUG,
        [](unsigned int, const char *, const char *szText, void *pLog) {
            *static_cast<QStringList *>(pLog) << szText;
        },
        &m_log);
}

void tst_Enumerator::cleanup()
{
    KX_CC_SetLogCallback(KX_CC_LOG_DEBUG, nullptr, nullptr);
    QVERIFY(m_farm.Stop());
}

void tst_Enumerator::Enumerate_KnownCamerasHaveAnswered_EndsEarly()
{
    Rounds rounds;
    QTRY_COMPARE(rounds.Run(300).size(), size_t{2});
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(rounds.Run(10000).size(), size_t{2});
    QVERIFY2(timer.elapsed() < kSoonMs / 2, qPrintable(QString::number(timer.elapsed())));
}

void tst_Enumerator::Enumerate_AccessAnswerOfAnotherAddress_DoesNotCount()
{
    Rounds rounds;
    QTRY_COMPARE(StatusOf(rounds.Run(300)), KX_CC_ACCESS_FREE);
    QVERIFY(m_farm.Set("127.68.1.1", "wrong-source", "1 command=readreg"));
    for (int nRound = 0; nRound < 3; ++nRound)
        QCOMPARE(StatusOf(rounds.Run(300)), KX_CC_ACCESS_UNREACHABLE);
    QVERIFY(m_farm.Do("clear *"));
    QTRY_COMPARE(StatusOf(rounds.Run(300)), KX_CC_ACCESS_FREE);
}

// Other cameras each time that it is asked, 4096 of them: more than a list may have.
void tst_Enumerator::Enumerate_DeviceThatInventsCameras_IsNotFollowed()
{
    std::atomic_uint nMac{1};
    const UdpDevice device("127.68.1.9", [&](const QByteArray &request) {
        QVector<QByteArray> answers;
        for (int i = 0; i < 4096 && IsSearch(request); ++i)
            answers.append(SearchAnswer(++nMac, 0x7F440109));
        return answers;
    });
    QVERIFY(device.IsThere());
    Rounds rounds;
    QTRY_COMPARE(StatusOf(rounds.Run(300)), KX_CC_ACCESS_FREE);
    QTRY_VERIFY(nMac > 1000 && !m_log.isEmpty());

    for (int nRound = 0; nRound < 4; ++nRound) {
        QElapsedTimer timer;
        timer.start();
        const auto cameras = rounds.Run(300);
        QVERIFY2(timer.elapsed() < kSoonMs, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(StatusOf(cameras), KX_CC_ACCESS_FREE);
        QCOMPARE(cameras.size(), size_t{2});
    }
    QCOMPARE(m_log, QStringList("search: the device at 127.68.1.9 shows more than 300 new cameras a minute "
                                "and is not followed"));
}

void tst_Enumerator::FindDevice_BadAddress_IsRefused_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("broadcast of every network") << QByteArray("255.255.255.255");
    QTest::newRow("broadcast of the network here") << QByteArray("127.255.255.255");
    QTest::newRow("the network here") << QByteArray("127.0.0.0");
    QTest::newRow("none") << QByteArray("0.0.0.0");
    QTest::newRow("this network") << QByteArray("0.1.2.3");
    QTest::newRow("multicast, first") << QByteArray("224.0.0.0");
    QTest::newRow("multicast, last") << QByteArray("239.255.255.255");
    QTest::newRow("reserved") << QByteArray("240.0.0.1");
}

void tst_Enumerator::FindDevice_BadAddress_IsRefused()
{
    QFETCH(QByteArray, address);
    KX_CC_DEVICE_INFO info{};
    info.nTransportType = 1;
    QCOMPARE(KX_CC_FindDevice(address.constData(), 1000, &info), KX_CC_E_PARAMETER);
    QCOMPARE(info.nTransportType, 0U);
}

void tst_Enumerator::FindDevice_AnswerNamesAnotherCamera_IsUnreachable()
{
    KX_CC_DEVICE_INFO info{};
    QCOMPARE(KX_CC_FindDevice("127.68.1.2", 5000, &info), KX_CC_OK);
    QVERIFY(m_farm.Set("127.68.1.2", "discovery-address", "127.68.1.1"));
    QCOMPARE(KX_CC_FindDevice("127.68.1.2", 500, &info), KX_CC_E_UNREACHABLE);
    QCOMPARE(info.nTransportType, 0U);
}

void tst_Enumerator::FindDevice_AnswerOfAnotherAddress_IsUnreachable()
{
    KX_CC_DEVICE_INFO info{};
    QVERIFY(m_farm.Set("127.68.1.2", "wrong-source", "1 command=discovery"));
    QCOMPARE(KX_CC_FindDevice("127.68.1.2", 500, &info), KX_CC_E_UNREACHABLE);
}

QTEST_GUILESS_MAIN(tst_Enumerator)
#include "tst_enumerator.moc"
