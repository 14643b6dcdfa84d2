#include "camerafarm.h"

#include <QtTest>
#include <arpa/inet.h>
#include <cerrno>
#include <set>
#include <sys/socket.h>
#include <unistd.h>

namespace {

/// Runs the program to its end.
int ExitCode(const QStringList &arguments, QByteArray *pErrors)
{
    QProcess process;
    process.start(CameraFarm::Program(), arguments);
    if (!process.waitForFinished(30000))
        return -1;
    *pErrors = process.readAllStandardError();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
}

/// A UDP socket on loopback that gives up after five seconds of silence.
class UdpSocket
{
public:
    UdpSocket()
        : m_nSocket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
    {
        const int on = 1;
        const timeval limit = {5, 0};
        const sockaddr_in self = Name("127.0.0.1", 0);
        ::setsockopt(m_nSocket, SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
        ::setsockopt(m_nSocket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        (void)::bind(m_nSocket, reinterpret_cast<const sockaddr *>(&self), sizeof self);
    }
    ~UdpSocket() { ::close(m_nSocket); }
    UdpSocket(const UdpSocket &) = delete;
    UdpSocket &operator=(const UdpSocket &) = delete;

    /// Only what comes from there is received, and "port unreachable" becomes an error.
    void Connect(const char *address)
    {
        const sockaddr_in name = Name(address, 3956);
        (void)::connect(m_nSocket, reinterpret_cast<const sockaddr *>(&name), sizeof name);
    }
    void Send(const char *address, const QByteArray &hex)
    {
        const QByteArray bytes = QByteArray::fromHex(hex);
        const sockaddr_in name = Name(address, 3956);
        ::sendto(m_nSocket, bytes.constData(), static_cast<std::size_t>(bytes.size()), 0,
                 reinterpret_cast<const sockaddr *>(&name), sizeof name);
    }
    /// Null after the time limit or an error; *pFrom is the sender in host byte order.
    QByteArray Receive(std::uint32_t *pFrom)
    {
        char buffer[2048];
        sockaddr_in name = {};
        socklen_t size = sizeof name;
        errno = 0;
        const ssize_t count =
            ::recvfrom(m_nSocket, buffer, sizeof buffer, 0, reinterpret_cast<sockaddr *>(&name), &size);
        *pFrom = ntohl(name.sin_addr.s_addr);
        return count < 0 ? QByteArray() : QByteArray(buffer, static_cast<int>(count));
    }

private:
    static sockaddr_in Name(const char *address, std::uint16_t port)
    {
        sockaddr_in name = {};
        name.sin_family = AF_INET;
        name.sin_port = htons(port);
        ::inet_pton(AF_INET, address, &name.sin_addr);
        return name;
    }
    int m_nSocket;
};

} // namespace

/// The program as a whole, from outside.
class tst_Program : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void Start_ThreeCameras_SaysReadyAndEndsOnSigterm();
    void Start_WrongUsage_OneLineAndTwo_data();
    void Start_WrongUsage_OneLineAndTwo();
    void Start_AddressInUse_OneLineAndOne();
    void Control_List_NamesEveryCamera();
    void Discovery_Broadcast_FourHundredCamerasAnswer_data();
    void Discovery_Broadcast_FourHundredCamerasAnswer();
    void Port_Closed_SystemSaysUnreachable();
    void WrongSource_Answer_ComesFromAnotherAddress();
    void Address_Changed_OldOneIsGoneNewOneAnswers();
    void ForceIp_Broadcast_CameraAnswersAtTheNewAddress();
    void Config_FileWithFaults_CamerasPlayThem();
    void Config_BrokenFile_OneLineAndOne();
};

void tst_Program::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
}

void tst_Program::Start_ThreeCameras_SaysReadyAndEndsOnSigterm()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "3", "--first-address", "127.30.1.1"}), qPrintable(farm.Error()));
    QCOMPARE(farm.CameraCount(), 3);
    QVERIFY(farm.Stop());
}

void tst_Program::Start_WrongUsage_OneLineAndTwo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("unknown option") << QStringList{"--cameras", "3"};
    QTest::newRow("no value") << QStringList{"--count"};
    QTest::newRow("count zero") << QStringList{"--count", "0"};
    QTest::newRow("count no number") << QStringList{"--count", "three"};
    QTest::newRow("address of a network") << QStringList{"--first-address", "127.30.1.0"};
    QTest::newRow("address off loopback") << QStringList{"--first-address", "10.0.0.1"};
    QTest::newRow("negative latency") << QStringList{"--latency-us", "-1"};
}

void tst_Program::Start_WrongUsage_OneLineAndTwo()
{
    QFETCH(QStringList, arguments);
    QByteArray errors;

    QCOMPARE(ExitCode(arguments, &errors), 2);
    QCOMPARE(errors.count('\n'), 1);
}

void tst_Program::Start_AddressInUse_OneLineAndOne()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.2.1"}), qPrintable(farm.Error()));
    QByteArray errors;

    QCOMPARE(ExitCode({"--first-address", "127.30.2.1"}, &errors), 1);
    QCOMPARE(errors.count('\n'), 1);
    QVERIFY(errors.contains("127.30.2.1, UDP port 3956: the address is in use"));
}

