#include <QtTest>

#include <worker/qoperatethread.h>

#include "batchfixture.h"
#include "scriptedcameras.h"

class tst_MainWidget_Workers : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Running_Window_IsDisabledUntilTheLastWorkerEnds();
    void Running_CloseRequested_IsIgnored();
    void Running_CameraGoesInUse_ItsBatchGoesOn();
    void Running_CameraRemoved_NeitherAbortsNorBlocks();
    void NextBatch_SameCamera_ReusesItsWorker();
    void NextBatch_AfterAFailure_ClearsTextAndTipButNotColour();
    void RemovedCamera_IdleWorker_IsDeleted();
    void Destroy_WorkerAtWork_WaitsForIt();

private:
    std::unique_ptr<BatchFixture> m_pFixture;
};

void tst_MainWidget_Workers::init()
{
    ScriptedCameras::Reset();
    m_pFixture = std::make_unique<BatchFixture>();
}

void tst_MainWidget_Workers::cleanup()
{
    ScriptedCameras::Reset();
    m_pFixture.reset();
}

void tst_MainWidget_Workers::Running_Window_IsDisabledUntilTheLastWorkerEnds()
{
    ScriptedCameras::Hold("SN0002");
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    m_pFixture->TickAll();
    ScriptedCameras::OpenTogether(2);
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir())
        .Then("LoadingDlg",
              [&](QWidget *) {
                  QTRY_COMPARE(m_pFixture->Text(0, 8), QString("Exported."));
                  QCOMPARE(m_pFixture->Counts(), QString("1, 1, 0"));
                  QCOMPARE(m_pFixture->Text(1, 8), QString("Start exporting..."));
                  QVERIFY(!m_pFixture->m_pWindow->isEnabled());
                  ScriptedCameras::Release("SN0002");
              })
        .Then("SaveDoneHintDlg", [&](QWidget *pBox) {
            QVERIFY(m_pFixture->m_pWindow->isEnabled());
            pBox->close();
        });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(m_pFixture->Counts(), QString("0, 2, 0"));
}

void tst_MainWidget_Workers::Running_CloseRequested_IsIgnored()
{
    ScriptedCameras::Hold("SN0001");
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir())
        .Then("LoadingDlg",
              [&](QWidget *) {
                  QTRY_COMPARE(m_pFixture->Counts(), QString("1, 0, 0"));
                  QVERIFY(!m_pFixture->m_pWindow->close());
                  QVERIFY(m_pFixture->m_pWindow->isVisible());
                  ScriptedCameras::Release("SN0001");
              })
        .Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QVERIFY(m_pFixture->m_pWindow->close());
    QVERIFY(!m_pFixture->m_pWindow->isVisible());
}

void tst_MainWidget_Workers::Running_CameraGoesInUse_ItsBatchGoesOn()
{
    ScriptedCameras::Hold("SN0001");
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir())
        .Then("LoadingDlg",
              [&](QWidget *) {
                  m_pFixture->ChangeCameras({NetworkCamera(1, KX_CC_ACCESS_IN_USE)});
                  QTRY_VERIFY(!m_pFixture->IsChecked(0));
                  ScriptedCameras::Release("SN0001");
              })
        .Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(m_pFixture->Counts(), QString("0, 1, 0"));
}

