#include "tarncustomlabel.h"

#include "stylepainter.h"

TarnCustomLabel::TarnCustomLabel(QWidget *pParent)
    : TarnCustomLabel(QString(), pParent)
{
}

TarnCustomLabel::TarnCustomLabel(const QString &text, QWidget *pParent)
    : QLabel(text, pParent)
{
    setTextFormat(Qt::PlainText);
    cSetFontColor(StylePainter::Text);
}

void TarnCustomLabel::cSetFontColor(const QColor &color, TarnCustom::CtrlState eState)
{
    QPalette colors = palette();
    if (eState == TarnCustom::StateDisabled) {
        m_disabledColor = color;
        colors.setColor(QPalette::Disabled, QPalette::WindowText, color);
    } else if (eState == TarnCustom::StateNormal) {
        colors.setColor(QPalette::WindowText, color);
        colors.setColor(QPalette::Disabled, QPalette::WindowText,
                        m_disabledColor.isValid() ? m_disabledColor : color);
    }
    setPalette(colors);
}

QColor TarnCustomLabel::cFontColor(TarnCustom::CtrlState eState) const
{
    return palette().color(eState == TarnCustom::StateDisabled ? QPalette::Disabled : QPalette::Active,
                           QPalette::WindowText);
}

void TarnCustomLabel::cSetFontSize(int nPixelSize)
{
    if (nPixelSize < 1)
        return;
    QFont changed = font();
    changed.setPixelSize(nPixelSize);
    setFont(changed);
}
