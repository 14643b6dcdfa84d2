#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

#include <StyleCtl/tarncustomsortheaderview.h>

class tst_TarnCustomSortHeaderView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Click_SortableSection_AscendingThenDescending();
    void Click_OtherSortableSection_StartsAscending();
    void Click_NotSortable_Nothing();
    void Click_SortingTakenAway_Nothing();
    void Click_RightButton_Nothing();
    void Drag_SectionBorder_ResizesWithoutSorting();
    void EnableSort_TakenAwayFromSortedSection_ArrowGoes();
    void KeySpace_ChosenSection_SortsByIt();
    void KeyRight_HiddenSectionNext_IsSkipped();
    void KeyEndAndHome_GoToLastAndFirstVisible();
    void KeyTab_FromTable_ReachesHeader();
    void AccessibleName_NotEmpty();

private:
    void Click(int nSection, Qt::MouseButton eButton = Qt::LeftButton);

    QTableWidget *m_pTable = nullptr;
    TarnCustomSortHeaderView *m_pHeader = nullptr;
};

void tst_TarnCustomSortHeaderView::init()
{
    m_pTable = new QTableWidget(2, 4);
    m_pHeader = new TarnCustomSortHeaderView(Qt::Horizontal, m_pTable);
    m_pTable->setHorizontalHeader(m_pHeader);
    m_pTable->setHorizontalHeaderLabels({"one", "two", "three", "four"});
    m_pTable->setColumnHidden(1, true);
    for (int i = 1; i < 4; ++i)
        m_pHeader->enableSort(i, true);
    m_pTable->resize(600, 200);
    m_pTable->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pTable));
}

void tst_TarnCustomSortHeaderView::cleanup()
{
    delete m_pTable;
}

void tst_TarnCustomSortHeaderView::Click(int nSection, Qt::MouseButton eButton)
{
    const QPoint centre(m_pHeader->sectionViewportPosition(nSection) + m_pHeader->sectionSize(nSection) / 2,
                        8);
    QTest::mouseClick(m_pHeader->viewport(), eButton, {}, centre);
}

void tst_TarnCustomSortHeaderView::Click_SortableSection_AscendingThenDescending()
{
    QSignalSpy sort(m_pHeader, &TarnCustomSortHeaderView::SigSortByColumn);
    Click(2);
    QCOMPARE(sort.count(), 1);
    QCOMPARE(sort.at(0), QVariantList({2, true}));
    Click(2);
    QCOMPARE(sort.count(), 2);
    QCOMPARE(sort.at(1), QVariantList({2, false}));
    Click(2);
    QCOMPARE(sort.at(2), QVariantList({2, true}));
}

void tst_TarnCustomSortHeaderView::Click_OtherSortableSection_StartsAscending()
{
    Click(2);
    Click(2);
    QSignalSpy sort(m_pHeader, &TarnCustomSortHeaderView::SigSortByColumn);
    Click(3);
    QCOMPARE(sort.at(0), QVariantList({3, true}));
    QCOMPARE(m_pHeader->sortSection(), 3);
}

void tst_TarnCustomSortHeaderView::Click_NotSortable_Nothing()
{
    QSignalSpy sort(m_pHeader, &TarnCustomSortHeaderView::SigSortByColumn);
    Click(0);
    QCOMPARE(sort.count(), 0);
    QCOMPARE(m_pHeader->sortSection(), -1);
}

void tst_TarnCustomSortHeaderView::Click_SortingTakenAway_Nothing()
{
    m_pHeader->enableSort(2, false);
    QSignalSpy sort(m_pHeader, &TarnCustomSortHeaderView::SigSortByColumn);
    Click(2);
    QCOMPARE(sort.count(), 0);
}

void tst_TarnCustomSortHeaderView::Click_RightButton_Nothing()
{
    QSignalSpy sort(m_pHeader, &TarnCustomSortHeaderView::SigSortByColumn);
    Click(2, Qt::RightButton);
    QCOMPARE(sort.count(), 0);
}

