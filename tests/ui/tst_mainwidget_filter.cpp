#include <QtTest>

#include <algorithm>

#include <ui/devicetablemodel.h>

#include "scriptedcameras.h"
#include "tabledevices.h"
#include "windowfixture.h"

using namespace DeviceTable;

class tst_MainWidget_Filter : public QObject
{
    Q_OBJECT

private slots:
    void Filter_GroupSelected_HidesTheOthers();
    void Filter_AllCamerasSelected_ShowsEveryRow();
    void Filter_CameraSelected_ShowsNoRow();
    void Filter_HiddenTickedRows_AreNotCounted();
    void Filter_PortColumn_StaysHidden();
    void Filter_TicksOfTwoGroupsBeyondTheLimit_TheFirstRowIsCleared();
    void Filter_FirstRowHidden_ItIsClearedBeyondTheLimitAllTheSame();
    void Filter_CameraUnknownToTheTree_StaysAsItIs();
    void Filter_CameraMovedToAnotherInterface_StaysShownUntilTheNextChoice();
    void Sort_ByStatus_FreeThenUnreachableThenInUse();
    void Sort_ByText_IsCaseSensitive();
    void Sort_Descending_EmptyRowsStayBelow();
    void Sort_TickedRow_KeepsItsTick();
    void Sort_FilteredTable_ShowsTheSameCameras();
    void Sort_AfterSorting_UpdatesFindTheirRow();
    void Sort_CameraMovedToAnotherInterface_StaysShownAndTicked();
    void Sort_EveryOtherRowHidden_HiddenRowsMoveWithTheirCameras();
};

void tst_MainWidget_Filter::Filter_GroupSelected_HidesTheOthers()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2, KX_CC_ACCESS_FREE, "eth1"), UsbCamera(3)});
    fixture.ClickTree(fixture.Group("GigE Vision - eth1"));
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList("SN0002"));
    fixture.ClickTree(fixture.Group("USB3 Vision"));
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList("US0003"));
}

void tst_MainWidget_Filter::Filter_AllCamerasSelected_ShowsEveryRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), UsbCamera(2)});
    fixture.ClickTree(fixture.Group("USB3 Vision"));
    fixture.ClickTree(fixture.Group("All Cameras"));
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList({"SN0001", "US0002"}));
}

void tst_MainWidget_Filter::Filter_CameraSelected_ShowsNoRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickTree(fixture.Tree()->findCameraItem(1));
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList());
}

void tst_MainWidget_Filter::Filter_HiddenTickedRows_AreNotCounted()
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

void tst_MainWidget_Filter::Filter_PortColumn_StaysHidden()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    fixture.Table()->setColumnHidden(PortColumn, false);
    fixture.ClickTree(fixture.Group("GigE Vision - eth0"));
    QVERIFY(fixture.Table()->isColumnHidden(PortColumn));
}

// Which of them was the last one nobody knows: it is always the first row that gives way.
void tst_MainWidget_Filter::Filter_TicksOfTwoGroupsBeyondTheLimit_TheFirstRowIsCleared()
{
    WindowFixture fixture(2);
    fixture.ShowCameras(NetworkCameras(1, 3) + NetworkCameras(4, 6, "eth1"));
    fixture.ClickTree(fixture.Group("GigE Vision - eth0"));
    fixture.ClickHeader(CheckColumn);
    fixture.ClickTree(fixture.Group("GigE Vision - eth1"));
    fixture.ClickHeader(CheckColumn);
    fixture.Header()->setCheckState(CheckColumn, Qt::Unchecked, false);
    fixture.Button("ExportBtn")->setEnabled(false);
    fixture.Table()->selectRow(4);
    QString strContent;
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        strContent = pBox->findChild<QLabel *>("MessageContent")->text();
        pBox->close();
    });
    fixture.ClickTree(fixture.Group("All Cameras"));
    QVERIFY(hands.AllDone());
    QCOMPARE(strContent, QString("Operation failed. You can operate 2 devices at most."));
    QVERIFY(!fixture.IsChecked(0) && fixture.IsChecked(1) && fixture.IsChecked(3) && fixture.IsChecked(4));
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 3);
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Unchecked); // left as it was
    QVERIFY(!fixture.Button("ExportBtn")->isEnabled());
}

