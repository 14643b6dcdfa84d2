#include <QApplication>
#include <QHoverEvent>
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
    void SetCheckBoxVisible_ShownTwice_KeepsState();
    void SetCheckBoxVisible_NoSuchSection_Ignored();
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
    void AccessibleText_BoxTakenAway_Goes();
    void AccessibleText_LanguageChanged_IsSetAnew();
    void Paint_Ticked_LooksDifferent();
    void Paint_Hovered_BoxHasTheAccentAsItsBorder();
    void Paint_OtherSection_ShowsItsText();
    void CheckBoxSection_SomeOrNone_IsTheFirst();
    void Construct_ParentAlone_IsHorizontalWithoutBoxes();

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

void tst_TarnCustomCheckHeaderView::SetCheckBoxVisible_ShownTwice_KeepsState()
{
    m_pHeader->setCheckState(0, Qt::Checked);
    m_pHeader->setCheckBoxVisible(0, true);
    QCOMPARE(m_pHeader->checkState(0), Qt::Checked);
}

void tst_TarnCustomCheckHeaderView::SetCheckBoxVisible_NoSuchSection_Ignored()
{
    m_pHeader->setCheckBoxVisible(-1, true);
    QVERIFY(!m_pHeader->isCheckBoxVisible(-1));
    m_pHeader->setCheckBoxVisible(1, false);
    QVERIFY(!m_pHeader->isCheckBoxVisible(1));
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

void tst_TarnCustomCheckHeaderView::AccessibleText_BoxTakenAway_Goes()
{
    const auto text = [this](int nSection) {
        return m_pTable->model()->headerData(nSection, Qt::Horizontal, Qt::AccessibleTextRole).toString();
    };
    m_pHeader->setCheckBoxVisible(1, true);
    QCOMPARE(text(1), QString("Select all, not ticked"));
    m_pHeader->setCheckState(1, Qt::PartiallyChecked);
    QCOMPARE(text(1), QString("Select all, ticked"));
    m_pHeader->setCheckBoxVisible(1, false);
    QVERIFY(text(1) != QString("Select all, ticked"));
}

void tst_TarnCustomCheckHeaderView::AccessibleText_LanguageChanged_IsSetAnew()
{
    m_pHeader->setCheckState(0, Qt::Checked);
    m_pTable->model()->setHeaderData(0, Qt::Horizontal, "in another language", Qt::AccessibleTextRole);
    m_pHeader->setAccessibleName("in another language");
    QEvent change(QEvent::LanguageChange);
    QApplication::sendEvent(m_pHeader, &change);
    QCOMPARE(m_pTable->model()->headerData(0, Qt::Horizontal, Qt::AccessibleTextRole).toString(),
             QString("Select all, ticked"));
    QCOMPARE(m_pHeader->accessibleName(), QString("Column headers"));
    QVERIFY(m_pHeader->accessibleDescription().contains("selects all rows"));
}

void tst_TarnCustomCheckHeaderView::Paint_Ticked_LooksDifferent()
{
    const QImage unticked = m_pHeader->grab().toImage();
    m_pHeader->setCheckState(0, Qt::Checked);
    QVERIFY(m_pHeader->grab().toImage() != unticked);
}

void tst_TarnCustomCheckHeaderView::Paint_Hovered_BoxHasTheAccentAsItsBorder()
{
    const auto border = [this] {
        const QRect section(m_pHeader->sectionViewportPosition(0), 0, m_pHeader->sectionSize(0),
                            m_pHeader->height());
        const QImage image = m_pHeader->viewport()->grab(section).toImage();
        // The box stands in the middle of what the padding leaves.
        return image.pixelColor(section.width() / 2, (section.height() - 16) / 2);
    };
    const QColor accent("#f76900");
    QVERIFY(border() != accent);
    QHoverEvent move(QEvent::HoverMove, QPoint(10, 8), QPoint(-1, -1));
    QApplication::sendEvent(m_pHeader->viewport(), &move);
    QCOMPARE(border(), accent);
    m_pHeader->setDisabled(true);
    QVERIFY(border() != accent);
}

void tst_TarnCustomCheckHeaderView::Paint_OtherSection_ShowsItsText()
{
    const QImage before = m_pHeader->grab().toImage();
    m_pTable->setHorizontalHeaderItem(2, new QTableWidgetItem("other"));
    QVERIFY(m_pHeader->grab().toImage() != before);
}

void tst_TarnCustomCheckHeaderView::CheckBoxSection_SomeOrNone_IsTheFirst()
{
    m_pHeader->setCheckBoxVisible(2, true);
    QCOMPARE(m_pHeader->checkBoxSection(), 0);
    m_pHeader->setCheckBoxVisible(0, false);
    QCOMPARE(m_pHeader->checkBoxSection(), 2);
    m_pHeader->setCheckBoxVisible(2, false);
    QCOMPARE(m_pHeader->checkBoxSection(), -1);
}

void tst_TarnCustomCheckHeaderView::Construct_ParentAlone_IsHorizontalWithoutBoxes()
{
    TarnCustomCheckHeaderView header(m_pTable);
    QCOMPARE(header.orientation(), Qt::Horizontal);
    QCOMPARE(header.parentWidget(), static_cast<QWidget *>(m_pTable));
    QCOMPARE(header.checkBoxSection(), -1);
    QVERIFY(!header.highlightSections());
    QVERIFY(header.accessibleDescription().contains("selects all rows"));
}

QTEST_MAIN(tst_TarnCustomCheckHeaderView)
#include "tst_tarncustomcheckheaderview.moc"
