#include "helddeletes.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

HeldDeletes::HeldDeletes()
    : m_nLoopLevel(QThread::currentThread()->loopLevel())
{
    qApp->installEventFilter(this);
}

HeldDeletes::~HeldDeletes()
{
    qApp->removeEventFilter(this);
    for (const QPointer<QObject> &pHeld : qAsConst(m_listHeld)) {
        if (pHeld)
            pHeld->deleteLater();
    }
}

bool HeldDeletes::eventFilter(QObject *pObject, QEvent *pEvent)
{
    if (pEvent->type() != QEvent::DeferredDelete || QThread::currentThread()->loopLevel() > m_nLoopLevel)
        return false;
    m_listHeld.append(pObject);
    return true;
}
