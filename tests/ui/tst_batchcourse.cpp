#include <QtTest>

#include <StyleCtl/tarncustomlabel.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <ui/batchcourse.h>
#include <ui/camerarows.h>
#include <ui/devicetablemodel.h>
#include <ui/resultpage.h>
#include <ui/rowprogress.h>

#include "tabledevices.h"

using namespace DeviceTable;

namespace {

/// A batch over a table of cameras 1 to 3, and a window that only notes what it is asked for.
struct BatchBench
{
    explicit BatchBench()
    {
        rows.SetUp();
        for (int n = 1; n <= 3; ++n) {
            vecRecords.append(HandMadeItem(NetworkCamera(n), KX_CC_TRANSPORT_GIGE, "eth0", n).record);
            rows.Insert(vecRecords.last(), "eth0");
        }
        page.Create();
    }
    ~BatchBench()
    {
        qDeleteAll(std::begin(labels), std::end(labels));
        delete pTable;
    }
    Q_DISABLE_COPY(BatchBench)

    BatchCourse::Window Window()
    {
        return {[this](const StructDeviceInfo &record, unsigned int nType, const QString &strPath) {
                    listAsked.append(QString("start %1 %2 %3").arg(record.nDeviceID).arg(nType).arg(strPath));
                    return !setRefused.contains(record.nDeviceID);
                },
                [this] { listAsked.append("enable"); }, [this] { listAsked.append("close busy"); },
                [this](unsigned int nType, const QString &strPath) {
                    listAsked.append(QString("tell %1 %2").arg(nType).arg(strPath));
                }};
    }

    /// "running, succeeded, failed" as shown; they have to be those that are counted.
    QString Numbers() const
    {
        const QStringList listShown{labels[0]->text(), labels[2]->text(), labels[4]->text()};
        const QStringList listCounted{QString::number(nRunning), QString::number(nSucceeded),
                                      QString::number(nFailed)};
        return listShown == listCounted ? listShown.join(", ")
                                        : listShown.join(", ") + " but " + listCounted.join(", ");
    }
    QString Text(int nRow) const { return pTable->item(nRow, OperateColumn)->text(); }

    TarnCustomTableWidget *pTable = new TarnCustomTableWidget;
    TarnCustomLabel *labels[6] = {};
    QVector<StructDeviceInfo> vecRecords;
    QSet<int> setRefused;
    QStringList listAsked;
    bool bHasSucceeded = false;
    qint32 nRunning = 0;
    qint32 nSucceeded = 0;
    qint32 nFailed = 0;
    CameraRows rows{pTable};
    RowProgress progress{pTable};
    ResultPage page{{labels[0], labels[1], labels[2], labels[3], labels[4], labels[5]}};
    std::unique_ptr<QObject> pContext = std::make_unique<QObject>();
    BatchCourse batch{
        {bHasSucceeded, nRunning, nSucceeded, nFailed}, {rows, progress, page}, Window(), pContext.get()};
};

} // namespace

/// The course of a batch without a window and without workers.
class tst_BatchCourse : public QObject
{
    Q_OBJECT

private slots:
    void Signals_OfAWholeBatch_CountAndEndIt();
    void Begin_Success_IsForgotten();
    void End_OneStillRuns_AsksForNothing();
    void End_NoneSucceeded_IsNotTold();
    void End_LastWorkersTypeAndPath_AreTold();
    void End_WithoutABegin_GoesBelowZero();
    void End_BeforeTheNextBegins_EndsTheBatchEachTime();
    void End_CellMissing_OnlyCountsAndEnables();
    void Signals_CameraWithoutARow_AreDropped();
    void Reset_Counts_AreZeroAndSuccessStays();
    void Start_EveryCamera_IsStartedInOrder();
    void Start_ThreadRefused_BeginsAtOnceAndFailsLater_data();
    void Start_ThreadRefused_BeginsAtOnceAndFailsLater();
    void Start_EveryThreadRefused_EndsWithoutTelling();
    void Start_ContextGoes_RefusedOnesDoNotEnd();
};

