#include <QtTest>

#include <ui/devicetablemodel.h>
#include <worker/qoperatethread.h>

#include "batchfixture.h"
#include "scriptedcameras.h"
#include "tabledevices.h"
#include "windowfixture.h"

using namespace DeviceTable;

/// What becomes of rows and workers when cameras go.
class tst_MainWidget_Removal : public QObject
{
    Q_OBJECT

private slots:
    void DeleteDevice_FromEleven_LeavesTen();
    void DeleteDevice_FromTen_AppendsAnEmptyRow();
    void DeleteDevice_TickedCamera_HeaderAndButtonsFollow();
    void DeleteDevice_UnknownCamera_ChangesNothing();
    void DeleteDevice_RowAboveGoesDuringAMessage_TheRightOneGoes();
    void DeleteDevice_CameraWithoutARow_KeepsItsWorker();
    void DeleteDevice_CameraIsBackAtOnce_ItsOldWorkerIsNotHeard();
    void RowFromDeviceID_EmptyRows_EndTheSearch();
    void RowFromDeviceID_RowWithoutAnItem_EndsTheSearch();
};

void tst_MainWidget_Removal::DeleteDevice_FromEleven_LeavesTen()
{
    WindowFixture fixture;
    QVector<KX_CC_DEVICE_INFO> vecCameras = NetworkCameras(1, 11);
    fixture.ShowCameras(vecCameras);
    vecCameras.removeAt(4);
    fixture.ChangeCameras(vecCameras);
    QTRY_COMPARE(fixture.Table()->rowCount(), 10);
    QCOMPARE(fixture.m_pWindow->GetCameraNum(), 10);
    QVERIFY(!fixture.VisibleTexts(SerialColumn).contains("SN0005"));
}

void tst_MainWidget_Removal::DeleteDevice_FromTen_AppendsAnEmptyRow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ChangeCameras({NetworkCamera(2)});
    QTRY_COMPARE(fixture.m_pWindow->GetCameraNum(), 1);
    QCOMPARE(fixture.Table()->rowCount(), 10);
    QCOMPARE(fixture.Text(0, SerialColumn), QString("SN0002"));
    QVERIFY(!fixture.Table()->item(9, CheckColumn));
    QCOMPARE(fixture.Table()->rowHeight(9), 38);
}

void tst_MainWidget_Removal::DeleteDevice_TickedCamera_HeaderAndButtonsFollow()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    fixture.ClickCheckBox(0);
    QVERIFY(fixture.Button("ExportBtn")->isEnabled());
    fixture.ChangeCameras({NetworkCamera(2)});
    QTRY_COMPARE(fixture.m_pWindow->GetCameraNum(), 1);
    QVERIFY(!fixture.Button("ExportBtn")->isEnabled());
    QCOMPARE(fixture.Header()->checkState(CheckColumn), Qt::Unchecked);
}

void tst_MainWidget_Removal::DeleteDevice_UnknownCamera_ChangesNothing()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    HandMadeItem made(NetworkCamera(9), 1, "eth9");
    fixture.m_pWindow->onDeleteDevice(made.pItem);
    QCOMPARE(fixture.m_pWindow->GetCameraNum(), 1);
}

// More are ticked than a batch may have, so that the removal of a camera brings up the message about it.
void tst_MainWidget_Removal::DeleteDevice_RowAboveGoesDuringAMessage_TheRightOneGoes()
{
    WindowFixture fixture(2);
    fixture.ShowCameras(NetworkCameras(1, 6));
    for (int nRow = 0; nRow < 3; ++nRow)
        fixture.Table()->setCellCheckState(nRow, CheckColumn, Qt::Checked, false);
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        fixture.m_devices.Set({NetworkCamera(2), NetworkCamera(3), NetworkCamera(4), NetworkCamera(6)});
        QTRY_COMPARE(fixture.m_pWindow->rowFromDeviceID(1), -1);
        pBox->close();
    });
    fixture.m_devices.Set(
        {NetworkCamera(1), NetworkCamera(2), NetworkCamera(3), NetworkCamera(4), NetworkCamera(6)});
    QTRY_VERIFY(hands.AllDone());
    QTRY_COMPARE(fixture.m_pWindow->GetCameraNum(), 4);
    QCOMPARE(fixture.VisibleTexts(SerialColumn), QStringList({"SN0002", "SN0003", "SN0004", "SN0006"}));
}

void tst_MainWidget_Removal::DeleteDevice_CameraWithoutARow_KeepsItsWorker()
{
    ScriptedCameras::Reset();
    BatchFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    fixture.TickAll();
    fixture.Run("ExportBtn", fixture.Dir());
    const QPointer<QOperateThread> pWorker = fixture.m_pWindow->findChild<QOperateThread *>();
    QVERIFY(pWorker && pWorker->wait(20000));
    fixture.Table()->removeRow(0);
    fixture.ChangeCameras({});
    QVERIFY(!fixture.Tree()->findCameraItem(1));
    QVERIFY(pWorker);
}

void tst_MainWidget_Removal::DeleteDevice_CameraIsBackAtOnce_ItsOldWorkerIsNotHeard()
{
    ScriptedCameras::Reset();
    ScriptedCameras::Hold("SN0001");
    ScriptedCameras::Hold("SN0002");
    BatchFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 2));
    fixture.TickAll();
    ModalHands hands;
    ChooseFile(hands, fixture.Dir())
        .Then("LoadingDlg",
              [&](QWidget *) {
                  QTRY_COMPARE(fixture.Counts(), QString("2, 0, 0"));
                  const QPointer<QOperateThread> pOld =
                      fixture.m_pWindow->findChildren<QOperateThread *>().value(0);
                  fixture.ChangeCameras({NetworkCamera(2)});
                  fixture.ChangeCameras(NetworkCameras(1, 2));
                  QTRY_COMPARE(fixture.m_pWindow->rowFromDeviceID(1), 1);
                  ScriptedCameras::Release("SN0001");
                  QTRY_VERIFY(!pOld); // all that it had to say has been delivered
                  QCOMPARE(fixture.Counts(), QString("2, 0, 0"));
                  QCOMPARE(fixture.Text(1, OperateColumn), QString());
                  ScriptedCameras::Release("SN0002");
                  QTRY_COMPARE(fixture.Counts(), QString("1, 1, 0"));
                  fixture.End(1, 3);
              })
        .Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    fixture.ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
}

void tst_MainWidget_Removal::RowFromDeviceID_EmptyRows_EndTheSearch()
{
    WindowFixture fixture;
    QCOMPARE(fixture.m_pWindow->rowFromDeviceID(1), -1);
    fixture.ShowCameras({NetworkCamera(1)});
    QCOMPARE(fixture.m_pWindow->rowFromDeviceID(1), 0);
    QCOMPARE(fixture.m_pWindow->rowFromDeviceID(2), -1);
}

void tst_MainWidget_Removal::RowFromDeviceID_RowWithoutAnItem_EndsTheSearch()
{
    WindowFixture fixture;
    fixture.ShowCameras(NetworkCameras(1, 3));
    QCOMPARE(fixture.m_pWindow->rowFromDeviceID(3), 2);
    delete fixture.Table()->takeItem(1, CheckColumn);
    QCOMPARE(fixture.m_pWindow->rowFromDeviceID(1), 0);
    QCOMPARE(fixture.m_pWindow->rowFromDeviceID(3), -1);
}

QTEST_MAIN(tst_MainWidget_Removal)
#include "tst_mainwidget_removal.moc"
