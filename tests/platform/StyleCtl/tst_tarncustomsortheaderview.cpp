#include <QApplication>
#include <QHelpEvent>
#include <QHoverEvent>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>
#include <QToolTip>

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

private:
    void Click(int nSection, Qt::MouseButton eButton = Qt::LeftButton);
    bool Press(Qt::Key eKey, bool bRepeated = false);
    void Hover(int nSection);
    QRect PlaceOf(int nSection) const;
    QImage SectionImage(int nSection) const;
    QVector<int> ArrowRows(int nSection) const;
    QPair<int, int> TextColumns(int nSection) const;
    QString TipShownAt(int nSection);

    QTableWidget *m_pTable = nullptr;
    TarnCustomSortHeaderView *m_pHeader = nullptr;
    void KeyEnter_ChosenSection_SortsByIt();
    void KeyOther_AnyOrNoSections_GoesOnToTheWindow();
    void FocusSection_ColumnsTakenAway_IsTheFirstVisible();
    void SectionSize_Contents_IsTheTextWithItsPadding();
    void Paint_SortedSection_ArrowPointsTheWay();
    void Paint_Arrow_StandsInTheMiddleAboveTheText();
    void Paint_HoveredSection_ShowsWhatCanBeSorted();
    void Paint_Sections_HaveLinesBelowAndBetween();
    void Paint_Text_FollowsItsAlignment();
    void Paint_Text_IsGreyWhenDisabled();
    void Paint_TextTooLong_EndsInAnEllipsis();
    void Paint_Focus_RingGoesAroundTheChosenSection();
    void ToolTip_OwnTip_IsShown();
    void ToolTip_TextCutOff_ShowsWholeText();
    void ToolTip_TextFits_None();
    void ToolTip_RightOfTheLastSection_None();
};

namespace {

const QColor HEADER("#eaecef");
const QColor HOVERED("#e0e3e8");
const QColor LINE("#d9dce1");
const QColor ACCENT("#f76900");
const QColor TEXT("#333333");
const QColor TEXT_DISABLED("#9a9ea5");

} // namespace

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

QRect tst_TarnCustomSortHeaderView::PlaceOf(int nSection) const
{
    return QRect(m_pHeader->sectionViewportPosition(nSection), 0, m_pHeader->sectionSize(nSection),
                 m_pHeader->height());
}

void tst_TarnCustomSortHeaderView::Hover(int nSection)
{
    QHoverEvent move(QEvent::HoverMove, PlaceOf(nSection).center(), QPoint(-1, -1));
    QApplication::sendEvent(m_pHeader->viewport(), &move);
}

QImage tst_TarnCustomSortHeaderView::SectionImage(int nSection) const
{
    return m_pHeader->viewport()->grab(PlaceOf(nSection)).toImage();
}

/// How wide the arrow of a section is, line by line.
QVector<int> tst_TarnCustomSortHeaderView::ArrowRows(int nSection) const
{
    const QImage section = SectionImage(nSection);
    QVector<int> vecRows;
    for (int y = 0; y < section.height(); ++y) {
        int nWidth = 0;
        for (int x = 0; x < section.width(); ++x)
            nWidth += section.pixelColor(x, y) == ACCENT ? 1 : 0;
        if (nWidth)
            vecRows.append(nWidth);
    }
    return vecRows;
}

/// First and last column of a section that show its text.
QPair<int, int> tst_TarnCustomSortHeaderView::TextColumns(int nSection) const
{
    const QImage section = SectionImage(nSection);
    QPair<int, int> columns(-1, -1);
    for (int x = 0; x < section.width() - 1; ++x) {
        if (section.pixelColor(x, section.height() / 2) == HEADER)
            continue;
        columns.first = columns.first < 0 ? x : columns.first;
        columns.second = x;
    }
    return columns;
}

