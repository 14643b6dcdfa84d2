#include <QtTest>

#include <scripteddevices.h>

#include "devicelistdiff.h"

class tst_DeviceListDiff : public QObject
{
    Q_OBJECT

private slots:
    void Next_NewCameras_AreReportedInListOrder();
    void Next_NothingChanged_ReportsNothing();
    void Next_AccessStatusChanged_ReportsAnUpdateWithTheNewRecord();
    void Next_CameraGone_IsDeletedAtOnce();
    void Next_CameraGoneWhileOpen_StaysUnreachable();
    void Next_LostCameraClosed_IsDeletedOneRoundLater();
    void Next_CameraClosedInTheRoundThatLosesIt_IsDeletedOneRoundLater();
    void Next_LostCameraComesBack_IsUpdatedUnderItsNumber();
    void Next_DeletionsAndNews_DeletionsComeFirst();
    void Next_ThousandCameras_EachIsReportedOnce();

private:
    static QStringList Texts(const QVector<DeviceChange> &vecChanges);
};

namespace {

bool Open(const KX_CC_DEVICE_INFO &)
{
    return true;
}

bool Closed(const KX_CC_DEVICE_INFO &)
{
    return false;
}

} // namespace

/// "new 1 free", "update 1 in use", "delete 1".
QStringList tst_DeviceListDiff::Texts(const QVector<DeviceChange> &vecChanges)
{
    const QStringList listKinds{"new", "update", "delete"};
    const QStringList listStates{"", " free", " in use", " unreachable"};
    QStringList listTexts;
    for (const DeviceChange &change : vecChanges) {
        QString strText = QString("%1 %2").arg(listKinds[change.nKind]).arg(change.nDeviceID);
        if (change.nKind != DeviceChange::Delete)
            strText += listStates[int(change.stDevInfo.nAccessStatus)];
        listTexts.append(strText);
    }
    return listTexts;
}

void tst_DeviceListDiff::Next_NewCameras_AreReportedInListOrder()
{
    DeviceListDiff diff;
    QCOMPARE(Texts(diff.Next({NetworkCamera(5), UsbCamera(1, KX_CC_ACCESS_IN_USE)}, Closed)),
             QStringList({"new 1 free", "new 2 in use"}));
}

void tst_DeviceListDiff::Next_NothingChanged_ReportsNothing()
{
    DeviceListDiff diff;
    diff.Next({NetworkCamera(1), NetworkCamera(2)}, Closed);
    QVERIFY(diff.Next({NetworkCamera(2), NetworkCamera(1)}, Closed).isEmpty());
}

void tst_DeviceListDiff::Next_AccessStatusChanged_ReportsAnUpdateWithTheNewRecord()
{
    DeviceListDiff diff;
    diff.Next({NetworkCamera(1), NetworkCamera(2)}, Closed);
    QCOMPARE(Texts(diff.Next({NetworkCamera(1), NetworkCamera(2, KX_CC_ACCESS_IN_USE)}, Closed)),
             QStringList("update 2 in use"));
}

void tst_DeviceListDiff::Next_CameraGone_IsDeletedAtOnce()
{
    DeviceListDiff diff;
    diff.Next({NetworkCamera(1), NetworkCamera(2)}, Closed);
    QCOMPARE(Texts(diff.Next({NetworkCamera(2)}, Closed)), QStringList("delete 1"));
}

void tst_DeviceListDiff::Next_CameraGoneWhileOpen_StaysUnreachable()
{
    DeviceListDiff diff;
    diff.Next({NetworkCamera(1)}, Open);
    QCOMPARE(Texts(diff.Next({}, Open)), QStringList("update 1 unreachable"));
    QVERIFY(diff.Next({}, Open).isEmpty());
}

void tst_DeviceListDiff::Next_LostCameraClosed_IsDeletedOneRoundLater()
{
    DeviceListDiff diff;
    diff.Next({NetworkCamera(1)}, Open);
    diff.Next({}, Open);
    QVERIFY(diff.Next({}, Closed).isEmpty());
    QCOMPARE(Texts(diff.Next({}, Closed)), QStringList("delete 1"));
}

void tst_DeviceListDiff::Next_CameraClosedInTheRoundThatLosesIt_IsDeletedOneRoundLater()
{
    DeviceListDiff diff;
    diff.Next({NetworkCamera(1)}, Open);
    QCOMPARE(Texts(diff.Next({}, Closed)), QStringList("update 1 unreachable"));
    QCOMPARE(Texts(diff.Next({}, Closed)), QStringList("delete 1"));
}

void tst_DeviceListDiff::Next_LostCameraComesBack_IsUpdatedUnderItsNumber()
{
    DeviceListDiff diff;
    diff.Next({NetworkCamera(1)}, Open);
    diff.Next({}, Open);
    QCOMPARE(Texts(diff.Next({NetworkCamera(1)}, Open)), QStringList("update 1 free"));
}

void tst_DeviceListDiff::Next_DeletionsAndNews_DeletionsComeFirst()
{
    DeviceListDiff diff;
    diff.Next({NetworkCamera(1)}, Closed);
    QCOMPARE(Texts(diff.Next({NetworkCamera(2)}, Closed)), QStringList({"delete 1", "new 2 free"}));
}

void tst_DeviceListDiff::Next_ThousandCameras_EachIsReportedOnce()
{
    QVector<KX_CC_DEVICE_INFO> vecDevices;
    for (int n = 1; n <= 1000; ++n)
        vecDevices.append(NetworkCamera(n));
    DeviceListDiff diff;
    QCOMPARE(diff.Next(vecDevices, Closed).size(), 1000);
    QVERIFY(diff.Next(vecDevices, Closed).isEmpty());
    QCOMPARE(diff.Next({}, Closed).size(), 1000);
}

QTEST_APPLESS_MAIN(tst_DeviceListDiff)
#include "tst_devicelistdiff.moc"
