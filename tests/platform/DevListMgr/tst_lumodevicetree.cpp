#include <QtTest>

#include <DevListMgr/lumodevicetree.h>
#include <scripteddevices.h>

class tst_LumoDeviceTree : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_pDevices = std::make_unique<ScriptedDevices>(); }
    void cleanup() { m_pDevices.reset(); }

    void Construct_Tree_LeavesTheRecordUnregistered();
    void Construct_NothingSwitchedOn_NothingIsSearched();
    void Construct_AllCamerasItem_StandsAtTheTop();
    void Hint_NoCameraFound_SaysSoAndCannotBeSelected();
    void Hint_CameraFound_IsHidden();
    void NewDevice_Signal_ComesWithTheItemInTheTree();
    void NewDevice_Item_CarriesTypeIdentifierAndRecord();
    void NewDevice_NetworkAndUsb_HangUnderTheirInterfaces();
    void NewDevice_ThousandAtOnce_AllArriveInOrder();
    void UpdateDevice_StatusChanged_OneSignalWithTheNewRecord();
    void UpdateDevice_NothingChanged_NoSignal();
    void UpdateDevice_AnotherInterface_MovesTheItem();
    void DeleteDevice_Signal_ComesBeforeTheItemGoes();
    void DeleteDevice_LastOfItsInterface_TheInterfaceGoesToo();
    void DeleteDevice_InterfaceIsCurrent_AllCamerasBecomesCurrent();
    void DeleteDevice_GoneAndBack_KeepsItsIdentifier();
    void DeleteDevice_RoundFails_NothingGoes();
    void FindItem_ByTypeAndIdentifier_FindsEachKind();
    void VisibleItemTypes_CamerasLeftOut_AreHidden();
    void UpdateDeviceTypes_FlagsOnAndOff_AreSearched();
    void UpdateDeviceTypes_AllOff_CamerasGo();
    void UpdateDeviceTypes_DuringThePause_CutsItShort();
    void ToolName_Set_IsTheObjectName();
    void ToolName_Function_IsTheFirstVirtualOneThatTheTreeAdds();
    void Accessible_CameraInUse_SaysSo();
    void Language_Changed_TextsAreSetAnew();
    void Search_RoundTakesLong_TheEventLoopGoesOn();
    void Slot_RunsItsOwnEventLoop_TheTreeStaysWhole();
    void Slot_RunsItsOwnEventLoop_TheTreeGoesOn();
    void Delete_CameraIsBackDuringTheSignal_ItsNewItemStays();

private:
    static QTreeWidgetItem *All(const LumoDeviceTree &tree)
    {
        return tree.findItem(LumoDeviceTree::AllCamerasItem, -1);
    }

    std::unique_ptr<ScriptedDevices> m_pDevices;
};

// The first of all: nothing is ever unregistered.
void tst_LumoDeviceTree::Construct_Tree_LeavesTheRecordUnregistered()
{
    LumoDeviceTree tree;
    QCOMPARE(QMetaType::type("StructDeviceInfo"), int(QMetaType::UnknownType));

    m_pDevices->Set({NetworkCamera(1)});
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(1));

    QVERIFY(QMetaType::type("StructDeviceInfo") != int(QMetaType::UnknownType));
}

void tst_LumoDeviceTree::Construct_NothingSwitchedOn_NothingIsSearched()
{
    LumoDeviceTree tree;
    QTest::qWait(30);
    QCOMPARE(m_pDevices->Rounds(), 0);
}

void tst_LumoDeviceTree::Construct_AllCamerasItem_StandsAtTheTop()
{
    LumoDeviceTree tree;
    QTreeWidgetItem *pItem = tree.topLevelItem(0);
    QCOMPARE(pItem, All(tree));
    QCOMPARE(pItem->data(0, Qt::UserRole + 1).toInt(), 11);
    QCOMPARE(pItem->data(0, Qt::UserRole + 2).toInt(), -1);
    QCOMPARE(pItem->text(0), QString("All Cameras"));
    QCOMPARE(pItem->text(1), QString("0"));
    QVERIFY(pItem->isExpanded());
}

void tst_LumoDeviceTree::Hint_NoCameraFound_SaysSoAndCannotBeSelected()
{
    LumoDeviceTree tree;
    QTreeWidgetItem *pHint = tree.findItem(LumoDeviceTree::HintItem, -1);
    QVERIFY(pHint);
    QCOMPARE(pHint->text(0), QString("Searching for cameras..."));
    tree.updateDeviceTypes(5, true);
    QTRY_COMPARE(pHint->text(0), QString("No camera found"));
    QVERIFY(!pHint->isHidden());
    QVERIFY(!(pHint->flags() & Qt::ItemIsSelectable));
}

