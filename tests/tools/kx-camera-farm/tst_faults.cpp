#include "faultfixture.h"

#include <QtTest>
#include <set>

using namespace KxFarm;
using std::chrono::microseconds;
using std::chrono::milliseconds;

namespace {

const QByteArray kReadVersion = QByteArray::fromHex("4201008000041234"
                                                    "00000000");
const QByteArray kVersionAck("00000081000412340002"
                             "0000");
const QByteArray kDiscover = QByteArray::fromHex("4201000200001234");

QByteArray Hex(const Reply &reply)
{
    return QByteArray(reinterpret_cast<const char *>(reply.bytes.data()),
                      static_cast<int>(reply.bytes.size()))
        .toHex();
}

} // namespace

/// Every fault of commands, answers and network by its key, and that the camera is whole again without it.
class tst_Faults : public QObject, private FaultFixture
{
    Q_OBJECT

private slots:
    void init() { Reset(); }

    void Set_UnknownKeyOrBadValue_IsRefused_data();
    void Set_UnknownKeyOrBadValue_IsRefused();
    void Set_EveryFaultOff_CameraAnswersAsBefore();
    void Answer_Fault_ChangesIt_data();
    void Answer_Fault_ChangesIt();
    void Late_SecondCommand_FirstAnswerComesBeforeItsOwn();
    void Reordered_TwoCommands_AnswersSwapPlaces();
    void WrongSource_Answer_LeavesFromElsewhere();
    void Latency_Answer_IsDelayed();
    void Jitter_Answers_AreDelayedDifferently();
    void Loss_Half_SomeAnswersAreMissing();
    void MuteAfter_TwoCommands_ThirdIsSilent();
    void Mute_Discovery_IsStillAnswered();
    void PendingAck_TwoTimes_AnswerComesAfterThem();
    void PendingAck_ForEver_RepeatsWithoutAnAnswer();
    void DiscoveryShort_Command_IsWhole();
    void DiscoveryAddress_Answers_NameItInDiscoveryOnly();
    void Status_NarrowedToOneAddress_OthersAreServed();
    void Status_Twice_ThirdTimeIsServed();
    void ControlHeld_TakeControl_IsDenied();
    void ControlStolen_AfterCommands_WritesAreDenied();
    void ControlLost_AfterCommands_ChannelIsFree();
    void Reboot_InTheMiddle_CameraIsAwayThenFresh();
    void Address_AfterCommands_CameraMoves();
    void Port_ClosedAfterCommands_IsNotOpen();
    void Unplug_Plug_CameraIsFresh();
};

void tst_Faults::Set_UnknownKeyOrBadValue_IsRefused_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("unknown key") << QByteArray("temperament") << QByteArray("1");
    QTest::newRow("no number") << QByteArray("latency-us") << QByteArray("long");
    QTest::newRow("more than everything") << QByteArray("loss") << QByteArray("101");
    QTest::newRow("unknown command") << QByteArray("status") << QByteArray("0x8007 command=read");
    QTest::newRow("unknown feature") << QByteArray("read-only") << QByteArray("Wideness");
    QTest::newRow("half a pair") << QByteArray("write-resets") << QByteArray("Width");
    QTest::newRow("unknown description") << QByteArray("description") << QByteArray("evil");
    QTest::newRow("address off loopback") << QByteArray("address") << QByteArray("10.0.0.1");
    QTest::newRow("claim off loopback") << QByteArray("discovery-address") << QByteArray("10.0.0.1");
    QTest::newRow("no MAC address") << QByteArray("mac") << QByteArray("02:00");
}

void tst_Faults::Set_UnknownKeyOrBadValue_IsRefused()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, value);

    QVERIFY(!Set(key, value).isEmpty());

    QVERIFY(m_pCamera->ActiveFaults().isEmpty());
}

