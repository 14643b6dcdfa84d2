#include <QElapsedTimer>
#include <QTest>

#include <arpa/inet.h>
#include <atomic>
#include <functional>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "camerafarm.h"
#include "discovery/round.h"
#include "udpdevice.h"

using namespace kxcc;

namespace {

// Far above the time that a round is given, for busy machines; the flood lasts longer.
constexpr qint64 kSoonMs = 10000;
constexpr int kFloodMs = 30000;

/// Hears the search of every camera on this machine, and answers it without end.
class Flood
{
public:
    /// @param datagram  gives the bytes number 0, 1, 2 ...
    explicit Flood(std::function<QByteArray(uint32_t)> datagram)
        : m_datagram(std::move(datagram))
        , m_nSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
    {
        const int nOn = 1;
        setsockopt(m_nSocket, SOL_SOCKET, SO_REUSEADDR, &nOn, sizeof nOn);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(kGvcpPort);
        m_bBound = bind(m_nSocket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
        m_thread = std::thread([this] { Run(); });
    }
    ~Flood()
    {
        m_bEnd = true;
        m_thread.join();
        close(m_nSocket);
    }
    Flood(const Flood &) = delete;
    Flood &operator=(const Flood &) = delete;

    bool IsThere() const { return m_bBound; }

private:
    void Run()
    {
        sockaddr_in to{};
        while (!m_bEnd && !Hear(&to)) {
        }
        QElapsedTimer timer;
        timer.start();
        for (uint32_t n = 0; !m_bEnd && timer.elapsed() < kFloodMs; ++n) {
            const QByteArray bytes = m_datagram(n);
            sendto(m_nSocket, bytes.constData(), static_cast<size_t>(bytes.size()), 0,
                   reinterpret_cast<const sockaddr *>(&to), sizeof to);
        }
    }
    bool Hear(sockaddr_in *pFrom) const
    {
        pollfd descriptor{m_nSocket, POLLIN, 0};
        char request[64];
        socklen_t nFrom = sizeof *pFrom;
        return poll(&descriptor, 1, 100) > 0 && recvfrom(m_nSocket, request, sizeof request, 0,
                                                         reinterpret_cast<sockaddr *>(pFrom), &nFrom) > 0;
    }

    const std::function<QByteArray(uint32_t)> m_datagram;
    const int m_nSocket;
    bool m_bBound = false;
    std::atomic_bool m_bEnd{false};
    std::thread m_thread;
};

QByteArray InventedCamera(uint32_t nMac)
{
    return SearchAnswer(nMac, INADDR_LOOPBACK);
}

/// READREG_ACK that fits the first camera.
QByteArray FreePrivilege(uint32_t /*number*/)
{
    return QByteArray::fromHex("000000810004000100000000");
}

bool IsFree(const KX_CC_DEVICE_INFO &info)
{
    return info.nAccessStatus == KX_CC_ACCESS_FREE;
}

std::vector<Interface> Loopback()
{
    std::vector<Interface> all = ListInterfaces();
    all.erase(std::remove_if(all.begin(), all.end(), [](const Interface &one) { return !one.bLoopback; }),
              all.end());
    return all;
}

} // namespace

class tst_Round : public QObject
{
    Q_OBJECT

private slots:
    void Collect_HundredsAnswerAtOnce_FindsThemAll();
    void Collect_HundredsWhereAFifthIsLost_FindsThemAll();
    void Collect_AnswersAreLostAtFirst_AsksAsLongAsItLasts();
    void Collect_AsManyAsExpected_EndsWhenNoMoreCome();
    void Collect_FewerThanExpected_LastsItsTime();
    void Collect_ExpectedCameraHasNotToldItsAccess_GoesOn();
    void Collect_CamerasInventedWithoutEnd_EndsWithABoundedList();
    void Collect_EmptyDatagramsWithoutEnd_Ends();
    void ReadAccess_AnswersWithoutEnd_Ends();
};

void tst_Round::Collect_HundredsAnswerAtOnce_FindsThemAll()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "400", "--first-address", "127.66.1.1"}), qPrintable(farm.Error()));
    Round round;
    QVERIFY(round.Open(Loopback()));

    round.Collect(1000, 400);
    round.ReadAccess();

    QCOMPARE(round.Cameras().size(), size_t{400});
    const auto cameras = round.Cameras();
    QVERIFY(std::all_of(cameras.begin(), cameras.end(), IsFree));
}

void tst_Round::Collect_HundredsWhereAFifthIsLost_FindsThemAll()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "400", "--first-address", "127.66.1.1"}), qPrintable(farm.Error()));
    QVERIFY(farm.Set("*", "loss", "20"));
    Round round;
    QVERIFY(round.Open(Loopback()));

    round.Collect(5000, 400);
    round.ReadAccess();

    const auto cameras = round.Cameras();
    QCOMPARE(cameras.size(), size_t{400});
    QCOMPARE(std::count_if(cameras.begin(), cameras.end(), IsFree), 400);
}

