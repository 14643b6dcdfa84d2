#ifndef STYLECTL_LOADINGSPINNER_H
#define STYLECTL_LOADINGSPINNER_H

#include <QBasicTimer>
#include <QWidget>

/// A ring that turns while it is visible.
class LoadingSpinner : public QWidget
{
    Q_OBJECT

public:
    explicit LoadingSpinner(QWidget *pParent = nullptr);

    bool IsTurning() const { return m_timer.isActive(); }

protected:
    void hideEvent(QHideEvent *pEvent) override;
    void paintEvent(QPaintEvent *pEvent) override;
    void showEvent(QShowEvent *pEvent) override;
    void timerEvent(QTimerEvent *pEvent) override;

private:
    QBasicTimer m_timer;
    int m_nDegrees = 0; // of the ring's head, clockwise from the top
};

#endif
