#include <QtTest>

#include "camerafarm.h"
#include "gvcp/gvcpchannel.h"
#include "scriptedcamera.h"

using kxcc::GvcpChannel;
using Result = GvcpChannel::Result;

namespace {

constexpr uint32_t kCamera = 0x7F143301; // 127.20.51.1

} // namespace

// The control channel against a camera whose answers are lost, or say that it is busy.
class tst_GvcpChannel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void ReadRegister_SixCommandsLost_IsAnswered();
    void WriteRegister_FourCommandsLost_IsAnswered();
    void WriteRegister_FiveCommandsLost_IsDead();
    void ReadRegister_AnswerLaterThanTheRepeat_IsItsOwn();
    void ReadRegister_BusyForAWhile_IsAnswered();
    void ReadRegister_BusyForGood_GivesTheStatusAndLives();
    void ReadRegister_BusyForGood_WaitsOnceOnly();
    void ReadRegister_PendingForAWhile_IsAnswered();
    void ReadRegister_PendingForGood_EndsInSeconds();
    void ReadRegister_PendingWithoutPause_EndsSooner();

private:
    void Set(const QByteArray &fault) { QVERIFY(m_farm.Do("set 127.20.51.1 " + fault)); }
    Result Read() { return m_pChannel->ReadRegister(kxcc::kRegisterHeartbeatTimeout, m_nValue); }
    Result Write() { return m_pChannel->WriteRegister(kxcc::kRegisterControlPrivilege, 2); }

    CameraFarm m_farm;
    std::unique_ptr<GvcpChannel> m_pChannel;
    uint32_t m_nValue = 0;
};

void tst_GvcpChannel::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("the camera simulator is not built");
    QVERIFY2(m_farm.Start({"--count", "1", "--first-address", "127.20.51.1"}), qPrintable(m_farm.Error()));
}

void tst_GvcpChannel::init()
{
    QVERIFY(m_farm.Do("clear *"));
    QVERIFY(m_farm.Do("reboot *"));
    m_pChannel = std::make_unique<GvcpChannel>();
    QVERIFY(m_pChannel->Open(0, kCamera));
}

void tst_GvcpChannel::ReadRegister_SixCommandsLost_IsAnswered()
{
    Set("mute 1 command=readreg address=0x938 times=6");
    QCOMPARE(Read(), Result::Ok);
    QCOMPARE(m_nValue, 3000U);
}

void tst_GvcpChannel::WriteRegister_FourCommandsLost_IsAnswered()
{
    Set("mute 1 command=writereg times=4");
    QCOMPARE(Write(), Result::Ok);
}

void tst_GvcpChannel::WriteRegister_FiveCommandsLost_IsDead()
{
    Set("mute 1 command=writereg times=5");
    QCOMPARE(Write(), Result::Timeout);
    QVERIFY(m_pChannel->IsDead());
    QCOMPARE(Read(), Result::Timeout);
}

void tst_GvcpChannel::ReadRegister_AnswerLaterThanTheRepeat_IsItsOwn()
{
    Set("latency-us 200000");
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(Read(), Result::Ok);
        QCOMPARE(m_nValue, 3000U);
        QCOMPARE(m_pChannel->ReadRegister(kxcc::kRegisterControlPrivilege, m_nValue), Result::Ok);
        QCOMPARE(m_nValue, 0U);
    }
}

void tst_GvcpChannel::ReadRegister_BusyForAWhile_IsAnswered()
{
    Set("status 0x8007 command=readreg address=0x938 times=5");
    QCOMPARE(Read(), Result::Ok);
    QCOMPARE(m_nValue, 3000U);
}

void tst_GvcpChannel::ReadRegister_BusyForGood_GivesTheStatusAndLives()
{
    Set("status 0x8007");
    QCOMPARE(Read(), Result::Status);
    QCOMPARE(m_pChannel->LastStatus(), kxcc::kGvcpStatusBusy);
    QVERIFY(!m_pChannel->IsDead());
    QVERIFY(m_farm.Do("clear *"));
    QCOMPARE(Read(), Result::Ok);
}

void tst_GvcpChannel::ReadRegister_BusyForGood_WaitsOnceOnly()
{
    // The first read is asked eleven times, each further one once: then the camera has time again.
    Set("status 0x8007 command=readreg address=0x938 times=13");
    QCOMPARE(Read(), Result::Status);
    QCOMPARE(Read(), Result::Status);
    QCOMPARE(Read(), Result::Status);
    QCOMPARE(Read(), Result::Ok);
}

void tst_GvcpChannel::ReadRegister_PendingForAWhile_IsAnswered()
{
    // Far beyond the time in which a command is given up otherwise, were it not for the requests.
    Set("pending-ack 3 command=readreg address=0x938");
    QCOMPARE(Read(), Result::Ok);
    QCOMPARE(m_nValue, 3000U);
}

void tst_GvcpChannel::ReadRegister_PendingForGood_EndsInSeconds()
{
    ScriptedCamera camera("127.20.51.9", "", "");
    camera.AskForTimeForEver();
    QVERIFY(camera.IsThere());
    GvcpChannel channel;
    QVERIFY(channel.Open(0, kCamera + 8));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(channel.ReadRegister(kxcc::kRegisterHeartbeatTimeout, m_nValue), Result::Timeout);
    QVERIFY2(timer.elapsed() > 4500 && timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
}

void tst_GvcpChannel::ReadRegister_PendingWithoutPause_EndsSooner()
{
    ScriptedCamera camera("127.20.51.9", "", "");
    camera.AskForTimeForEver(0);
    QVERIFY(camera.IsThere());
    GvcpChannel channel;
    QVERIFY(channel.Open(0, kCamera + 8));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(channel.ReadRegister(kxcc::kRegisterHeartbeatTimeout, m_nValue), Result::Timeout);
    QVERIFY2(timer.elapsed() < 4500, qPrintable(QString::number(timer.elapsed())));
}

QTEST_GUILESS_MAIN(tst_GvcpChannel)
#include "tst_gvcpchannel.moc"
