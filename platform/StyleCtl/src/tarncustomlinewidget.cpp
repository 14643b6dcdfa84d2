#include "tarncustomlinewidget.h"

#include <QPainter>

#include "stylepainter.h"

TarnCustomLineWidget::TarnCustomLineWidget(QWidget *pParent)
    : QWidget(pParent)
    , m_color(StylePainter::Line)
{
}

void TarnCustomLineWidget::cSetLineType(LineType eType)
{
    m_eType = eType;
    update();
}

void TarnCustomLineWidget::cSetBackgroundColor(const QColor &color, TarnCustom::CtrlState eState)
{
    if (eState == TarnCustom::StateDisabled)
        m_disabledColor = color;
    else if (eState == TarnCustom::StateNormal)
        m_color = color;
    update();
}

QSize TarnCustomLineWidget::sizeHint() const
{
    return {1, 1};
}

void TarnCustomLineWidget::paintEvent(QPaintEvent *)
{
    const QColor color = isEnabled() || !m_disabledColor.isValid() ? m_color : m_disabledColor;
    QPainter painter(this);
    if (m_eType == SolidLine) {
        painter.fillRect(rect(), color);
        return;
    }
    const bool bVertical = height() > width();
    const int nDash = 4;
    for (int i = 0; i < (bVertical ? height() : width()); i += 2 * nDash)
        painter.fillRect(bVertical ? QRect(0, i, width(), nDash) : QRect(i, 0, nDash, height()), color);
}