void tst_MainWidget_Filter::Filter_FirstRowHidden_ItIsClearedBeyondTheLimitAllTheSame()
{
    WindowFixture fixture(1);
    fixture.ShowCameras({NetworkCamera(1), UsbCamera(2), UsbCamera(3)});
    for (int nRow = 0; nRow < 3; ++nRow)
        fixture.Table()->setCellCheckState(nRow, CheckColumn, Qt::Checked, false);
    ModalHands hands;
    hands.Then("MessageBox", [](QWidget *pBox) { pBox->close(); });
    fixture.ClickTree(fixture.Group("USB3 Vision"));
    QVERIFY(hands.AllDone());
    QVERIFY(!fixture.IsChecked(0) && fixture.IsChecked(1) && fixture.IsChecked(2));
}

void tst_MainWidget_Filter::Filter_CameraUnknownToTheTree_StaysAsItIs()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 2));
    HandMadeItem shown(NetworkCamera(8), 1, "eth8", 78);
    HandMadeItem hidden(NetworkCamera(9), 1, "eth9", 79);
    fixture.m_pWindow->onNewDevice(shown.pItem);
    fixture.m_pWindow->onNewDevice(hidden.pItem);
    QVERIFY(fixture.Table()->isRowHidden(2)); // as every new row, until its camera is found in the tree
    fixture.Table()->setRowHidden(2, false);
    fixture.ClickTree(fixture.Tree()->findCameraItem(1));
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList("SN0008"));
    fixture.ClickTree(fixture.Group("All Cameras"));
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList({"SN0001", "SN0002", "SN0008"}));
}

void tst_MainWidget_Filter::Filter_CameraMovedToAnotherInterface_StaysShownUntilTheNextChoice()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 2));
    fixture.ClickTree(fixture.Group("GigE Vision - eth0"));
    fixture.ChangeCameras({NetworkCamera(1, KX_CC_ACCESS_FREE, "eth1"), NetworkCamera(2)});
    QTRY_COMPARE(fixture.Text(0, InterfaceColumn), QString("GigE Vision - eth1"));
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList({"SN0001", "SN0002"}));
    fixture.ClickTree(fixture.Group("GigE Vision - eth1"));
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList("SN0001"));
    fixture.ChangeCameras(NetworkCameras(1, 2));
    QTRY_COMPARE(fixture.Text(0, InterfaceColumn), QString("GigE Vision - eth0"));
}

void tst_MainWidget_Filter::Sort_ByStatus_FreeThenUnreachableThenInUse()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE), NetworkCamera(2, KX_CC_ACCESS_UNREACHABLE),
                         NetworkCamera(3)});
    fixture.ClickHeader(StateColumn);
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList({"SN0003", "SN0002", "SN0001"}));
    fixture.ClickHeader(StateColumn);
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList({"SN0001", "SN0002", "SN0003"}));
}

void tst_MainWidget_Filter::Sort_ByText_IsCaseSensitive()
{
    WindowFixture fixture;
    QVector<KX_CC_DEVICE_INFO> vecCameras;
    for (const char *pName : {"b", "A", "a"}) {
        vecCameras.append(NetworkCamera(vecCameras.size() + 1));
        SetText(vecCameras.last().SpecialInfo.stGigEInfo.chUserDefinedName, 16, pName);
    }
    fixture.ShowCameras(vecCameras);
    fixture.ClickHeader(UserNameColumn);
    QCOMPARE(fixture.VisibleTexts(UserNameColumn), QStringList({"A", "a", "b"}));
}

