#include <QtTest>

#include <StyleCtl/tarncustommessagebox.h>

#include "scriptedcameras.h"
#include "windowfixture.h"

class tst_MainWidget_Table : public QObject
{
    Q_OBJECT

private slots:
    void Init_Columns_HaveTextsWidthsAndVisibility();
    void Init_Rows_TenEmptyOnes();
    void Init_CheckColumn_OffersNoSorting();
    void NewDevice_ThreeCameras_ThreeRowsAndSevenEmpty();
    void NewDevice_EleventhCamera_AddsARow();
    void NewDevice_NetworkCamera_FillsTheRow();
    void NewDevice_UsbCamera_FillsTheRow();
    void NewDevice_ItemWithoutRecord_ShowsAnUnreachableRow();
    void NewDevice_PortCamera_FillsThePortColumn();
    void NewDevice_UnknownType_HasStatusAndInterface();
    void NewDevice_First_SelectsTheFirstRow();
    void NewDevice_Null_IsIgnored();
    void NewDevice_OutsideTheSelectedGroup_StaysHidden();
    void Status_State_ShowsIconAndCodeAlone_data();
    void Status_State_ShowsIconAndCodeAlone();
    void UpdateDevice_FreeTickedGoesInUse_IsClearedAndDisabled();
    void UpdateDevice_BackToFree_CanBeTickedAgain();
    void UpdateDevice_FreeTicked_KeepsItsTick();
    void UpdateDevice_UnknownCamera_ChangesNothing();
    void DeleteDevice_FromEleven_LeavesTen();
    void DeleteDevice_FromTen_AppendsAnEmptyRow();
    void DeleteDevice_TickedCamera_HeaderAndButtonsFollow();
    void DeleteDevice_UnknownCamera_ChangesNothing();
    void Check_NoneTicked_ButtonsAreDisabled();
    void Check_AllFreeTicked_HeaderIsTicked();
    void Check_SomeTicked_HeaderIsNeverPartlyTicked();
    void Check_DisabledBox_CannotBeTicked();
    void Check_BeyondTheLimit_IsRefusedAndUndone();
    void Header_Ticked_TicksTheVisibleUpToTheLimit();
    void Header_Ticked_LeavesOutCamerasThatAreNotFree();
    void Header_Cleared_ClearsAllVisible();
    void Header_NoFreeCamera_ButtonsStayDisabled();
    void Header_HiddenRows_AreNotTouched();
    void Filter_GroupSelected_HidesTheOthers();
    void Filter_AllCamerasSelected_ShowsEveryRow();
    void Filter_CameraSelected_ShowsNoRow();
    void Filter_HiddenTickedRows_AreNotCounted();
    void Filter_PortColumn_StaysHidden();
    void Sort_ByStatus_FreeThenUnreachableThenInUse();
    void Sort_ByText_IsCaseSensitive();
    void Sort_Descending_EmptyRowsStayBelow();
    void Sort_TickedRow_KeepsItsTick();
    void Sort_FilteredTable_ShowsTheSameCameras();
    void Sort_AfterSorting_UpdatesFindTheirRow();
    void RowFromDeviceID_EmptyRows_EndTheSearch();
    void Keyboard_Space_TicksTheCurrentRow();

private:
    static const int STATUS_COLUMN = 7;
};

