#include <QtTest>

#include "faultbatch.h"

Q_DECLARE_METATYPE(FaultBatch::Wanted)

// One camera of a batch refuses commands with an error status, or its datagrams are lost or late.
class tst_Faults_Refusals : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void Export_RefusalOrLoss_OtherCamerasComplete_data();
    void Export_RefusalOrLoss_OtherCamerasComplete();
    void Export_AFifthOfTheDatagramsLost_WritesTheSameFile();

private:
    FaultBatch m_batch{"127.50.4."};
};

void tst_Faults_Refusals::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QCOMPARE(m_batch.Prepare(), QString());
}

void tst_Faults_Refusals::Export_RefusalOrLoss_OtherCamerasComplete_data()
{
    using Wanted = FaultBatch::Wanted;
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<Wanted>("wanted");
    const auto row = [](const char *name, const char *fault, Wanted wanted) {
        QTest::newRow(name) << QByteArray(fault) << wanted;
    };
    row("not implemented", "status 0x8001", Wanted::NoFile);
    row("invalid parameter", "status 0x8002", Wanted::NoFile);
    row("invalid address", "status 0x8003", Wanted::NoFile);
    row("write protect", "status 0x8004", Wanted::NoFile);
    row("bad alignment", "status 0x8005", Wanted::NoFile);
    row("access denied", "status 0x8006", Wanted::NoFile);
    row("busy", "status 0x8007", Wanted::NoFile);
    row("local problem", "status 0x8008", Wanted::NoFile);
    row("message mismatch", "status 0x8009", Wanted::NoFile);
    row("invalid protocol", "status 0x800A", Wanted::NoFile);
    row("no message", "status 0x800B", Wanted::NoFile);
    row("packet unavailable", "status 0x800C", Wanted::NoFile);
    row("generic error", "status 0x8FFF", Wanted::NoFile);
    row("error during the description", "status 0x8003 command=readmem after=3", Wanted::NoFile);
    row("busy once", "status 0x8007 times=1", Wanted::SameFile);
    row("busy during the description", "status 0x8007 command=readmem after=3 times=3", Wanted::SameFile);
    row("busy during the features", "status 0x8007 after=120 times=3", Wanted::SameFile);
    row("1 % lost", "loss 1", Wanted::SameFile);
    row("5 % lost", "loss 5", Wanted::SameFile);
    row("10 % lost", "loss 10", Wanted::SameFile);
    row("jitter", "jitter-us 5000", Wanted::SameFile);
    row("slow", "latency-us 10000", Wanted::SameFile);
}

void tst_Faults_Refusals::Export_RefusalOrLoss_OtherCamerasComplete()
{
    QFETCH(QByteArray, fault);
    QFETCH(FaultBatch::Wanted, wanted);
    QCOMPARE(m_batch.Play(fault, wanted), QString());
}

void tst_Faults_Refusals::Export_AFifthOfTheDatagramsLost_WritesTheSameFile()
{
    QCOMPARE(m_batch.Play("loss 20", FaultBatch::Wanted::SameFile, 60000), QString());
}

QTEST_GUILESS_MAIN(tst_Faults_Refusals)
#include "tst_faults_refusals.moc"
