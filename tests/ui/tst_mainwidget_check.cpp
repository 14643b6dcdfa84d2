#include <QtTest>

#include <QPlainTextEdit>

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
    void Check_BeyondTheLimit_HeaderAndButtonsAreLeft();
    void Check_Ticked_HeaderFollowsWithoutASignal();
    void Check_NoFreeCamera_HeaderIsCleared();
    void Check_AnotherHeader_ChangesNothing();
    void Check_CameraArrives_HeaderStaysTicked();
    void Check_LastUntickedCameraGoes_HeaderStaysCleared();
    void Header_Ticked_TicksTheVisibleUpToTheLimit();
    void Header_Ticked_LeavesOutCamerasThatAreNotFree();
    void Header_Cleared_ClearsAllVisible();
    void Header_NoFreeCamera_ButtonsStayDisabled();
    void Header_HiddenRows_AreNotTouched();
    void Header_TickedFurtherDown_CountsTowardsTheLimit();
    void Header_MoreTickedThanTheLimit_TicksAllVisible();
    void Header_ClearedAtTheLimit_ClearsAllVisible();
    void Header_PartlyTicked_ChangesNothing();
    void Header_Ticked_RowsFollowWithoutASignal();
    void Header_BoxesOfAnotherColumn_AreTickedThere();
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
    QString strDetail = "not looked at";
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        strContent = pBox->findChild<QLabel *>("MessageContent")->text();
        strTitle = pBox->windowTitle();
        strDetail = pBox->findChild<QPlainTextEdit *>("MessageDetail")->toPlainText();
        pBox->close();
    });
    fixture.ClickCheckBox(4);
    QVERIFY(hands.AllDone());
    QCOMPARE(strContent, QString("Operation failed. You can operate 4 devices at most."));
    QCOMPARE(strTitle, QString("Prompt"));
    QCOMPARE(strDetail, QString());
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

void tst_MainWidget_Check::Check_BeyondTheLimit_HeaderAndButtonsAreLeft()
{
    WindowFixture fixture(2);
    fixture.ShowCameras(NetworkCameras(1, 4));
    fixture.ClickCheckBox(0);
    fixture.ClickCheckBox(1);
    fixture.Header()->setCheckState(CheckColumn, Qt::Unchecked, false);
    fixture.Button("ImportBtn")->setEnabled(false);
    QSignalSpy changed(fixture.Table(), &TarnCustomTableWidget::SigCellCheckStateChanged);
    ModalHands hands;
    hands.Then("MessageBox", [](QWidget *pBox) { pBox->close(); });
    fixture.ClickCheckBox(2);
    QVERIFY(hands.AllDone());
    QCOMPARE(Ticked(fixture), QStringList({"SN0001", "SN0002"}));
    QCOMPARE(changed.count(), 1); // the user's; nobody is told of the undoing
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Unchecked);
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Check::Check_Ticked_HeaderFollowsWithoutASignal()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 3));
    QSignalSpy turned(fixture.Header(), &TarnCustomCheckHeaderView::SigCheckStateChange);
    fixture.ClickCheckBox(0);
    fixture.ClickCheckBox(1);
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Unchecked);
    fixture.ClickCheckBox(2);
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Checked);
    fixture.ClickCheckBox(0);
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Unchecked);
    QCOMPARE(Ticked(fixture), QStringList({"SN0002", "SN0003"}));
    QCOMPARE(turned.count(), 0);
}

void tst_MainWidget_Check::Check_NoFreeCamera_HeaderIsCleared()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE)});
    fixture.Header()->setCheckState(CheckColumn, Qt::Checked, false);
    fixture.m_pWindow->onCellCheckStateChanged(0, CheckColumn);
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Unchecked);
}