void tst_MainWidget_Table::Init_Columns_HaveTextsWidthsAndVisibility()
{
    WindowFixture fixture;
    const TarnCustomTableWidget *pTable = fixture.Table();
    QCOMPARE(pTable->columnCount(), 9);
    QStringList listLabels;
    QStringList listHidden;
    for (int nColumn = 0; nColumn < 9; ++nColumn) {
        listLabels.append(pTable->horizontalHeaderItem(nColumn)->text());
        if (pTable->isColumnHidden(nColumn))
            listHidden.append(QString::number(nColumn));
    }
    QCOMPARE(listLabels, QStringList({"", "PortID", "Model Name", "Device User ID", "Serial Number",
                                      "Interface Type", "MAC Address", "Status", "Operation Status"}));
    QCOMPARE(listHidden, QStringList({"1", "5", "6"}));
    QCOMPARE(pTable->columnWidth(0), 38);
    QCOMPARE(pTable->columnWidth(2), 149);
    QCOMPARE(pTable->columnWidth(3), 110);
    QCOMPARE(pTable->columnWidth(4), 160);
    QCOMPARE(pTable->columnWidth(7), 54);
    QCOMPARE(pTable->horizontalHeader()->sectionResizeMode(8), QHeaderView::Stretch);
    QCOMPARE(pTable->horizontalHeader()->minimumHeight(), 32);
    QCOMPARE(pTable->horizontalHeader()->maximumHeight(), 32);
    QCOMPARE(pTable->horizontalHeader()->defaultAlignment(), Qt::AlignLeft | Qt::AlignVCenter);
    QCOMPARE(pTable->iconSize(), QSize(34, 34));
    QVERIFY(pTable->showGrid());
    QVERIFY(pTable->alternatingRowColors());
}

void tst_MainWidget_Table::Init_Rows_TenEmptyOnes()
{
    WindowFixture fixture;
    QCOMPARE(fixture.Table()->rowCount(), 10);
    QCOMPARE(fixture.m_pWindow->GetCameraNum(), 0);
    for (int nRow = 0; nRow < 10; ++nRow) {
        QCOMPARE(fixture.Table()->rowHeight(nRow), 38);
        QVERIFY(!fixture.Table()->item(nRow, 0));
        QVERIFY(!fixture.Table()->IsHaveCheckBox(nRow, 0));
    }
}

void tst_MainWidget_Table::Init_CheckColumn_OffersNoSorting()
{
    WindowFixture fixture;
    QVERIFY(!fixture.Header()->isSortEnabled(0));
    for (int nColumn = 1; nColumn < 9; ++nColumn)
        QVERIFY(fixture.Header()->isSortEnabled(nColumn));
    QVERIFY(fixture.Header()->isCheckBoxVisible(0));
}

void tst_MainWidget_Table::NewDevice_ThreeCameras_ThreeRowsAndSevenEmpty()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2), NetworkCamera(3)});
    QCOMPARE(fixture.Table()->rowCount(), 10);
    QCOMPARE(fixture.m_pWindow->GetCameraNum(), 3);
    QVERIFY(fixture.Table()->item(2, 8));
    QVERIFY(!fixture.Table()->item(3, 0));
}

void tst_MainWidget_Table::NewDevice_EleventhCamera_AddsARow()
{
    WindowFixture fixture;
    QVector<KX_CC_DEVICE_INFO> vecCameras;
    for (int n = 1; n <= 11; ++n)
        vecCameras.append(NetworkCamera(n));
    fixture.ShowCameras(vecCameras);
    QCOMPARE(fixture.Table()->rowCount(), 11);
    QCOMPARE(fixture.Table()->rowHeight(10), 38);
    QCOMPARE(fixture.Text(10, 4), QString("SN0011"));
}

void tst_MainWidget_Table::NewDevice_NetworkCamera_FillsTheRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(7)});
    QCOMPARE(fixture.Table()->item(0, 0)->data(Qt::UserRole + 1).toInt(), 1);
    QCOMPARE(fixture.Text(0, 1), QString());
    QCOMPARE(fixture.Text(0, 2), QString("ABC-1000"));
    QCOMPARE(fixture.Text(0, 3), QString("User 7"));
    QCOMPARE(fixture.Text(0, 4), QString("SN0007"));
    QCOMPARE(fixture.Text(0, 5), QString("GigE Vision - eth0"));
    QCOMPARE(fixture.Text(0, 6), QString("00:11:1C:F0:00:07"));
    QCOMPARE(fixture.Text(0, 8), QString());
    QVERIFY(!fixture.Table()->isRowHidden(0));
}