void tst_Faults::Set_EveryFaultOff_CameraAnswersAsBefore()
{
    const QVector<QPair<QByteArray, QByteArray>> all = {
        {"mute", "1"},        {"loss", "100"},       {"status", "0x8007"},       {"short", "3"},
        {"wrong-id", "1"},    {"control-held", "1"}, {"pending-ack", "forever"}, {"description", "deep"},
        {"write-clamp", "1"}, {"duplicate", "2"}};
    for (const auto &fault : all)
        QCOMPARE(Set(fault.first, fault.second), QByteArray());
    QCOMPARE(m_pCamera->ActiveFaults().size(), all.size());

    for (const auto &fault : all)
        QCOMPARE(Set(fault.first, "off"), QByteArray());

    QCOMPARE(m_pClient->Send(kReadVersion.toHex()), kVersionAck);
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(SetFeature("Width", 5000), Gvcp::STATUS_INVALID_PARAMETER);
}

void tst_Faults::Answer_Fault_ChangesIt_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("duplicate") << QByteArray("duplicate") << QByteArray("2")
                               << kVersionAck + " | " + kVersionAck + " | " + kVersionAck;
    QTest::newRow("short") << QByteArray("short") << QByteArray("9") << kVersionAck.left(18);
    QTest::newRow("shorter than a header") << QByteArray("short") << QByteArray("3") << kVersionAck.left(6);
    QTest::newRow("oversized") << QByteArray("oversized") << QByteArray("4") << kVersionAck + "a5a5a5a5";
    QTest::newRow("wrong id") << QByteArray("wrong-id") << QByteArray("1")
                              << QByteArray("000000810004123500020000");
    QTest::newRow("busy") << QByteArray("status") << QByteArray("0x8007") << QByteArray("8007008100001234");
    QTest::newRow("mute") << QByteArray("mute") << QByteArray("1") << QByteArray();
    QTest::newRow("all lost") << QByteArray("loss") << QByteArray("100") << QByteArray();
}

void tst_Faults::Answer_Fault_ChangesIt()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, answer);

    QCOMPARE(Set(key, value), QByteArray());

    QCOMPARE(m_pClient->Send(kReadVersion.toHex()), answer);
    QCOMPARE(m_pCamera->Get(key), value);
}

void tst_Faults::Late_SecondCommand_FirstAnswerComesBeforeItsOwn()
{
    QCOMPARE(Set("late", "1"), QByteArray());
    QCOMPARE(m_pClient->Send("42010080 00040001 00000000"), QByteArray("000000810004000100020000"));

    QCOMPARE(m_pClient->Send("42010080 00040002 00000938"),
             QByteArray("000000810004000100020000 | 000000810004000200000bb8"));
}

void tst_Faults::Reordered_TwoCommands_AnswersSwapPlaces()
{
    QCOMPARE(Set("reordered", "1"), QByteArray());
    QCOMPARE(m_pClient->Send("42010080 00040001 00000000"), QByteArray());

    QCOMPARE(m_pClient->Send("42010080 00040002 00000938"),
             QByteArray("000000810004000200000bb8 | 000000810004000100020000"));
}

void tst_Faults::WrongSource_Answer_LeavesFromElsewhere()
{
    QCOMPARE(Set("wrong-source", "1"), QByteArray());

    const auto replies = m_pClient->SendBytes(kReadVersion);

    QCOMPARE(replies.size(), std::size_t{1});
    QVERIFY(replies[0].foreignSource);
}

void tst_Faults::Latency_Answer_IsDelayed()
{
    QCOMPARE(Set("latency-us", "250"), QByteArray());

    const auto replies = m_pClient->SendBytes(kReadVersion);

    QCOMPARE(replies.size(), std::size_t{1});
    QVERIFY(replies[0].delay == microseconds(250));
}

void tst_Faults::Jitter_Answers_AreDelayedDifferently()
{
    QCOMPARE(Set("jitter-us", "1000"), QByteArray());
    std::set<std::int64_t> delays;
    for (int i = 0; i < 50; ++i)
        delays.insert(m_pClient->SendBytes(kReadVersion).at(0).delay.count());

    QVERIFY(delays.size() > 10);
    QVERIFY(*delays.begin() >= 0);
    QVERIFY(*delays.rbegin() <= 1000);
}

