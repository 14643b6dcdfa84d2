#include <QtTest>

#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <ui/camerarows.h>
#include <ui/devicetablemodel.h>
#include <ui/tickrules.h>

#include "tabledevices.h"

using namespace DeviceTable;

/// The rules over a plain table of cameras, with a limit of three and a window that only notes what it is
/// asked for.
class tst_TickRules : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Counts_HiddenAndDisabledRows_AreLeftOut();
    void CheckedDevices_HiddenRowsAndEmptyOnes_AreLeftOut();
    void CheckedDevices_VisibleRowWithoutAnItem_EndsTheWalk();
    void OnCellChanged_AllFreeTicked_TicksTheHeader();
    void OnCellChanged_AsManyAsTheLimit_TicksTheHeader();
    void OnCellChanged_SomeTicked_ClearsTheHeaderAndEnablesTheButtons();
    void OnCellChanged_NoneCanBeTicked_ClearsTheHeader();
    void OnCellChanged_BeyondTheLimit_TellsAndClearsTheRow();
    void OnCellChanged_RowMovesDuringTheMessage_ThatOneIsCleared();
    void OnCellChanged_RowGoesDuringTheMessage_OthersKeepTheirTicks();
    void OnCellChanged_LimitBelowZero_IsNoLimit();
    void OnHeaderChanged_Ticked_TicksFromTheTopUpToTheLimit();
    void OnHeaderChanged_Cleared_ClearsTheVisibleRows();
    void OnHeaderChanged_PartlyTicked_AsksForNothing();
    void OnHeaderChanged_NoFreeCamera_DisablesTheButtons();
    void Changes_OfTheRules_AreNotSignalled();
    void Header_WithoutBoxesOrTable_DoesNothing();

private:
    void AddCameras(int nFirst, int nLast, quint32 nAccessStatus = KX_CC_ACCESS_FREE);
    void Tick(int nRow) { m_pTable->setCellCheckState(nRow, CheckColumn, Qt::Checked); }
    QStringList Ticked() const;
    TarnCustomCheckHeaderView *Header() const { return m_pRules->Header(); }

    TarnCustomTableWidget *m_pTable = nullptr;
    qint32 m_nLimit = 3;
    std::unique_ptr<CameraRows> m_pRows;
    std::unique_ptr<TickRules> m_pRules;
    QStringList m_listAsked; // "on", "off", or the text of a message
    std::function<void()> m_duringMessage;
};

void tst_TickRules::init()
{
    m_pTable = new TarnCustomTableWidget;
    m_nLimit = 3;
    m_listAsked.clear();
    m_duringMessage = [] {};
    m_pRows = std::make_unique<CameraRows>(m_pTable);
    m_pRows->SetUp();
    m_pRules = std::make_unique<TickRules>(
        m_pTable, m_nLimit,
        TickRules::Window{[this](bool bEnable) { m_listAsked.append(bEnable ? "on" : "off"); },
                          [this](const QString &strText) {
                              m_listAsked.append(strText);
                              m_duringMessage();
                          }});
}

void tst_TickRules::cleanup()
{
    m_pRules.reset();
    m_pRows.reset();
    delete m_pTable;
}

void tst_TickRules::AddCameras(int nFirst, int nLast, quint32 nAccessStatus)
{
    for (int n = nFirst; n <= nLast; ++n) {
        const HandMadeItem item(NetworkCamera(n, nAccessStatus), KX_CC_TRANSPORT_GIGE, "eth0", n);
        m_pTable->setRowHidden(m_pRows->Insert(item.record, "eth0"), false);
    }
}

/// Serial numbers of all that are ticked, hidden ones included.
QStringList tst_TickRules::Ticked() const
{
    QStringList listSerials;
    for (int nRow = 0; nRow < m_pRows->Count(); ++nRow) {
        if (m_pTable->cellCheckState(nRow, CheckColumn) == Qt::Checked)
            listSerials.append(m_pTable->item(nRow, SerialColumn)->text());
    }
    return listSerials;
}

void tst_TickRules::Counts_HiddenAndDisabledRows_AreLeftOut()
{
    AddCameras(1, 3);
    AddCameras(4, 4, KX_CC_ACCESS_IN_USE);
    Tick(0);
    Tick(1);
    m_pTable->setRowHidden(1, true);
    QCOMPARE(m_pRules->CheckedCount(), 1);
    QCOMPARE(m_pRules->EnabledCount(), 2);
}

