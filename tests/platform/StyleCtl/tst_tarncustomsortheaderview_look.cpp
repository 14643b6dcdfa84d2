#include <QApplication>
#include <QHelpEvent>
#include <QHoverEvent>
#include <QTableWidget>
#include <QTest>
#include <QToolTip>

#include <functional>

#include <StyleCtl/tarncustomsortheaderview.h>

/// What a header shows.
class tst_TarnCustomSortHeaderViewLook : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { delete m_pTable; }

    void SectionSize_Contents_IsTheTextWithItsPadding();
    void Paint_SortedSection_ArrowPointsTheWay();
    void Paint_Arrow_StandsInTheMiddleAboveTheText();
    void Paint_HoveredSection_ShowsWhatCanBeSorted();
    void Paint_Sections_HaveLinesBelowAndBetween();
    void Paint_Text_FollowsItsAlignment();
    void Paint_Text_IsGreyWhenDisabled();
    void Paint_TextTooLong_EndsInAnEllipsis();
    void Paint_Focus_RingGoesAroundTheChosenSection();
    void Paint_EveryChange_IsShownAtOnce();
    void ToolTip_OwnTip_IsShown();
    void ToolTip_TextCutOff_ShowsWholeText();
    void ToolTip_TextFits_None();
    void ToolTip_RightOfTheLastSection_None();

private:
    void Click(int nSection, Qt::MouseButton eButton = Qt::LeftButton);
    void Hover(int nSection);
    QRect PlaceOf(int nSection) const;
    QImage SectionImage(int nSection) const;
    QVector<int> ArrowRows(int nSection) const;
    QPair<int, int> TextColumns(int nSection) const;
    QString TipShownAt(int nSection);

    QTableWidget *m_pTable = nullptr;
    TarnCustomSortHeaderView *m_pHeader = nullptr;
};

namespace {

/// Counts how often a widget is painted.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *pWidget) { pWidget->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *pEvent) override
    {
        m_nPaints += pEvent->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int m_nPaints = 0;
};

const QColor kHeader("#eaecef");
const QColor kHovered("#e0e3e8");
const QColor kLine("#d9dce1");
const QColor kAccent("#f76900");
const QColor kText("#333333");
const QColor kTextDisabled("#9a9ea5");

} // namespace

void tst_TarnCustomSortHeaderViewLook::init()
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

void tst_TarnCustomSortHeaderViewLook::Click(int nSection, Qt::MouseButton eButton)
{
    const QPoint centre(m_pHeader->sectionViewportPosition(nSection) + m_pHeader->sectionSize(nSection) / 2,
                        8);
    QTest::mouseClick(m_pHeader->viewport(), eButton, {}, centre);
}

void tst_TarnCustomSortHeaderViewLook::Hover(int nSection)
{
    QHoverEvent move(QEvent::HoverMove, PlaceOf(nSection).center(), QPoint(-1, -1));
    QApplication::sendEvent(m_pHeader->viewport(), &move);
}

QRect tst_TarnCustomSortHeaderViewLook::PlaceOf(int nSection) const
{
    return QRect(m_pHeader->sectionViewportPosition(nSection), 0, m_pHeader->sectionSize(nSection),
                 m_pHeader->height());
}

QImage tst_TarnCustomSortHeaderViewLook::SectionImage(int nSection) const
{
    return m_pHeader->viewport()->grab(PlaceOf(nSection)).toImage();
}

/// How wide the arrow of a section is, line by line.
QVector<int> tst_TarnCustomSortHeaderViewLook::ArrowRows(int nSection) const
{
    const QImage section = SectionImage(nSection);
    QVector<int> vecRows;
    for (int y = 0; y < section.height(); ++y) {
        int nWidth = 0;
        for (int x = 0; x < section.width(); ++x)
            nWidth += section.pixelColor(x, y) == kAccent ? 1 : 0;
        if (nWidth)
            vecRows.append(nWidth);
    }
    return vecRows;
}