void tst_MainWidget_Table::NewDevice_UsbCamera_FillsTheRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({UsbCamera(7)});
    QCOMPARE(fixture.Text(0, 2), QString("USB-2000"));
    QCOMPARE(fixture.Text(0, 3), QString("Cam 7"));
    QCOMPARE(fixture.Text(0, 4), QString("US0007"));
    QCOMPARE(fixture.Text(0, 5), QString("USB3 Vision"));
    QCOMPARE(fixture.Text(0, 6), QString());
}

void tst_MainWidget_Table::NewDevice_ItemWithoutRecord_ShowsAnUnreachableRow()
{
    WindowFixture fixture;
    QTreeWidgetItem item;
    fixture.m_pWindow->onNewDevice(&item);
    QCOMPARE(fixture.m_pWindow->GetCameraNum(), 1);
    QCOMPARE(fixture.Table()->item(0, 0)->data(Qt::UserRole + 1).toInt(), -1);
    QCOMPARE(fixture.Text(0, 2) + fixture.Text(0, 3) + fixture.Text(0, 4) + fixture.Text(0, 5), QString());
    QCOMPARE(fixture.Table()->item(0, STATUS_COLUMN)->data(Qt::UserRole + 3).toInt(), 2);
    QVERIFY(!fixture.Table()->cellCheckEnable(0, 0));
}

namespace {

/// An item as a tree hands it over, under a group of this name.
struct HandMadeItem
{
    HandMadeItem(const KX_CC_DEVICE_INFO &stInfo, quint32 nDeviceType, const QString &strGroup)
    {
        record.nDeviceID = 77;
        record.nDeviceType = nDeviceType;
        record.nAccessStatus = stInfo.nAccessStatus;
        record.stDevInfo = stInfo;
        group.setText(0, strGroup);
        pItem = new QTreeWidgetItem(&group);
        pItem->setData(0, Qt::UserRole + 3, QVariant::fromValue(record));
    }
    StructDeviceInfo record;
    QTreeWidgetItem group;
    QTreeWidgetItem *pItem; // owned by the group
};

} // namespace

void tst_MainWidget_Table::NewDevice_PortCamera_FillsThePortColumn()
{
    WindowFixture fixture;
    HandMadeItem made(PortCamera(7), 8, "Port");
    fixture.m_pWindow->onNewDevice(made.pItem);
    QCOMPARE(fixture.Text(0, 1), QString("COM7"));
    QCOMPARE(fixture.Text(0, 2), QString("PORT-3000"));
    QCOMPARE(fixture.Text(0, 3), QString());
    QCOMPARE(fixture.Text(0, 4), QString("PS0007"));
    QCOMPARE(fixture.Text(0, 6), QString());
}

void tst_MainWidget_Table::NewDevice_UnknownType_HasStatusAndInterface()
{
    WindowFixture fixture;
    HandMadeItem made(NetworkCamera(7), 2, "Another interface");
    fixture.m_pWindow->onNewDevice(made.pItem);
    QCOMPARE(fixture.Text(0, 2) + fixture.Text(0, 3) + fixture.Text(0, 4), QString());
    QCOMPARE(fixture.Text(0, 5), QString("Another interface"));
    QCOMPARE(fixture.Table()->item(0, STATUS_COLUMN)->data(Qt::UserRole + 3).toInt(), 1);
}

void tst_MainWidget_Table::NewDevice_First_SelectsTheFirstRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    QCOMPARE(fixture.Table()->selectionModel()->selectedRows().size(), 1);
    QCOMPARE(fixture.Table()->selectionModel()->selectedRows().first().row(), 0);
}

void tst_MainWidget_Table::NewDevice_Null_IsIgnored()
{
    WindowFixture fixture;
    fixture.m_pWindow->onNewDevice(nullptr);
    fixture.m_pWindow->onUpdateDevice(nullptr);
    fixture.m_pWindow->onDeleteDevice(nullptr);
    QCOMPARE(fixture.m_pWindow->GetCameraNum(), 0);
}