void tst_LumoDeviceTree::Hint_CameraFound_IsHidden()
{
    m_pDevices->Set({NetworkCamera(1)});
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findItem(LumoDeviceTree::HintItem, -1)->isHidden());
    m_pDevices->Set({});
    QTRY_VERIFY(!tree.findItem(LumoDeviceTree::HintItem, -1)->isHidden());
}

void tst_LumoDeviceTree::NewDevice_Signal_ComesWithTheItemInTheTree()
{
    m_pDevices->Set({NetworkCamera(1)});
    LumoDeviceTree tree;
    QTreeWidgetItem *pReported = nullptr;
    QString strParent;
    connect(&tree, &LumoDeviceTree::sigNewDeviceItem, &tree, [&](QTreeWidgetItem *pItem) {
        pReported = pItem;
        strParent = pItem->parent()->text(0);
        QCOMPARE(tree.findCameraItem(1), pItem);
    });
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(pReported);
    QCOMPARE(strParent, QString("GigE Vision - eth0"));
}

void tst_LumoDeviceTree::NewDevice_Item_CarriesTypeIdentifierAndRecord()
{
    m_pDevices->Set({NetworkCamera(7, KX_CC_ACCESS_IN_USE)});
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(1));
    QTreeWidgetItem *pItem = tree.findCameraItem(1);
    QCOMPARE(pItem->data(0, Qt::UserRole + 1).toInt(), int(LumoDeviceTree::CameraItem));
    QCOMPARE(pItem->data(0, Qt::UserRole + 2).toInt(), 1);
    QCOMPARE(pItem->text(0), QString("User 7 (SN0007)"));
    const auto record = pItem->data(0, Qt::UserRole + 3).value<StructDeviceInfo>();
    QCOMPARE(record.nDeviceID, 1);
    QCOMPARE(record.nDeviceType, 1u);
    QCOMPARE(record.nAccessStatus, 2u);
    QCOMPARE(record.stDevInfo.nMacAddrLow, 0x1CF00007u);
    QCOMPARE(record.stNetWorkInfo.strNetText1, QString("eth0"));
    QCOMPARE(record.stNetWorkInfo.nNetValue1, 1000);
}

void tst_LumoDeviceTree::NewDevice_NetworkAndUsb_HangUnderTheirInterfaces()
{
    m_pDevices->Set(
        {NetworkCamera(1), NetworkCamera(2, KX_CC_ACCESS_FREE, "eth1"), UsbCamera(3), PortCamera(4)});
    LumoDeviceTree tree;
    tree.updateDeviceTypes(13, true);
    QTRY_COMPARE(All(tree)->text(1), QString("4"));
    QCOMPARE(tree.findCameraItem(1)->parent()->text(0), QString("GigE Vision - eth0"));
    QCOMPARE(tree.findCameraItem(2)->parent()->text(0), QString("GigE Vision - eth1"));
    QCOMPARE(tree.findCameraItem(3)->parent()->text(0), QString("USB3 Vision"));
    QCOMPARE(tree.findCameraItem(4)->parent()->text(0), QString("Port"));
    QCOMPARE(tree.findCameraItem(1)->parent()->text(1), QString("1"));
    QCOMPARE(tree.findCameraItem(1)->parent()->data(0, Qt::UserRole + 1).toInt(), 2);
    QCOMPARE(tree.findCameraItem(3)->parent()->data(0, Qt::UserRole + 1).toInt(), 3);
    QCOMPARE(tree.findCameraItem(4)->parent()->data(0, Qt::UserRole + 1).toInt(), 4);
}

void tst_LumoDeviceTree::NewDevice_ThousandAtOnce_AllArriveInOrder()
{
    QVector<KX_CC_DEVICE_INFO> vecDevices;
    for (int n = 1; n <= 1000; ++n)
        vecDevices.append(NetworkCamera(n));
    m_pDevices->Set(vecDevices);
    LumoDeviceTree tree;
    QVector<int> vecIDs;
    connect(&tree, &LumoDeviceTree::sigNewDeviceItem, &tree,
            [&](QTreeWidgetItem *pItem) { vecIDs.append(pItem->data(0, Qt::UserRole + 2).toInt()); });
    tree.updateDeviceTypes(5, true);
    QTRY_COMPARE_WITH_TIMEOUT(vecIDs.size(), 1000, 20000);
    QVERIFY(std::is_sorted(vecIDs.cbegin(), vecIDs.cend()));
    QTRY_COMPARE(All(tree)->text(1), QString("1000"));
}