void tst_TickRules::CheckedDevices_HiddenRowsAndEmptyOnes_AreLeftOut()
{
    AddCameras(11, 14);
    Tick(0);
    Tick(1);
    Tick(3);
    m_pTable->setRowHidden(1, true);
    QCOMPARE(m_pRules->CheckedDevices(), QVector<int>({11, 14}));
}

void tst_TickRules::CheckedDevices_VisibleRowWithoutAnItem_EndsTheWalk()
{
    AddCameras(1, 3);
    Tick(0);
    Tick(2);
    delete m_pTable->takeItem(1, CheckColumn);
    QCOMPARE(m_pRules->CheckedDevices(), QVector<int>({1}));
    m_pTable->setRowHidden(1, true);
    QCOMPARE(m_pRules->CheckedDevices(), QVector<int>({1, 3}));
}

void tst_TickRules::OnCellChanged_AllFreeTicked_TicksTheHeader()
{
    AddCameras(1, 2);
    AddCameras(3, 3, KX_CC_ACCESS_IN_USE);
    Tick(0);
    Tick(1);
    m_pRules->OnCellChanged(1);
    QCOMPARE(Header()->checkState(CheckColumn), Qt::Checked);
    QCOMPARE(m_listAsked, QStringList("on"));
}

void tst_TickRules::OnCellChanged_AsManyAsTheLimit_TicksTheHeader()
{
    AddCameras(1, 5);
    for (int nRow : {0, 2, 4})
        Tick(nRow);
    m_pRules->OnCellChanged(4);
    QCOMPARE(Header()->checkState(CheckColumn), Qt::Checked);
    QCOMPARE(m_listAsked, QStringList("on"));
}

void tst_TickRules::OnCellChanged_SomeTicked_ClearsTheHeaderAndEnablesTheButtons()
{
    AddCameras(1, 5);
    Tick(1);
    Header()->setCheckState(CheckColumn, Qt::Checked);
    m_pRules->OnCellChanged(1);
    QCOMPARE(Header()->checkState(CheckColumn), Qt::Unchecked);
    QCOMPARE(m_listAsked, QStringList("on"));
}

void tst_TickRules::OnCellChanged_NoneCanBeTicked_ClearsTheHeader()
{
    AddCameras(1, 2, KX_CC_ACCESS_IN_USE);
    Header()->setCheckState(CheckColumn, Qt::Checked);
    m_pRules->OnCellChanged(0);
    QCOMPARE(Header()->checkState(CheckColumn), Qt::Unchecked);
    QCOMPARE(m_listAsked, QStringList("off"));
}

void tst_TickRules::OnCellChanged_BeyondTheLimit_TellsAndClearsTheRow()
{
    AddCameras(1, 5);
    for (int nRow : {0, 1, 2, 4})
        Tick(nRow);
    Header()->setCheckState(CheckColumn, Qt::Checked);
    m_pRules->OnCellChanged(4);
    QCOMPARE(m_listAsked, QStringList("Operation failed. You can operate 3 devices at most."));
    QCOMPARE(Ticked(), QStringList({"SN0001", "SN0002", "SN0003"}));
    QCOMPARE(Header()->checkState(CheckColumn), Qt::Checked);
}

void tst_TickRules::OnCellChanged_RowMovesDuringTheMessage_ThatOneIsCleared()
{
    AddCameras(1, 4);
    for (int nRow : {0, 1, 2, 3})
        Tick(nRow);
    m_duringMessage = [this] { m_pTable->sortItems(SerialColumn, Qt::DescendingOrder); };
    m_pRules->OnCellChanged(0);
    QCOMPARE(Ticked(), QStringList({"SN0004", "SN0003", "SN0002"}));
}

void tst_TickRules::OnCellChanged_RowGoesDuringTheMessage_OthersKeepTheirTicks()
{
    AddCameras(1, 4);
    for (int nRow : {0, 1, 2, 3})
        Tick(nRow);
    m_duringMessage = [this] { m_pRows->Remove(1); };
    m_pRules->OnCellChanged(0);
    QCOMPARE(Ticked(), QStringList({"SN0002", "SN0003", "SN0004"}));
}

