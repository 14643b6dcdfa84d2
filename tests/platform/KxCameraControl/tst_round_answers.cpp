#include <QMutex>
#include <QTest>

#include <algorithm>
#include <dlfcn.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "discovery/round.h"
#include "udpdevice.h"

using namespace kxcc;

namespace {

constexpr uint32_t kOwn = 0x7F430101;    // 127.67.1.1, where the device is
constexpr uint32_t kVictim = 0x7F430102; // 127.67.1.2

/// Where this program sent to, other than searches.
struct Sent
{
    QMutex mutex;
    QVector<uint32_t> addresses;
};

Sent &TheSent()
{
    static Sent sent;
    return sent;
}

} // namespace

/// In place of the system's: the library's datagrams pass here.
extern "C" ssize_t sendmsg(int nSocket, const msghdr *pMessage, int nFlags)
{
    using Function = ssize_t (*)(int, const msghdr *, int);
    static const auto pSystem = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "sendmsg"));
    const auto *pTo = static_cast<const sockaddr_in *>(pMessage->msg_name);
    const auto *pBytes = static_cast<const char *>(pMessage->msg_iov->iov_base);
    if (pTo != nullptr && !IsSearch(QByteArray(pBytes, static_cast<int>(pMessage->msg_iov->iov_len)))) {
        const QMutexLocker locker(&TheSent().mutex);
        TheSent().addresses.append(ntohl(pTo->sin_addr.s_addr));
    }
    return pSystem(nSocket, pMessage, nFlags);
}

// What the answers to a search may lead to.
class tst_Round_Answers : public QObject
{
    Q_OBJECT

private slots:
    void init() { TheSent().addresses.clear(); }

    void Collect_OwnAddressInAnAnswer_IsAsked();
    void Collect_BadAddressInAnAnswer_GetsNothing_data();
    void Collect_BadAddressInAnAnswer_GetsNothing();
    void Collect_AnotherSaysItIsTheCamera_ItsOwnWordCounts();
    void Collect_AnswerToAnotherQuestion_DoesNotCount();
    void CollectFrom_AnswerNamesAnotherAddress_DoesNotCount();
    void CollectFrom_AnotherAnswers_DoesNotCount();
    void CollectFrom_AskedTwiceInVain_AsksAgain();
};

namespace {

/// 127.0.0.1/8, as loopback is set up everywhere.
Interface Loopback()
{
    return {"lo", INADDR_LOOPBACK, 0xFF000000, true};
}

UdpDevice::Answers Say(const QByteArray &answer)
{
    return [answer](const QByteArray &request) {
        return IsSearch(request) ? QVector<QByteArray>{answer} : QVector<QByteArray>();
    };
}

QByteArray ModelOf(const KX_CC_DEVICE_INFO &info)
{
    return reinterpret_cast<const char *>(info.SpecialInfo.stGigEInfo.chModelName);
}

} // namespace

void tst_Round_Answers::Collect_OwnAddressInAnAnswer_IsAsked()
{
    const UdpDevice device("127.67.1.1", Say(SearchAnswer(1, kOwn)));
    QVERIFY(device.IsThere());
    Round round;
    QVERIFY(round.Open({Loopback()}));

    round.Collect(200, 0);
    round.ReadAccess();

    QVERIFY(TheSent().addresses.size() > 1); // again and again, since it does not answer
    QCOMPARE(TheSent().addresses.count(kOwn), TheSent().addresses.size());
    QCOMPARE(round.Cameras().front().nAccessStatus, KX_CC_ACCESS_UNREACHABLE);
}

void tst_Round_Answers::Collect_BadAddressInAnAnswer_GetsNothing_data()
{
    QTest::addColumn<uint>("nIp");
    QTest::newRow("broadcast of the network") << 0x7FFFFFFFU;
    QTest::newRow("broadcast of every network") << 0xFFFFFFFFU;
    QTest::newRow("broadcast of a second network here") << 0x7F4301FFU;
    QTest::newRow("the network itself") << 0x7F000000U;
    QTest::newRow("none") << 0U;
    QTest::newRow("multicast, first") << 0xE0000000U;
    QTest::newRow("multicast, last") << 0xEFFFFFFFU;
    QTest::newRow("another network") << 0x0A010203U;
    QTest::newRow("the network below") << 0x7E430101U;
}