void tst_LumoDeviceTree::UpdateDevice_StatusChanged_OneSignalWithTheNewRecord()
{
    m_pDevices->Set({NetworkCamera(1), NetworkCamera(2)});
    LumoDeviceTree tree;
    QSignalSpy updated(&tree, &LumoDeviceTree::sigUpdateDeviceItem);
    QTreeWidgetItem *pItem = nullptr;
    connect(&tree, &LumoDeviceTree::sigUpdateDeviceItem, &tree,
            [&](QTreeWidgetItem *pUpdated) { pItem = pUpdated; });
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(2));

    m_pDevices->Set({NetworkCamera(1), NetworkCamera(2, KX_CC_ACCESS_IN_USE)});
    QTRY_COMPARE(updated.count(), 1);
    QCOMPARE(pItem, tree.findCameraItem(2));
    QCOMPARE(pItem->data(0, Qt::UserRole + 3).value<StructDeviceInfo>().nAccessStatus, 2u);
}

void tst_LumoDeviceTree::UpdateDevice_NothingChanged_NoSignal()
{
    m_pDevices->Set({NetworkCamera(1)});
    LumoDeviceTree tree;
    QSignalSpy added(&tree, &LumoDeviceTree::sigNewDeviceItem);
    QSignalSpy updated(&tree, &LumoDeviceTree::sigUpdateDeviceItem);
    tree.updateDeviceTypes(5, true);
    QTRY_COMPARE(added.count(), 1);
    QVERIFY(m_pDevices->WaitForRound());
    QCoreApplication::processEvents();
    QCOMPARE(added.count(), 1);
    QCOMPARE(updated.count(), 0);
}

void tst_LumoDeviceTree::UpdateDevice_AnotherInterface_MovesTheItem()
{
    m_pDevices->Set({NetworkCamera(1)});
    LumoDeviceTree tree;
    QSignalSpy updated(&tree, &LumoDeviceTree::sigUpdateDeviceItem);
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(1));
    tree.setCurrentItem(tree.findCameraItem(1));

    m_pDevices->Set({NetworkCamera(1, KX_CC_ACCESS_FREE, "eth1")});
    QTRY_COMPARE(updated.count(), 1);
    QCOMPARE(tree.findCameraItem(1)->parent()->text(0), QString("GigE Vision - eth1"));
    QCOMPARE(tree.currentItem(), tree.findCameraItem(1));
    QVERIFY(tree.findItems("GigE Vision - eth0", Qt::MatchExactly | Qt::MatchRecursive).isEmpty());
}

void tst_LumoDeviceTree::DeleteDevice_Signal_ComesBeforeTheItemGoes()
{
    m_pDevices->Set({NetworkCamera(1), NetworkCamera(2)});
    LumoDeviceTree tree;
    int nDeleted = -1;
    connect(&tree, &LumoDeviceTree::sigDeleteDeviceItem, &tree, [&](QTreeWidgetItem *pItem) {
        nDeleted = pItem->data(0, Qt::UserRole + 3).value<StructDeviceInfo>().nDeviceID;
    });
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(2));

    m_pDevices->Set({NetworkCamera(2)});
    QTRY_COMPARE(nDeleted, 1);
    QTRY_VERIFY(!tree.findCameraItem(1));
    QVERIFY(tree.findCameraItem(2));
}

void tst_LumoDeviceTree::DeleteDevice_LastOfItsInterface_TheInterfaceGoesToo()
{
    m_pDevices->Set({NetworkCamera(1), UsbCamera(1)});
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(2));
    m_pDevices->Set({NetworkCamera(1)});
    QTRY_VERIFY(tree.findItems("USB3 Vision", Qt::MatchExactly | Qt::MatchRecursive).isEmpty());
    QTRY_COMPARE(All(tree)->text(1), QString("1"));
}

void tst_LumoDeviceTree::DeleteDevice_InterfaceIsCurrent_AllCamerasBecomesCurrent()
{
    m_pDevices->Set({NetworkCamera(1), UsbCamera(1)});
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(2));
    tree.setCurrentItem(tree.findCameraItem(2)->parent());
    m_pDevices->Set({NetworkCamera(1)});
    QTRY_COMPARE(tree.currentItem(), All(tree));
}

void tst_LumoDeviceTree::DeleteDevice_GoneAndBack_KeepsItsIdentifier()
{
    m_pDevices->Set({NetworkCamera(1), NetworkCamera(2)});
    LumoDeviceTree tree;
    QSignalSpy added(&tree, &LumoDeviceTree::sigNewDeviceItem);
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(2));
    m_pDevices->Set({NetworkCamera(1)});
    QTRY_VERIFY(!tree.findCameraItem(2));
    m_pDevices->Set({NetworkCamera(1), NetworkCamera(2)});
    QTRY_VERIFY(tree.findCameraItem(2));
    QCOMPARE(tree.findCameraItem(2)->text(0), QString("User 2 (SN0002)"));
    QCOMPARE(added.count(), 3);
}