void tst_MainWidget_Check::Check_AnotherHeader_ChangesNothing()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 2));
    fixture.Table()->setHorizontalHeader(new QHeaderView(Qt::Horizontal, fixture.Table()));
    fixture.Table()->setCellCheckState(0, CheckColumn, Qt::Checked, true);
    fixture.m_pWindow->onHeaderCheckStateChanged(CheckColumn);
    QCOMPARE(Ticked(fixture), QStringList("SN0001"));
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Check::Check_CameraArrives_HeaderStaysTicked()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    fixture.ClickCheckBox(0);
    fixture.ChangeCameras(NetworkCameras(1, 2));
    QTRY_COMPARE(fixture.m_pWindow->GetCameraNum(), 2);
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Checked); // until the next tick
}

void tst_MainWidget_Check::Check_LastUntickedCameraGoes_HeaderStaysCleared()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 2));
    fixture.ClickCheckBox(0);
    fixture.ChangeCameras({NetworkCamera(1)});
    QTRY_COMPARE(fixture.m_pWindow->GetCameraNum(), 1);
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Unchecked); // until the next tick
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

void tst_MainWidget_Check::Header_TickedFurtherDown_CountsTowardsTheLimit()
{
    WindowFixture fixture(4);
    fixture.ShowCameras(NetworkCameras(1, 7));
    fixture.ClickCheckBox(1);
    fixture.ClickCheckBox(5);
    fixture.ClickHeader(CheckColumn);
    QCOMPARE(Ticked(fixture), QStringList({"SN0001", "SN0002", "SN0003", "SN0006"}));
}

// The walk ends where exactly as many are ticked as a batch may have; groups of the tree can have had more.
void tst_MainWidget_Check::Header_MoreTickedThanTheLimit_TicksAllVisible()
{
    WindowFixture fixture(2);
    fixture.ShowCameras(NetworkCameras(1, 5));
    for (int nRow : {1, 2, 3})
        fixture.Table()->setCellCheckState(nRow, CheckColumn, Qt::Checked, false);
    fixture.ClickHeader(CheckColumn);
    QCOMPARE(Ticked(fixture), QStringList({"SN0001", "SN0002", "SN0003", "SN0004", "SN0005"}));
}

void tst_MainWidget_Check::Header_ClearedAtTheLimit_ClearsAllVisible()
{
    WindowFixture fixture(2);
    fixture.ShowCameras(NetworkCameras(1, 4));
    fixture.ClickCheckBox(1);
    fixture.ClickCheckBox(3);
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Checked);
    fixture.ClickHeader(CheckColumn);
    QCOMPARE(Ticked(fixture), QStringList());
}

void tst_MainWidget_Check::Header_PartlyTicked_ChangesNothing()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 3));
    fixture.ClickCheckBox(1);
    fixture.Button("ImportBtn")->setEnabled(false);
    fixture.Header()->setCheckState(CheckColumn, Qt::PartiallyChecked, true);
    QCOMPARE(Ticked(fixture), QStringList("SN0002"));
    for (int nRow : {0, 2})
        QCOMPARE(fixture.Table()->cellCheckState(nRow, CheckColumn), Qt::Unchecked);
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
}

void tst_MainWidget_Check::Header_Ticked_RowsFollowWithoutASignal()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 3));
    QSignalSpy changed(fixture.Table(), &TarnCustomTableWidget::SigCellCheckStateChanged);
    fixture.ClickHeader(CheckColumn);
    fixture.ClickHeader(CheckColumn);
    QCOMPARE(changed.count(), 0);
}

void tst_MainWidget_Check::Header_BoxesOfAnotherColumn_AreTickedThere()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 2));
    fixture.Table()->setCheckBoxVisible(1, ModelColumn, true);
    fixture.Header()->setCheckState(CheckColumn, Qt::Checked, false);
    fixture.m_pWindow->onHeaderCheckStateChanged(ModelColumn);
    QCOMPARE(fixture.Table()->cellCheckState(1, ModelColumn), Qt::Checked);
    QCOMPARE(Ticked(fixture), QStringList());
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
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
