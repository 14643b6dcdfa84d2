#ifndef STYLECTL_COMPOSITINGWATCH_H
#define STYLECTL_COMPOSITINGWATCH_H

#include <QAbstractNativeEventFilter>
#include <QObject>

/// Notices that a compositor starts or ends while windows are shown. GUI thread only.
class CompositingWatch : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// The one of the application; it goes with the application object.
    static CompositingWatch *Instance();

    bool nativeEventFilter(const QByteArray &eventType, void *pMessage, long *pResult) override;

signals:
    void Changed();

private:
    explicit CompositingWatch(QObject *pParent);
    void Check();

    bool m_bCompositing;
    int m_nSelectionEvent; // X11: type of the event that tells of a new selection owner; -1 when there is
                           // none
};

#endif