void tst_Round_Answers::Collect_BadAddressInAnAnswer_GetsNothing()
{
    QFETCH(uint, nIp);
    const UdpDevice device("127.67.1.1", Say(SearchAnswer(1, nIp)));
    QVERIFY(device.IsThere());
    Round round;
    QVERIFY(
        round.Open({Loopback(), {"lo", INADDR_LOOPBACK, 0xFFFFFF00, true}, {"lo", kOwn, 0xFFFFFF00, true}}));

    round.Collect(200, 0);
    round.ReadAccess();

    QCOMPARE(round.Cameras().size(), size_t{1});
    QCOMPARE(round.Cameras().front().nAccessStatus, KX_CC_ACCESS_UNREACHABLE);
    QCOMPARE(TheSent().addresses, QVector<uint32_t>());
}

void tst_Round_Answers::Collect_AnotherSaysItIsTheCamera_ItsOwnWordCounts()
{
    // The camera is slower than the other one.
    std::atomic_int nAsked{0};
    const UdpDevice camera("127.67.1.2", [&](const QByteArray &request) -> QVector<QByteArray> {
        return IsSearch(request) && ++nAsked > 1 ? QVector<QByteArray>{SearchAnswer(1, kVictim, "CAMERA")}
                                                 : QVector<QByteArray>();
    });
    const UdpDevice other("127.67.1.1", Say(SearchAnswer(1, kVictim, "OTHER")));
    QVERIFY(camera.IsThere() && other.IsThere());
    Round round;
    QVERIFY(round.Open({Loopback()}));

    round.Collect(1000, 0);

    QVERIFY(nAsked > 2); // so the other one spoke before it and after it
    QCOMPARE(round.Cameras().size(), size_t{1});
    QCOMPARE(ModelOf(round.Cameras().front()), QByteArray("CAMERA"));
}

void tst_Round_Answers::Collect_AnswerToAnotherQuestion_DoesNotCount()
{
    QByteArray answer = SearchAnswer(1, kOwn);
    answer[7] = 1; // its request id
    const UdpDevice device("127.67.1.1", Say(answer));
    QVERIFY(device.IsThere());
    Round round;
    QVERIFY(round.Open({Loopback()}));

    round.Collect(200, 0);

    QVERIFY(round.Cameras().empty());
}

void tst_Round_Answers::CollectFrom_AnswerNamesAnotherAddress_DoesNotCount()
{
    const UdpDevice device("127.67.1.1", Say(SearchAnswer(1, kVictim)));
    QVERIFY(device.IsThere());
    Round round;
    QVERIFY(round.Open({Loopback()}));

    round.CollectFrom(kOwn, 400);

    QVERIFY(round.Cameras().empty());
}

void tst_Round_Answers::CollectFrom_AnotherAnswers_DoesNotCount()
{
    const UdpDevice device("127.67.1.1", Say(SearchAnswer(1, kOwn)), "127.67.1.2");
    QVERIFY(device.IsThere());
    Round round;
    QVERIFY(round.Open({Loopback()}));

    round.CollectFrom(kOwn, 400);

    QVERIFY(round.Cameras().empty());
}

void tst_Round_Answers::CollectFrom_AskedTwiceInVain_AsksAgain()
{
    std::atomic_int nAsked{0};
    const UdpDevice device("127.67.1.1", [&](const QByteArray &request) -> QVector<QByteArray> {
        return IsSearch(request) && ++nAsked > 2 ? QVector<QByteArray>{SearchAnswer(1, kOwn)}
                                                 : QVector<QByteArray>();
    });
    QVERIFY(device.IsThere());
    Round round;
    QVERIFY(round.Open({Loopback()}));

    round.CollectFrom(kOwn, 5000);

    QCOMPARE(round.Cameras().size(), size_t{1});
}

QTEST_GUILESS_MAIN(tst_Round_Answers)
#include "tst_round_answers.moc"
