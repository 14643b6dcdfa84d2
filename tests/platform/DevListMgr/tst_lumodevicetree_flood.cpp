#include <QToolTip>
#include <QtTest>

#include <DevListMgr/lumodevicetree.h>
#include <scripteddevices.h>

namespace {

const int kListed = 4096; // as many as the camera SDK lists at the most
const int kRounds = 40;   // enough for 100 MB, if each left its changes behind

qint64 ResidentKb()
{
    QFile file("/proc/self/statm");
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() * 4 : 0;
}

} // namespace

// A device that invents cameras faster than a window can show them.
class tst_LumoDeviceTree_Flood : public QObject
{
    Q_OBJECT

private slots:
    void Search_OtherCamerasInEveryRound_TheWindowLivesAndNothingPilesUp();
    void Search_RoundsThatWereNotHandled_AreMerged();
    void NewDevice_ThousandsAtOnce_TakeTimeByTheirNumber();
    void ToolTip_OverTheColumnOfCounts_IsTheCameras();
};

void tst_LumoDeviceTree_Flood::Search_OtherCamerasInEveryRound_TheWindowLivesAndNothingPilesUp()
{
    ScriptedDevices devices;
    devices.Set({NetworkCamera(1)});
    LumoDeviceTree tree;
    tree.resize(300, 600);
    tree.show();
    tree.updateDeviceTypes(1, true);
    QTRY_VERIFY(tree.findCameraItem(1));
    devices.SetInventing(kListed);
    qint64 nLongestMs = 0;
    qint64 nAfterFirst = 0;
    const int nFirst = devices.Rounds() + kRounds / 2;
    const int nLast = nFirst + kRounds;
    QElapsedTimer whole;
    whole.start();
    while (devices.Rounds() < nLast && whole.elapsed() < 60000) {
        QElapsedTimer timer;
        timer.start();
        QCoreApplication::processEvents();
        nLongestMs = qMax(nLongestMs, timer.elapsed());
        if (!nAfterFirst && devices.Rounds() >= nFirst)
            nAfterFirst = ResidentKb();
    }

    QVERIFY(devices.Rounds() >= nLast);
    QVERIFY2(nLongestMs < 2000, qPrintable(QString::number(nLongestMs)));
    const qint64 nGrown = ResidentKb() - nAfterFirst;
    QVERIFY2(nGrown < 40000, qPrintable(QString::number(nGrown)));
    QVERIFY(tree.findCameraItem(1));

    // When it is over, only what there is stays.
    devices.SetInventing(0);
    QTreeWidgetItem *pAll = tree.findItem(LumoDeviceTree::AllCamerasItem, -1);
    QTRY_COMPARE_WITH_TIMEOUT(pAll->text(1), QString("1"), 30000);
    QVERIFY(tree.findCameraItem(1));
}

void tst_LumoDeviceTree_Flood::Search_RoundsThatWereNotHandled_AreMerged()
{
    ScriptedDevices devices;
    LumoDeviceTree tree;
    QSignalSpy added(&tree, &LumoDeviceTree::sigNewDeviceItem);
    QSignalSpy deleted(&tree, &LumoDeviceTree::sigDeleteDeviceItem);
    tree.updateDeviceTypes(1, true);
    QVERIFY(devices.WaitForRound()); // the event loop stands still from now on, with one round to handle
    for (int n = 1; n <= 5; ++n) {
        devices.Set({NetworkCamera(n)});
        QVERIFY(devices.WaitForRound());
    }

    QTRY_COMPARE(added.count(), 1);
    QCOMPARE(deleted.count(), 0);
    QCOMPARE(tree.findCameraItem(1)->text(0), QString("User 5 (SN0005)"));
}

void tst_LumoDeviceTree_Flood::NewDevice_ThousandsAtOnce_TakeTimeByTheirNumber()
{
    ScriptedDevices devices;
    LumoDeviceTree tree;
    tree.show();
    tree.updateDeviceTypes(1, true);
    QTreeWidgetItem *pAll = tree.findItem(LumoDeviceTree::AllCamerasItem, -1);
    QVector<KX_CC_DEVICE_INFO> vecDevices;
    for (int n = 1; n <= kListed; ++n)
        vecDevices.append(NetworkCamera(n));
    devices.Set(vecDevices);
    // 48 s with the view's own spanned rows.
    QTRY_COMPARE_WITH_TIMEOUT(pAll->text(1), QString::number(kListed), 15000);
}

void tst_LumoDeviceTree_Flood::ToolTip_OverTheColumnOfCounts_IsTheCameras()
{
    ScriptedDevices devices;
    devices.Set({NetworkCamera(1)});
    LumoDeviceTree tree;
    tree.resize(300, 600);
    tree.show();
    tree.updateDeviceTypes(1, true);
    QTRY_VERIFY(tree.findCameraItem(1));
    const QModelIndex first = tree.model()->index(0, 0, tree.model()->index(1, 0, tree.model()->index(0, 0)));
    const QRect rect = tree.visualRect(first.siblingAtColumn(1));
    QVERIFY(!rect.isEmpty());

    QHelpEvent event(QEvent::ToolTip, rect.center(), tree.viewport()->mapToGlobal(rect.center()));
    QCoreApplication::sendEvent(tree.viewport(), &event);

    QTRY_COMPARE(QToolTip::text(), QString("User 1 (SN0001)\n10.0.0.1\nFree"));
    QToolTip::hideText();
}

QTEST_MAIN(tst_LumoDeviceTree_Flood)
#include "tst_lumodevicetree_flood.moc"
