#include <QtTest>

#include <QToolTip>
#include <QTranslator>

#include <ui/csorttableitem.h>
#include <ui/devicetablemodel.h>

#include "tabledevices.h"
#include "windowfixture.h"

using namespace DeviceTable;

class tst_MainWidget_Table : public QObject
{
    Q_OBJECT

private slots:
    void Init_Columns_HaveTextsWidthsAndVisibility();
    void Init_Rows_TenEmptyOnes();
    void Init_CheckColumn_OffersNoSorting();
    void Init_HiddenColumns_HaveTheirWidths();
    void Init_SectionResized_ClosesAnOpenTip();
    void Init_Tree_IsSetUpForTheTool();
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
    void NewDevice_Cells_AreSortItems();
    void NewDevice_Identifier_IsAnInt();
    void NewDevice_Further_LeavesTheSelection();
    void Status_State_ShowsIconAndCodeAlone_data();
    void Status_State_ShowsIconAndCodeAlone();
    void UpdateDevice_FreeTickedGoesInUse_IsClearedAndDisabled();
    void UpdateDevice_BackToFree_CanBeTickedAgain();
    void UpdateDevice_FreeTicked_KeepsItsTick();
    void UpdateDevice_UnknownCamera_ChangesNothing();
    void UpdateDevice_AnotherInterface_TextFollows();
    void UpdateDevice_CellMissing_TheCellsBehindItStay_data();
    void UpdateDevice_CellMissing_TheCellsBehindItStay();
    void UpdateDevice_CellsOfOtherTransportsMissing_TheRowIsWritten();
};

namespace {

/// The name that the tree was given last.
QString &ToolName()
{
    static QString strName;
    return strName;
}

/// Hears which texts of the window are asked for, and translates none.
class Listener : public QTranslator
{
public:
    QString translate(const char *pContext, const char *pText, const char *, int) const override
    {
        if (qstrcmp(pContext, "MainWidget") == 0)
            m_setAsked.insert(pText);
        return QString();
    }
    bool isEmpty() const override { return false; }

    mutable QSet<QString> m_setAsked;
};

} // namespace

// This program's own, which wins over the library's: what a tree does with its name is up to each build of
// it.
void LumoDeviceTree::setToolName(const QString &strName)
{
    ToolName() = strName;
    setObjectName(strName);
}

void tst_MainWidget_Table::Init_Columns_HaveTextsWidthsAndVisibility()
{
    WindowFixture fixture;
    const TarnCustomTableWidget *pTable = fixture.Table();
    QCOMPARE(pTable->columnCount(), int(ColumnCount));
    QStringList listLabels;
    QStringList listHidden;
    for (int nColumn = 0; nColumn < ColumnCount; ++nColumn) {
        listLabels.append(pTable->horizontalHeaderItem(nColumn)->text());
        if (pTable->isColumnHidden(nColumn))
            listHidden.append(QString::number(nColumn));
    }
    QCOMPARE(listLabels, QStringList({"", "PortID", "Model Name", "Device User ID", "Serial Number",
                                      "Interface Type", "MAC Address", "Status", "Operation Status"}));
    QCOMPARE(listHidden, QStringList({"1", "5", "6"}));
    QCOMPARE(pTable->columnWidth(CheckColumn), 38);
    QCOMPARE(pTable->columnWidth(ModelColumn), 149);
    QCOMPARE(pTable->columnWidth(UserNameColumn), 110);
    QCOMPARE(pTable->columnWidth(SerialColumn), 160);
    QCOMPARE(pTable->columnWidth(StateColumn), 54);
    QCOMPARE(pTable->columnWidth(OperateColumn), 319); // until the window has its size
    QCOMPARE(pTable->horizontalHeader()->sectionResizeMode(OperateColumn), QHeaderView::Stretch);
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
        QVERIFY(!fixture.Table()->item(nRow, CheckColumn));
        QVERIFY(!fixture.Table()->IsHaveCheckBox(nRow, CheckColumn));
    }
}

void tst_MainWidget_Table::Init_CheckColumn_OffersNoSorting()
{
    WindowFixture fixture;
    QVERIFY(!fixture.Header()->isSortEnabled(CheckColumn));
    for (int nColumn = 1; nColumn < ColumnCount; ++nColumn)
        QVERIFY(fixture.Header()->isSortEnabled(nColumn));
    QVERIFY(fixture.Header()->isCheckBoxVisible(CheckColumn));
}