void tst_MainWidget_Table::NewDevice_OutsideTheSelectedGroup_StaysHidden()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    fixture.ClickTree(fixture.Group("GigE Vision - eth0"));
    fixture.ChangeCameras({NetworkCamera(1), UsbCamera(2)});
    QTRY_COMPARE(fixture.m_pWindow->GetCameraNum(), 2);
    QCOMPARE(fixture.VisibleTexts(4), QStringList("SN0001"));
}

void tst_MainWidget_Table::Status_State_ShowsIconAndCodeAlone_data()
{
    QTest::addColumn<quint32>("nAccessStatus");
    QTest::addColumn<QString>("strImage");
    QTest::addColumn<int>("nCode");
    QTest::addColumn<bool>("bEnabled");
    QTest::newRow("free") << 1u << ":/Lumo/State/use.png" << 1 << true;
    QTest::newRow("in use") << 2u << ":/Lumo/State/notuse.png" << 3 << false;
    QTest::newRow("unreachable") << 3u << ":/Lumo/State/notreach.png" << 2 << false;
}

void tst_MainWidget_Table::Status_State_ShowsIconAndCodeAlone()
{
    QFETCH(quint32, nAccessStatus);
    QFETCH(QString, strImage);
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1, nAccessStatus)});
    const QTableWidgetItem *pItem = fixture.Table()->item(0, STATUS_COLUMN);
    const QImage expected = QIcon(strImage).pixmap(34, 34).toImage();
    QVERIFY(!expected.isNull());
    QCOMPARE(pItem->icon().pixmap(34, 34).toImage(), expected);
    QTEST(pItem->data(Qt::UserRole + 3).toInt(), "nCode");
    QCOMPARE(pItem->text(), QString());
    QTEST(fixture.Table()->cellCheckEnable(0, 0), "bEnabled");
}

void tst_MainWidget_Table::UpdateDevice_FreeTickedGoesInUse_IsClearedAndDisabled()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickCheckBox(0);
    QVERIFY(fixture.IsChecked(0));
    QSignalSpy changed(fixture.Table(), &TarnCustomTableWidget::SigCellCheckStateChanged);
    fixture.ChangeCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE), NetworkCamera(2)});
    QTRY_VERIFY(!fixture.IsChecked(0));
    QVERIFY(!fixture.Table()->cellCheckEnable(0, 0));
    QCOMPARE(fixture.Text(0, STATUS_COLUMN), QString());
    QCOMPARE(fixture.Table()->item(0, STATUS_COLUMN)->data(Qt::UserRole + 3).toInt(), 3);
    QCOMPARE(changed.count(), 0);
    QVERIFY(fixture.Button("ImportBtn")->isEnabled()); // until the next tick
    fixture.ClickCheckBox(1);
    fixture.ClickCheckBox(1);
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Table::UpdateDevice_BackToFree_CanBeTickedAgain()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1, KX_CC_ACCESS_UNREACHABLE)});
    fixture.ChangeCameras({NetworkCamera(1)});
    QTRY_VERIFY(fixture.Table()->cellCheckEnable(0, 0));
    fixture.ClickCheckBox(0);
    QVERIFY(fixture.IsChecked(0));
}

void tst_MainWidget_Table::UpdateDevice_FreeTicked_KeepsItsTick()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    fixture.ClickCheckBox(0);
    KX_CC_DEVICE_INFO renamed = NetworkCamera(1);
    SetText(renamed.SpecialInfo.stGigEInfo.chUserDefinedName, 16, "Renamed");
    fixture.ChangeCameras({renamed});
    QTRY_COMPARE(fixture.Text(0, 3), QString("Renamed"));
    QVERIFY(fixture.IsChecked(0));
}

void tst_MainWidget_Table::UpdateDevice_UnknownCamera_ChangesNothing()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    HandMadeItem made(NetworkCamera(9), 1, "eth9");
    fixture.m_pWindow->onUpdateDevice(made.pItem);
    QCOMPARE(fixture.VisibleTexts(4), QStringList("SN0001"));
    QCOMPARE(fixture.Text(0, 5), QString("GigE Vision - eth0"));
}

