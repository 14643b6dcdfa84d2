#include <QtTest>

#include "faulttable.h"

// Faulty and hostile descriptions of one camera in a batch.
class tst_Faults_Descriptions : public FaultTable
{
    Q_OBJECT

public:
    tst_Faults_Descriptions()
        : FaultTable("127.50.3.", Rows())
    {
    }

private slots:
    void Export_DescriptionChangesBetweenOpens_EachExportHoldsOneOfThem();

private:
    static std::vector<Row> Rows()
    {
        std::vector<Row> rows;
        const auto add = [&rows](Wanted wanted, const QList<QByteArray> &names) {
            for (const QByteArray &name : names)
                rows.push_back({name, "description " + name, wanted});
        };
        add(Wanted::NoFile,
            {"url-huge-size", "url-unknown-scheme", "url-garbage", "url-empty", "url-unterminated",
             "url-no-memory", "zip-bad-directory", "zip-bad-header", "zip-truncated", "zip-encrypted",
             "zip-two-files", "zip-bomb", "not-xml", "truncated", "dtd", "entity-bomb", "deep"});
        add(Wanted::NoFile, {"many-elements", "nested-pointers", "stray-ampersand", "doubled-attribute"});
        // What can be read for certain is read.
        add(Wanted::SameFile, {"zip-bad-size", "text-before", "bom", "utf-16", "trailing-nuls", "big"});
        add(Wanted::SameFile, {"latin-1"});
        // Damage to one node costs that feature. Width is the last one by name: a helper that dies of it
        // takes none of the others along.
        add(Wanted::AllButWidth, {"cycle", "dangling", "duplicate-names", "length-negative", "length-zero",
                                  "length-2gb", "renamed"});
        return rows;
    }
};

void tst_Faults_Descriptions::Export_DescriptionChangesBetweenOpens_EachExportHoldsOneOfThem()
{
    QCOMPARE(m_batch.StartFarm(), QString());
    QCOMPARE(m_batch.SetFault("description-changes renamed"), QString());
    const QByteArray first = m_batch.Export().files.value("SimCam-150_SIM0002.kfb");
    const QByteArray second = m_batch.Export().files.value("SimCam-150_SIM0002.kfb");
    QCOMPARE(first, m_batch.Reference());
    QVERIFY(IsWhole(second));
    QVERIFY(second.contains("<Name>Breadth<"));
    QVERIFY(!second.contains("<Name>Width<"));
    QCOMPARE(RecordsOf(second).size(), RecordsOf(first).size());
}

QTEST_GUILESS_MAIN(tst_Faults_Descriptions)
#include "tst_faults_descriptions.moc"
