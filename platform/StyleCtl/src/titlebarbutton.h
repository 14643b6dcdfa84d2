#ifndef STYLECTL_TITLEBARBUTTON_H
#define STYLECTL_TITLEBARBUTTON_H

#include <QAbstractButton>

/// One of the buttons at the right end of a title bar; its sign is drawn, so it is sharp at any scale.
class TitleBarButton : public QAbstractButton
{
    Q_OBJECT

public:
    enum Sign
    {
        Minimize,
        Maximize,
        Restore,
        Close
    };

    TitleBarButton(Sign eSign, QWidget *pParent);

    void SetSign(Sign eSign);
    /// Sets tool tip and accessible name.
    void SetName(const QString &name);

    QSize sizeHint() const override;

protected:
    bool event(QEvent *pEvent) override;
    void paintEvent(QPaintEvent *pEvent) override;

private:
    Sign m_eSign;
};

#endif
