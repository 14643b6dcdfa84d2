#include <QtTest>

#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <scripteddevices.h>
#include <ui/camerarows.h>
#include <ui/devicetablemodel.h>

#include "tabledevices.h"

using namespace DeviceTable;

/// The rows of a plain table: no window, no tree, no camera.
class tst_CameraRows : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void SetUp_NewTable_HasTenEmptyRowsAndItsColumns();
    void SetTexts_Again_LabelsTheColumnsOfTheTable();
    void Insert_FirstCamera_TakesTheFirstEmptyRowHiddenAndChosen();
    void Insert_EleventhCamera_AddsARow();
    void Insert_Record_FillsTheCells();
    void RowOf_EmptyRowAbove_EndsTheSearch();
    void RowOf_UnknownCamera_IsMinusOne();
    void Update_RowWithoutACamera_IsIgnored_data();
    void Update_RowWithoutACamera_IsIgnored();
    void Update_CellMissing_EndsThere();
    void Update_CameraIsNotFree_LosesItsTickWithoutASignal();
    void Update_CameraIsFreeAgain_KeepsItsTickAndCanBeTicked();
    void Remove_TickedCamera_IsToldBeforeItsRowGoes();
    void Remove_RowsChangeWhileItIsTold_TakesThatCamera();
    void Remove_OfElevenAndOfTen_LeavesTen();
    void Remove_UnknownCamera_IsFalse();
    void NoTable_EveryCall_DoesNothing();

private:
    static StructDeviceInfo Record(int nDeviceID, quint32 nAccessStatus = KX_CC_ACCESS_FREE);
    QString Text(int nRow, int nColumn) const { return m_pTable->item(nRow, nColumn)->text(); }

    TarnCustomTableWidget *m_pTable = nullptr;
    std::unique_ptr<CameraRows> m_pRows;
};

StructDeviceInfo tst_CameraRows::Record(int nDeviceID, quint32 nAccessStatus)
{
    return HandMadeItem(NetworkCamera(nDeviceID, nAccessStatus), KX_CC_TRANSPORT_GIGE, "eth0", nDeviceID)
        .record;
}

void tst_CameraRows::init()
{
    m_pTable = new TarnCustomTableWidget;
    m_pRows = std::make_unique<CameraRows>(m_pTable);
    m_pRows->SetUp();
}

void tst_CameraRows::cleanup()
{
    m_pRows.reset();
    delete m_pTable;
    m_pTable = nullptr;
}

void tst_CameraRows::SetUp_NewTable_HasTenEmptyRowsAndItsColumns()
{
    QCOMPARE(m_pTable->rowCount(), 10);
    QCOMPARE(m_pTable->columnCount(), int(ColumnCount));
    QCOMPARE(m_pRows->Count(), 0);
    for (int nRow = 0; nRow < 10; ++nRow) {
        QCOMPARE(m_pTable->rowHeight(nRow), 38);
        QVERIFY(!m_pTable->item(nRow, CheckColumn));
    }
    const auto *pHeader = qobject_cast<TarnCustomCheckHeaderView *>(m_pTable->horizontalHeader());
    QVERIFY(pHeader);
    QVERIFY(pHeader->isCheckBoxVisible(CheckColumn));
    for (int nColumn = 0; nColumn < ColumnCount; ++nColumn) {
        const bool bHidden = nColumn == PortColumn || nColumn == InterfaceColumn || nColumn == MacColumn;
        QCOMPARE(m_pTable->isColumnHidden(nColumn), bHidden);
    }
}

void tst_CameraRows::SetTexts_Again_LabelsTheColumnsOfTheTable()
{
    m_pTable->setHorizontalHeaderLabels(QStringList(QString("old")));
    m_pRows->SetTexts();
    QStringList listLabels;
    for (int nColumn = 0; nColumn < ColumnCount; ++nColumn)
        listLabels.append(m_pTable->horizontalHeaderItem(nColumn)->text());
    QCOMPARE(listLabels, (QStringList{"", "PortID", "Model Name", "Device User ID", "Serial Number",
                                      "Interface Type", "MAC Address", "Status", "Operation Status"}));
}