void tst_MainWidget_Table::Init_HiddenColumns_HaveTheirWidths()
{
    WindowFixture fixture;
    for (int nColumn : {PortColumn, InterfaceColumn, MacColumn})
        fixture.Table()->setColumnHidden(nColumn, false);
    const int nDefault = fixture.Header()->defaultSectionSize();
    QVERIFY(nDefault != 0);
    QCOMPARE(fixture.Table()->columnWidth(PortColumn), 100);
    QCOMPARE(fixture.Table()->columnWidth(InterfaceColumn), nDefault);
    QCOMPARE(fixture.Table()->columnWidth(MacColumn), nDefault);
}

void tst_MainWidget_Table::Init_SectionResized_ClosesAnOpenTip()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    QToolTip::showText(fixture.Table()->mapToGlobal(QPoint()), "of a cell that is about to move",
                       fixture.Table()->viewport());
    QVERIFY(QToolTip::isVisible());
    fixture.Header()->resizeSection(ModelColumn, 200);
    QTRY_VERIFY(!QToolTip::isVisible());
}

void tst_MainWidget_Table::Init_Tree_IsSetUpForTheTool()
{
    WindowFixture fixture;
    QCOMPARE(ToolName(), QString("ToolTree"));
    QVERIFY(fixture.Tree()); // found by that name
    QCOMPARE(fixture.Tree()->minimumWidth(), 186);
    QCOMPARE(fixture.Tree()->maximumWidth(), 186);
    QVERIFY(!fixture.Tree()->itemsExpandable());
    QCOMPARE(fixture.Tree()->visibleItemTypes(), QList<int>({2, 3, 1, 4, 11, 10}));
    QCOMPARE(fixture.Tree()->currentItem(), fixture.Tree()->findItem(LumoDeviceTree::AllCamerasItem, -1));
    QCOMPARE(fixture.Tree()->currentColumn(), 1);
    QTRY_COMPARE(fixture.m_devices.Transports(), 5u);
}

void tst_MainWidget_Table::NewDevice_ThreeCameras_ThreeRowsAndSevenEmpty()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2), NetworkCamera(3)});
    QCOMPARE(fixture.Table()->rowCount(), 10);
    QCOMPARE(fixture.m_pWindow->GetCameraNum(), 3);
    QVERIFY(fixture.Table()->item(2, OperateColumn));
    QVERIFY(!fixture.Table()->item(3, CheckColumn));
}

void tst_MainWidget_Table::NewDevice_EleventhCamera_AddsARow()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 11));
    QCOMPARE(fixture.Table()->rowCount(), 11);
    QCOMPARE(fixture.Table()->rowHeight(10), 38);
    QCOMPARE(fixture.Text(10, SerialColumn), QString("SN0011"));
}

void tst_MainWidget_Table::NewDevice_NetworkCamera_FillsTheRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(7)});
    QCOMPARE(fixture.Table()->item(0, CheckColumn)->data(DeviceIdRole).toInt(), 1);
    QCOMPARE(fixture.Text(0, PortColumn), QString());
    QCOMPARE(fixture.Text(0, ModelColumn), QString("ABC-1000"));
    QCOMPARE(fixture.Text(0, UserNameColumn), QString("User 7"));
    QCOMPARE(fixture.Text(0, SerialColumn), QString("SN0007"));
    QCOMPARE(fixture.Text(0, InterfaceColumn), QString("GigE Vision - eth0"));
    QCOMPARE(fixture.Text(0, MacColumn), QString("00:11:1C:F0:00:07"));
    QCOMPARE(fixture.Text(0, OperateColumn), QString());
    QVERIFY(!fixture.Table()->isRowHidden(0));
}

void tst_MainWidget_Table::NewDevice_UsbCamera_FillsTheRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({UsbCamera(7)});
    QCOMPARE(fixture.Text(0, ModelColumn), QString("USB-2000"));
    QCOMPARE(fixture.Text(0, UserNameColumn), QString("Cam 7"));
    QCOMPARE(fixture.Text(0, SerialColumn), QString("US0007"));
    QCOMPARE(fixture.Text(0, InterfaceColumn), QString("USB3 Vision"));
    QCOMPARE(fixture.Text(0, MacColumn), QString());
}

void tst_MainWidget_Table::NewDevice_ItemWithoutRecord_ShowsAnUnreachableRow()
{
    WindowFixture fixture;
    QTreeWidgetItem item;
    fixture.m_pWindow->onNewDevice(&item);
    QCOMPARE(fixture.m_pWindow->GetCameraNum(), 1);
    QCOMPARE(fixture.Table()->item(0, CheckColumn)->data(DeviceIdRole).toInt(), -1);
    QCOMPARE(fixture.Text(0, ModelColumn) + fixture.Text(0, UserNameColumn) + fixture.Text(0, SerialColumn) +
                 fixture.Text(0, InterfaceColumn),
             QString());
    QCOMPARE(fixture.Table()->item(0, StateColumn)->data(StateCodeRole).toInt(), 2);
    QVERIFY(!fixture.Table()->cellCheckEnable(0, CheckColumn));
}

