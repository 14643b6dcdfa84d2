#include <QtTest>

#include <DevListMgr/lumodevicetree.h>
#include <scripteddevices.h>

#include "scriptedenumeration.h"

/// The tree with its own source of cameras, over an enumeration that the test scripts.
class tst_SdkDeviceSource : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void Search_CamerasListed_AreShown();
    void Search_EnumeratorCannotBeMade_IsTriedAgain();
    void Search_RoundFails_CamerasStay();
    void Search_RoundFailsForTheMachine_ItsListCounts();
    void Search_CameraLostWhileOpen_StaysUntilClosed();
    void Search_TransportsChanged_AnotherEnumeratorIsMade();
    void Destroy_WhileSearching_EndsTheEnumerator();

private:
    static void Change(const std::function<void(ScriptedEnumeration &)> &change);
    static QString AllText(const LumoDeviceTree &tree);
};

void tst_SdkDeviceSource::Change(const std::function<void(ScriptedEnumeration &)> &change)
{
    const QMutexLocker locker(&Script().mutex);
    change(Script());
}

QString tst_SdkDeviceSource::AllText(const LumoDeviceTree &tree)
{
    return tree.findItem(LumoDeviceTree::AllCamerasItem, -1)->text(1);
}

void tst_SdkDeviceSource::init()
{
    Change([](ScriptedEnumeration &script) {
        script.nCreateResult = script.nEnumerateResult = KX_CC_OK;
        script.vecDevices.clear();
        script.bOpen = false;
        script.nCreated = 0;
    });
}

void tst_SdkDeviceSource::Search_CamerasListed_AreShown()
{
    Change([](ScriptedEnumeration &script) { script.vecDevices = {NetworkCamera(1), UsbCamera(2)}; });
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_COMPARE(AllText(tree), QString("2"));
    QCOMPARE(Script().nTransports, 5u);
}

void tst_SdkDeviceSource::Search_EnumeratorCannotBeMade_IsTriedAgain()
{
    Change([](ScriptedEnumeration &script) {
        script.nCreateResult = KX_CC_E_RESOURCE;
        script.vecDevices = {NetworkCamera(1)};
    });
    QTest::ignoreMessage(QtWarningMsg, "Searching cameras: KX_CC_CreateEnumerator failed: scripted");
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTest::qWait(50);
    QCOMPARE(AllText(tree), QString("0"));

    Change([](ScriptedEnumeration &script) { script.nCreateResult = KX_CC_OK; });
    QTRY_COMPARE(AllText(tree), QString("1"));
}

void tst_SdkDeviceSource::Search_RoundFails_CamerasStay()
{
    Change([](ScriptedEnumeration &script) { script.vecDevices = {NetworkCamera(1)}; });
    LumoDeviceTree tree;
    QSignalSpy deleted(&tree, &LumoDeviceTree::sigDeleteDeviceItem);
    QSignalSpy added(&tree, &LumoDeviceTree::sigNewDeviceItem);
    tree.updateDeviceTypes(5, true);
    QTRY_COMPARE(added.count(), 1);

    QTest::ignoreMessage(QtWarningMsg, "Searching cameras: KX_CC_Enumerate failed: scripted");
    Change([](ScriptedEnumeration &script) {
        script.nEnumerateResult = KX_CC_E_HANDLE;
        script.vecDevices.clear();
    });
    QTest::qWait(1000); // two rounds
    Change([](ScriptedEnumeration &script) {
        script.nEnumerateResult = KX_CC_OK;
        script.vecDevices = {NetworkCamera(1), NetworkCamera(2)};
    });
    QTRY_COMPARE(added.count(), 2);
    QCOMPARE(deleted.count(), 0);
}

void tst_SdkDeviceSource::Search_RoundFailsForTheMachine_ItsListCounts()
{
    QTest::ignoreMessage(QtWarningMsg, "Searching cameras: KX_CC_Enumerate failed: scripted");
    Change([](ScriptedEnumeration &script) {
        script.nEnumerateResult = KX_CC_E_RESOURCE;
        script.vecDevices = {NetworkCamera(1)};
    });
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_COMPARE(AllText(tree), QString("1"));
}

void tst_SdkDeviceSource::Search_CameraLostWhileOpen_StaysUntilClosed()
{
    Change([](ScriptedEnumeration &script) {
        script.vecDevices = {NetworkCamera(1)};
        script.bOpen = true;
    });
    LumoDeviceTree tree;
    QSignalSpy updated(&tree, &LumoDeviceTree::sigUpdateDeviceItem);
    tree.updateDeviceTypes(5, true);
    QTRY_COMPARE(AllText(tree), QString("1"));

    Change([](ScriptedEnumeration &script) { script.vecDevices.clear(); });
    QTRY_COMPARE(updated.count(), 1);
    QCOMPARE(AllText(tree), QString("1"));

    Change([](ScriptedEnumeration &script) { script.bOpen = false; });
    QTRY_COMPARE(AllText(tree), QString("0"));
}

void tst_SdkDeviceSource::Search_TransportsChanged_AnotherEnumeratorIsMade()
{
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_COMPARE(Script().nTransports, 5u);
    tree.updateDeviceTypes(1, false);
    QTRY_COMPARE(Script().nTransports, 4u);
    QCOMPARE(Script().nEnumerators, 1);
}

void tst_SdkDeviceSource::Destroy_WhileSearching_EndsTheEnumerator()
{
    {
        LumoDeviceTree tree;
        tree.updateDeviceTypes(5, true);
        QTRY_COMPARE(Script().nCreated, 1);
    }
    QCOMPARE(Script().nEnumerators, 0);
}

QTEST_MAIN(tst_SdkDeviceSource)
#include "tst_sdkdevicesource.moc"