QString tst_TarnCustomSortHeaderView::TipShownAt(int nSection)
{
    const QPoint pos = PlaceOf(nSection).center();
    QHelpEvent help(QEvent::ToolTip, pos, m_pHeader->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(m_pHeader->viewport(), &help);
    const QString tip = QToolTip::isVisible() ? QToolTip::text() : QString();
    QToolTip::hideText();
    return tip;
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

void tst_TarnCustomSortHeaderView::SectionSize_Contents_IsTheTextWithItsPadding()
{
    const QFontMetrics metrics = m_pHeader->fontMetrics();
    QCOMPARE(m_pHeader->sectionSizeHint(2), metrics.horizontalAdvance("three") + 12);
    QCOMPARE(m_pHeader->sizeHint().height(), metrics.height() + 12);
}

void tst_TarnCustomSortHeaderView::Paint_SortedSection_ArrowPointsTheWay()
{
    QCOMPARE(ArrowRows(2), QVector<int>());
    Click(2);
    const QVector<int> vecUp = ArrowRows(2);
    QVERIFY2(vecUp.size() >= 3, "no arrow");
    QVERIFY(vecUp.last() > vecUp.first());
    QCOMPARE(ArrowRows(3), QVector<int>());
    Click(2);
    const QVector<int> vecDown = ArrowRows(2);
    QVERIFY(vecDown.first() > vecDown.last());
}

void tst_TarnCustomSortHeaderView::Paint_Arrow_StandsInTheMiddleAboveTheText()
{
    Click(2);
    const QImage section = SectionImage(2);
    QRect arrow;
    for (int y = 0; y < section.height(); ++y) {
        for (int x = 0; x < section.width(); ++x) {
            if (section.pixelColor(x, y) == ACCENT)
                arrow |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(arrow.width() >= 6 && arrow.width() <= 10);
    QVERIFY2(qAbs(arrow.center().x() - section.width() / 2) <= 1,
             qPrintable(QString::number(arrow.center().x())));
    QVERIFY(arrow.top() >= 3 && arrow.bottom() < 8);
}

void tst_TarnCustomSortHeaderView::Paint_HoveredSection_ShowsWhatCanBeSorted()
{
    const auto color = [this](int nSection) { return SectionImage(nSection).pixelColor(2, 2); };
    Hover(2);
    QCOMPARE(color(2), HOVERED);
    QCOMPARE(color(3), HEADER);
    Hover(0); // offers no sorting
    QCOMPARE(color(0), HEADER);
    QCOMPARE(color(2), HEADER);
    Hover(2);
    m_pHeader->setDisabled(true);
    QCOMPARE(color(2), HEADER);
    m_pHeader->setDisabled(false);
    Hover(2);
    QHoverEvent leave(QEvent::HoverLeave, QPoint(-1, -1), QPoint(5, 5));
    QApplication::sendEvent(m_pHeader->viewport(), &leave);
    QCOMPARE(color(2), HEADER);
}

void tst_TarnCustomSortHeaderView::Paint_Sections_HaveLinesBelowAndBetween()
{
    for (int nSection : {0, 2, 3}) {
        const QImage section = SectionImage(nSection);
        const int nRight = section.width() - 1;
        QCOMPARE(section.pixelColor(3, section.height() - 1), LINE);
        QCOMPARE(section.pixelColor(3, section.height() - 2), HEADER);
        QCOMPARE(section.pixelColor(nRight, 3), nSection == 3 ? HEADER : LINE);
        QCOMPARE(section.pixelColor(nRight - 1, 3), HEADER);
    }
    const QImage whole = m_pHeader->viewport()->grab().toImage();
    QCOMPARE(whole.pixelColor(whole.width() - 2, 3), HEADER); // right of the last section
}

void tst_TarnCustomSortHeaderView::Paint_Text_FollowsItsAlignment()
{
    const QString strBlocks(2, QChar(0x2588));
    m_pTable->setHorizontalHeaderItem(2, new QTableWidgetItem(strBlocks));
    m_pHeader->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    QVERIFY(qAbs(TextColumns(2).first - 6) <= 1);
    m_pTable->horizontalHeaderItem(2)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QVERIFY(TextColumns(2).second >= m_pHeader->sectionSize(2) - 8);
    QVERIFY(TextColumns(2).first > 20);
}

void tst_TarnCustomSortHeaderView::Paint_Text_IsGreyWhenDisabled()
{
    m_pTable->setHorizontalHeaderItem(2, new QTableWidgetItem(QString(6, QChar(0x2588))));
    m_pHeader->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const QPoint inside(14, m_pHeader->height() / 2);
    QCOMPARE(SectionImage(2).pixelColor(inside), TEXT);
    m_pHeader->setDisabled(true);
    QCOMPARE(SectionImage(2).pixelColor(inside), TEXT_DISABLED);
}

void tst_TarnCustomSortHeaderView::Paint_TextTooLong_EndsInAnEllipsis()
{
    m_pTable->setHorizontalHeaderItem(2, new QTableWidgetItem("a text that is too long"));
    const QImage cutOff = SectionImage(2);
    m_pTable->setHorizontalHeaderItem(2, new QTableWidgetItem("a text that is too long for it"));
    QCOMPARE(SectionImage(2), cutOff);
}

void tst_TarnCustomSortHeaderView::Paint_Focus_RingGoesAroundTheChosenSection()
{
    const auto hasRing = [this](int nSection) {
        const QImage section = SectionImage(nSection);
        for (int x = 0; x < 4; ++x) {
            if (section.pixelColor(x, section.height() / 2) == ACCENT)
                return true;
        }
        return false;
    };
    m_pTable->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_pTable));
    m_pTable->setFocus();
    QVERIFY(!hasRing(0));
    m_pHeader->setFocus();
    QTRY_VERIFY(hasRing(0));
    QTest::keyClick(m_pHeader, Qt::Key_Right);
    QVERIFY(!hasRing(0));
    QVERIFY(hasRing(2));
}

void tst_TarnCustomSortHeaderView::ToolTip_OwnTip_IsShown()
{
    m_pTable->horizontalHeaderItem(2)->setToolTip("what it means");
    QCOMPARE(TipShownAt(2), QString("what it means"));
}

void tst_TarnCustomSortHeaderView::ToolTip_TextCutOff_ShowsWholeText()
{
    m_pHeader->resizeSection(2, m_pHeader->sectionSizeHint(2) - 1);
    QCOMPARE(TipShownAt(2), QString("three"));
}

void tst_TarnCustomSortHeaderView::ToolTip_TextFits_None()
{
    m_pHeader->resizeSection(2, m_pHeader->sectionSizeHint(2));
    QCOMPARE(TipShownAt(2), QString());
}

void tst_TarnCustomSortHeaderView::ToolTip_RightOfTheLastSection_None()
{
    const QPoint pos(m_pHeader->width() - 2, 5);
    QHelpEvent help(QEvent::ToolTip, pos, m_pHeader->viewport()->mapToGlobal(pos));
    QVERIFY(QApplication::sendEvent(m_pHeader->viewport(), &help));
    QVERIFY(!QToolTip::isVisible());
}

QTEST_MAIN(tst_TarnCustomSortHeaderView)
#include "tst_tarncustomsortheaderview.moc"