void tst_CameraRows::Insert_FirstCamera_TakesTheFirstEmptyRowHiddenAndChosen()
{
    QCOMPARE(m_pRows->Insert(Record(7), "eth0"), 0);
    QCOMPARE(m_pTable->rowCount(), 10);
    QCOMPARE(m_pRows->Count(), 1);
    QVERIFY(m_pTable->isRowHidden(0));
    QCOMPARE(m_pTable->currentRow(), 0);
    QCOMPARE(m_pRows->Insert(Record(8), "eth0"), 1);
    QCOMPARE(m_pTable->currentRow(), 0);
}

void tst_CameraRows::Insert_EleventhCamera_AddsARow()
{
    for (int n = 1; n <= 10; ++n)
        QCOMPARE(m_pRows->Insert(Record(n), "eth0"), n - 1);
    QCOMPARE(m_pTable->rowCount(), 10);
    QCOMPARE(m_pRows->Insert(Record(11), "eth0"), 10);
    QCOMPARE(m_pTable->rowCount(), 11);
    m_pTable->setRowHidden(10, false); // a hidden row has no height
    QCOMPARE(m_pTable->rowHeight(10), 38);
}

void tst_CameraRows::Insert_Record_FillsTheCells()
{
    const int nRow = m_pRows->Insert(Record(7), "GigE Vision - eth0");
    QCOMPARE(Text(nRow, PortColumn), QString());
    QCOMPARE(Text(nRow, ModelColumn), QString("ABC-1000"));
    QCOMPARE(Text(nRow, UserNameColumn), QString("User 7"));
    QCOMPARE(Text(nRow, SerialColumn), QString("SN0007"));
    QCOMPARE(Text(nRow, InterfaceColumn), QString("GigE Vision - eth0"));
    QCOMPARE(Text(nRow, MacColumn), QString("00:11:1C:F0:00:07"));
    QCOMPARE(Text(nRow, StateColumn), QString());
    QCOMPARE(m_pTable->item(nRow, StateColumn)->data(StateCodeRole).toInt(), 1);
    QCOMPARE(m_pTable->item(nRow, CheckColumn)->data(DeviceIdRole).toInt(), 7);
    QVERIFY(m_pTable->cellCheckEnable(nRow, CheckColumn));
}

void tst_CameraRows::RowOf_EmptyRowAbove_EndsTheSearch()
{
    for (int n = 1; n <= 3; ++n)
        m_pRows->Insert(Record(n), "eth0");
    QCOMPARE(m_pRows->RowOf(3), 2);
    delete m_pTable->takeItem(1, CheckColumn);
    QCOMPARE(m_pRows->RowOf(1), 0);
    QCOMPARE(m_pRows->RowOf(3), -1);
}

void tst_CameraRows::RowOf_UnknownCamera_IsMinusOne()
{
    m_pRows->Insert(Record(1), "eth0");
    QCOMPARE(m_pRows->RowOf(2), -1);
}

void tst_CameraRows::Update_RowWithoutACamera_IsIgnored_data()
{
    QTest::addColumn<int>("nRow");
    QTest::newRow("above the first") << -1;
    QTest::newRow("empty") << 1;
    QTest::newRow("below the last") << 10;
}

void tst_CameraRows::Update_RowWithoutACamera_IsIgnored()
{
    QFETCH(int, nRow);
    m_pRows->Insert(Record(1), "eth0");
    m_pRows->Update(nRow, Record(2), "eth1");
    QCOMPARE(m_pTable->rowCount(), 10);
    QCOMPARE(m_pRows->Count(), 1);
    QCOMPARE(m_pRows->RowOf(2), -1);
    QCOMPARE(Text(0, SerialColumn), QString("SN0001"));
}

void tst_CameraRows::Update_CellMissing_EndsThere()
{
    const int nRow = m_pRows->Insert(Record(1), "eth0");
    delete m_pTable->takeItem(nRow, SerialColumn);
    m_pRows->Update(nRow, Record(2, KX_CC_ACCESS_IN_USE), "eth1");
    QCOMPARE(m_pRows->RowOf(2), nRow);
    QCOMPARE(Text(nRow, UserNameColumn), QString("User 2"));
    QCOMPARE(Text(nRow, InterfaceColumn), QString("eth0"));
    QCOMPARE(m_pTable->item(nRow, StateColumn)->data(StateCodeRole).toInt(), 1);
}