void tst_LumoDeviceTree::DeleteDevice_RoundFails_NothingGoes()
{
    m_pDevices->Set({NetworkCamera(1)});
    LumoDeviceTree tree;
    QSignalSpy deleted(&tree, &LumoDeviceTree::sigDeleteDeviceItem);
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(1));
    m_pDevices->SetFailing(true);
    m_pDevices->Set({});
    QVERIFY(m_pDevices->WaitForRound());
    QCoreApplication::processEvents();
    QCOMPARE(deleted.count(), 0);
}

void tst_LumoDeviceTree::FindItem_ByTypeAndIdentifier_FindsEachKind()
{
    m_pDevices->Set({NetworkCamera(1), UsbCamera(1)});
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(2));
    QCOMPARE(tree.findItem(LumoDeviceTree::CameraItem, 2), tree.findCameraItem(2));
    QCOMPARE(tree.findItem(LumoDeviceTree::GigEInterfaceItem, 1), tree.findCameraItem(1)->parent());
    QCOMPARE(tree.findItem(LumoDeviceTree::UsbInterfaceItem, 2), tree.findCameraItem(2)->parent());
    QVERIFY(!tree.findItem(LumoDeviceTree::UsbInterfaceItem, 1));
    QVERIFY(!tree.findItem(LumoDeviceTree::AllCamerasItem, 0));
    QVERIFY(!tree.findCameraItem(3));
    QVERIFY(!tree.findCameraItem(-1));
}

void tst_LumoDeviceTree::VisibleItemTypes_CamerasLeftOut_AreHidden()
{
    m_pDevices->Set({NetworkCamera(1)});
    LumoDeviceTree tree;
    tree.setVisibleItemTypes({2, 11});
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(1));
    QVERIFY(tree.findCameraItem(1)->isHidden());
    QVERIFY(!tree.findCameraItem(1)->parent()->isHidden());
    tree.setVisibleItemTypes({2, 3, 1, 4, 11, 10});
    QVERIFY(!tree.findCameraItem(1)->isHidden());
}

void tst_LumoDeviceTree::UpdateDeviceTypes_FlagsOnAndOff_AreSearched()
{
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_COMPARE(m_pDevices->Transports(), 5u);
    tree.updateDeviceTypes(4, false);
    QTRY_COMPARE(m_pDevices->Transports(), 1u);
    tree.updateDeviceTypes(8, true);
    QTRY_COMPARE(m_pDevices->Transports(), 9u);
}

void tst_LumoDeviceTree::UpdateDeviceTypes_AllOff_CamerasGo()
{
    m_pDevices->Set({NetworkCamera(1)});
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(1));
    tree.updateDeviceTypes(5, false);
    QTRY_VERIFY(!tree.findCameraItem(1));
}

void tst_LumoDeviceTree::UpdateDeviceTypes_DuringThePause_CutsItShort()
{
    m_pDevices->SetPauseMs(600000);
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_COMPARE(m_pDevices->Rounds(), 1);
    QTest::qWait(20); // into the pause
    tree.updateDeviceTypes(8, true);
    QTRY_COMPARE(m_pDevices->Transports(), 13u);
    tree.updateDeviceTypes(8, true); // nothing new: the pause goes on
    QTest::qWait(50);
    QCOMPARE(m_pDevices->Rounds(), 2);
}

void tst_LumoDeviceTree::ToolName_Set_IsTheObjectName()
{
    LumoDeviceTree tree;
    tree.setToolName("ToolTree");
    QCOMPARE(tree.objectName(), QString("ToolTree"));
}

/// A tree that adds one virtual function.
class TreeWithOneMore : public QTreeWidget
{
public:
    virtual void First(const QString &) {}
};

/// What a pointer to a member function is made of: for a virtual one, its place among them.
template <typename Function>
QByteArray PlaceOf(Function pFunction)
{
    return QByteArray(reinterpret_cast<const char *>(&pFunction), sizeof pFunction).toHex();
}

// Tools that were built with another build of the library call it by its place.
void tst_LumoDeviceTree::ToolName_Function_IsTheFirstVirtualOneThatTheTreeAdds()
{
    QCOMPARE(PlaceOf(&LumoDeviceTree::setToolName), PlaceOf(&TreeWithOneMore::First));
}