void tst_MainWidget_Table::DeleteDevice_FromEleven_LeavesTen()
{
    WindowFixture fixture;
    QVector<KX_CC_DEVICE_INFO> vecCameras;
    for (int n = 1; n <= 11; ++n)
        vecCameras.append(NetworkCamera(n));
    fixture.ShowCameras(vecCameras);
    vecCameras.removeAt(4);
    fixture.ChangeCameras(vecCameras);
    QTRY_COMPARE(fixture.Table()->rowCount(), 10);
    QCOMPARE(fixture.m_pWindow->GetCameraNum(), 10);
    QVERIFY(!fixture.VisibleTexts(4).contains("SN0005"));
}

void tst_MainWidget_Table::DeleteDevice_FromTen_AppendsAnEmptyRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ChangeCameras({NetworkCamera(2)});
    QTRY_COMPARE(fixture.m_pWindow->GetCameraNum(), 1);
    QCOMPARE(fixture.Table()->rowCount(), 10);
    QCOMPARE(fixture.Text(0, 4), QString("SN0002"));
    QVERIFY(!fixture.Table()->item(9, 0));
    QCOMPARE(fixture.Table()->rowHeight(9), 38);
}

void tst_MainWidget_Table::DeleteDevice_TickedCamera_HeaderAndButtonsFollow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickCheckBox(0);
    QVERIFY(fixture.Button("ExportBtn")->isEnabled());
    fixture.ChangeCameras({NetworkCamera(2)});
    QTRY_COMPARE(fixture.m_pWindow->GetCameraNum(), 1);
    QVERIFY(!fixture.Button("ExportBtn")->isEnabled());
    QCOMPARE(fixture.Header()->checkState(0), Qt::Unchecked);
}

void tst_MainWidget_Table::DeleteDevice_UnknownCamera_ChangesNothing()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    HandMadeItem made(NetworkCamera(9), 1, "eth9");
    fixture.m_pWindow->onDeleteDevice(made.pItem);
    QCOMPARE(fixture.m_pWindow->GetCameraNum(), 1);
}

void tst_MainWidget_Table::Check_NoneTicked_ButtonsAreDisabled()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
    fixture.ClickCheckBox(0);
    QVERIFY(fixture.Button("ImportBtn")->isEnabled());
    QVERIFY(fixture.Button("ExportBtn")->isEnabled());
    fixture.ClickCheckBox(0);
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
    QVERIFY(!fixture.Button("ExportBtn")->isEnabled());
}

void tst_MainWidget_Table::Check_AllFreeTicked_HeaderIsTicked()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2), NetworkCamera(3, KX_CC_ACCESS_IN_USE)});
    fixture.ClickCheckBox(0);
    fixture.ClickCheckBox(1);
    QCOMPARE(fixture.Header()->checkState(0), Qt::Checked);
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 2);
    QCOMPARE(fixture.m_pWindow->GetEnabledNum(), 2);
}

void tst_MainWidget_Table::Check_SomeTicked_HeaderIsNeverPartlyTicked()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickCheckBox(1);
    QCOMPARE(fixture.Header()->checkState(0), Qt::Unchecked);
}

