#include <QtTest>

#include "faulttable.h"

// Damaged, late and misdirected answers of one camera in a batch.
class tst_Faults_Answers : public FaultTable
{
    Q_OBJECT

public:
    tst_Faults_Answers()
        : FaultTable("127.50.1.", Rows())
    {
    }

private:
    static std::vector<Row> Rows()
    {
        return {
            {"twice", "duplicate 1", Wanted::SameFile},
            {"eleven times", "duplicate 10", Wanted::SameFile},
            {"previous answer again", "late 1", Wanted::SameFile},
            {"reordered", "reordered 1 times=20", Wanted::SameFile},
            {"bytes behind the end", "oversized 1", Wanted::SameFile},
            {"as large as datagrams get", "oversized 60000", Wanted::SameFile},
            {"cut in the header", "short 4", Wanted::NoFile},
            {"cut to the header", "short 8", Wanted::NoFile},
            {"cut in the payload", "short 10", Wanted::NoFile},
            {"id of the next", "wrong-id 1", Wanted::NoFile},
            {"id of the previous", "wrong-id -1", Wanted::NoFile},
            {"wrong id now and then", "wrong-id 1 after=50 times=4", Wanted::SameFile},
            {"wrong id from the middle on", "wrong-id 1 after=200", Wanted::Part},
            {"from another address", "wrong-source 1", Wanted::NoFile},
            {"from another address once", "wrong-source 1 after=50 times=1", Wanted::SameFile},
            {"pending once", "pending-ack 1 20", Wanted::SameFile},
            {"pending ten times", "pending-ack 10 2", Wanted::SameFile},
            {"pending for a second", "pending-ack 10 100 after=100 times=1", Wanted::SameFile},
            {"pending for ever", "pending-ack forever", Wanted::NoFile},
            {"pending for ever from the middle on", "pending-ack forever after=200", Wanted::Part},
        };
    }
};

QTEST_GUILESS_MAIN(tst_Faults_Answers)
#include "tst_faults_answers.moc"