void tst_MainWidget_Table::NewDevice_PortCamera_FillsThePortColumn()
{
    WindowFixture fixture;
    HandMadeItem made(PortCamera(7), 8, "Port");
    fixture.m_pWindow->onNewDevice(made.pItem);
    QCOMPARE(fixture.Text(0, PortColumn), QString("COM7"));
    QCOMPARE(fixture.Text(0, ModelColumn), QString("PORT-3000"));
    QCOMPARE(fixture.Text(0, UserNameColumn), QString());
    QCOMPARE(fixture.Text(0, SerialColumn), QString("PS0007"));
    QCOMPARE(fixture.Text(0, MacColumn), QString());
}

void tst_MainWidget_Table::NewDevice_UnknownType_HasStatusAndInterface()
{
    WindowFixture fixture;
    HandMadeItem made(NetworkCamera(7), 2, "Another interface");
    fixture.m_pWindow->onNewDevice(made.pItem);
    QCOMPARE(fixture.Text(0, ModelColumn) + fixture.Text(0, UserNameColumn) + fixture.Text(0, SerialColumn),
             QString());
    QCOMPARE(fixture.Text(0, InterfaceColumn), QString("Another interface"));
    QCOMPARE(fixture.Table()->item(0, StateColumn)->data(StateCodeRole).toInt(), 1);
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
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList("SN0001"));
}

void tst_MainWidget_Table::NewDevice_Cells_AreSortItems()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    for (int nColumn = 0; nColumn < ColumnCount; ++nColumn)
        QVERIFY(dynamic_cast<CSortTableItem *>(fixture.Table()->item(0, nColumn)));
}

void tst_MainWidget_Table::NewDevice_Identifier_IsAnInt()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    QCOMPARE(fixture.Table()->item(0, CheckColumn)->data(DeviceIdRole).userType(), int(QMetaType::Int));
    QCOMPARE(fixture.Table()->item(0, StateColumn)->data(StateCodeRole).userType(), int(QMetaType::Int));
}

void tst_MainWidget_Table::NewDevice_Further_LeavesTheSelection()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 2));
    fixture.Table()->selectRow(1);
    fixture.ChangeCameras(NetworkCameras(1, 3));
    QTRY_COMPARE(fixture.m_pWindow->GetCameraNum(), 3);
    QCOMPARE(fixture.Table()->currentRow(), 1);
}

void tst_MainWidget_Table::Status_State_ShowsIconAndCodeAlone_data()
{
    QTest::addColumn<quint32>("nAccessStatus");
    QTest::addColumn<QString>("strImage");
    QTest::addColumn<int>("nCode");
    QTest::addColumn<bool>("bEnabled");
    QTest::addColumn<QString>("strWord");
    QTest::newRow("free") << 1u << ":/Lumo/State/use.png" << 1 << true << "Free";
    QTest::newRow("in use") << 2u << ":/Lumo/State/notuse.png" << 3 << false << "In Use";
    QTest::newRow("unreachable") << 3u << ":/Lumo/State/notreach.png" << 2 << false << "Unreachable";
}

void tst_MainWidget_Table::Status_State_ShowsIconAndCodeAlone()
{
    QFETCH(quint32, nAccessStatus);
    QFETCH(QString, strImage);
    QFETCH(QString, strWord);
    WindowFixture fixture;
    Listener listener;
    QCoreApplication::installTranslator(&listener);
    fixture.ShowCameras({NetworkCamera(1, nAccessStatus)});
    const QTableWidgetItem *pItem = fixture.Table()->item(0, StateColumn);
    const QImage expected = QIcon(strImage).pixmap(34, 34).toImage();
    QVERIFY(!expected.isNull());
    QCOMPARE(pItem->icon().pixmap(34, 34).toImage(), expected);
    QTEST(pItem->data(StateCodeRole).toInt(), "nCode");
    QCOMPARE(pItem->text(), QString());
    QCOMPARE(pItem->toolTip(), QString());
    QVERIFY(listener.m_setAsked.contains(strWord)); // made in the window's language, shown nowhere
    QTEST(fixture.Table()->cellCheckEnable(0, CheckColumn), "bEnabled");
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
    QVERIFY(!fixture.Table()->cellCheckEnable(0, CheckColumn));
    QCOMPARE(fixture.Text(0, StateColumn), QString());
    QCOMPARE(fixture.Table()->item(0, StateColumn)->data(StateCodeRole).toInt(), 3);
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
    QTRY_VERIFY(fixture.Table()->cellCheckEnable(0, CheckColumn));
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
    QTRY_COMPARE(fixture.Text(0, UserNameColumn), QString("Renamed"));
    QVERIFY(fixture.IsChecked(0));
}

