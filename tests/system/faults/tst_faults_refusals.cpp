#include <QtTest>

#include "faulttable.h"

// One camera of a batch refuses commands with an error status, or its datagrams are lost or late.
class tst_Faults_Refusals : public FaultTable
{
    Q_OBJECT

public:
    tst_Faults_Refusals()
        : FaultTable("127.50.4.", Rows())
    {
    }

private slots:
    void Export_AFifthOfTheDatagramsLost_WritesTheSameFile();

private:
    static std::vector<Row> Rows()
    {
        return {
            {"not implemented", "status 0x8001", Wanted::NoFile},
            {"invalid parameter", "status 0x8002", Wanted::NoFile},
            {"invalid address", "status 0x8003", Wanted::NoFile},
            {"write protect", "status 0x8004", Wanted::NoFile},
            {"bad alignment", "status 0x8005", Wanted::NoFile},
            {"access denied", "status 0x8006", Wanted::NoFile},
            {"busy", "status 0x8007", Wanted::NoFile},
            {"local problem", "status 0x8008", Wanted::NoFile},
            {"message mismatch", "status 0x8009", Wanted::NoFile},
            {"invalid protocol", "status 0x800A", Wanted::NoFile},
            {"no message", "status 0x800B", Wanted::NoFile},
            {"packet unavailable", "status 0x800C", Wanted::NoFile},
            {"generic error", "status 0x8FFF", Wanted::NoFile},
            {"error during the description", "status 0x8003 command=readmem after=3", Wanted::NoFile},
            {"busy once", "status 0x8007 times=1", Wanted::SameFile},
            {"busy during the description", "status 0x8007 command=readmem after=3 times=3",
             Wanted::SameFile},
            {"busy during the features", "status 0x8007 after=120 times=3", Wanted::SameFile},
            {"1 % lost", "loss 1", Wanted::SameFile},
            {"5 % lost", "loss 5", Wanted::SameFile},
            {"10 % lost", "loss 10", Wanted::SameFile},
            {"jitter", "jitter-us 5000", Wanted::SameFile},
            {"slow", "latency-us 10000", Wanted::SameFile},
        };
    }
};

void tst_Faults_Refusals::Export_AFifthOfTheDatagramsLost_WritesTheSameFile()
{
    QCOMPARE(m_batch.Play("loss 20", FaultBatch::Wanted::SameFile, 60000), QString());
}

QTEST_GUILESS_MAIN(tst_Faults_Refusals)
#include "tst_faults_refusals.moc"