void tst_CameraRows::Update_CameraIsNotFree_LosesItsTickWithoutASignal()
{
    const int nRow = m_pRows->Insert(Record(1), "eth0");
    m_pTable->setCellCheckState(nRow, CheckColumn, Qt::Checked);
    QSignalSpy spy(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    m_pRows->Update(nRow, Record(1, KX_CC_ACCESS_IN_USE), "eth0");
    QCOMPARE(m_pTable->cellCheckState(nRow, CheckColumn), Qt::Unchecked);
    QVERIFY(!m_pTable->cellCheckEnable(nRow, CheckColumn));
    QCOMPARE(m_pTable->item(nRow, StateColumn)->data(StateCodeRole).toInt(), 3);
    QCOMPARE(spy.count(), 0);
}

void tst_CameraRows::Update_CameraIsFreeAgain_KeepsItsTickAndCanBeTicked()
{
    const int nRow = m_pRows->Insert(Record(1, KX_CC_ACCESS_IN_USE), "eth0");
    QVERIFY(!m_pTable->cellCheckEnable(nRow, CheckColumn));
    m_pRows->Update(nRow, Record(1), "eth0");
    QVERIFY(m_pTable->cellCheckEnable(nRow, CheckColumn));
    m_pTable->setCellCheckState(nRow, CheckColumn, Qt::Checked);
    m_pRows->Update(nRow, Record(1), "eth0");
    QCOMPARE(m_pTable->cellCheckState(nRow, CheckColumn), Qt::Checked);
}

void tst_CameraRows::Remove_TickedCamera_IsToldBeforeItsRowGoes()
{
    m_pRows->Insert(Record(1), "eth0");
    m_pRows->Insert(Record(2), "eth0");
    m_pTable->setCellCheckState(1, CheckColumn, Qt::Checked);
    QStringList listTold;
    connect(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged, this, [&](int nRow, int nColumn) {
        QCOMPARE(m_pTable->cellCheckState(nRow, nColumn), Qt::Unchecked);
        listTold.append(Text(nRow, SerialColumn));
    });
    QVERIFY(m_pRows->Remove(2));
    QCOMPARE(listTold, QStringList("SN0002"));
    QCOMPARE(m_pRows->Count(), 1);
    QCOMPARE(m_pRows->RowOf(1), 0);
}

void tst_CameraRows::Remove_RowsChangeWhileItIsTold_TakesThatCamera()
{
    for (int n = 1; n <= 3; ++n)
        m_pRows->Insert(Record(n), "eth0");
    connect(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged, this,
            [this] { m_pTable->sortItems(SerialColumn, Qt::DescendingOrder); });
    QVERIFY(m_pRows->Remove(1));
    QCOMPARE(m_pRows->RowOf(3), 0);
    QCOMPARE(m_pRows->RowOf(2), 1);
    QCOMPARE(m_pRows->RowOf(1), -1);
}

void tst_CameraRows::Remove_OfElevenAndOfTen_LeavesTen()
{
    for (int n = 1; n <= 11; ++n)
        m_pRows->Insert(Record(n), "eth0");
    m_pRows->Remove(5);
    QCOMPARE(m_pTable->rowCount(), 10);
    QCOMPARE(m_pRows->Count(), 10);
    m_pRows->Remove(6);
    QCOMPARE(m_pTable->rowCount(), 10);
    QCOMPARE(m_pTable->rowHeight(9), 38);
    QVERIFY(!m_pTable->item(9, CheckColumn));
}

void tst_CameraRows::Remove_UnknownCamera_IsFalse()
{
    m_pRows->Insert(Record(1), "eth0");
    QSignalSpy spy(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QVERIFY(!m_pRows->Remove(2));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(m_pRows->Count(), 1);
}

void tst_CameraRows::NoTable_EveryCall_DoesNothing()
{
    TarnCustomTableWidget *pNone = nullptr;
    CameraRows rows(pNone);
    rows.SetUp();
    rows.SetTexts();
    QCOMPARE(rows.Insert(Record(1), "eth0"), -1);
    rows.Update(0, Record(1), "eth0");
    QCOMPARE(rows.Count(), 0);
    QCOMPARE(rows.RowOf(1), -1);
    QVERIFY(!rows.Remove(1));
}

QTEST_MAIN(tst_CameraRows)
#include "tst_camerarows.moc"
