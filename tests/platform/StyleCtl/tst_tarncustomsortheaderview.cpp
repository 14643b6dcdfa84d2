#include <QApplication>
#include <QKeyEvent>
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
    void EnableSort_TakenAwayFromAnotherSection_ArrowStays();
    void KeySpace_ChosenSection_SortsByIt();
    void KeySpace_HeldDown_SortsOnce();
    void KeyRight_HiddenSectionNext_IsSkipped();
    void KeyRight_RightToLeft_GoesTheOtherWay();
    void KeyEndAndHome_GoToLastAndFirstVisible();
    void KeyTab_FromTable_ReachesHeader();
    void AccessibleName_NotEmpty();
    void AccessibleName_LanguageChanged_IsSetAnew();
    void KeyEnter_ChosenSection_SortsByIt();
    void KeyOther_AnyOrNoSections_GoesOnToTheWindow();
    void FocusSection_ColumnsTakenAway_IsTheFirstVisible();
    void KeyLeft_SectionBesideIt_IsChosen();

private:
    void Click(int nSection, Qt::MouseButton eButton = Qt::LeftButton);
    bool Press(Qt::Key eKey, bool bRepeated = false);

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

/// Whether the header took the key; what it ignores goes on to the window.
bool tst_TarnCustomSortHeaderView::Press(Qt::Key eKey, bool bRepeated)
{
    QKeyEvent press(QEvent::KeyPress, eKey, Qt::NoModifier, QString(), bRepeated);
    static_cast<QObject *>(m_pHeader)->event(&press);
    return press.isAccepted();
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

void tst_TarnCustomSortHeaderView::EnableSort_TakenAwayFromAnotherSection_ArrowStays()
{
    Click(2);
    m_pHeader->enableSort(3, false);
    QCOMPARE(m_pHeader->sortSection(), 2);
    QVERIFY(m_pHeader->sortAscending());
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

void tst_TarnCustomSortHeaderView::KeySpace_HeldDown_SortsOnce()
{
    QSignalSpy sort(m_pHeader, &TarnCustomSortHeaderView::SigSortByColumn);
    QTest::keyClick(m_pHeader, Qt::Key_End);
    QVERIFY(Press(Qt::Key_Space));
    QVERIFY(Press(Qt::Key_Space, true));
    QCOMPARE(sort.count(), 1);
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

void tst_TarnCustomSortHeaderView::KeyRight_RightToLeft_GoesTheOtherWay()
{
    m_pTable->setLayoutDirection(Qt::RightToLeft);
    QTest::keyClick(m_pHeader, Qt::Key_Left);
    QCOMPARE(m_pHeader->focusSection(), 2);
    QTest::keyClick(m_pHeader, Qt::Key_Right);
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

void tst_TarnCustomSortHeaderView::AccessibleName_LanguageChanged_IsSetAnew()
{
    m_pHeader->setAccessibleName("in another language");
    QEvent change(QEvent::LanguageChange);
    QApplication::sendEvent(m_pHeader, &change);
    QCOMPARE(m_pHeader->accessibleName(), QString("Column headers"));
}

void tst_TarnCustomSortHeaderView::KeyEnter_ChosenSection_SortsByIt()
{
    QSignalSpy sort(m_pHeader, &TarnCustomSortHeaderView::SigSortByColumn);
    QTest::keyClick(m_pHeader, Qt::Key_Right);
    QTest::keyClick(m_pHeader, Qt::Key_Enter);
    QCOMPARE(sort.count(), 1);
    QCOMPARE(sort.at(0), QVariantList({2, true}));
}

void tst_TarnCustomSortHeaderView::KeyOther_AnyOrNoSections_GoesOnToTheWindow()
{
    QVERIFY(Press(Qt::Key_Right));
    QVERIFY(!Press(Qt::Key_A));
    for (int nSection = 0; nSection < 4; ++nSection)
        m_pTable->setColumnHidden(nSection, true);
    QCOMPARE(m_pHeader->focusSection(), -1);
    QVERIFY(!Press(Qt::Key_Space));
    m_pTable->setColumnCount(0);
    QVERIFY(!Press(Qt::Key_Right));
}

void tst_TarnCustomSortHeaderView::FocusSection_ColumnsTakenAway_IsTheFirstVisible()
{
    QTest::keyClick(m_pHeader, Qt::Key_End);
    QCOMPARE(m_pHeader->focusSection(), 3);
    m_pTable->setColumnCount(3);
    QCOMPARE(m_pHeader->focusSection(), 0);
}

void tst_TarnCustomSortHeaderView::KeyLeft_SectionBesideIt_IsChosen()
{
    QTest::keyClick(m_pHeader, Qt::Key_End);
    QTest::keyClick(m_pHeader, Qt::Key_Left);
    QCOMPARE(m_pHeader->focusSection(), 2);
}

QTEST_MAIN(tst_TarnCustomSortHeaderView)
#include "tst_tarncustomsortheaderview.moc"
