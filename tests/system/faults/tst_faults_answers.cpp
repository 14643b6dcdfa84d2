#include <QtTest>

#include "faultbatch.h"

Q_DECLARE_METATYPE(FaultBatch::Wanted)

// Damaged, late and misdirected answers of one camera in a batch.
class tst_Faults_Answers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void Export_FaultyAnswers_OtherCamerasComplete_data();
    void Export_FaultyAnswers_OtherCamerasComplete();

private:
    FaultBatch m_batch{"127.50.1."};
};

void tst_Faults_Answers::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QCOMPARE(m_batch.Prepare(), QString());
}

void tst_Faults_Answers::Export_FaultyAnswers_OtherCamerasComplete_data()
{
    using Wanted = FaultBatch::Wanted;
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<Wanted>("wanted");
    const auto row = [](const char *name, const char *fault, Wanted wanted) {
        QTest::newRow(name) << QByteArray(fault) << wanted;
    };
    row("twice", "duplicate 1", Wanted::SameFile);
    row("eleven times", "duplicate 10", Wanted::SameFile);
    row("previous answer again", "late 1", Wanted::SameFile);
    row("reordered", "reordered 1 times=20", Wanted::SameFile);
    row("bytes behind the end", "oversized 1", Wanted::SameFile);
    row("as large as datagrams get", "oversized 60000", Wanted::SameFile);
    row("cut in the header", "short 4", Wanted::NoFile);
    row("cut to the header", "short 8", Wanted::NoFile);
    row("cut in the payload", "short 10", Wanted::NoFile);
    row("id of the next", "wrong-id 1", Wanted::NoFile);
    row("id of the previous", "wrong-id -1", Wanted::NoFile);
    row("wrong id now and then", "wrong-id 1 after=50 times=4", Wanted::SameFile);
    row("wrong id from the middle on", "wrong-id 1 after=200", Wanted::Part);
    row("from another address", "wrong-source 1", Wanted::NoFile);
    row("from another address once", "wrong-source 1 after=50 times=1", Wanted::SameFile);
    row("pending once", "pending-ack 1 20", Wanted::SameFile);
    row("pending ten times", "pending-ack 10 2", Wanted::SameFile);
    row("pending for a second", "pending-ack 10 100 after=100 times=1", Wanted::SameFile);
    row("pending for ever", "pending-ack forever", Wanted::NoFile);
    row("pending for ever from the middle on", "pending-ack forever after=200", Wanted::Part);
}

void tst_Faults_Answers::Export_FaultyAnswers_OtherCamerasComplete()
{
    QFETCH(QByteArray, fault);
    QFETCH(FaultBatch::Wanted, wanted);
    QCOMPARE(m_batch.Play(fault, wanted), QString());
}

QTEST_GUILESS_MAIN(tst_Faults_Answers)
#include "tst_faults_answers.moc"
