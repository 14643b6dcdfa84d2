#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

#include "session/startgate.h"

using kxcc::StartGate;

class tst_StartGate : public QObject
{
    Q_OBJECT

private slots:
    void Place_AllTaken_WaitsUntilOneIsFree();
    void Place_ManyThreads_NeverMoreThanThereAre();
};

void tst_StartGate::Place_AllTaken_WaitsUntilOneIsFree()
{
    StartGate gate(2);
    auto first = std::make_unique<StartGate::Place>(gate);
    const StartGate::Place second(gate);
    std::atomic_bool bEntered{false};
    std::thread third([&] {
        const StartGate::Place place(gate);
        bEntered = true;
    });
    QTest::qWait(50); // long enough for a gate that stands open
    const bool bEarly = bEntered;
    first.reset();
    third.join();
    QVERIFY(!bEarly);
    QVERIFY(bEntered);
}

void tst_StartGate::Place_ManyThreads_NeverMoreThanThereAre()
{
    const int PLACES = 3;
    const int THREADS = 50;
    StartGate gate(PLACES);
    std::atomic_int nInside{0};
    std::atomic_int nMost{0};
    std::atomic_int nThrough{0};
    std::vector<std::thread> threads;
    threads.reserve(THREADS);
    for (int i = 0; i < THREADS; ++i) {
        threads.emplace_back([&] {
            const StartGate::Place place(gate);
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
    QCOMPARE(nThrough.load(), THREADS);
    QVERIFY2(nMost <= PLACES, qPrintable(QString::number(nMost)));
}

QTEST_GUILESS_MAIN(tst_StartGate)
#include "tst_startgate.moc"