void tst_Round::Collect_AnswersAreLostAtFirst_AsksAsLongAsItLasts()
{
    std::atomic_int nAsked{0};
    const UdpDevice device("127.66.1.1", [&](const QByteArray &request) -> QVector<QByteArray> {
        return IsSearch(request) && ++nAsked > 4 ? QVector<QByteArray>{SearchAnswer(1, 0x7F420101)}
                                                 : QVector<QByteArray>();
    });
    QVERIFY(device.IsThere());
    Round round;
    QVERIFY(round.Open(Loopback()));

    round.Collect(5000, 1);

    QCOMPARE(round.Cameras().size(), size_t{1});
}

void tst_Round::Collect_AsManyAsExpected_EndsWhenNoMoreCome()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "2", "--first-address", "127.66.1.1"}), qPrintable(farm.Error()));
    Round round;
    QVERIFY(round.Open(Loopback()));
    QElapsedTimer timer;
    timer.start();

    round.Collect(static_cast<int>(kSoonMs), 2);

    QVERIFY2(timer.elapsed() < kSoonMs / 2, qPrintable(QString::number(timer.elapsed())));
    QVERIFY2(timer.elapsed() >= 150, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(round.Cameras().size(), size_t{2});
}

void tst_Round::Collect_FewerThanExpected_LastsItsTime()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "1", "--first-address", "127.66.1.1"}), qPrintable(farm.Error()));
    for (const size_t nExpected : {0, 2}) {
        Round round;
        QVERIFY(round.Open(Loopback()));
        QElapsedTimer timer;
        timer.start();

        round.Collect(600, nExpected);

        QVERIFY2(timer.elapsed() >= 600, qPrintable(QString::number(timer.elapsed())));
    }
}

void tst_Round::Collect_ExpectedCameraHasNotToldItsAccess_GoesOn()
{
    std::atomic_int nAsked{0};
    const UdpDevice device("127.66.1.1", [&](const QByteArray &request) -> QVector<QByteArray> {
        if (IsSearch(request))
            return {SearchAnswer(1, 0x7F420101)};
        if (++nAsked < 9) // the first second and more
            return {};
        return {QByteArray::fromHex("000000810004") + request.mid(6, 2) + QByteArray(4, '\0')};
    });
    QVERIFY(device.IsThere());
    Round round;
    QVERIFY(round.Open(Loopback()));

    round.Collect(static_cast<int>(kSoonMs), 1);

    QCOMPARE(round.Cameras().size(), size_t{1});
    QCOMPARE(round.Cameras().front().nAccessStatus, KX_CC_ACCESS_FREE);
}

void tst_Round::Collect_CamerasInventedWithoutEnd_EndsWithABoundedList()
{
    const Flood flood(InventedCamera);
    QVERIFY(flood.IsThere());
    Round round;
    QVERIFY(round.Open(Loopback()));
    QElapsedTimer timer;
    timer.start();

    round.Collect(1000, 0);
    round.ReadAccess();

    QVERIFY2(timer.elapsed() < kSoonMs, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(!round.Cameras().empty());
    QVERIFY(round.Cameras().size() <= Round::kMostCameras);
}

void tst_Round::Collect_EmptyDatagramsWithoutEnd_Ends()
{
    const Flood flood([](uint32_t) { return QByteArray(); });
    QVERIFY(flood.IsThere());
    Round round;
    QVERIFY(round.Open(Loopback()));
    QElapsedTimer timer;
    timer.start();

    round.Collect(500, 0);

    QVERIFY2(timer.elapsed() < kSoonMs, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(round.Cameras().empty());
}

void tst_Round::ReadAccess_AnswersWithoutEnd_Ends()
{
    Round round;
    QVERIFY(round.Open(Loopback()));
    {
        const Flood flood(InventedCamera);
        QVERIFY(flood.IsThere());
        round.Collect(300, 0);
        QVERIFY(round.Cameras().size() > 1);
    }
    const Flood flood(FreePrivilege); // of one camera of many
    QElapsedTimer timer;
    timer.start();

    round.ReadAccess();

    QVERIFY2(timer.elapsed() < kSoonMs, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(round.Cameras().front().nAccessStatus, KX_CC_ACCESS_FREE);
    QCOMPARE(round.Cameras().back().nAccessStatus, KX_CC_ACCESS_UNREACHABLE);
}

QTEST_GUILESS_MAIN(tst_Round)
#include "tst_round.moc"
