#include "pureclient.h"

#include <QtTest>

using namespace KxFarm;

namespace {

/// The command with mask 255.255.0.0 and gateway 127.30.0.254; MAC and IP address in hexadecimal.
QByteArray ForceIp(const QByteArray &mac, const QByteArray &address)
{
    const QByteArray reserved(24, '0'); // 12 bytes
    return "42010004 00381234 0000" + mac + reserved + address + reserved + "ffff0000" + reserved +
           "7f1e00fe";
}

} // namespace

/// Requests and acknowledges byte by byte, as GigE Vision 2.0, section 16, lays them out.
class tst_Camera : public QObject
{
    Q_OBJECT

private slots:
    void Handle_RequestBytes_AnswerBytes_data();
    void Handle_RequestBytes_AnswerBytes();
    void Handle_Discovery_HasTheBootstrapRegistersInTheirPlaces();
    void Handle_ForceIp_OnlyTheCameraMeantMoves_data();
    void Handle_ForceIp_OnlyTheCameraMeantMoves();
    void Handle_ForceIpWhileControlled_IsDenied();
    void Handle_RebootAfterForceIp_HasItsOwnAddress();
    void Handle_NoAckRequired_CarriesOutSilently();
    void Handle_WriteregFailsAtTheSecond_IndexSaysOne();
    void Handle_ReadregFailsAtTheSecond_FirstValueComes();
    void Handle_WriteWithoutControl_IsDenied();
    void Handle_ExclusiveAccess_OthersMayOnlyAskWhoControls();
    void Handle_ControlAccess_OthersMayRead();
    void Handle_SilentController_LosesControlAfterTheTimeout();
    void Handle_SpeakingController_KeepsControl();
    void Handle_HeartbeatDisabled_SilentControllerKeepsControl();
    void Handle_HeartbeatBelowTheMinimum_BecomesTheMinimum();
    void Handle_HeartbeatAboveTheMaximum_BecomesTheMaximum();
    void Handle_ControllerWritesZero_ChannelIsFree();
    void Handle_UserNameWritten_SurvivesAReboot();
    void Handle_TimestampLatched_CountsNanoseconds();
    void Handle_DescriptionRead_IsWhatTheUrlSays();
};

void tst_Camera::Handle_RequestBytes_AnswerBytes_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("READREG of the version")
        << QByteArray("42010080 00040001 00000000") << QByteArray("00000081 00040001 00020000");
    QTest::newRow("READREG of two") << QByteArray("42010080 00080002 00000938 00000000")
                                    << QByteArray("00000081 00080002 00000bb8 00020000");
    QTest::newRow("READREG of nothing") << QByteArray("42010080 00000003") << QByteArray("80020081 00000003");
    QTest::newRow("READREG of half a register")
        << QByteArray("42010080 00020004 0000") << QByteArray("80020081 00000004");
    QTest::newRow("READREG off the alignment")
        << QByteArray("42010080 00040005 00000002") << QByteArray("80050081 00000005");
    QTest::newRow("READREG where nothing is")
        << QByteArray("42010080 00040006 00000100") << QByteArray("80030081 00000006");
    QTest::newRow("WRITEREG of the heartbeat")
        << QByteArray("42010082 00080007 00000938 00001388") << QByteArray("00000083 00040007 00000001");
    QTest::newRow("WRITEREG of two") << QByteArray("42010082 00100008 00000938 00001388 00000d04 00000240")
                                     << QByteArray("00000083 00040008 00000002");
    QTest::newRow("WRITEREG of what is read-only")
        << QByteArray("42010082 00080009 00000000 00000000") << QByteArray("80040083 00040009 00000000");
    QTest::newRow("WRITEREG without a value")
        << QByteArray("42010082 0004000a 00000938") << QByteArray("80020083 0004000a 00000000");
    QTest::newRow("WRITEREG where nothing is")
        << QByteArray("42010082 0008000b 00030000 00000000") << QByteArray("80030083 0004000b 00000000");
    QTest::newRow("READMEM of the model name")
        << QByteArray("42010084 0008000c 00000068 00000010")
        << QByteArray("00000085 0014000c 00000068 53696d43616d2d313530000000000000");
    QTest::newRow("READMEM of an odd number of bytes")
        << QByteArray("42010084 0008000d 00000068 00000006") << QByteArray("80050085 0000000d");
    QTest::newRow("READMEM off the alignment")
        << QByteArray("42010084 0008000e 00000069 00000004") << QByteArray("80050085 0000000e");
    QTest::newRow("READMEM of too much")
        << QByteArray("42010084 0008000f 00010000 00000400") << QByteArray("80020085 0000000f");
    QTest::newRow("READMEM beyond the last address")
        << QByteArray("42010084 00080010 fffffffc 00000008") << QByteArray("80030085 00000010");
    QTest::newRow("WRITEMEM of the user name")
        << QByteArray("42010086 00140011 000000e8 6c656674000000000000000000000000")
        << QByteArray("00000087 00040011 00000010");
    QTest::newRow("WRITEMEM of three bytes")
        << QByteArray("42010086 00070012 000000e8 6c6566") << QByteArray("80020087 00040012 00000000");
    QTest::newRow("WRITEMEM of five bytes")
        << QByteArray("42010086 00090012 000000e8 6c65667400") << QByteArray("80050087 00040012 00000000");
    QTest::newRow("WRITEMEM into the description")
        << QByteArray("42010086 00080013 f0000000 00000000") << QByteArray("80040087 00040013 00000000");
    QTest::newRow("unknown command") << QByteArray("42010300 00000014") << QByteArray("80010301 00000014");
    QTest::newRow("length that lies")
        << QByteArray("42010080 00080015 00000000") << QByteArray("800e0081 00000015");
    QTest::newRow("PACKETRESEND has no answer")
        << QByteArray("42010040 000c0016 000000000000000000000000") << QByteArray();
    QTest::newRow("no command at all") << QByteArray("00000081 00040001 00020000") << QByteArray();
}