void tst_MainWidget_Filter::Sort_Descending_EmptyRowsStayBelow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickHeader(SerialColumn);
    fixture.ClickHeader(SerialColumn);
    QCOMPARE(fixture.Text(0, SerialColumn), QString("SN0002"));
    QCOMPARE(fixture.Text(1, SerialColumn), QString("SN0001"));
    QVERIFY(!fixture.Table()->item(2, CheckColumn));
    QCOMPARE(fixture.Table()->rowCount(), 10);
}

void tst_MainWidget_Filter::Sort_TickedRow_KeepsItsTick()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickCheckBox(0);
    fixture.ClickHeader(SerialColumn);
    fixture.ClickHeader(SerialColumn);
    QVERIFY(!fixture.IsChecked(0));
    QVERIFY(fixture.IsChecked(1));
}

void tst_MainWidget_Filter::Sort_FilteredTable_ShowsTheSameCameras()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), UsbCamera(2), NetworkCamera(3)});
    fixture.ClickTree(fixture.Group("USB3 Vision"));
    fixture.ClickHeader(SerialColumn);
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList("US0002"));
    fixture.ClickHeader(SerialColumn);
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList("US0002"));
}

void tst_MainWidget_Filter::Sort_AfterSorting_UpdatesFindTheirRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.m_pWindow->onSortTableWidget(SerialColumn, false);
    QCOMPARE(fixture.m_pWindow->rowFromDeviceID(1), 1);
    fixture.ChangeCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE), NetworkCamera(2)});
    QTRY_VERIFY(!fixture.Table()->cellCheckEnable(1, CheckColumn));
    QVERIFY(fixture.Table()->cellCheckEnable(0, CheckColumn));
}

// Its row is shown until another group is chosen, and so is its tick.
void tst_MainWidget_Filter::Sort_CameraMovedToAnotherInterface_StaysShownAndTicked()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 2));
    fixture.ClickTree(fixture.Group("GigE Vision - eth0"));
    fixture.ClickCheckBox(0);
    fixture.ChangeCameras({NetworkCamera(1, KX_CC_ACCESS_FREE, "eth1"), NetworkCamera(2)});
    QTRY_COMPARE(fixture.Text(0, InterfaceColumn), QString("GigE Vision - eth1"));
    fixture.ClickHeader(SerialColumn);
    fixture.ClickHeader(SerialColumn);
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList({"SN0002", "SN0001"}));
    QVERIFY(fixture.IsChecked(1));
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 1);
    QVERIFY(fixture.Button("ExportBtn")->isEnabled());
}

void tst_MainWidget_Filter::Sort_EveryOtherRowHidden_HiddenRowsMoveWithTheirCameras()
{
    WindowFixture fixture;
    QVector<KX_CC_DEVICE_INFO> vecCameras;
    QStringList listShown;
    for (int n = 1; n <= 12; ++n) {
        const bool bShown = n % 2 == 0;
        vecCameras.append(NetworkCamera(n, KX_CC_ACCESS_FREE, bShown ? "eth1" : "eth0"));
        if (bShown)
            listShown.append(QString("SN%1").arg(n, 4, 10, QChar('0')));
    }
    fixture.ShowCameras(vecCameras);
    fixture.ClickTree(fixture.Group("GigE Vision - eth1"));
    for (bool bAscending : {false, true, true, false}) {
        fixture.m_pWindow->onSortTableWidget(SerialColumn, bAscending);
        QStringList listSorted = listShown;
        if (!bAscending)
            std::reverse(listSorted.begin(), listSorted.end());
        QCOMPARE(fixture.VisibleTexts(SerialColumn), listSorted);
    }
    QCOMPARE(fixture.Table()->verticalHeader()->hiddenSectionCount(), 6);
}

QTEST_MAIN(tst_MainWidget_Filter)
#include "tst_mainwidget_filter.moc"