void tst_MainWidget_Workers::Running_CameraRemoved_NeitherAbortsNorBlocks()
{
    ScriptedCameras::Hold("SN0001");
    ScriptedCameras::Hold("SN0002");
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    m_pFixture->TickAll();
    ScriptedCameras::OpenTogether(2);
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir())
        .Then("LoadingDlg",
              [&](QWidget *) {
                  QTRY_COMPARE(ScriptedCameras::OpenCount(), 2);
                  QPointer<QOperateThread> pWorker =
                      m_pFixture->m_pWindow
                          ->findChildren<QOperateThread *>(QString(), Qt::FindDirectChildrenOnly)
                          .value(0);
                  QVERIFY(pWorker);
                  m_pFixture->ChangeCameras({NetworkCamera(2)});
                  QTRY_COMPARE(m_pFixture->m_pWindow->GetCameraNum(), 1);
                  QVERIFY(pWorker); // still at work; deleting it now would abort the program
                  ScriptedCameras::Release("SN0001");
                  QTRY_VERIFY(!pWorker);
                  // Its end was dropped with its row, so the count does not come down to zero by itself.
                  ScriptedCameras::Release("SN0002");
                  QTRY_COMPARE(m_pFixture->Text(0, 8), QString("Exported."));
                  QCOMPARE(m_pFixture->Counts(), QString("1, 1, 0"));
                  QVERIFY(!m_pFixture->m_pWindow->isEnabled());
                  m_pFixture->End(2, 3);
              })
        .Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QVERIFY(m_pFixture->m_pWindow->isEnabled());
}

void tst_MainWidget_Workers::NextBatch_SameCamera_ReusesItsWorker()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    ModalHands hands;
    QSet<QOperateThread *> setWorkers;
    for (int nBatch = 0; nBatch < 3; ++nBatch) {
        ChooseFile(hands, m_pFixture->Dir()).Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
        m_pFixture->ClickButton("ExportBtn");
        QTRY_VERIFY(hands.AllDone());
        QCOMPARE(m_pFixture->Counts(), QString("0, 1, 0"));
        for (QOperateThread *pWorker : m_pFixture->m_pWindow->findChildren<QOperateThread *>())
            setWorkers.insert(pWorker);
        m_pFixture->ClickButton("BackBtn");
    }
    QCOMPARE(setWorkers.size(), 1);
    QCOMPARE(ScriptedCameras::Opened().size(), 3);
}

void tst_MainWidget_Workers::NextBatch_AfterAFailure_ClearsTextAndTipButNotColour()
{
    ScriptedCameras::Hold("SN0001");
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Info(1, "broken", true);
    m_pFixture->TickAll();
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir())
        .Then("LoadingDlg",
              [&](QWidget *) {
                  QTRY_COMPARE(m_pFixture->Text(0, 8), QString("Start exporting..."));
                  QCOMPARE(m_pFixture->Table()->detailTip(0, 8), QString());
                  QCOMPARE(m_pFixture->Table()->item(0, 8)->foreground(), QBrush(Qt::red));
                  ScriptedCameras::Release("SN0001");
              })
        .Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(m_pFixture->Text(0, 8), QString("Exported."));
}

void tst_MainWidget_Workers::RemovedCamera_IdleWorker_IsDeleted()
{
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    m_pFixture->TickAll();
    ScriptedCameras::OpenTogether(2);
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir()).Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(m_pFixture->m_pWindow->findChildren<QOperateThread *>().size(), 2);
    m_pFixture->ChangeCameras({NetworkCamera(2)});
    QTRY_COMPARE(m_pFixture->m_pWindow->findChildren<QOperateThread *>().size(), 1);
}

void tst_MainWidget_Workers::Destroy_WorkerAtWork_WaitsForIt()
{
    ScriptedCameras::Hold("SN0001");
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir()).Then("LoadingDlg", [&](QWidget *pBusy) {
        QTRY_COMPARE(ScriptedCameras::OpenCount(), 1);
        pBusy->close(); // as a shutdown of the program does that ends its event loops
    });
    m_pFixture->ClickButton("ExportBtn");
    QCOMPARE(ScriptedCameras::OpenCount(), 1);
    std::unique_ptr<QThread> pReleaser(QThread::create([] {
        QThread::msleep(100);
        ScriptedCameras::Release("SN0001");
    }));
    pReleaser->start();
    m_pFixture.reset();
    QCOMPARE(ScriptedCameras::OpenCount(), 0); // the worker has closed its camera
    pReleaser->wait();
}

QTEST_MAIN(tst_MainWidget_Workers)
#include "tst_mainwidget_workers.moc"
