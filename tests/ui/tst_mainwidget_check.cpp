#include <QtTest>

#include <ui/devicetablemodel.h>

#include "scriptedcameras.h"
#include "tabledevices.h"
#include "windowfixture.h"

using namespace DeviceTable;

class tst_MainWidget_Check : public QObject
{
    Q_OBJECT

private slots:
    void Check_NoneTicked_ButtonsAreDisabled();
    void Check_AllFreeTicked_HeaderIsTicked();
    void Check_SomeTicked_HeaderIsNeverPartlyTicked();
    void Check_DisabledBox_CannotBeTicked();
    void Check_BeyondTheLimit_IsRefusedAndUndone();
    void Check_RowAboveGoesDuringTheMessage_TheRefusedOneIsUndone();
    void Check_SortedDuringTheMessage_TheRefusedOneIsUndone();
    void Check_RefusedCameraGoesDuringTheMessage_OthersKeepTheirTicks();
    void Header_Ticked_TicksTheVisibleUpToTheLimit();
    void Header_Ticked_LeavesOutCamerasThatAreNotFree();
    void Header_Cleared_ClearsAllVisible();
    void Header_NoFreeCamera_ButtonsStayDisabled();
    void Header_HiddenRows_AreNotTouched();
    void Keyboard_Space_TicksTheCurrentRow();
};

namespace {

/// Serial numbers of the cameras that are ticked, hidden ones included, in the table's order.
QStringList Ticked(const WindowFixture &fixture)
{
    QStringList listSerials;
    for (int nRow = 0; nRow < fixture.m_pWindow->GetCameraNum(); ++nRow) {
        if (fixture.IsChecked(nRow))
            listSerials.append(fixture.Text(nRow, SerialColumn));
    }
    return listSerials;
}

} // namespace

void tst_MainWidget_Check::Check_NoneTicked_ButtonsAreDisabled()
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

void tst_MainWidget_Check::Check_AllFreeTicked_HeaderIsTicked()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2), NetworkCamera(3, KX_CC_ACCESS_IN_USE)});
    fixture.ClickCheckBox(0);
    fixture.ClickCheckBox(1);
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Checked);
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 2);
    QCOMPARE(fixture.m_pWindow->GetEnabledNum(), 2);
}

void tst_MainWidget_Check::Check_SomeTicked_HeaderIsNeverPartlyTicked()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickCheckBox(1);
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Unchecked);
}

void tst_MainWidget_Check::Check_DisabledBox_CannotBeTicked()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE)});
    fixture.ClickCheckBox(0);
    QVERIFY(!fixture.IsChecked(0));
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Check::Check_BeyondTheLimit_IsRefusedAndUndone()
{
    WindowFixture fixture(4);
    fixture.ShowCameras(NetworkCameras(1, 6));
    for (int nRow = 0; nRow < 4; ++nRow)
        fixture.ClickCheckBox(nRow);
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Checked); // as many as a batch may have

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
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Checked);
    QVERIFY(fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Check::Check_RowAboveGoesDuringTheMessage_TheRefusedOneIsUndone()
{
    WindowFixture fixture(4);
    fixture.ShowCameras(NetworkCameras(1, 6));
    for (int nRow = 0; nRow < 4; ++nRow)
        fixture.ClickCheckBox(nRow);
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        fixture.ChangeCameras(NetworkCameras(2, 6));
        pBox->close();
    });
    fixture.ClickCheckBox(4);
    QVERIFY(hands.AllDone());
    QCOMPARE(Ticked(fixture), QStringList({"SN0002", "SN0003", "SN0004"}));
}

void tst_MainWidget_Check::Check_SortedDuringTheMessage_TheRefusedOneIsUndone()
{
    WindowFixture fixture(2);
    fixture.ShowCameras(NetworkCameras(1, 4));
    fixture.ClickCheckBox(0);
    fixture.ClickCheckBox(1);
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        fixture.m_pWindow->onSortTableWidget(SerialColumn, false);
        pBox->close();
    });
    fixture.ClickCheckBox(2);
    QVERIFY(hands.AllDone());
    QCOMPARE(Ticked(fixture), QStringList({"SN0002", "SN0001"}));
}

void tst_MainWidget_Check::Check_RefusedCameraGoesDuringTheMessage_OthersKeepTheirTicks()
{
    WindowFixture fixture(2);
    fixture.ShowCameras(NetworkCameras(1, 4));
    fixture.ClickCheckBox(2);
    fixture.ClickCheckBox(3);
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        fixture.ChangeCameras({NetworkCamera(1), NetworkCamera(3), NetworkCamera(4)});
        pBox->close();
    });
    fixture.ClickCheckBox(1);
    QVERIFY(hands.AllDone());
    QCOMPARE(Ticked(fixture), QStringList({"SN0003", "SN0004"}));
}

void tst_MainWidget_Check::Header_Ticked_TicksTheVisibleUpToTheLimit()
{
    WindowFixture fixture(4);
    fixture.ShowCameras(NetworkCameras(1, 6));
    fixture.ClickHeader(CheckColumn);
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 4);
    QVERIFY(fixture.IsChecked(0) && fixture.IsChecked(3) && !fixture.IsChecked(4));
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Checked);
    QVERIFY(fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Check::Header_Ticked_LeavesOutCamerasThatAreNotFree()
{
    WindowFixture fixture(2);
    fixture.ShowCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE), NetworkCamera(2),
                         NetworkCamera(3, KX_CC_ACCESS_UNREACHABLE), NetworkCamera(4), NetworkCamera(5)});
    fixture.ClickHeader(CheckColumn);
    QVERIFY(!fixture.IsChecked(0) && fixture.IsChecked(1) && !fixture.IsChecked(2) && fixture.IsChecked(3) &&
            !fixture.IsChecked(4));
}

void tst_MainWidget_Check::Header_Cleared_ClearsAllVisible()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickHeader(CheckColumn);
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 2);
    fixture.ClickHeader(CheckColumn);
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 0);
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Check::Header_NoFreeCamera_ButtonsStayDisabled()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE)});
    fixture.ClickHeader(CheckColumn);
    QCOMPARE(fixture.m_pWindow->GetCheckedNum(), 0);
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Check::Header_HiddenRows_AreNotTouched()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), UsbCamera(2)});
    fixture.ClickTree(fixture.Group("USB3 Vision"));
    fixture.ClickHeader(CheckColumn);
    QVERIFY(!fixture.IsChecked(0));
    QVERIFY(fixture.IsChecked(1));
}

void tst_MainWidget_Check::Keyboard_Space_TicksTheCurrentRow()
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

QTEST_MAIN(tst_MainWidget_Check)
#include "tst_mainwidget_check.moc"
