#ifndef STYLECTL_HINTICON_H
#define STYLECTL_HINTICON_H

#include <QWidget>

/// The sign beside a message: a filled circle with an i, an exclamation mark, a cross or, when something is
/// done, a tick.
class HintIcon : public QWidget
{
    Q_OBJECT

public:
    enum Sign
    {
        Information,
        Warning,
        Error,
        Done
    };

    explicit HintIcon(Sign eSign, QWidget *pParent = nullptr);
    void SetSign(Sign eSign);

protected:
    void paintEvent(QPaintEvent *pEvent) override;

private:
    Sign m_eSign;
};

#endif