void tst_Camera::Handle_RequestBytes_AnswerBytes()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, answer);
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());
    QVERIFY(client.TakeControl());

    QCOMPARE(client.Send(request), answer.replace(" ", ""));
}

void tst_Camera::Handle_Discovery_HasTheBootstrapRegistersInTheirPlaces()
{
    const auto pCamera = MakeBuiltinCamera();
    QString error;
    QVERIFY(pCamera->Set("user-name", "left", &error));
    PureClient client(pCamera.get());

    const QByteArray ack = QByteArray::fromHex(client.Send("42110002 0000ffff"));

    QCOMPARE(ack.size(), 8 + 248);
    QCOMPARE(ack.left(8).toHex(), QByteArray("0000000300f8ffff"));
    QCOMPARE(ack.mid(8, 16).toHex(), QByteArray("00020000800000010000020"
                                                "07f1e0901"));
    QCOMPARE(ack.mid(8 + 0x24, 4).toHex(), QByteArray("7f1e0901"));
    QCOMPARE(ack.mid(8 + 0x34, 4).toHex(), QByteArray("ff000000"));
    QCOMPARE(ack.mid(8 + 0x48, 10), QByteArray("Simulated\0", 10));
    QCOMPARE(ack.mid(8 + 0x68, 11), QByteArray("SimCam-150\0", 11));
    QCOMPARE(ack.mid(8 + 0xD8, 8), QByteArray("SIM0001\0", 8));
    QCOMPARE(ack.mid(8 + 0xE8, 5), QByteArray("left\0", 5));
}

void tst_Camera::Handle_ForceIp_OnlyTheCameraMeantMoves_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<std::uint32_t>("address");
    const std::uint32_t before = 0x7F1E0901;
    QTest::newRow("meant") << ForceIp("02007f1e0901", "7f1e0907") << QByteArray("0000000500001234")
                           << std::uint32_t{0x7F1E0907};
    QTest::newRow("another one") << ForceIp("02007f1e0902", "7f1e0907") << QByteArray() << before;
    QTest::newRow("off loopback") << ForceIp("02007f1e0901", "0a000001") << QByteArray("8002000500001234")
                                  << before;
    QTest::newRow("no address") << ForceIp("02007f1e0901", "00000000") << QByteArray() << before;
    QTest::newRow("too short") << QByteArray("42010004 00081234 0000 02007f1e0901") << QByteArray() << before;
}

void tst_Camera::Handle_ForceIp_OnlyTheCameraMeantMoves()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, answer);
    QFETCH(std::uint32_t, address);
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());

    QCOMPARE(client.Send(request), answer);

    QCOMPARE(pCamera->Device().IpAddress(), address);
    QCOMPARE(client.ReadWord(Bootstrap::CURRENT_IP), address);
}