void tst_BatchCourse::Signals_OfAWholeBatch_CountAndEndIt()
{
    BatchBench bench;
    bench.batch.Begin(1, 3);
    bench.batch.Begin(2, 3);
    QCOMPARE(bench.Numbers(), QString("2, 0, 0"));
    QCOMPARE(bench.Text(0), QString("Start exporting..."));
    bench.batch.Report(2, "no\r\nanswer", true);
    bench.batch.End(2, 3, "/folder");
    QCOMPARE(bench.Numbers(), QString("1, 0, 1"));
    QCOMPARE(bench.Text(1), QString("noanswer"));
    QVERIFY(!bench.bHasSucceeded);
    bench.batch.End(1, 3, "/folder");
    QCOMPARE(bench.Numbers(), QString("0, 1, 1"));
    QCOMPARE(bench.Text(0), QString("Exported."));
    QVERIFY(bench.bHasSucceeded);
    QCOMPARE(bench.listAsked, QStringList({"enable", "close busy", "tell 3 /folder"}));
}

void tst_BatchCourse::Begin_Success_IsForgotten()
{
    BatchBench bench;
    bench.bHasSucceeded = true;
    bench.batch.Begin(1, 2);
    QVERIFY(!bench.bHasSucceeded);
}

void tst_BatchCourse::End_OneStillRuns_AsksForNothing()
{
    BatchBench bench;
    bench.batch.Begin(1, 2);
    bench.batch.Begin(2, 2);
    bench.batch.End(1, 2, "/file");
    QCOMPARE(bench.listAsked, QStringList());
}

void tst_BatchCourse::End_NoneSucceeded_IsNotTold()
{
    BatchBench bench;
    bench.batch.Begin(1, 2);
    bench.batch.Report(1, "broken", true);
    bench.batch.End(1, 2, "/file");
    QCOMPARE(bench.listAsked, QStringList({"enable", "close busy"}));
    QCOMPARE(bench.Numbers(), QString("0, 0, 1"));
}

void tst_BatchCourse::End_LastWorkersTypeAndPath_AreTold()
{
    BatchBench bench;
    bench.batch.Begin(1, 3);
    bench.batch.Begin(2, 2);
    bench.batch.End(1, 3, "/folder");
    bench.batch.Report(2, "broken", true);
    bench.batch.End(2, 2, "/file"); // failed, but another has succeeded
    QCOMPARE(bench.listAsked.last(), QString("tell 2 /file"));
}

void tst_BatchCourse::End_WithoutABegin_GoesBelowZero()
{
    BatchBench bench;
    bench.batch.End(1, 3, "/folder");
    QCOMPARE(bench.Numbers(), QString("-1, 0, 1"));
    QCOMPARE(bench.listAsked, QStringList());
}

void tst_BatchCourse::End_BeforeTheNextBegins_EndsTheBatchEachTime()
{
    BatchBench bench;
    for (int nDeviceID : {1, 2}) {
        bench.batch.Begin(nDeviceID, 3);
        bench.batch.End(nDeviceID, 3, "/folder");
    }
    QCOMPARE(bench.listAsked.count("tell 3 /folder"), 2);
    QCOMPARE(bench.listAsked.count("enable"), 2);
    QCOMPARE(bench.Numbers(), QString("0, 2, 0"));
}

void tst_BatchCourse::End_CellMissing_OnlyCountsAndEnables()
{
    BatchBench bench;
    delete bench.pTable->takeItem(0, OperateColumn);
    bench.batch.Begin(1, 3);
    QCOMPARE(bench.Numbers(), QString("1, 0, 0"));
    bench.batch.Report(1, "broken", true);
    bench.batch.End(1, 3, "/folder");
    QCOMPARE(bench.Numbers(), QString("0, 0, 0"));
    QCOMPARE(bench.listAsked, QStringList("enable"));
}

