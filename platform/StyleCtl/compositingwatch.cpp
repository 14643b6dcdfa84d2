#include "compositingwatch.h"

#include <QCoreApplication>
#include <QPointer>

#include <xcb/xcb.h>

#include "windowsystem.h"

CompositingWatch *CompositingWatch::Instance()
{
    static QPointer<CompositingWatch> pInstance;
    if (!pInstance)
        pInstance = new CompositingWatch(QCoreApplication::instance());
    return pInstance;
}

CompositingWatch::CompositingWatch(QObject *pParent)
    : QObject(pParent)
    , m_bCompositing(WindowSystem::IsCompositing())
    , m_nSelectionEvent(WindowSystem::SelectionEventType())
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

// Qt asks the X server to report owners of the compositor's selection, but tells nobody.
bool CompositingWatch::nativeEventFilter(const QByteArray &eventType, void *pMessage, long *)
{
    if (m_nSelectionEvent < 0 || eventType != "xcb_generic_event_t")
        return false;
    // The top bit marks events that a client sent.
    const auto *pEvent = static_cast<const xcb_generic_event_t *>(pMessage);
    if ((pEvent->response_type & 0x7f) == m_nSelectionEvent)
        QMetaObject::invokeMethod(this, &CompositingWatch::Check, Qt::QueuedConnection);
    return false;
}

void CompositingWatch::Check()
{
    const bool bCompositing = WindowSystem::IsCompositing();
    if (bCompositing == m_bCompositing)
        return;
    m_bCompositing = bCompositing;
    emit Changed();
}
