#include <QtTest>

#include "faulttable.h"

// A camera of a batch that falls silent, restarts, moves, or belongs to somebody else.
class tst_Faults_Control : public FaultTable
{
    Q_OBJECT

public:
    tst_Faults_Control()
        : FaultTable("127.50.2.", Rows())
    {
    }

private slots:
    void Export_EachFeatureTakesLong_EndsWithTheTimeBudget();
    void Export_CameraUnplugged_IsNotFoundAndTheOthersAreExported();
    void Export_CameraPluggedAgain_IsExported();

private:
    static std::vector<Row> Rows()
    {
        return {
            {"silent", "mute 1", Wanted::NoFile},
            {"silent after the first answer", "mute-after 1", Wanted::NoFile},
            {"silent during the description", "mute-after 6", Wanted::NoFile},
            {"silent during the features", "mute-after 100", Wanted::Part},
            {"port closed", "port-closed-after 1", Wanted::NoFile},
            {"port closed during the features", "port-closed-after 100", Wanted::Part},
            {"held by another", "control-held 1", Wanted::NoFile},
            {"stolen while opening", "control-stolen-after 3", Wanted::NoFile},
            {"stolen during the features", "control-stolen-after 100", Wanted::Part},
            // The helper notices within its heartbeat that it is no longer in control; what was read until
            // then counts.
            {"control lost", "control-lost-after 3", Wanted::Part},
            {"control lost during the features", "control-lost-after 100", Wanted::Part},
            {"restart while opening", "reboot-after 5 500", Wanted::Part},
            {"restart during the features", "reboot-after 100 500", Wanted::Part},
            {"long restart during the features", "reboot-after 100 5000", Wanted::Part},
            {"another address while opening", "address-after 5 127.50.2.77", Wanted::NoFile},
            {"another address during the features", "address-after 100 127.50.2.77", Wanted::Part},
        };
    }
};

// It would take some 30 s. What was read in its time counts, and the camera is free at once.
void tst_Faults_Control::Export_EachFeatureTakesLong_EndsWithTheTimeBudget()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault("latency-us 400000 after=100"), QString());
    qputenv("KX_CAMERA_TIME_BUDGET", "60000,2500");
    const FaultBatch::Outcome outcome = m_batch.Export();
    qunsetenv("KX_CAMERA_TIME_BUDGET");
    QCOMPARE(m_batch.Farm().Command("clear *"), QByteArray("ok"));
    const FaultBatch::Outcome again = m_batch.Export();

    QCOMPARE(outcome.run.exitCode, 0);
    QVERIFY2(outcome.nMilliseconds < FaultBatch::kLongestMs,
             qPrintable(QString::number(outcome.nMilliseconds)));
    QCOMPARE(m_batch.CheckNeighbours(outcome), QString());
    QCOMPARE(m_batch.CheckLeftovers(outcome), QString());
    const QByteArray file = outcome.files.value("SimCam-150_SIM0002.kfb");
    QCOMPARE(CheckFile(file, m_batch.Reference(), FaultBatch::Wanted::Part), QString());
    QVERIFY(RecordsOf(file).size() < RecordsOf(m_batch.Reference()).size());
    QCOMPARE(again.run.exitCode, 0);
    QCOMPARE(again.files.value("SimCam-150_SIM0002.kfb").size(), m_batch.Reference().size());
}

void tst_Faults_Control::Export_CameraUnplugged_IsNotFoundAndTheOthersAreExported()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.Farm().Command("unplug " + m_batch.Faulty().toLatin1()), QByteArray("ok"));
    const FaultBatch::Outcome outcome = m_batch.Export();
    QCOMPARE(outcome.run.exitCode, 1);
    QVERIFY2(outcome.run.out.contains("address 127.50.2.2 not found"), outcome.run.out);
    QCOMPARE(m_batch.CheckNeighbours(outcome), QString());
    QCOMPARE(outcome.files.size(), 2);
}

void tst_Faults_Control::Export_CameraPluggedAgain_IsExported()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.Farm().Command("unplug " + m_batch.Faulty().toLatin1()), QByteArray("ok"));
    QCOMPARE(m_batch.Farm().Command("plug " + m_batch.Faulty().toLatin1()), QByteArray("ok"));
    const FaultBatch::Outcome outcome = m_batch.Export();
    QCOMPARE(outcome.run.exitCode, 0);
    QCOMPARE(outcome.files.size(), 3);
    QCOMPARE(m_batch.CheckNeighbours(outcome), QString());
}

QTEST_GUILESS_MAIN(tst_Faults_Control)
#include "tst_faults_control.moc"