void tst_MainWidget_Table::Check_DisabledBox_CannotBeTicked()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE)});
    fixture.ClickCheckBox(0);
    QVERIFY(!fixture.IsChecked(0));
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Table::Check_BeyondTheLimit_IsRefusedAndUndone()
{
    WindowFixture fixture(4);
    QVector<KX_CC_DEVICE_INFO> vecCameras;
    for (int n = 1; n <= 6; ++n)
        vecCameras.append(NetworkCamera(n));
    fixture.ShowCameras(vecCameras);
    for (int nRow = 0; nRow < 4; ++nRow)
        fixture.ClickCheckBox(nRow);
    QCOMPARE(fixture.Header()->checkState(0), Qt::Checked); // as many as a batch may have

    QString strContent;
    QString strTitle;
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        strContent = pBox->findChild<QLabel *>("MessageContent")->text();
        strTitle = pBox->windowTitle();
        pBox->close();
    });
    fixture.ClickCheckBox(4);
    QVERIFY(hands.AllDone());
    QCOMPARE(strContent, QString("Operation failed. You can operate 4 devices at most."));
    QCOMPARE(strTitle, QString("Prompt"));
    QVERIFY(!fixture.IsChecked(4));
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 4);
    QCOMPARE(fixture.Header()->checkState(0), Qt::Checked);
    QVERIFY(fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Table::Header_Ticked_TicksTheVisibleUpToTheLimit()
{
    WindowFixture fixture(4);
    QVector<KX_CC_DEVICE_INFO> vecCameras;
    for (int n = 1; n <= 6; ++n)
        vecCameras.append(NetworkCamera(n));
    fixture.ShowCameras(vecCameras);
    fixture.ClickHeader(0);
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 4);
    QVERIFY(fixture.IsChecked(0) && fixture.IsChecked(3) && !fixture.IsChecked(4));
    QCOMPARE(fixture.Header()->checkState(0), Qt::Checked);
    QVERIFY(fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Table::Header_Ticked_LeavesOutCamerasThatAreNotFree()
{
    WindowFixture fixture(2);
    fixture.ShowCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE), NetworkCamera(2),
                         NetworkCamera(3, KX_CC_ACCESS_UNREACHABLE), NetworkCamera(4), NetworkCamera(5)});
    fixture.ClickHeader(0);
    QVERIFY(!fixture.IsChecked(0) && fixture.IsChecked(1) && !fixture.IsChecked(2) && fixture.IsChecked(3) &&
            !fixture.IsChecked(4));
}

void tst_MainWidget_Table::Header_Cleared_ClearsAllVisible()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickHeader(0);
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 2);
    fixture.ClickHeader(0);
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 0);
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Table::Header_NoFreeCamera_ButtonsStayDisabled()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE)});
    fixture.ClickHeader(0);
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 0);
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Table::Header_HiddenRows_AreNotTouched()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), UsbCamera(2)});
    fixture.ClickTree(fixture.Group("USB3 Vision"));
    fixture.ClickHeader(0);
    QVERIFY(!fixture.IsChecked(0));
    QVERIFY(fixture.IsChecked(1));
}

void tst_MainWidget_Table::Filter_GroupSelected_HidesTheOthers()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2, KX_CC_ACCESS_FREE, "eth1"), UsbCamera(3)});
    fixture.ClickTree(fixture.Group("GigE Vision - eth1"));
    QCOMPARE(fixture.VisibleTexts(4), QStringList("SN0002"));
    fixture.ClickTree(fixture.Group("USB3 Vision"));
    QCOMPARE(fixture.VisibleTexts(4), QStringList("US0003"));
}

void tst_MainWidget_Table::Filter_AllCamerasSelected_ShowsEveryRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), UsbCamera(2)});
    fixture.ClickTree(fixture.Group("USB3 Vision"));
    fixture.ClickTree(fixture.Group("All Cameras"));
    QCOMPARE(fixture.VisibleTexts(4), QStringList({"SN0001", "US0002"}));
}

void tst_MainWidget_Table::Filter_CameraSelected_ShowsNoRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickTree(fixture.Tree()->findCameraItem(1));
    QCOMPARE(fixture.VisibleTexts(4), QStringList());
}

void tst_MainWidget_Table::Filter_HiddenTickedRows_AreNotCounted()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), UsbCamera(2)});
    fixture.ClickCheckBox(0);
    fixture.ClickTree(fixture.Group("USB3 Vision"));
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 0);
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
    QCOMPARE(fixture.m_pWindow->GetCameraNum(), 2);
    fixture.ClickTree(fixture.Group("All Cameras"));
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 1);
    QVERIFY(fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Table::Filter_PortColumn_StaysHidden()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    fixture.Table()->setColumnHidden(1, false);
    fixture.ClickTree(fixture.Group("GigE Vision - eth0"));
    QVERIFY(fixture.Table()->isColumnHidden(1));
}

