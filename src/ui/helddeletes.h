#ifndef UI_HELDDELETES_H
#define UI_HELDDELETES_H

#include <QList>
#include <QObject>
#include <QPointer>

/// While it lives, no object of the GUI thread is deleted by QObject::deleteLater(); afterwards they all are,
/// when their turn comes. Event loops that begin meanwhile, such as a modal dialog's, delete as ever.
///
/// For handling events in the middle of Qt's own work on a window: one of them may close the window that Qt
/// will go on with. GUI thread only.
class HeldDeletes : public QObject
{
    Q_OBJECT

public:
    HeldDeletes();
    ~HeldDeletes() override;

    bool eventFilter(QObject *pObject, QEvent *pEvent) override;

private:
    const int m_nLoopLevel; // of the event loops that ran at the beginning
    QList<QPointer<QObject>> m_listHeld;
};

#endif