void tst_TarnCustomSortHeaderView::Drag_SectionBorder_ResizesWithoutSorting()
{
    QSignalSpy sort(m_pHeader, &TarnCustomSortHeaderView::SigSortByColumn);
    const int nOld = m_pHeader->sectionSize(2);
    const QPoint border(m_pHeader->sectionViewportPosition(2) + nOld - 1, 8);
    const auto send = [&](QEvent::Type eType, int nBy, Qt::MouseButton eCause, Qt::MouseButtons buttons) {
        QMouseEvent event(eType, border + QPoint(nBy, 0), eCause, buttons, {});
        QApplication::sendEvent(m_pHeader->viewport(), &event);
    };
    send(QEvent::MouseButtonPress, 0, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseMove, 10, Qt::NoButton, Qt::LeftButton);
    send(QEvent::MouseMove, 30, Qt::NoButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, 30, Qt::LeftButton, Qt::NoButton);
    QVERIFY(m_pHeader->sectionSize(2) > nOld);
    QCOMPARE(sort.count(), 0);
}

void tst_TarnCustomSortHeaderView::EnableSort_TakenAwayFromSortedSection_ArrowGoes()
{
    Click(2);
    QCOMPARE(m_pHeader->sortSection(), 2);
    m_pHeader->enableSort(2, false);
    QCOMPARE(m_pHeader->sortSection(), -1);
}

void tst_TarnCustomSortHeaderView::KeySpace_ChosenSection_SortsByIt()
{
    QSignalSpy sort(m_pHeader, &TarnCustomSortHeaderView::SigSortByColumn);
    QTest::keyClick(m_pHeader, Qt::Key_End);
    QTest::keyClick(m_pHeader, Qt::Key_Space);
    QTest::keyClick(m_pHeader, Qt::Key_Return);
    QCOMPARE(sort.count(), 2);
    QCOMPARE(sort.at(0), QVariantList({3, true}));
    QCOMPARE(sort.at(1), QVariantList({3, false}));
}

void tst_TarnCustomSortHeaderView::KeyRight_HiddenSectionNext_IsSkipped()
{
    QCOMPARE(m_pHeader->focusSection(), 0);
    QTest::keyClick(m_pHeader, Qt::Key_Right);
    QCOMPARE(m_pHeader->focusSection(), 2);
    QTest::keyClick(m_pHeader, Qt::Key_Left);
    QCOMPARE(m_pHeader->focusSection(), 0);
    QTest::keyClick(m_pHeader, Qt::Key_Left);
    QCOMPARE(m_pHeader->focusSection(), 0);
}

void tst_TarnCustomSortHeaderView::KeyEndAndHome_GoToLastAndFirstVisible()
{
    m_pTable->setColumnHidden(0, true);
    m_pTable->setColumnHidden(3, true);
    QTest::keyClick(m_pHeader, Qt::Key_End);
    QCOMPARE(m_pHeader->focusSection(), 2);
    QTest::keyClick(m_pHeader, Qt::Key_Home);
    QCOMPARE(m_pHeader->focusSection(), 2);
}

void tst_TarnCustomSortHeaderView::KeyTab_FromTable_ReachesHeader()
{
    m_pTable->setTabKeyNavigation(false);
    m_pTable->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_pTable));
    m_pTable->setFocus();
    QTest::keyClick(m_pTable, Qt::Key_Tab);
    QTRY_VERIFY(m_pHeader->hasFocus());
}

void tst_TarnCustomSortHeaderView::AccessibleName_NotEmpty()
{
    QVERIFY(!m_pHeader->accessibleName().isEmpty());
    QVERIFY(!m_pHeader->accessibleDescription().isEmpty());
}

QTEST_MAIN(tst_TarnCustomSortHeaderView)
#include "tst_tarncustomsortheaderview.moc"
