#include "tarncustomsortheaderview.h"

#include <QHelpEvent>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

#include "stylepainter.h"

namespace {

constexpr int kPadding = 6;
constexpr int kArrowWidth = 10;

void DrawArrow(QPainter *pPainter, const QRectF &place, bool bUp)
{
    QPainterPath arrow;
    arrow.moveTo(place.left(), bUp ? place.bottom() : place.top());
    arrow.lineTo(place.right(), bUp ? place.bottom() : place.top());
    arrow.lineTo(place.center().x(), bUp ? place.top() : place.bottom());
    arrow.closeSubpath();
    pPainter->fillPath(arrow, StylePainter::Accent);
}

} // namespace

TarnCustomSortHeaderView::TarnCustomSortHeaderView(Qt::Orientation orientation, QWidget *pParent)
    : QHeaderView(orientation, pParent)
{
    setObjectName(QStringLiteral("Header"));
    setPalette(StylePainter::LightPalette());
    setSectionsClickable(true);
    setHighlightSections(false);
    setFocusPolicy(Qt::TabFocus);
    viewport()->setAttribute(Qt::WA_Hover);
    connect(this, &QHeaderView::sectionClicked, this, [this](int nSection) { activateSection(nSection); });
    TarnCustomSortHeaderView::setTexts();
}

TarnCustomSortHeaderView::~TarnCustomSortHeaderView() = default;

void TarnCustomSortHeaderView::setTexts()
{
    setAccessibleName(TarnCustomSortHeaderView::tr("Column headers"));
    setAccessibleDescription(
        TarnCustomSortHeaderView::tr("Left and Right choose a column, Space sorts by it."));
}

void TarnCustomSortHeaderView::enableSort(int nSection, bool bEnable)
{
    if (bEnable) {
        m_setSortable.insert(nSection);
        return;
    }
    m_setSortable.remove(nSection);
    if (m_nSortSection == nSection)
        m_nSortSection = -1;
    viewport()->update();
}

bool TarnCustomSortHeaderView::isSortEnabled(int nSection) const
{
    return m_setSortable.contains(nSection);
}

void TarnCustomSortHeaderView::activateSection(int nSection)
{
    if (!isSortEnabled(nSection))
        return;
    m_bSortAscending = m_nSortSection == nSection ? !m_bSortAscending : true;
    m_nSortSection = nSection;
    viewport()->update();
    emit SigSortByColumn(nSection, m_bSortAscending);
}

int TarnCustomSortHeaderView::NextVisible(int nVisualIndex, int nStep) const
{
    int nVisual = nVisualIndex;
    while (nVisual >= 0 && nVisual < count() && isSectionHidden(logicalIndex(nVisual)))
        nVisual += nStep;
    return nVisual >= 0 && nVisual < count() ? logicalIndex(nVisual) : -1;
}

int TarnCustomSortHeaderView::focusSection() const
{
    const bool bUsable =
        m_nFocusSection >= 0 && m_nFocusSection < count() && !isSectionHidden(m_nFocusSection);
    return bUsable ? m_nFocusSection : NextVisible(0, 1);
}

void TarnCustomSortHeaderView::MoveFocus(int nStep)
{
    const int nNext = NextVisible(visualIndex(focusSection()) + nStep, nStep);
    if (nNext >= 0)
        m_nFocusSection = nNext;
    viewport()->update();
}

void TarnCustomSortHeaderView::keyPressEvent(QKeyEvent *pEvent)
{
    if (count() == 0 || focusSection() < 0) {
        pEvent->ignore();
        return;
    }
    switch (pEvent->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        MoveFocus((pEvent->key() == Qt::Key_Left) == (layoutDirection() == Qt::LeftToRight) ? -1 : 1);
        break;
    case Qt::Key_Home:
        m_nFocusSection = NextVisible(0, 1);
        break;
    case Qt::Key_End:
        m_nFocusSection = NextVisible(count() - 1, -1);
        break;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!pEvent->isAutoRepeat())
            activateSection(focusSection());
        break;
    default:
        pEvent->ignore();
        return;
    }
    viewport()->update();
}

void TarnCustomSortHeaderView::focusInEvent(QFocusEvent *pEvent)
{
    QHeaderView::focusInEvent(pEvent);
    viewport()->update();
}

