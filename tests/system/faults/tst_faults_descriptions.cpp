#include <QtTest>

#include "faultbatch.h"

Q_DECLARE_METATYPE(FaultBatch::Wanted)

// Faulty and hostile descriptions of one camera in a batch.
class tst_Faults_Descriptions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void Export_FaultyDescription_OtherCamerasComplete_data();
    void Export_FaultyDescription_OtherCamerasComplete();
    void Export_DescriptionChangesBetweenOpens_EachExportHoldsOneOfThem();

private:
    FaultBatch m_batch{"127.50.3."};
};

void tst_Faults_Descriptions::initTestCase()
{
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QCOMPARE(m_batch.Prepare(), QString());
}

void tst_Faults_Descriptions::Export_FaultyDescription_OtherCamerasComplete_data()
{
    using Wanted = FaultBatch::Wanted;
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<Wanted>("wanted");
    const auto rows = [](Wanted wanted, const QList<QByteArray> &names) {
        for (const QByteArray &name : names)
            QTest::newRow(name) << name << wanted;
    };
    rows(Wanted::NoFile,
         {"url-huge-size", "url-unknown-scheme", "url-garbage", "url-empty", "url-unterminated",
          "url-no-memory", "zip-bad-directory", "zip-bad-header", "zip-truncated", "zip-encrypted",
          "zip-two-files", "zip-bomb", "not-xml", "truncated", "dtd", "entity-bomb", "deep"});
    rows(Wanted::NoFile, {"many-elements", "nested-pointers", "stray-ampersand", "doubled-attribute"});
    // What can be read for certain is read.
    rows(Wanted::SameFile, {"zip-bad-size", "text-before", "bom", "utf-16", "trailing-nuls", "big"});
    rows(Wanted::SameFile, {"latin-1"});
    // Damage to one node costs that feature. Width is the last one by name: a helper that dies of it takes
    // none of the others along.
    rows(Wanted::AllButWidth,
         {"cycle", "dangling", "duplicate-names", "length-negative", "length-zero", "length-2gb", "renamed"});
}

void tst_Faults_Descriptions::Export_FaultyDescription_OtherCamerasComplete()
{
    QFETCH(QByteArray, name);
    QFETCH(FaultBatch::Wanted, wanted);
    QCOMPARE(m_batch.Play("description " + name, wanted), QString());
}

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