void tst_TickRules::OnCellChanged_LimitBelowZero_IsNoLimit()
{
    AddCameras(1, 2);
    Tick(0);
    m_nLimit = -1; // compared without its sign
    m_pRules->OnCellChanged(0);
    QCOMPARE(m_listAsked, QStringList("on"));
}

void tst_TickRules::OnHeaderChanged_Ticked_TicksFromTheTopUpToTheLimit()
{
    AddCameras(1, 1, KX_CC_ACCESS_IN_USE);
    AddCameras(2, 7);
    m_pTable->setRowHidden(2, true);
    Tick(6);
    Header()->setCheckState(CheckColumn, Qt::Checked);
    m_pRules->OnHeaderChanged(CheckColumn);
    QCOMPARE(Ticked(), QStringList({"SN0002", "SN0004", "SN0007"}));
    QCOMPARE(m_listAsked, QStringList("on"));
    QVERIFY(m_pTable->updatesEnabled());
}

void tst_TickRules::OnHeaderChanged_Cleared_ClearsTheVisibleRows()
{
    AddCameras(1, 3);
    for (int nRow : {0, 1, 2})
        Tick(nRow);
    m_pTable->setRowHidden(1, true);
    m_pRules->OnHeaderChanged(CheckColumn);
    QCOMPARE(Ticked(), QStringList("SN0002"));
    QCOMPARE(m_listAsked, QStringList("off"));
}

void tst_TickRules::OnHeaderChanged_PartlyTicked_AsksForNothing()
{
    AddCameras(1, 2);
    Tick(0);
    Header()->setCheckState(CheckColumn, Qt::PartiallyChecked);
    m_pRules->OnHeaderChanged(CheckColumn);
    QCOMPARE(Ticked(), QStringList("SN0001"));
    QCOMPARE(m_listAsked, QStringList());
}

void tst_TickRules::OnHeaderChanged_NoFreeCamera_DisablesTheButtons()
{
    AddCameras(1, 2, KX_CC_ACCESS_IN_USE);
    Header()->setCheckState(CheckColumn, Qt::Checked);
    m_pRules->OnHeaderChanged(CheckColumn);
    QCOMPARE(Ticked(), QStringList());
    QCOMPARE(m_listAsked, QStringList("off"));
}

void tst_TickRules::Changes_OfTheRules_AreNotSignalled()
{
    AddCameras(1, 5);
    QSignalSpy cells(m_pTable, &TarnCustomTableWidget::SigCellCheckStateChanged);
    QSignalSpy header(Header(), &TarnCustomCheckHeaderView::SigCheckStateChange);
    Header()->setCheckState(CheckColumn, Qt::Checked);
    m_pRules->OnHeaderChanged(CheckColumn);
    QCOMPARE(Ticked().size(), 3);
    Tick(4);
    m_pRules->OnCellChanged(4);
    m_pTable->setCellCheckState(0, CheckColumn, Qt::Unchecked);
    m_pRules->OnCellChanged(0);
    QCOMPARE(Header()->checkState(CheckColumn), Qt::Unchecked);
    QCOMPARE(cells.count() + header.count(), 0);
}

void tst_TickRules::Header_WithoutBoxesOrTable_DoesNothing()
{
    AddCameras(1, 5);
    for (int nRow : {0, 1, 2, 3})
        Tick(nRow);
    m_pTable->setHorizontalHeader(new QHeaderView(Qt::Horizontal, m_pTable));
    QVERIFY(!Header());
    m_pRules->OnCellChanged(3);
    m_pRules->OnHeaderChanged(CheckColumn);
    QCOMPARE(Ticked().size(), 4);

    delete m_pTable;
    m_pTable = nullptr;
    QVERIFY(!Header());
    m_pRules->OnCellChanged(0);
    m_pRules->OnHeaderChanged(CheckColumn);
    QCOMPARE(m_pRules->CheckedCount() + m_pRules->EnabledCount(), 0);
    QCOMPARE(m_pRules->CheckedDevices(), QVector<int>());
    QCOMPARE(m_listAsked, QStringList());
}

QTEST_MAIN(tst_TickRules)
#include "tst_tickrules.moc"