void TarnCustomSortHeaderView::focusOutEvent(QFocusEvent *pEvent)
{
    QHeaderView::focusOutEvent(pEvent);
    viewport()->update();
}

void TarnCustomSortHeaderView::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        setTexts();
    QHeaderView::changeEvent(pEvent);
}

bool TarnCustomSortHeaderView::viewportEvent(QEvent *pEvent)
{
    switch (pEvent->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        SetHoverSection(logicalIndexAt(static_cast<QHoverEvent *>(pEvent)->pos()));
        break;
    case QEvent::ToolTip:
        ShowWholeText(static_cast<QHelpEvent *>(pEvent));
        return true;
    case QEvent::HoverLeave:
    case QEvent::Hide:
        SetHoverSection(-1);
        break;
    default:
        break;
    }
    return QHeaderView::viewportEvent(pEvent);
}

// A section's own tool tip, else its text when that does not fit.
void TarnCustomSortHeaderView::ShowWholeText(QHelpEvent *pHelp)
{
    const int nSection = logicalIndexAt(pHelp->pos());
    if (!model() || nSection < 0)
        return;
    QString tip = model()->headerData(nSection, orientation(), Qt::ToolTipRole).toString();
    if (tip.isEmpty() && sectionSizeFromContents(nSection).width() > sectionSize(nSection))
        tip = model()->headerData(nSection, orientation()).toString();
    QToolTip::showText(pHelp->globalPos(), tip, viewport());
}

void TarnCustomSortHeaderView::SetHoverSection(int nSection)
{
    if (m_nHoverSection == nSection)
        return;
    m_nHoverSection = nSection;
    viewport()->update();
}

QSize TarnCustomSortHeaderView::sectionSizeFromContents(int nSection) const
{
    const QString text = model() ? model()->headerData(nSection, orientation()).toString() : QString();
    return {fontMetrics().horizontalAdvance(text) + 2 * kPadding, fontMetrics().height() + 2 * kPadding};
}

void TarnCustomSortHeaderView::paintEvent(QPaintEvent *pEvent)
{
    QHeaderView::paintEvent(pEvent);
    if (orientation() != Qt::Horizontal)
        return;
    // What lies behind the last section; the base class leaves it to the style.
    const QRect rest(length() - offset(), 0, viewport()->width(), viewport()->height());
    QPainter(viewport())
        .fillRect(QStyle::visualRect(layoutDirection(), viewport()->rect(), rest), StylePainter::Header);
}

void TarnCustomSortHeaderView::paintContent(QPainter *pPainter, const QRect &rect, int nSection) const
{
    const QString text = model()->headerData(nSection, orientation()).toString();
    const QVariant alignment = model()->headerData(nSection, orientation(), Qt::TextAlignmentRole);
    const int nAlign = alignment.isValid() ? alignment.toInt() : int(defaultAlignment());
    pPainter->setPen(isEnabled() ? StylePainter::Text : StylePainter::TextDisabled);
    pPainter->drawText(rect, nAlign | Qt::TextSingleLine,
                       pPainter->fontMetrics().elidedText(text, Qt::ElideRight, rect.width()));
}

void TarnCustomSortHeaderView::paintSection(QPainter *pPainter, const QRect &rect, int nSection) const
{
    if (!model() || !rect.isValid())
        return;
    const bool bHover = isEnabled() && nSection == m_nHoverSection && isSortEnabled(nSection);
    pPainter->save();
    pPainter->fillRect(rect, bHover ? StylePainter::HeaderHover : StylePainter::Header);
    pPainter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), StylePainter::Line);
    if (visualIndex(nSection) < count() - 1)
        pPainter->fillRect(QRect(rect.right(), rect.top(), 1, rect.height()), StylePainter::Line);
    QRect content = rect.adjusted(kPadding, 0, -kPadding, 0);
    if (nSection == m_nSortSection) {
        // Above the text: narrow columns have no room beside it.
        const QRectF arrow(rect.center().x() - kArrowWidth / 2.0, rect.top() + 3, kArrowWidth, 5);
        pPainter->setRenderHint(QPainter::Antialiasing);
        DrawArrow(pPainter, arrow, m_bSortAscending);
    }
    paintContent(pPainter, content, nSection);
    if (hasFocus() && nSection == focusSection())
        StylePainter::DrawFocusRing(pPainter, rect, 2);
    pPainter->restore();
}
