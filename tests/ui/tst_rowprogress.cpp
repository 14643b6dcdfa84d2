#include <QtTest>

#include <StyleCtl/tarncustomtablewidget.h>
#include <ui/devicetablemodel.h>
#include <ui/rowprogress.h>

#include "marker.h"

using namespace DeviceTable;

/// The Operation Status cells of a plain table with two rows that have one, and one that has none.
class tst_RowProgress : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Begin_Text_FollowsTheType_data();
    void Begin_Text_FollowsTheType();
    void Begin_AfterAFailure_KeepsColourAndTip();
    void Report_Failure_IsRedWithoutLineBreaksAndHasATip();
    void Report_Normal_IsBlackAndKeepsTheTip();
    void End_Succeeded_TextFollowsTheTypeAndColourStays_data();
    void End_Succeeded_TextFollowsTheTypeAndColourStays();
    void End_LastMessageFailed_KeepsItsText();
    void End_FailureThenNormalMessage_Succeeds();
    void End_NeverBegan_Failed();
    void Clear_EveryRow_LosesTextAndTipAlone();
    void RowWithoutACell_EveryCall_DoesNothing();
    void NoTable_EveryCall_DoesNothing();
    void Texts_Translated_AreTheWindows();

private:
    QTableWidgetItem *Cell(int nRow) const { return m_pTable->item(nRow, OperateColumn); }

    TarnCustomTableWidget *m_pTable = nullptr;
    RowProgress m_progress{m_pTable};
};

void tst_RowProgress::init()
{
    m_pTable = new TarnCustomTableWidget(3, ColumnCount);
    for (int nRow : {0, 1})
        m_pTable->setItem(nRow, OperateColumn, new QTableWidgetItem);
}

void tst_RowProgress::cleanup()
{
    delete m_pTable;
    m_pTable = nullptr;
}

void tst_RowProgress::Begin_Text_FollowsTheType_data()
{
    QTest::addColumn<uint>("nType");
    QTest::addColumn<QString>("strText");
    QTest::newRow("button's import") << 0u << "Start importing...";
    QTest::newRow("button's export") << 1u << "Start exporting...";
    QTest::newRow("worker's import") << 2u << "Start importing...";
    QTest::newRow("worker's export") << 3u << "Start exporting...";
    QTest::newRow("another") << 4u << "";
}

void tst_RowProgress::Begin_Text_FollowsTheType()
{
    QFETCH(uint, nType);
    m_progress.Begin(1, nType);
    QTEST(Cell(1)->text(), "strText");
    QVERIFY(Cell(1)->data(SuccessRole).toBool());
    QCOMPARE(Cell(0)->text(), QString());
    QVERIFY(!Cell(0)->data(SuccessRole).toBool());
}

void tst_RowProgress::Begin_AfterAFailure_KeepsColourAndTip()
{
    m_progress.Report(0, "broken", true);
    m_progress.Begin(0, 2);
    QCOMPARE(Cell(0)->text(), QString("Start importing..."));
    QCOMPARE(Cell(0)->foreground(), QBrush(Qt::red));
    QCOMPARE(m_pTable->detailTip(0, OperateColumn), QString("The Reasons of Failure :\r\nbroken"));
}

void tst_RowProgress::Report_Failure_IsRedWithoutLineBreaksAndHasATip()
{
    m_progress.Begin(0, 2);
    m_progress.Report(0, "First.\r\nSecond.\r\nThird\nline", true);
    QCOMPARE(Cell(0)->text(), QString("First.Second.Third\nline"));
    QCOMPARE(Cell(0)->foreground(), QBrush(Qt::red));
    QCOMPARE(m_pTable->detailTip(0, OperateColumn),
             QString("The Reasons of Failure :\r\nFirst.\r\nSecond.\r\nThird\nline"));
    QVERIFY(!Cell(0)->data(SuccessRole).toBool());
}

void tst_RowProgress::Report_Normal_IsBlackAndKeepsTheTip()
{
    m_progress.Report(0, "broken", true);
    m_progress.Report(0, "at\r\nwork", false);
    QCOMPARE(Cell(0)->text(), QString("at\r\nwork"));
    QCOMPARE(Cell(0)->foreground(), QBrush(Qt::black));
    QCOMPARE(m_pTable->detailTip(0, OperateColumn), QString("The Reasons of Failure :\r\nbroken"));
    QVERIFY(Cell(0)->data(SuccessRole).toBool());
}

