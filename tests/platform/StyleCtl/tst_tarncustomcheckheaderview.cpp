#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

#include <StyleCtl/tarncustomcheckheaderview.h>

class tst_TarnCustomCheckHeaderView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void SetCheckBoxVisible_BeforeTheTableHasColumns_IsKept();
    void SetCheckState_WithEmit_SignalledOnceAlsoWithoutChange();
    void SetCheckState_WithoutEmit_NoSignal();
    void SetCheckState_SectionWithoutBox_NothingAndNoSignal();
    void Click_Unticked_TicksAndSignalsOnce();
    void Click_Ticked_Clears();
    void Click_PartlyTicked_Ticks();
    void Click_BoxSection_DoesNotSort();
    void Click_OtherSection_SortsAndLeavesTheBox();
    void KeySpace_BoxSection_Ticks();
    void AccessibleText_FollowsState();
    void Paint_Ticked_LooksDifferent();

private:
    void Click(int nSection);

    QTableWidget *m_pTable = nullptr;
    TarnCustomCheckHeaderView *m_pHeader = nullptr;
};

void tst_TarnCustomCheckHeaderView::init()
{
    m_pTable = new QTableWidget;
    m_pHeader = new TarnCustomCheckHeaderView(Qt::Horizontal, m_pTable);
    m_pHeader->setCheckBoxVisible(0, true);
    m_pTable->setHorizontalHeader(m_pHeader);
    m_pTable->setColumnCount(3);
    m_pTable->setHorizontalHeaderLabels({"", "two", "three"});
    m_pHeader->enableSort(1, true);
    m_pTable->resize(500, 200);
    m_pTable->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pTable));
}

void tst_TarnCustomCheckHeaderView::cleanup()
{
    delete m_pTable;
}

void tst_TarnCustomCheckHeaderView::Click(int nSection)
{
    const QPoint centre(m_pHeader->sectionViewportPosition(nSection) + m_pHeader->sectionSize(nSection) / 2,
                        8);
    QTest::mouseClick(m_pHeader->viewport(), Qt::LeftButton, {}, centre);
}

void tst_TarnCustomCheckHeaderView::SetCheckBoxVisible_BeforeTheTableHasColumns_IsKept()
{
    QVERIFY(m_pHeader->isCheckBoxVisible(0));
    QVERIFY(!m_pHeader->isCheckBoxVisible(1));
    QCOMPARE(m_pHeader->checkState(0), Qt::Unchecked);
    m_pHeader->setCheckBoxVisible(0, false);
    QVERIFY(!m_pHeader->isCheckBoxVisible(0));
}

void tst_TarnCustomCheckHeaderView::SetCheckState_WithEmit_SignalledOnceAlsoWithoutChange()
{
    QSignalSpy changed(m_pHeader, &TarnCustomCheckHeaderView::SigCheckStateChange);
    m_pHeader->setCheckState(0, Qt::Checked, true);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0), QVariantList({0}));
    m_pHeader->setCheckState(0, Qt::Checked, true);
    QCOMPARE(changed.count(), 2);
}

void tst_TarnCustomCheckHeaderView::SetCheckState_WithoutEmit_NoSignal()
{
    QSignalSpy changed(m_pHeader, &TarnCustomCheckHeaderView::SigCheckStateChange);
    m_pHeader->setCheckState(0, Qt::Checked, false);
    QCOMPARE(m_pHeader->checkState(0), Qt::Checked);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomCheckHeaderView::SetCheckState_SectionWithoutBox_NothingAndNoSignal()
{
    QSignalSpy changed(m_pHeader, &TarnCustomCheckHeaderView::SigCheckStateChange);
    m_pHeader->setCheckState(1, Qt::Checked, true);
    QCOMPARE(m_pHeader->checkState(1), Qt::Unchecked);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomCheckHeaderView::Click_Unticked_TicksAndSignalsOnce()
{
    QSignalSpy changed(m_pHeader, &TarnCustomCheckHeaderView::SigCheckStateChange);
    Click(0);
    QCOMPARE(m_pHeader->checkState(0), Qt::Checked);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0), QVariantList({0}));
}

void tst_TarnCustomCheckHeaderView::Click_Ticked_Clears()
{
    m_pHeader->setCheckState(0, Qt::Checked);
    Click(0);
    QCOMPARE(m_pHeader->checkState(0), Qt::Unchecked);
}

void tst_TarnCustomCheckHeaderView::Click_PartlyTicked_Ticks()
{
    m_pHeader->setCheckState(0, Qt::PartiallyChecked);
    Click(0);
    QCOMPARE(m_pHeader->checkState(0), Qt::Checked);
}

void tst_TarnCustomCheckHeaderView::Click_BoxSection_DoesNotSort()
{
    m_pHeader->enableSort(0, true);
    QSignalSpy sort(m_pHeader, &TarnCustomSortHeaderView::SigSortByColumn);
    Click(0);
    QCOMPARE(sort.count(), 0);
}

void tst_TarnCustomCheckHeaderView::Click_OtherSection_SortsAndLeavesTheBox()
{
    QSignalSpy changed(m_pHeader, &TarnCustomCheckHeaderView::SigCheckStateChange);
    QSignalSpy sort(m_pHeader, &TarnCustomSortHeaderView::SigSortByColumn);
    Click(1);
    QCOMPARE(sort.count(), 1);
    QCOMPARE(changed.count(), 0);
}

void tst_TarnCustomCheckHeaderView::KeySpace_BoxSection_Ticks()
{
    QSignalSpy changed(m_pHeader, &TarnCustomCheckHeaderView::SigCheckStateChange);
    QTest::keyClick(m_pHeader, Qt::Key_Home);
    QTest::keyClick(m_pHeader, Qt::Key_Space);
    QCOMPARE(m_pHeader->checkState(0), Qt::Checked);
    QCOMPARE(changed.count(), 1);
}

void tst_TarnCustomCheckHeaderView::AccessibleText_FollowsState()
{
    const auto text = [this] {
        return m_pTable->model()->headerData(0, Qt::Horizontal, Qt::AccessibleTextRole).toString();
    };
    m_pHeader->setCheckState(0, Qt::Checked);
    const QString ticked = text();
    m_pHeader->setCheckState(0, Qt::Unchecked);
    QVERIFY(!ticked.isEmpty());
    QVERIFY(!text().isEmpty());
    QVERIFY(ticked != text());
}

void tst_TarnCustomCheckHeaderView::Paint_Ticked_LooksDifferent()
{
    const QImage unticked = m_pHeader->grab().toImage();
    m_pHeader->setCheckState(0, Qt::Checked);
    QVERIFY(m_pHeader->grab().toImage() != unticked);
}

QTEST_MAIN(tst_TarnCustomCheckHeaderView)
#include "tst_tarncustomcheckheaderview.moc"
