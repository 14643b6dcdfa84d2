#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

#include "ipc/waitclock.h"

using kxcc::WaitClock;
using std::chrono::milliseconds;

namespace {

const milliseconds kDeadline(50);
const milliseconds kLong(3600000);
const qint64 kHour = 3600000000000; // in nanoseconds

} // namespace

// The process of the clock is played by files that say what the kernel would.
class tst_WaitClock : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void HasExpired_ProcessWaits_AfterTheDeadline();
    void HasExpired_ProcessIsInTheRunQueue_Never();
    void HasExpired_ProcessIsRunnableForTheLongestTime_Has();
    void HasExpired_ProcessWorked_TimeIsGranted();
    void HasExpired_ProcessQueued_TimeIsGrantedOnceItIsOver();
    void HasExpired_WorkBeforeTheCall_IsNotGranted();
    void HasExpired_NameLooksLikeAState_IsNotMistaken();
    void HasExpired_ProcessIsGone_AfterTheDeadline();
    void Restart_DeadlineIsNear_StartsAnew();
    void Restart_LongestTimeIsOver_ChangesNothing();
    void SetLongest_Shorter_Holds();
    void NextLook_FarFromTheDeadline_IsJustBehindIt();
    void NextLook_DeadlineIsOver_IsSoonButNotAtOnce();
    void NextLook_LongestTimeIsNearer_IsJustBehindThat();
    void Process_SleepsOrIsStopped_Expires();

private:
    void SetState(const char *szState, const char *szName = "kx-camera-sessi") const;
    void SetBusy(qint64 nOnProcessor, qint64 nQueued) const;
    WaitClock Clock(milliseconds longest = kLong) const;
    static void OutliveDeadline() { QTest::qSleep(static_cast<int>(kDeadline.count()) + 10); }

    QTemporaryDir m_folder;
};

void tst_WaitClock::init()
{
    SetState("S");
    SetBusy(0, 0);
}