void tst_RowProgress::End_Succeeded_TextFollowsTheTypeAndColourStays_data()
{
    QTest::addColumn<uint>("nType");
    QTest::addColumn<QString>("strText");
    QTest::newRow("button's import") << 0u << "Imported.";
    QTest::newRow("button's export") << 1u << "Exported.";
    QTest::newRow("worker's import") << 2u << "Imported.";
    QTest::newRow("worker's export") << 3u << "Exported.";
    QTest::newRow("another") << 4u << "before";
}

void tst_RowProgress::End_Succeeded_TextFollowsTheTypeAndColourStays()
{
    QFETCH(uint, nType);
    m_progress.Begin(0, nType);
    Cell(0)->setText("before");
    Cell(0)->setForeground(QBrush(Qt::blue));
    QCOMPARE(m_progress.End(0, nType), RowProgress::Outcome::Succeeded);
    QTEST(Cell(0)->text(), "strText");
    QCOMPARE(Cell(0)->foreground(), QBrush(Qt::blue));
}

void tst_RowProgress::End_LastMessageFailed_KeepsItsText()
{
    m_progress.Begin(0, 3);
    m_progress.Report(0, "at work", false);
    m_progress.Report(0, "broken", true);
    QCOMPARE(m_progress.End(0, 3), RowProgress::Outcome::Failed);
    QCOMPARE(Cell(0)->text(), QString("broken"));
    QCOMPARE(Cell(0)->foreground(), QBrush(Qt::red));
}

void tst_RowProgress::End_FailureThenNormalMessage_Succeeds()
{
    m_progress.Begin(0, 3);
    m_progress.Report(0, "broken", true);
    m_progress.Report(0, "at work again", false);
    QCOMPARE(m_progress.End(0, 3), RowProgress::Outcome::Succeeded);
}

void tst_RowProgress::End_NeverBegan_Failed()
{
    QCOMPARE(m_progress.End(0, 3), RowProgress::Outcome::Failed);
    QCOMPARE(Cell(0)->text(), QString());
}

void tst_RowProgress::Clear_EveryRow_LosesTextAndTipAlone()
{
    m_progress.Begin(0, 3);
    m_progress.Report(1, "broken", true);
    m_progress.Clear();
    for (int nRow : {0, 1}) {
        QCOMPARE(Cell(nRow)->text(), QString());
        QCOMPARE(m_pTable->detailTip(nRow, OperateColumn), QString());
    }
    QVERIFY(Cell(0)->data(SuccessRole).toBool());
    QVERIFY(!Cell(1)->data(SuccessRole).toBool());
    QCOMPARE(Cell(1)->foreground(), QBrush(Qt::red));
}

void tst_RowProgress::RowWithoutACell_EveryCall_DoesNothing()
{
    for (int nRow : {-1, 2, 3}) {
        m_progress.Begin(nRow, 3);
        m_progress.Report(nRow, "broken", true);
        QCOMPARE(m_progress.End(nRow, 3), RowProgress::Outcome::None);
    }
    m_progress.Clear();
    QVERIFY(!Cell(2));
    QCOMPARE(m_pTable->rowCount(), 3);
}

void tst_RowProgress::NoTable_EveryCall_DoesNothing()
{
    TarnCustomTableWidget *pNone = nullptr;
    RowProgress progress(pNone);
    progress.Clear();
    progress.Begin(0, 3);
    progress.Report(0, "broken", true);
    QCOMPARE(progress.End(0, 3), RowProgress::Outcome::None);
}

void tst_RowProgress::Texts_Translated_AreTheWindows()
{
    Marker marker;
    QVERIFY(QCoreApplication::installTranslator(&marker));
    m_progress.Begin(0, 2);
    QCOMPARE(Cell(0)->text(), QString("#Start importing..."));
    m_progress.Report(0, "broken", true);
    QCOMPARE(m_pTable->detailTip(0, OperateColumn), QString("#The Reasons of Failure :\r\nbroken"));
    QCoreApplication::removeTranslator(&marker);
}

QTEST_MAIN(tst_RowProgress)
#include "tst_rowprogress.moc"