void tst_Faults::Loss_Half_SomeAnswersAreMissing()
{
    QCOMPARE(Set("loss", "30"), QByteArray());
    int answered = 0;
    for (int i = 0; i < 1000; ++i)
        answered += static_cast<int>(m_pClient->SendBytes(kReadVersion).size());

    QVERIFY(answered > 400 && answered < 580); // 0.7 * 0.7 of them
}

void tst_Faults::MuteAfter_TwoCommands_ThirdIsSilent()
{
    QCOMPARE(Set("mute-after", "2"), QByteArray());
    QCOMPARE(m_pClient->SendBytes(kReadVersion).size(), std::size_t{1});
    QCOMPARE(m_pClient->SendBytes(kReadVersion).size(), std::size_t{1});

    QCOMPARE(m_pClient->SendBytes(kReadVersion).size(), std::size_t{0});
}

void tst_Faults::Mute_Discovery_IsStillAnswered()
{
    QCOMPARE(Set("mute", "1"), QByteArray());

    QCOMPARE(m_pClient->SendBytes(kDiscover).size(), std::size_t{1});

    QCOMPARE(Set("discovery-mute", "1"), QByteArray());
    QCOMPARE(m_pClient->SendBytes(kDiscover).size(), std::size_t{0});
}

void tst_Faults::PendingAck_TwoTimes_AnswerComesAfterThem()
{
    QCOMPARE(Set("pending-ack", "2 50"), QByteArray());

    const auto replies = m_pClient->SendBytes(kReadVersion);

    QCOMPARE(replies.size(), std::size_t{3});
    QCOMPARE(Hex(replies[0]), QByteArray("000000890004123400000064"));
    QVERIFY(replies[0].delay == milliseconds(0));
    QVERIFY(replies[1].delay == milliseconds(50));
    QCOMPARE(Hex(replies[2]), kVersionAck);
    QVERIFY(replies[2].delay == milliseconds(100));
}

void tst_Faults::PendingAck_ForEver_RepeatsWithoutAnAnswer()
{
    QCOMPARE(Set("pending-ack", "forever 30"), QByteArray());

    const auto replies = m_pClient->SendBytes(kReadVersion);

    QCOMPARE(replies.size(), std::size_t{1});
    QCOMPARE(Hex(replies[0]).left(8), QByteArray("00000089"));
    QVERIFY(replies[0].repeat == milliseconds(30));
}

void tst_Faults::DiscoveryShort_Command_IsWhole()
{
    QCOMPARE(Set("discovery-short", "100"), QByteArray());

    QCOMPARE(m_pClient->SendBytes(kDiscover).at(0).bytes.size(), std::size_t{100});
    QCOMPARE(m_pClient->Send(kReadVersion.toHex()), kVersionAck);
}

void tst_Faults::DiscoveryAddress_Answers_NameItInDiscoveryOnly()
{
    QByteArray answer = m_pClient->Send(kDiscover.toHex());
    answer.replace(answer.lastIndexOf("7f1e0901"), 8, "7f1e0907"); // the first is part of the MAC address

    QCOMPARE(Set("discovery-address", "127.30.9.7"), QByteArray());

    QCOMPARE(m_pClient->Send(kDiscover.toHex()), answer);
    QCOMPARE(m_pClient->ReadWord(Bootstrap::CURRENT_IP), 0x7F1E0901U);
}

void tst_Faults::Status_NarrowedToOneAddress_OthersAreServed()
{
    QCOMPARE(Set("status", "0x8006 address=0x938"), QByteArray());

    QCOMPARE(m_pClient->Send(kReadVersion.toHex()), kVersionAck);
    QCOMPARE(m_pClient->Send("42010080 00040001 00000938"), QByteArray("8006008100000001"));
    QCOMPARE(m_pClient->Send("42010084 00080001 00000934 00000008"), QByteArray("8006008500000001"));
}