void tst_Program::Control_List_NamesEveryCamera()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "3", "--first-address", "127.30.3.254"}), qPrintable(farm.Error()));

    QCOMPARE(farm.Command("list"),
             QByteArray("ok 3 127.30.3.254/SIM0001 127.30.4.1/SIM0002 127.30.4.2/SIM0003"));
}

void tst_Program::Discovery_Broadcast_FourHundredCamerasAnswer_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("of the loopback network") << QByteArray("127.255.255.255");
    QTest::newRow("of all networks") << QByteArray("255.255.255.255");
}

void tst_Program::Discovery_Broadcast_FourHundredCamerasAnswer()
{
    QFETCH(QByteArray, address);
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "400", "--first-address", "127.30.30.1"}), qPrintable(farm.Error()));
    UdpSocket socket;
    std::set<std::uint32_t> found;

    // A loaded machine may lose some; those are asked again, as every client does.
    for (int round = 0; round < 5 && found.size() < 400; ++round) {
        socket.Send(address.constData(), "420100020000ffff");
        std::uint32_t from = 0;
        while (found.size() < 400 && !socket.Receive(&from).isNull()) {
            if (from >= 0x7F1E1E01 && from <= 0x7F1E1FFF)
                found.insert(from);
        }
    }

    QCOMPARE(found.size(), std::size_t{400});
}

void tst_Program::Port_Closed_SystemSaysUnreachable()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.33.1"}), qPrintable(farm.Error()));
    QCOMPARE(farm.Command("set * port closed"), QByteArray("ok"));
    UdpSocket socket;
    socket.Connect("127.30.33.1");
    std::uint32_t from = 0;

    socket.Send("127.30.33.1", "4201008000040001 00000000");

    QVERIFY(socket.Receive(&from).isNull());
    QCOMPARE(errno, ECONNREFUSED);
}

void tst_Program::WrongSource_Answer_ComesFromAnotherAddress()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.34.1"}), qPrintable(farm.Error()));
    QCOMPARE(farm.Command("set * wrong-source 1"), QByteArray("ok"));
    UdpSocket socket;
    std::uint32_t from = 0;

    socket.Send("127.30.34.1", "4201008000040001 00000000");

    QCOMPARE(socket.Receive(&from).toHex(), QByteArray("000000810004000100020000"));
    QCOMPARE(from, 0x7F000063U);
}

void tst_Program::Address_Changed_OldOneIsGoneNewOneAnswers()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--first-address", "127.30.35.1"}), qPrintable(farm.Error()));
    QCOMPARE(farm.Command("set SIM0001 address 127.30.35.9"), QByteArray("ok"));
    UdpSocket moved;
    std::uint32_t from = 0;

    moved.Send("127.30.35.9", "4201008000040001 00000024");

    QCOMPARE(moved.Receive(&from).toHex(), QByteArray("00000081000400017f1e2309"));
    UdpSocket old;
    old.Connect("127.30.35.1");
    old.Send("127.30.35.1", "4201008000040001 00000024");
    QVERIFY(old.Receive(&from).isNull());
    QCOMPARE(errno, ECONNREFUSED);
}

void tst_Program::ForceIp_Broadcast_CameraAnswersAtTheNewAddress()
{
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "2", "--first-address", "127.30.37.1"}), qPrintable(farm.Error()));
    UdpSocket socket;
    std::uint32_t from = 0;
    const QByteArray reserved(24, '0');

    socket.Send("127.255.255.255", "42010004 00380001 000002007f1e2502" + reserved + "7f1e2509" + reserved +
                                       "ff000000" + reserved + "00000000");

    QCOMPARE(socket.Receive(&from).toHex(), QByteArray("0000000500000001"));
    socket.Send("127.30.37.9", "4201008000040002 00000024");
    QCOMPARE(socket.Receive(&from).toHex(), QByteArray("00000081000400027f1e2509"));
    QCOMPARE(farm.Command("list"), QByteArray("ok 2 127.30.37.1/SIM0001 127.30.37.9/SIM0002"));
}

void tst_Program::Config_FileWithFaults_CamerasPlayThem()
{
    QTemporaryDir directory;
    QFile file(directory.filePath("farm.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"*": {"latency-us": 100}, "127.30.36.2": {"status": "0x8007", "serial": "BUSY1"}})");
    file.close();
    CameraFarm farm;

    QVERIFY2(farm.Start({"--count", "2", "--first-address", "127.30.36.1", "--config", file.fileName()}),
             qPrintable(farm.Error()));

    QCOMPARE(farm.Command("get 127.30.36.1"), QByteArray("ok latency-us=100;"));
    UdpSocket socket;
    std::uint32_t from = 0;
    socket.Send("127.30.36.2", "4201008000040001 00000000");
    QCOMPARE(socket.Receive(&from).toHex(), QByteArray("8007008100000001"));
    QCOMPARE(farm.Command("get BUSY1 address"), QByteArray("ok 127.30.36.2"));
}

void tst_Program::Config_BrokenFile_OneLineAndOne()
{
    QTemporaryDir directory;
    QFile file(directory.filePath("farm.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"*": {"latencyus": 100}})");
    file.close();
    QByteArray errors;

    QCOMPARE(ExitCode({"--first-address", "127.30.37.1", "--config", file.fileName()}, &errors), 1);
    QCOMPARE(errors.count('\n'), 1);
    QVERIFY(errors.contains("\"latencyus\""));
}

QTEST_GUILESS_MAIN(tst_Program)
#include "tst_program.moc"
