#include <QtTest>

#include <csignal>

#include "interrupt.h"

// The signals that end a batch.
class tst_Interrupt : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void Construct_Signal_IsTaken_data();
    void Construct_Signal_IsTaken();
    void Construct_SignalIgnoredBefore_StaysIgnored_data();
    void Construct_SignalIgnoredBefore_StaysIgnored();
    void Raised_Signal_ComesFromTheEventLoop();
    void Raised_OneSignal_LeavesTheSecondToTheSystem();
    void Destroy_Signals_AreTheSystemsAgain();
};

static void (*HandlerOf(int number))(int)
{
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    return action.sa_handler;
}

void tst_Interrupt::cleanup()
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        signal(number, SIG_DFL);
    }
}

void tst_Interrupt::Construct_Signal_IsTaken_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void tst_Interrupt::Construct_Signal_IsTaken()
{
    QFETCH(int, number);
    const Interrupt interrupt;
    QSignalSpy raised(&interrupt, &Interrupt::Raised);
    raise(number);
    QVERIFY(raised.wait());
    QCOMPARE(raised.count(), 1);
}

void tst_Interrupt::Construct_SignalIgnoredBefore_StaysIgnored_data()
{
    Construct_Signal_IsTaken_data();
}

void tst_Interrupt::Construct_SignalIgnoredBefore_StaysIgnored()
{
    QFETCH(int, number);
    signal(number, SIG_IGN);
    {
        const Interrupt interrupt;
        QVERIFY(HandlerOf(number) == SIG_IGN);
        for (const int other : {SIGINT, SIGTERM, SIGHUP}) {
            QCOMPARE(HandlerOf(other) == SIG_IGN, other == number);
        }
    }
    QVERIFY(HandlerOf(number) == SIG_IGN);
}

void tst_Interrupt::Raised_Signal_ComesFromTheEventLoop()
{
    const Interrupt interrupt;
    QSignalSpy raised(&interrupt, &Interrupt::Raised);
    raise(SIGINT);
    QCOMPARE(raised.count(), 0);
    QVERIFY(raised.wait());
}

void tst_Interrupt::Raised_OneSignal_LeavesTheSecondToTheSystem()
{
    const Interrupt interrupt;
    QVERIFY(HandlerOf(SIGINT) != SIG_DFL);
    raise(SIGINT);
    QVERIFY(HandlerOf(SIGINT) == SIG_DFL);
    QVERIFY(HandlerOf(SIGTERM) != SIG_DFL);
}

void tst_Interrupt::Destroy_Signals_AreTheSystemsAgain()
{
    {
        const Interrupt interrupt;
    }
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        QVERIFY(HandlerOf(number) == SIG_DFL);
    }
}

QTEST_GUILESS_MAIN(tst_Interrupt)
#include "tst_interrupt.moc"
