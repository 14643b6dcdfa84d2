#include <QtTest>

#include <ui/helddeletes.h>

class tst_HeldDeletes : public QObject
{
    Q_OBJECT

private slots:
    void DeleteLater_Held_ComesAfterwards();
    void DeleteLater_DeletedOtherwiseMeanwhile_IsForgotten();
    void DeleteLater_InAnEventLoopThatBeganMeanwhile_IsNotHeld();
};

namespace {

void SendDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

void tst_HeldDeletes::DeleteLater_Held_ComesAfterwards()
{
    QPointer<QObject> pObject = new QObject;
    {
        const HeldDeletes held;
        pObject->deleteLater();
        SendDeletes();
        QVERIFY(pObject);
    }
    QVERIFY(pObject);
    SendDeletes();
    QVERIFY(!pObject);
}

void tst_HeldDeletes::DeleteLater_DeletedOtherwiseMeanwhile_IsForgotten()
{
    auto *pObject = new QObject;
    {
        const HeldDeletes held;
        pObject->deleteLater();
        SendDeletes();
        delete pObject;
    }
    SendDeletes();
}

void tst_HeldDeletes::DeleteLater_InAnEventLoopThatBeganMeanwhile_IsNotHeld()
{
    QPointer<QObject> pObject = new QObject;
    const HeldDeletes held;
    QEventLoop loop;
    QTimer::singleShot(0, pObject, [&] { pObject->deleteLater(); });
    connect(pObject, &QObject::destroyed, &loop, &QEventLoop::quit);
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    loop.exec();
    QVERIFY(!pObject);
}

QTEST_MAIN(tst_HeldDeletes)
#include "tst_helddeletes.moc"