void tst_MainWidget_Table::UpdateDevice_UnknownCamera_ChangesNothing()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    HandMadeItem made(NetworkCamera(9), 1, "eth9");
    fixture.m_pWindow->onUpdateDevice(made.pItem);
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList("SN0001"));
    QCOMPARE(fixture.Text(0, InterfaceColumn), QString("GigE Vision - eth0"));
}

void tst_MainWidget_Table::UpdateDevice_AnotherInterface_TextFollows()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 2));
    fixture.ChangeCameras({NetworkCamera(1), NetworkCamera(2, KX_CC_ACCESS_FREE, "eth1")});
    QTRY_COMPARE(fixture.Text(1, InterfaceColumn), QString("GigE Vision - eth1"));
    QCOMPARE(fixture.Text(0, InterfaceColumn), QString("GigE Vision - eth0"));
}

void tst_MainWidget_Table::UpdateDevice_CellMissing_TheCellsBehindItStay_data()
{
    QTest::addColumn<quint32>("nDeviceType");
    QTest::addColumn<int>("nMissing");
    QTest::newRow("port") << quint32(KX_CC_TRANSPORT_PORT) << int(PortColumn);
    QTest::newRow("model") << quint32(KX_CC_TRANSPORT_GIGE) << int(ModelColumn);
    QTest::newRow("user name") << quint32(KX_CC_TRANSPORT_GIGE) << int(UserNameColumn);
    QTest::newRow("serial number") << quint32(KX_CC_TRANSPORT_GIGE) << int(SerialColumn);
    QTest::newRow("interface") << quint32(KX_CC_TRANSPORT_GIGE) << int(InterfaceColumn);
    QTest::newRow("MAC address") << quint32(KX_CC_TRANSPORT_GIGE) << int(MacColumn);
}

void tst_MainWidget_Table::UpdateDevice_CellMissing_TheCellsBehindItStay()
{
    QFETCH(quint32, nDeviceType);
    QFETCH(int, nMissing);
    const bool bPort = nDeviceType == KX_CC_TRANSPORT_PORT;
    WindowFixture fixture;
    HandMadeItem old(bPort ? PortCamera(7) : NetworkCamera(7), nDeviceType, "old");
    fixture.m_pWindow->onNewDevice(old.pItem);
    QStringList listOld;
    for (int nColumn = 0; nColumn < ColumnCount; ++nColumn)
        listOld.append(fixture.Text(0, nColumn));
    delete fixture.Table()->takeItem(0, nMissing);
    HandMadeItem changed(bPort ? PortCamera(8, KX_CC_ACCESS_IN_USE) : NetworkCamera(8, KX_CC_ACCESS_IN_USE),
                         nDeviceType, "new");
    fixture.m_pWindow->onUpdateDevice(changed.pItem);
    for (int nColumn = nMissing + 1; nColumn < ColumnCount; ++nColumn)
        QCOMPARE(fixture.Text(0, nColumn), listOld.at(nColumn));
    QCOMPARE(fixture.Table()->item(0, StateColumn)->data(StateCodeRole).toInt(), 1);
    if (nMissing > SerialColumn)
        QCOMPARE(fixture.Text(0, SerialColumn), QString("SN0008")); // what stands in front of it is written
}

void tst_MainWidget_Table::UpdateDevice_CellsOfOtherTransportsMissing_TheRowIsWritten()
{
    WindowFixture fixture;
    HandMadeItem old(UsbCamera(7), KX_CC_TRANSPORT_USB, "old");
    fixture.m_pWindow->onNewDevice(old.pItem);
    delete fixture.Table()->takeItem(0, PortColumn);
    delete fixture.Table()->takeItem(0, MacColumn);
    HandMadeItem changed(UsbCamera(8, KX_CC_ACCESS_IN_USE), KX_CC_TRANSPORT_USB, "new");
    fixture.m_pWindow->onUpdateDevice(changed.pItem);
    QCOMPARE(fixture.Text(0, InterfaceColumn), QString("new"));
    QCOMPARE(fixture.Table()->item(0, StateColumn)->data(StateCodeRole).toInt(), 3);
}

QTEST_MAIN(tst_MainWidget_Table)
#include "tst_mainwidget_table.moc"
