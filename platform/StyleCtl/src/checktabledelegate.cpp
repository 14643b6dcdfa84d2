#include "checktabledelegate.h"

#include <QHeaderView>
#include <QPainter>

#include "stylepainter.h"
#include "tarncustomtablewidget.h"

namespace {

// Puts the texts of the cells below those of the header.
constexpr int kTextIndent = 3;

} // namespace

CheckTableDelegate::CheckTableDelegate(TarnCustomTableWidget *pTable)
    : QStyledItemDelegate(pTable)
    , m_pTable(pTable)
{
}

void CheckTableDelegate::DrawBackground(QPainter *pPainter, const QStyleOptionViewItem &option,
                                        const QModelIndex &index) const
{
    const bool bEnabled = m_pTable->isEnabled();
    QColor color =
        option.features & QStyleOptionViewItem::Alternate ? StylePainter::BaseAlternate : StylePainter::Base;
    const QVariant own = index.data(Qt::BackgroundRole);
    if (option.state & QStyle::State_Selected)
        color = bEnabled && m_pTable->hasFocus() ? StylePainter::AccentSoft : StylePainter::Unfocused;
    else if (bEnabled && index.row() == m_pTable->m_nHoverRow)
        color = StylePainter::AccentPale;
    else if (own.canConvert<QBrush>())
        color = own.value<QBrush>().color();
    pPainter->fillRect(option.rect, color);
}

// One frame around the whole row: the keyboard acts on rows, not on cells.
void CheckTableDelegate::DrawRowFocus(QPainter *pPainter, const QStyleOptionViewItem &option,
                                      const QModelIndex &index) const
{
    if (!m_pTable->hasFocus() || index.row() != m_pTable->currentRow())
        return;
    const QRect r = option.rect;
    pPainter->fillRect(QRect(r.left(), r.top(), r.width(), 1), StylePainter::Accent);
    pPainter->fillRect(QRect(r.left(), r.bottom(), r.width(), 1), StylePainter::Accent);
    const QHeaderView *pHeader = m_pTable->horizontalHeader();
    if (pHeader->sectionPosition(index.column()) == 0)
        pPainter->fillRect(QRect(r.left(), r.top(), 3, r.height()), StylePainter::Accent);
    if (pHeader->sectionPosition(index.column()) + pHeader->sectionSize(index.column()) == pHeader->length())
        pPainter->fillRect(QRect(r.right(), r.top(), 1, r.height()), StylePainter::Accent);
}

void CheckTableDelegate::paint(QPainter *pPainter, const QStyleOptionViewItem &option,
                               const QModelIndex &index) const
{
    DrawBackground(pPainter, option, index);
    DrawRowFocus(pPainter, option, index);
    const QVariant check = index.data(Qt::CheckStateRole);
    if (check.isValid()) {
        const bool bEnabled = m_pTable->isEnabled() && (index.flags() & Qt::ItemIsUserCheckable);
        const bool bHover = bEnabled && index.row() == m_pTable->m_nHoverRow;
        StylePainter::DrawCheckBox(pPainter, StylePainter::CheckBoxRect(option.rect),
                                   static_cast<Qt::CheckState>(check.toInt()), bEnabled, bHover);
        return;
    }
    // The style draws icon and text alone: with its own selection it would hide the colour that a text has.
    QStyleOptionViewItem content(option);
    initStyleOption(&content, index);
    content.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver);
    content.features &= ~QStyleOptionViewItem::Alternate;
    content.backgroundBrush = Qt::NoBrush;
    content.textElideMode = Qt::ElideRight;
    if (content.text.isEmpty() && !content.icon.isNull()) {
        const bool bEnabled = content.state & QStyle::State_Enabled;
        content.icon.paint(pPainter, option.rect, Qt::AlignCenter,
                           bEnabled ? QIcon::Normal : QIcon::Disabled);
        return;
    }
    content.rect.adjust(kTextIndent, 0, 0, 0);
    // What a row says is still to be read while the window cannot be used.
    if (!index.data(Qt::ForegroundRole).isValid())
        content.palette.setColor(QPalette::Disabled, QPalette::Text, StylePainter::TextWeak);
    m_pTable->style()->drawControl(QStyle::CE_ItemViewItem, &content, pPainter, m_pTable);
}

bool CheckTableDelegate::editorEvent(QEvent *, QAbstractItemModel *, const QStyleOptionViewItem &,
                                     const QModelIndex &)
{
    return false;
}

bool CheckTableDelegate::IsElided(const QModelIndex &index) const
{
    QStyleOptionViewItem option;
    option.initFrom(m_pTable);
    option.font = m_pTable->font();
    option.fontMetrics = m_pTable->fontMetrics();
    return sizeHint(option, index).width() + kTextIndent > m_pTable->visualRect(index).width();
}