void tst_BatchCourse::Signals_CameraWithoutARow_AreDropped()
{
    BatchBench bench;
    bench.bHasSucceeded = true;
    bench.batch.Begin(99, 3);
    QVERIFY(bench.bHasSucceeded);
    QCOMPARE(bench.Numbers(), QString("0, 0, 0"));
    bench.batch.Begin(1, 3);
    bench.rows.Remove(1);
    bench.batch.Report(1, "broken", true);
    bench.batch.End(1, 3, "/folder");
    QCOMPARE(bench.Numbers(), QString("1, 0, 0"));
    QCOMPARE(bench.listAsked, QStringList());
    for (int nRow : {0, 1})
        QCOMPARE(bench.Text(nRow), QString());
}

void tst_BatchCourse::Reset_Counts_AreZeroAndSuccessStays()
{
    BatchBench bench;
    bench.batch.Begin(1, 3);
    bench.batch.End(1, 3, "/folder");
    bench.batch.End(2, 3, "/folder");
    QCOMPARE(bench.Numbers(), QString("-1, 1, 1"));
    bench.batch.Reset();
    QCOMPARE(bench.Numbers(), QString("0, 0, 0"));
    QVERIFY(bench.bHasSucceeded);
}

void tst_BatchCourse::Start_EveryCamera_IsStartedInOrder()
{
    BatchBench bench;
    bench.batch.Start(bench.vecRecords, 1, "/folder");
    QCoreApplication::sendPostedEvents();
    QCOMPARE(bench.listAsked, QStringList({"start 1 1 /folder", "start 2 1 /folder", "start 3 1 /folder"}));
    QCOMPARE(bench.Numbers(), QString("0, 0, 0")); // until they say that they have begun
}

void tst_BatchCourse::Start_ThreadRefused_BeginsAtOnceAndFailsLater_data()
{
    QTest::addColumn<uint>("nType");
    QTest::addColumn<QString>("strFailure");
    QTest::newRow("import") << 0u << "Failed to import features. The system allows no more threads.";
    QTest::newRow("export") << 1u << "Failed to export features. The system allows no more threads.";
}

void tst_BatchCourse::Start_ThreadRefused_BeginsAtOnceAndFailsLater()
{
    QFETCH(uint, nType);
    BatchBench bench;
    bench.setRefused = {2};
    bench.batch.Start(bench.vecRecords, nType, "/path");
    QCOMPARE(bench.listAsked.size(), 3); // the others are started none the less
    bench.batch.Begin(1, nType);
    QCOMPARE(bench.Numbers(), QString("2, 0, 0"));
    QVERIFY(bench.Text(1).startsWith("Start"));
    QCoreApplication::sendPostedEvents();
    QCOMPARE(bench.Numbers(), QString("1, 0, 1"));
    QTEST(bench.Text(1), "strFailure");
    bench.batch.End(1, nType, "/path");
    QCOMPARE(bench.listAsked.last(), QString("tell %1 /path").arg(nType));
}

void tst_BatchCourse::Start_EveryThreadRefused_EndsWithoutTelling()
{
    BatchBench bench;
    bench.setRefused = {1, 2, 3};
    bench.batch.Start(bench.vecRecords, 1, "/folder");
    QCOMPARE(bench.Numbers(), QString("3, 0, 0"));
    bench.listAsked.clear();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(bench.Numbers(), QString("0, 0, 3"));
    QCOMPARE(bench.listAsked, QStringList({"enable", "close busy"}));
}

void tst_BatchCourse::Start_ContextGoes_RefusedOnesDoNotEnd()
{
    BatchBench bench;
    bench.setRefused = {1};
    bench.batch.Start(bench.vecRecords, 1, "/folder");
    bench.pContext.reset();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(bench.Numbers(), QString("1, 0, 0"));
}

QTEST_MAIN(tst_BatchCourse)
#include "tst_batchcourse.moc"