void tst_Faults::Status_Twice_ThirdTimeIsServed()
{
    QCOMPARE(Set("status", "0x8007 command=readreg after=1 times=2"), QByteArray());

    QCOMPARE(m_pClient->Send(kReadVersion.toHex()), kVersionAck);
    QCOMPARE(m_pClient->Send(kReadVersion.toHex()), QByteArray("8007008100001234"));
    QCOMPARE(m_pClient->Send(kReadVersion.toHex()), QByteArray("8007008100001234"));
    QCOMPARE(m_pClient->Send(kReadVersion.toHex()), kVersionAck);
}

void tst_Faults::ControlHeld_TakeControl_IsDenied()
{
    QCOMPARE(Set("control-held", "1"), QByteArray());

    m_pClient->Wait(std::chrono::hours(1));

    QVERIFY(!m_pClient->TakeControl());
    QCOMPARE(m_pClient->LastStatus(), Gvcp::STATUS_ACCESS_DENIED);
    QCOMPARE(m_pClient->Send("42010080 00040001 00000a00"), QByteArray("000000810004000100000001"));
}

void tst_Faults::ControlStolen_AfterCommands_WritesAreDenied()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(Set("control-stolen-after", "2"), QByteArray());
    QCOMPARE(SetFeature("Width", 640), Gvcp::STATUS_SUCCESS);

    QCOMPARE(SetFeature("Width", 644), Gvcp::STATUS_ACCESS_DENIED);
}

void tst_Faults::ControlLost_AfterCommands_ChannelIsFree()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(Set("control-lost-after", "1"), QByteArray());

    QCOMPARE(SetFeature("Width", 640), Gvcp::STATUS_ACCESS_DENIED);

    QVERIFY(m_pClient->TakeControl());
}

void tst_Faults::Reboot_InTheMiddle_CameraIsAwayThenFresh()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(SetFeature("Width", 640), Gvcp::STATUS_SUCCESS);
    QCOMPARE(Set("reboot-after", "1 500"), QByteArray());

    QCOMPARE(m_pClient->SendBytes(kReadVersion).size(), std::size_t{0});
    m_pClient->Wait(milliseconds(499));
    QCOMPARE(m_pClient->SendBytes(kDiscover).size(), std::size_t{0});
    m_pClient->Wait(milliseconds(1));

    QCOMPARE(Value("Width"), std::int64_t{1936});
    QCOMPARE(m_pClient->ReadWord(Bootstrap::CONTROL_PRIVILEGE), 0U);
}

void tst_Faults::Address_AfterCommands_CameraMoves()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(Set("address-after", "1 127.30.9.77"), QByteArray());

    m_pClient->ReadWord(0);

    QCOMPARE(m_pCamera->Get("address"), QByteArray("127.30.9.77"));
    QCOMPARE(m_pClient->ReadWord(Bootstrap::CURRENT_IP), 0x7F1E094DU);
}

void tst_Faults::Port_ClosedAfterCommands_IsNotOpen()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(Set("port-closed-after", "1"), QByteArray());

    QCOMPARE(m_pClient->SendBytes(kReadVersion).size(), std::size_t{0});

    QVERIFY(!m_pCamera->IsPortOpen());
    QCOMPARE(Set("port", "open"), QByteArray());
    QVERIFY(m_pCamera->IsPortOpen());
}

void tst_Faults::Unplug_Plug_CameraIsFresh()
{
    QVERIFY(m_pClient->TakeControl());
    QCOMPARE(SetFeature("Width", 640), Gvcp::STATUS_SUCCESS);

    m_pCamera->Unplug();
    QCOMPARE(m_pClient->SendBytes(kDiscover).size(), std::size_t{0});
    m_pCamera->Plug(TimePoint());

    QCOMPARE(Value("Width"), std::int64_t{1936});
}

QTEST_APPLESS_MAIN(tst_Faults)
#include "tst_faults.moc"
