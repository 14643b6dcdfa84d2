#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

#include "ipc/startgate.h"

using kxcc::StartGate;

const std::chrono::milliseconds kLong(60000);

class tst_StartGate : public QObject
{
    Q_OBJECT

private slots:
    void Place_AllTaken_WaitsUntilOneIsFree();
    void Place_NoneGetsFree_GoesOnWithout();
    void Place_ManyThreads_NeverMoreThanThereAre();
};

void tst_StartGate::Place_AllTaken_WaitsUntilOneIsFree()
{
    StartGate gate(2);
    auto first = std::make_unique<StartGate::Place>(gate, kLong);
    const StartGate::Place second(gate, kLong);
    std::atomic_bool bEntered{false};
    std::thread third([&] {
        const StartGate::Place place(gate, kLong);
        bEntered = true;
    });
    QTest::qWait(50); // long enough for a gate that stands open
    const bool bEarly = bEntered;
    first.reset();
    third.join();
    QVERIFY(!bEarly);
    QVERIFY(bEntered);
}

void tst_StartGate::Place_NoneGetsFree_GoesOnWithout()
{
    StartGate gate(1);
    const StartGate::Place only(gate, kLong);
    {
        const StartGate::Place none(gate, std::chrono::milliseconds(20));
    }
    // What was not taken is not given back.
    std::atomic_bool bEntered{false};
    std::thread other([&] {
        const StartGate::Place place(gate, std::chrono::milliseconds(300));
        bEntered = true;
    });
    QTest::qWait(50);
    const bool bEarly = bEntered;
    other.join();
    QVERIFY(!bEarly);
}

void tst_StartGate::Place_ManyThreads_NeverMoreThanThereAre()
{
    const int kPlaces = 3;
    const int kThreads = 50;
    StartGate gate(kPlaces);
    std::atomic_int nInside{0};
    std::atomic_int nMost{0};
    std::atomic_int nThrough{0};
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            const StartGate::Place place(gate, kLong);
            const int nNow = ++nInside;
            int nSeen = nMost;
            while (nNow > nSeen && !nMost.compare_exchange_weak(nSeen, nNow)) {
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            --nInside;
            ++nThrough;
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(nThrough.load(), kThreads);
    QVERIFY2(nMost <= kPlaces, qPrintable(QString::number(nMost)));
}

QTEST_GUILESS_MAIN(tst_StartGate)
#include "tst_startgate.moc"