/// First and last column of a section that show its text.
QPair<int, int> tst_TarnCustomSortHeaderViewLook::TextColumns(int nSection) const
{
    const QImage section = SectionImage(nSection);
    QPair<int, int> columns(-1, -1);
    for (int x = 0; x < section.width() - 1; ++x) {
        if (section.pixelColor(x, section.height() / 2) == kHeader)
            continue;
        columns.first = columns.first < 0 ? x : columns.first;
        columns.second = x;
    }
    return columns;
}

QString tst_TarnCustomSortHeaderViewLook::TipShownAt(int nSection)
{
    const QPoint pos = PlaceOf(nSection).center();
    QHelpEvent help(QEvent::ToolTip, pos, m_pHeader->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(m_pHeader->viewport(), &help);
    QString tip = QToolTip::isVisible() ? QToolTip::text() : QString();
    QToolTip::hideText();
    return tip;
}

void tst_TarnCustomSortHeaderViewLook::SectionSize_Contents_IsTheTextWithItsPadding()
{
    const QFontMetrics metrics = m_pHeader->fontMetrics();
    QCOMPARE(m_pHeader->sectionSizeHint(2), metrics.horizontalAdvance("three") + 12);
    QCOMPARE(m_pHeader->sizeHint().height(), metrics.height() + 12);
}

void tst_TarnCustomSortHeaderViewLook::Paint_SortedSection_ArrowPointsTheWay()
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

void tst_TarnCustomSortHeaderViewLook::Paint_Arrow_StandsInTheMiddleAboveTheText()
{
    Click(2);
    const QImage section = SectionImage(2);
    QRect arrow;
    for (int y = 0; y < section.height(); ++y) {
        for (int x = 0; x < section.width(); ++x) {
            if (section.pixelColor(x, y) == kAccent)
                arrow |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY2(arrow.width() >= 7 && arrow.width() <= 10, qPrintable(QString::number(arrow.width())));
    QVERIFY2(qAbs(arrow.center().x() - section.width() / 2) <= 2,
             qPrintable(QString::number(arrow.center().x())));
    QVERIFY(arrow.top() >= 3 && arrow.bottom() < 8);
}

void tst_TarnCustomSortHeaderViewLook::Paint_HoveredSection_ShowsWhatCanBeSorted()
{
    m_pHeader->clearFocus(); // its ring would cover them
    const auto color = [this](int nSection) { return SectionImage(nSection).pixelColor(2, 2); };
    Hover(2);
    QCOMPARE(color(2), kHovered);
    QCOMPARE(color(3), kHeader);
    Hover(0); // offers no sorting
    QCOMPARE(color(0), kHeader);
    QCOMPARE(color(2), kHeader);
    Hover(2);
    m_pHeader->setDisabled(true);
    QCOMPARE(color(2), kHeader);
    m_pHeader->setDisabled(false);
    Hover(2);
    QHoverEvent leave(QEvent::HoverLeave, QPoint(-1, -1), QPoint(5, 5));
    QApplication::sendEvent(m_pHeader->viewport(), &leave);
    QCOMPARE(color(2), kHeader);
}

void tst_TarnCustomSortHeaderViewLook::Paint_Sections_HaveLinesBelowAndBetween()
{
    m_pHeader->clearFocus(); // its ring would cover them
    for (int nSection : {0, 2, 3}) {
        const QImage section = SectionImage(nSection);
        const int nRight = section.width() - 1;
        QCOMPARE(section.pixelColor(3, section.height() - 1), kLine);
        QCOMPARE(section.pixelColor(3, section.height() - 2), kHeader);
        QCOMPARE(section.pixelColor(nRight, 3), nSection == 3 ? kHeader : kLine);
        QCOMPARE(section.pixelColor(nRight - 1, 3), kHeader);
    }
    const QImage whole = m_pHeader->viewport()->grab().toImage();
    QCOMPARE(whole.pixelColor(whole.width() - 2, 3), kHeader); // right of the last section
}

void tst_TarnCustomSortHeaderViewLook::Paint_Text_FollowsItsAlignment()
{
    const QString strBlocks(2, QChar(0x2588));
    m_pTable->setHorizontalHeaderItem(2, new QTableWidgetItem(strBlocks));
    m_pHeader->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    QVERIFY(qAbs(TextColumns(2).first - 6) <= 1);
    m_pTable->horizontalHeaderItem(2)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QVERIFY(TextColumns(2).second >= m_pHeader->sectionSize(2) - 8);
    QVERIFY(TextColumns(2).first > 20);
}

void tst_TarnCustomSortHeaderViewLook::Paint_Text_IsGreyWhenDisabled()
{
    m_pTable->setHorizontalHeaderItem(2, new QTableWidgetItem(QString(6, QChar(0x2588))));
    m_pHeader->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const QPoint inside(14, m_pHeader->height() / 2);
    QCOMPARE(SectionImage(2).pixelColor(inside), kText);
    m_pHeader->setDisabled(true);
    QCOMPARE(SectionImage(2).pixelColor(inside), kTextDisabled);
}

void tst_TarnCustomSortHeaderViewLook::Paint_TextTooLong_EndsInAnEllipsis()
{
    m_pTable->setHorizontalHeaderItem(2, new QTableWidgetItem("a text that is too long"));
    const QImage cutOff = SectionImage(2);
    m_pTable->setHorizontalHeaderItem(2, new QTableWidgetItem("a text that is too long for it"));
    QCOMPARE(SectionImage(2), cutOff);
}

void tst_TarnCustomSortHeaderViewLook::Paint_Focus_RingGoesAroundTheChosenSection()
{
    const auto hasRing = [this](int nSection) {
        const QImage section = SectionImage(nSection);
        for (int x = 0; x < 4; ++x) {
            if (section.pixelColor(x, section.height() / 2) == kAccent)
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

void tst_TarnCustomSortHeaderViewLook::Paint_EveryChange_IsShownAtOnce()
{
    PaintCounter counter(m_pHeader->viewport());
    const auto paints = [&](const std::function<void()> &change) {
        QCoreApplication::processEvents();
        counter.m_nPaints = 0;
        change();
        return QTest::qWaitFor([&] { return counter.m_nPaints > 0; });
    };
    QVERIFY(paints([this] { Hover(2); }));
    QVERIFY(paints([this] { QTest::keyClick(m_pHeader, Qt::Key_End); }));
    QVERIFY(paints([this] { QTest::keyClick(m_pHeader, Qt::Key_Space); }));
    QVERIFY(paints([this] { m_pHeader->enableSort(3, false); }));
}

void tst_TarnCustomSortHeaderViewLook::ToolTip_OwnTip_IsShown()
{
    m_pTable->horizontalHeaderItem(2)->setToolTip("what it means");
    QCOMPARE(TipShownAt(2), QString("what it means"));
}

void tst_TarnCustomSortHeaderViewLook::ToolTip_TextCutOff_ShowsWholeText()
{
    m_pHeader->resizeSection(2, m_pHeader->sectionSizeHint(2) - 1);
    QCOMPARE(TipShownAt(2), QString("three"));
}

void tst_TarnCustomSortHeaderViewLook::ToolTip_TextFits_None()
{
    m_pHeader->resizeSection(2, m_pHeader->sectionSizeHint(2));
    QCOMPARE(TipShownAt(2), QString());
}

void tst_TarnCustomSortHeaderViewLook::ToolTip_RightOfTheLastSection_None()
{
    const QPoint pos(m_pHeader->width() - 2, 5);
    QHelpEvent help(QEvent::ToolTip, pos, m_pHeader->viewport()->mapToGlobal(pos));
    QVERIFY(QApplication::sendEvent(m_pHeader->viewport(), &help));
    QVERIFY(!QToolTip::isVisible());
}

QTEST_MAIN(tst_TarnCustomSortHeaderViewLook)
#include "tst_tarncustomsortheaderview_look.moc"