void tst_MainWidget_Table::Sort_ByStatus_FreeThenUnreachableThenInUse()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE), NetworkCamera(2, KX_CC_ACCESS_UNREACHABLE),
                         NetworkCamera(3)});
    fixture.ClickHeader(7);
    QCOMPARE(fixture.VisibleTexts(4), QStringList({"SN0003", "SN0002", "SN0001"}));
    fixture.ClickHeader(7);
    QCOMPARE(fixture.VisibleTexts(4), QStringList({"SN0001", "SN0002", "SN0003"}));
}

void tst_MainWidget_Table::Sort_ByText_IsCaseSensitive()
{
    WindowFixture fixture;
    QVector<KX_CC_DEVICE_INFO> vecCameras;
    for (const char *pName : {"b", "A", "a"}) {
        vecCameras.append(NetworkCamera(vecCameras.size() + 1));
        SetText(vecCameras.last().SpecialInfo.stGigEInfo.chUserDefinedName, 16, pName);
    }
    fixture.ShowCameras(vecCameras);
    fixture.ClickHeader(3);
    QCOMPARE(fixture.VisibleTexts(3), QStringList({"A", "a", "b"}));
}

void tst_MainWidget_Table::Sort_Descending_EmptyRowsStayBelow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickHeader(4);
    fixture.ClickHeader(4);
    QCOMPARE(fixture.Text(0, 4), QString("SN0002"));
    QCOMPARE(fixture.Text(1, 4), QString("SN0001"));
    QVERIFY(!fixture.Table()->item(2, 0));
    QCOMPARE(fixture.Table()->rowCount(), 10);
}

void tst_MainWidget_Table::Sort_TickedRow_KeepsItsTick()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickCheckBox(0);
    fixture.ClickHeader(4);
    fixture.ClickHeader(4);
    QVERIFY(!fixture.IsChecked(0));
    QVERIFY(fixture.IsChecked(1));
}

void tst_MainWidget_Table::Sort_FilteredTable_ShowsTheSameCameras()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), UsbCamera(2), NetworkCamera(3)});
    fixture.ClickTree(fixture.Group("USB3 Vision"));
    fixture.ClickHeader(4);
    QCOMPARE(fixture.VisibleTexts(4), QStringList("US0002"));
    fixture.ClickHeader(4);
    QCOMPARE(fixture.VisibleTexts(4), QStringList("US0002"));
}

void tst_MainWidget_Table::Sort_AfterSorting_UpdatesFindTheirRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.m_pWindow->onSortTableWidget(4, false);
    QCOMPARE(fixture.m_pWindow->rowFromDeviceID(1), 1);
    fixture.ChangeCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE), NetworkCamera(2)});
    QTRY_VERIFY(!fixture.Table()->cellCheckEnable(1, 0));
    QVERIFY(fixture.Table()->cellCheckEnable(0, 0));
}

void tst_MainWidget_Table::RowFromDeviceID_EmptyRows_EndTheSearch()
{
    WindowFixture fixture;
    QCOMPARE(fixture.m_pWindow->rowFromDeviceID(1), -1);
    fixture.ShowCameras({NetworkCamera(1)});
    QCOMPARE(fixture.m_pWindow->rowFromDeviceID(1), 0);
    QCOMPARE(fixture.m_pWindow->rowFromDeviceID(2), -1);
}

void tst_MainWidget_Table::Keyboard_Space_TicksTheCurrentRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.Table()->setFocus();
    QTest::keyClick(fixture.Table(), Qt::Key_Down);
    QTest::keyClick(fixture.Table(), Qt::Key_Space);
    QVERIFY(!fixture.IsChecked(0));
    QVERIFY(fixture.IsChecked(1));
    QVERIFY(fixture.Button("ImportBtn")->isEnabled());
}

QTEST_MAIN(tst_MainWidget_Table)
#include "tst_mainwidget_table.moc"