void tst_WaitClock::SetState(const char *szState, const char *szName) const
{
    QFile file(m_folder.filePath("stat"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("17 (") + szName + ") " + szState + " 1 17 17 0 -1 4194560 133 0\n");
}

void tst_WaitClock::SetBusy(qint64 nOnProcessor, qint64 nQueued) const
{
    QFile file(m_folder.filePath("schedstat"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::number(nOnProcessor) + ' ' + QByteArray::number(nQueued) + " 5\n");
}

WaitClock tst_WaitClock::Clock(milliseconds longest) const
{
    WaitClock clock(m_folder.path().toStdString(), kDeadline, longest);
    clock.Restart();
    return clock;
}

void tst_WaitClock::HasExpired_ProcessWaits_AfterTheDeadline()
{
    WaitClock clock(m_folder.path().toStdString(), kLong, kLong);
    clock.Restart();
    QVERIFY(!clock.HasExpired());
    const WaitClock soon = Clock();
    OutliveDeadline();
    QVERIFY(soon.HasExpired());
    QVERIFY(!clock.HasExpired());
}

void tst_WaitClock::HasExpired_ProcessIsInTheRunQueue_Never()
{
    const WaitClock clock = Clock();
    SetState("R");
    OutliveDeadline();
    QVERIFY(!clock.HasExpired());
    SetState("S");
    QVERIFY(clock.HasExpired());
    SetState("D");
    QVERIFY(clock.HasExpired());
}

void tst_WaitClock::HasExpired_ProcessIsRunnableForTheLongestTime_Has()
{
    SetState("R");
    const WaitClock clock = Clock(kDeadline);
    OutliveDeadline();
    QVERIFY(clock.HasExpired());
}

void tst_WaitClock::HasExpired_ProcessWorked_TimeIsGranted()
{
    const WaitClock clock = Clock();
    SetBusy(kHour, 0);
    OutliveDeadline();
    QVERIFY(!clock.HasExpired());
}

void tst_WaitClock::HasExpired_ProcessQueued_TimeIsGrantedOnceItIsOver()
{
    const WaitClock clock = Clock();
    SetState("R");
    OutliveDeadline();
    // The kernel adds the stay in the queue when it ends.
    SetBusy(0, kHour);
    SetState("S");
    QVERIFY(!clock.HasExpired());
}

void tst_WaitClock::HasExpired_WorkBeforeTheCall_IsNotGranted()
{
    SetBusy(kHour, kHour);
    const WaitClock clock = Clock();
    OutliveDeadline();
    QVERIFY(clock.HasExpired());
}

void tst_WaitClock::HasExpired_NameLooksLikeAState_IsNotMistaken()
{
    SetState("S", "a) R 1");
    const WaitClock clock = Clock();
    OutliveDeadline();
    QVERIFY(clock.HasExpired());
}

void tst_WaitClock::HasExpired_ProcessIsGone_AfterTheDeadline()
{
    WaitClock clock(m_folder.filePath("none").toStdString(), kDeadline, kLong);
    clock.Restart();
    OutliveDeadline();
    QVERIFY(clock.HasExpired());
}

void tst_WaitClock::Restart_DeadlineIsNear_StartsAnew()
{
    WaitClock clock(m_folder.path().toStdString(), milliseconds(2000), kLong);
    QTest::qSleep(60);
    clock.Restart();
    QVERIFY2(clock.NextLook() > milliseconds(1960), qPrintable(QString::number(clock.NextLook().count())));
}

void tst_WaitClock::Restart_LongestTimeIsOver_ChangesNothing()
{
    WaitClock clock = Clock(kDeadline);
    OutliveDeadline();
    clock.Restart();
    QVERIFY(clock.HasExpired());
}

void tst_WaitClock::SetLongest_Shorter_Holds()
{
    WaitClock clock(m_folder.path().toStdString(), kLong, kLong);
    clock.Restart();
    clock.SetLongest(kDeadline);
    OutliveDeadline();
    QVERIFY(clock.HasExpired());
    clock.SetLongest(kLong);
    QVERIFY(!clock.HasExpired());
}

void tst_WaitClock::NextLook_FarFromTheDeadline_IsJustBehindIt()
{
    WaitClock clock(m_folder.path().toStdString(), milliseconds(100000), kLong);
    clock.Restart();
    const auto next = clock.NextLook();
    QVERIFY2(next > milliseconds(90000) && next <= milliseconds(100001),
             qPrintable(QString::number(next.count())));
}

void tst_WaitClock::NextLook_DeadlineIsOver_IsSoonButNotAtOnce()
{
    const WaitClock clock = Clock();
    SetState("R");
    OutliveDeadline();
    QCOMPARE(clock.NextLook().count(), 20);
}

void tst_WaitClock::NextLook_LongestTimeIsNearer_IsJustBehindThat()
{
    WaitClock clock(m_folder.path().toStdString(), kLong, milliseconds(100000));
    clock.Restart();
    const auto next = clock.NextLook();
    QVERIFY2(next > milliseconds(90000) && next <= milliseconds(100001),
             qPrintable(QString::number(next.count())));
}

void tst_WaitClock::Process_SleepsOrIsStopped_Expires()
{
    const pid_t nChild = fork();
    if (nChild == 0) {
        for (;;)
            pause();
    }
    WaitClock sleeping(nChild, kDeadline, kLong);
    sleeping.Restart();
    QTRY_VERIFY(sleeping.HasExpired());
    kill(nChild, SIGSTOP);
    waitpid(nChild, nullptr, WUNTRACED);
    WaitClock stopped(nChild, kDeadline, kLong);
    stopped.Restart();
    QTRY_VERIFY(stopped.HasExpired());
    kill(nChild, SIGKILL);
    waitpid(nChild, nullptr, 0);
}

QTEST_APPLESS_MAIN(tst_WaitClock)
#include "tst_waitclock.moc"