void tst_Camera::Handle_ForceIpWhileControlled_IsDenied()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());
    QVERIFY(client.TakeControl());

    QCOMPARE(client.Send(ForceIp("02007f1e0901", "7f1e0907")), QByteArray("8006000500001234"));

    QCOMPARE(pCamera->Device().IpAddress(), 0x7F1E0901U);
}

void tst_Camera::Handle_RebootAfterForceIp_HasItsOwnAddress()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());
    client.Send(ForceIp("02007f1e0901", "7f1e0907"));
    QCOMPARE(client.ReadWord(Bootstrap::CURRENT_MASK), 0xFFFF0000U);
    QCOMPARE(client.ReadWord(Bootstrap::CURRENT_GATEWAY), 0x7F1E00FEU);

    pCamera->Device().Reboot();

    QCOMPARE(pCamera->Device().IpAddress(), 0x7F1E0901U);
    QCOMPARE(client.ReadWord(Bootstrap::CURRENT_MASK), 0xFF000000U);
}

void tst_Camera::Handle_NoAckRequired_CarriesOutSilently()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());
    QVERIFY(client.TakeControl());

    QCOMPARE(client.Send("42000082 00080007 00000938 00001388"), QByteArray());

    QCOMPARE(client.ReadWord(Bootstrap::HEARTBEAT_TIMEOUT), 5000U);
}

void tst_Camera::Handle_WriteregFailsAtTheSecond_IndexSaysOne()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());
    QVERIFY(client.TakeControl());

    QCOMPARE(client.Send("42010082 00100001 00000938 00001388 00000000 00000000"),
             QByteArray("800400830004000100000001"));

    QCOMPARE(client.ReadWord(Bootstrap::HEARTBEAT_TIMEOUT), 5000U);
}

void tst_Camera::Handle_ReadregFailsAtTheSecond_FirstValueComes()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());

    QCOMPARE(client.Send("42010080 00080001 00000000 00000100"), QByteArray("800300810004000100020000"));
}

void tst_Camera::Handle_WriteWithoutControl_IsDenied()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());

    QCOMPARE(client.Send("42010082 00080001 00000938 00001388"), QByteArray("800600830004000100000000"));
    QCOMPARE(client.Send("42010086 00080002 000000e8 41424344"), QByteArray("800600870004000200000000"));
}

void tst_Camera::Handle_ExclusiveAccess_OthersMayOnlyAskWhoControls()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient owner(pCamera.get(), 40000);
    PureClient other(pCamera.get(), 40001);
    QVERIFY(owner.TakeControl(1));

    QCOMPARE(other.Send("42010080 00040001 00000000"), QByteArray("8006008100000001"));
    QCOMPARE(other.Send("42010080 00040002 00000a00"), QByteArray("000000810004000200000001"));
    QVERIFY(!other.TakeControl());
    QCOMPARE(other.LastStatus(), Gvcp::STATUS_ACCESS_DENIED);
}

void tst_Camera::Handle_ControlAccess_OthersMayRead()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient owner(pCamera.get(), 40000);
    PureClient other(pCamera.get(), 40001);
    QVERIFY(owner.TakeControl(2));

    QCOMPARE(other.ReadWord(0), 0x00020000U);
    QCOMPARE(other.ReadWord(Bootstrap::PRIMARY_PORT), 40000U);
    QCOMPARE(other.ReadWord(Bootstrap::PRIMARY_ADDRESS), 0x7F000001U);
    QCOMPARE(other.WriteWord(Bootstrap::HEARTBEAT_TIMEOUT, 1000), Gvcp::STATUS_ACCESS_DENIED);
}

void tst_Camera::Handle_SilentController_LosesControlAfterTheTimeout()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient owner(pCamera.get(), 40000);
    PureClient other(pCamera.get(), 40001);
    QVERIFY(owner.TakeControl());

    other.Wait(std::chrono::milliseconds(3000));
    QCOMPARE(other.ReadWord(Bootstrap::CONTROL_PRIVILEGE), 2U);
    other.Wait(std::chrono::milliseconds(1));
    QCOMPARE(other.ReadWord(Bootstrap::CONTROL_PRIVILEGE), 0U);

    QVERIFY(other.TakeControl());
    QCOMPARE(owner.WriteWord(Bootstrap::HEARTBEAT_TIMEOUT, 1000), Gvcp::STATUS_ACCESS_DENIED);
}

void tst_Camera::Handle_SpeakingController_KeepsControl()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient owner(pCamera.get());
    QVERIFY(owner.TakeControl());

    for (int i = 0; i < 5; ++i) {
        owner.Wait(std::chrono::milliseconds(2900));
        QCOMPARE(owner.ReadWord(Bootstrap::CONTROL_PRIVILEGE), 2U);
    }
}