void tst_LumoDeviceTree::Accessible_CameraInUse_SaysSo()
{
    m_pDevices->Set({NetworkCamera(1, KX_CC_ACCESS_IN_USE)});
    LumoDeviceTree tree;
    QCOMPARE(tree.accessibleName(), QString("Device tree"));
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(1));
    QCOMPARE(tree.findCameraItem(1)->data(0, Qt::AccessibleTextRole).toString(),
             QString("User 1 (SN0001), In use by another program"));
    QCOMPARE(tree.findCameraItem(1)->toolTip(0),
             QString("User 1 (SN0001)\n10.0.0.1\nIn use by another program"));
}

/// Answers every text of the tree in capitals.
class Capitals : public QTranslator
{
public:
    QString translate(const char *pContext, const char *pText, const char *, int) const override
    {
        return qstrcmp(pContext, "LumoDeviceTree") == 0 ? QString(pText).toUpper() : QString();
    }
    bool isEmpty() const override { return false; }
};

void tst_LumoDeviceTree::Language_Changed_TextsAreSetAnew()
{
    m_pDevices->Set({NetworkCamera(1)});
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(1));
    Capitals translator;
    QCoreApplication::installTranslator(&translator);
    QTRY_COMPARE(All(tree)->text(0), QString("ALL CAMERAS"));
    QVERIFY(tree.findCameraItem(1)->toolTip(0).endsWith("FREE"));
    QCOMPARE(tree.findCameraItem(1)->data(0, Qt::UserRole + 3).value<StructDeviceInfo>().nDeviceID, 1);
}

void tst_LumoDeviceTree::Search_RoundTakesLong_TheEventLoopGoesOn()
{
    m_pDevices->SetRoundMs(500);
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    // Passes of the event loop come in while the first round has not ended.
    int nPasses = 0;
    while (m_pDevices->Rounds() == 0) {
        QCoreApplication::processEvents();
        ++nPasses;
    }
    QVERIFY(nPasses > 10);
}

void tst_LumoDeviceTree::Slot_RunsItsOwnEventLoop_TheTreeStaysWhole()
{
    m_pDevices->Set({NetworkCamera(1), NetworkCamera(2), NetworkCamera(3)});
    LumoDeviceTree tree;
    connect(&tree, &LumoDeviceTree::sigDeleteDeviceItem, &tree,
            [] { QTest::qWait(20); }); // as a slot does that shows a message
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(3));
    m_pDevices->Set({});
    QTRY_COMPARE(All(tree)->text(1), QString("0"));
    QCOMPARE(All(tree)->childCount(), 1); // the hint
}

void tst_LumoDeviceTree::Slot_RunsItsOwnEventLoop_TheTreeGoesOn()
{
    m_pDevices->Set({NetworkCamera(1), NetworkCamera(2)});
    LumoDeviceTree tree;
    bool bOthersCame = false;
    const auto showMessage = [&](QTreeWidgetItem *pItem) {
        if (pItem != tree.findCameraItem(1))
            return;
        // The rest of its own round, and what later ones find.
        m_pDevices->Set({NetworkCamera(1), NetworkCamera(2), NetworkCamera(3)});
        bOthersCame =
            QTest::qWaitFor([&] { return tree.findCameraItem(2) && tree.findCameraItem(3); }, 10000);
    };
    connect(&tree, &LumoDeviceTree::sigNewDeviceItem, &tree, showMessage);
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY_WITH_TIMEOUT(bOthersCame, 15000);
}

void tst_LumoDeviceTree::Delete_CameraIsBackDuringTheSignal_ItsNewItemStays()
{
    m_pDevices->Set({NetworkCamera(1)});
    LumoDeviceTree tree;
    tree.updateDeviceTypes(5, true);
    QTRY_VERIFY(tree.findCameraItem(1));
    bool bCameBack = false;
    connect(&tree, &LumoDeviceTree::sigDeleteDeviceItem, &tree, [&](QTreeWidgetItem *pGoing) {
        m_pDevices->Set({NetworkCamera(1)});
        bCameBack = QTest::qWaitFor([&] { return tree.findCameraItem(1) != pGoing; }, 10000);
    });

    m_pDevices->Set({});
    QTRY_VERIFY_WITH_TIMEOUT(bCameBack, 15000);

    QTRY_COMPARE(All(tree)->text(1), QString("1"));
    QVERIFY(tree.findCameraItem(1));
    QCOMPARE(tree.findCameraItem(1)->parent()->childCount(), 1);
}

QTEST_MAIN(tst_LumoDeviceTree)
#include "tst_lumodevicetree.moc"
