#include "tarncustomcheckheaderview.h"

#include <QPainter>

#include <algorithm>

#include "stylepainter.h"

TarnCustomCheckHeaderView::TarnCustomCheckHeaderView(Qt::Orientation orientation, QWidget *pParent)
    : TarnCustomSortHeaderView(orientation, pParent)
{
    TarnCustomCheckHeaderView::setTexts();
}

TarnCustomCheckHeaderView::TarnCustomCheckHeaderView(QWidget *pParent)
    : TarnCustomCheckHeaderView(Qt::Horizontal, pParent)
{
}

TarnCustomCheckHeaderView::~TarnCustomCheckHeaderView() = default;

void TarnCustomCheckHeaderView::setTexts()
{
    TarnCustomSortHeaderView::setTexts();
    setAccessibleDescription(tr(
        "Left and Right choose a column, Space sorts by it or ticks the check box that selects all rows."));
    for (auto it = m_mapState.constBegin(); it != m_mapState.constEnd(); ++it)
        UpdateAccessibleState(it.key());
}

void TarnCustomCheckHeaderView::setCheckBoxVisible(int nSection, bool bVisible)
{
    if (nSection < 0 || bVisible == m_mapState.contains(nSection))
        return;
    if (bVisible)
        m_mapState.insert(nSection, Qt::Unchecked);
    else
        m_mapState.remove(nSection);
    UpdateAccessibleState(nSection);
    viewport()->update();
}

bool TarnCustomCheckHeaderView::isCheckBoxVisible(int nSection) const
{
    return m_mapState.contains(nSection);
}

void TarnCustomCheckHeaderView::setCheckState(int nSection, Qt::CheckState eState, bool bEmitSignal)
{
    const auto it = m_mapState.find(nSection);
    if (it == m_mapState.end())
        return;
    if (it.value() != eState) {
        it.value() = eState;
        UpdateAccessibleState(nSection);
        viewport()->update();
    }
    if (bEmitSignal)
        emit SigCheckStateChange(nSection);
}

Qt::CheckState TarnCustomCheckHeaderView::checkState(int nSection) const
{
    return m_mapState.value(nSection, Qt::Unchecked);
}

int TarnCustomCheckHeaderView::checkBoxSection() const
{
    const QList<int> sections = m_mapState.keys();
    return sections.isEmpty() ? -1 : *std::min_element(sections.begin(), sections.end());
}

void TarnCustomCheckHeaderView::activateSection(int nSection)
{
    if (isCheckBoxVisible(nSection))
        setCheckState(nSection, checkState(nSection) == Qt::Checked ? Qt::Unchecked : Qt::Checked, true);
    else
        TarnCustomSortHeaderView::activateSection(nSection);
}

// The section has no text that a screen reader could read.
void TarnCustomCheckHeaderView::UpdateAccessibleState(int nSection)
{
    if (!model())
        return;
    QVariant text;
    if (isCheckBoxVisible(nSection))
        text =
            checkState(nSection) == Qt::Unchecked ? tr("Select all, not ticked") : tr("Select all, ticked");
    model()->setHeaderData(nSection, orientation(), text, Qt::AccessibleTextRole);
}

void TarnCustomCheckHeaderView::paintContent(QPainter *pPainter, const QRect &rect, int nSection) const
{
    if (!isCheckBoxVisible(nSection)) {
        TarnCustomSortHeaderView::paintContent(pPainter, rect, nSection);
        return;
    }
    const bool bHover = isEnabled() && nSection == hoverSection();
    StylePainter::DrawCheckBox(pPainter, StylePainter::CheckBoxRect(rect), checkState(nSection), isEnabled(),
                               bHover);
}