void tst_Camera::Handle_HeartbeatDisabled_SilentControllerKeepsControl()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient owner(pCamera.get());
    QVERIFY(owner.TakeControl());
    QCOMPARE(owner.WriteWord(Bootstrap::GVCP_CONFIGURATION, Bootstrap::kHeartbeatDisabled),
             Gvcp::STATUS_SUCCESS);

    owner.Wait(std::chrono::minutes(10));

    QCOMPARE(owner.ReadWord(Bootstrap::CONTROL_PRIVILEGE), 2U);
}

void tst_Camera::Handle_HeartbeatBelowTheMinimum_BecomesTheMinimum()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());
    QVERIFY(client.TakeControl());

    QCOMPARE(client.WriteWord(Bootstrap::HEARTBEAT_TIMEOUT, 10), Gvcp::STATUS_SUCCESS);

    QCOMPARE(client.ReadWord(Bootstrap::HEARTBEAT_TIMEOUT), 500U);
}

void tst_Camera::Handle_HeartbeatAboveTheMaximum_BecomesTheMaximum()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());
    QVERIFY(client.TakeControl());

    QCOMPARE(client.WriteWord(Bootstrap::HEARTBEAT_TIMEOUT, 0xFFFFFFFF), Gvcp::STATUS_SUCCESS);

    QCOMPARE(client.ReadWord(Bootstrap::HEARTBEAT_TIMEOUT), 60000U);
}

void tst_Camera::Handle_ControllerWritesZero_ChannelIsFree()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient owner(pCamera.get(), 40000);
    PureClient other(pCamera.get(), 40001);
    QVERIFY(owner.TakeControl(1));

    QVERIFY(owner.TakeControl(0));

    QVERIFY(other.TakeControl(1));
}

void tst_Camera::Handle_UserNameWritten_SurvivesAReboot()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());
    QVERIFY(client.TakeControl());
    const std::uint8_t name[16] = {'r', 'i', 'g', 'h', 't'};
    QVERIFY(client.Write(Bootstrap::USER_DEFINED_NAME, name, sizeof name));

    pCamera->Device().Reboot();

    std::uint8_t kept[16] = {};
    QVERIFY(client.Read(Bootstrap::USER_DEFINED_NAME, kept, sizeof kept));
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(kept)), QByteArray("right"));
    QCOMPARE(client.ReadWord(Bootstrap::CONTROL_PRIVILEGE), 0U);
}

void tst_Camera::Handle_TimestampLatched_CountsNanoseconds()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());
    QVERIFY(client.TakeControl());
    QCOMPARE(client.WriteWord(Bootstrap::TIMESTAMP_CONTROL, 1), Gvcp::STATUS_SUCCESS);

    client.Wait(std::chrono::milliseconds(2));
    QCOMPARE(client.WriteWord(Bootstrap::TIMESTAMP_CONTROL, 2), Gvcp::STATUS_SUCCESS);

    QCOMPARE(client.ReadWord(Bootstrap::TIMESTAMP_HIGH), 0U);
    QCOMPARE(client.ReadWord(Bootstrap::TIMESTAMP_LOW), 2000000U);
}

void tst_Camera::Handle_DescriptionRead_IsWhatTheUrlSays()
{
    const auto pCamera = MakeBuiltinCamera();
    PureClient client(pCamera.get());
    std::uint8_t text[512] = {};
    QVERIFY(client.Read(Bootstrap::FIRST_URL, text, sizeof text));
    const QList<QByteArray> parts = QByteArray(reinterpret_cast<const char *>(text)).split(';');
    QCOMPARE(parts.size(), 3);
    QCOMPARE(parts.at(0), QByteArray("Local:SimCam-150.zip"));
    const std::uint32_t address = parts.at(1).toUInt(nullptr, 16);
    const int size = parts.at(2).toInt(nullptr, 16);

    QByteArray content;
    while (content.size() < size) {
        std::uint8_t block[512];
        QVERIFY(client.Read(address + static_cast<std::uint32_t>(content.size()), block, sizeof block));
        content.append(reinterpret_cast<const char *>(block), sizeof block);
    }

    QCOMPARE(content.left(size), pCamera->Device().Model().pDescription->content);
    QVERIFY(content.startsWith("PK"));
}

QTEST_APPLESS_MAIN(tst_Camera)
#include "tst_camera.moc"
