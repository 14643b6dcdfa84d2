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
    void NextBatch_WorkerStillRuns_AFreshOneTakesItsPlace();
    void NextBatch_SignalOfTheFormerWorkerArrives_DoesNotCount();
    void NextBatch_ThreadRefused_FailsItsRowAlone_data();
    void NextBatch_ThreadRefused_FailsItsRowAlone();
    void NextBatch_EveryThreadRefused_EndsWithoutAMessage();
    void NextBatch_ThreadAllowedAgain_Succeeds();
    void RemovedCamera_IdleWorker_IsDeleted();
    void RemovedCamera_BackAgain_GetsAWorkerOfItsOwn();
    void RemovedCamera_LateSignals_DoNotCountForTheCameraThatIsBack();
    void Close_WorkerRunsButNoneIsCounted_Closes();
    void Destroy_WorkerAtWork_WaitsForIt();

private:
    QList<QOperateThread *> Workers() const;
    void HoldWorkerOfABatchThatEnded();

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

QList<QOperateThread *> tst_MainWidget_Workers::Workers() const
{
    return m_pFixture->m_pWindow->findChildren<QOperateThread *>(QString(), Qt::FindDirectChildrenOnly);
}

/// A batch of one camera is over for the window, and the camera's worker is still at work.
void tst_MainWidget_Workers::HoldWorkerOfABatchThatEnded()
{
    ScriptedCameras::Hold("SN0001");
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir()).Then("LoadingDlg", [&](QWidget *) {
        QTRY_COMPARE(m_pFixture->Counts(), QString("1, 0, 0"));
        m_pFixture->End(1, 3);
    });
    CloseMessage(hands, "ExportBtn");
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    m_pFixture->ClickButton("BackBtn");
    QCOMPARE(Workers().size(), 1);
    QVERIFY(Workers().first()->isRunning());
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
    QCOMPARE(m_pFixture->Table()->detailTip(0, 8), QString());
    QCOMPARE(m_pFixture->Table()->item(0, 8)->foreground(), QBrush(Qt::red));
}

void tst_MainWidget_Workers::NextBatch_WorkerStillRuns_AFreshOneTakesItsPlace()
{
    HoldWorkerOfABatchThatEnded();
    const QPointer<QOperateThread> pFormer = Workers().value(0);
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir()).Then("LoadingDlg", [&](QWidget *) {
        QTRY_COMPARE(ScriptedCameras::OpenCount(), 2); // at once, though the former is at work
        QTRY_COMPARE(m_pFixture->Counts(), QString("1, 0, 0"));
        QVERIFY(pFormer);
        QVERIFY(!m_pFixture->m_pWindow->close());
        ScriptedCameras::Release("SN0001");
    });
    CloseMessage(hands, "ExportBtn");
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QTRY_VERIFY(!pFormer);
    QCOMPARE(m_pFixture->Counts(), QString("0, 1, 0"));
    QCOMPARE(m_pFixture->Text(0, 8), QString("Exported."));
    QCOMPARE(Workers().size(), 1);
    m_pFixture->Run("ExportBtn", m_pFixture->Dir());
    QCOMPARE(Workers().size(), 1); // the fresh one serves the next batch
}

void tst_MainWidget_Workers::NextBatch_SignalOfTheFormerWorkerArrives_DoesNotCount()
{
    HoldWorkerOfABatchThatEnded();
    QOperateThread *pFormer = Workers().value(0);
    const auto send = [&] { // as the worker does: from another thread
        std::unique_ptr<QThread> pThread(QThread::create([&] {
            emit pFormer->SigBeginThread(1, 3);
            emit pFormer->SigThreadInfo(1, "late", true);
            emit pFormer->SigEndThread(1, 3, QString());
            emit pFormer->SigEndThread(1, 3, QString());
        }));
        pThread->start();
        pThread->wait();
    };
    ModalHands hands;
    hands
        .Then("QFileDialog",
              [&](QWidget *pDialog) {
                  ModalHands::Choose(pDialog, m_pFixture->Dir());
                  send(); // arrives when the former has been replaced
              })
        .Then("LoadingDlg", [&](QWidget *) {
            QTRY_COMPARE(m_pFixture->Counts(), QString("1, 0, 0"));
            send();
            QCoreApplication::sendPostedEvents();
            QCOMPARE(m_pFixture->Counts(), QString("1, 0, 0"));
            QCOMPARE(m_pFixture->Text(0, 8), QString("Start exporting..."));
            ScriptedCameras::Release("SN0001");
        });
    CloseMessage(hands, "ExportBtn");
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QTRY_COMPARE(Workers().size(), 1);
    QCOMPARE(m_pFixture->Counts(), QString("0, 1, 0"));
}

// No thread can have a stack of one byte, so starting one fails as it does when there are too many.
void tst_MainWidget_Workers::NextBatch_ThreadRefused_FailsItsRowAlone_data()
{
    QTest::addColumn<QString>("strButton");
    QTest::addColumn<QString>("strDone");
    QTest::addColumn<QString>("strFailure");
    QTest::newRow("import") << "ImportBtn"
                            << "Imported."
                            << "Failed to import features. The system allows no more threads.";
    QTest::newRow("export") << "ExportBtn"
                            << "Exported."
                            << "Failed to export features. The system allows no more threads.";
}

void tst_MainWidget_Workers::NextBatch_ThreadRefused_FailsItsRowAlone()
{
    QFETCH(QString, strButton);
    QFETCH(QString, strDone);
    QFETCH(QString, strFailure);
    const bool bImport = strButton == "ImportBtn";
    const QString strPath = bImport ? m_pFixture->WriteFile("in.kfb", "ABC-1000") : m_pFixture->Dir();
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2), NetworkCamera(3)});
    m_pFixture->TickAll();
    ScriptedCameras::OpenTogether(3);
    m_pFixture->Run(strButton, strPath);
    QCOMPARE(m_pFixture->Counts(), QString("0, 3, 0"));
    const auto mapBefore = m_pFixture->TakeFiles();

    Workers().value(1)->setStackSize(1);
    ScriptedCameras::OpenTogether(2);
    m_pFixture->Run(strButton, bImport ? m_pFixture->WriteFile("in.kfb", "ABC-1000") : strPath);
    QCOMPARE(m_pFixture->Counts(), QString("0, 2, 1"));
    QVERIFY(m_pFixture->m_pWindow->isEnabled());
    QCOMPARE(m_pFixture->Text(0, 8), strDone);
    QCOMPARE(m_pFixture->Text(1, 8), strFailure);
    QCOMPARE(m_pFixture->Table()->item(1, 8)->foreground(), QBrush(Qt::red));
    QCOMPARE(m_pFixture->Table()->detailTip(1, 8), "The Reasons of Failure :\r\n" + strFailure);
    QCOMPARE(m_pFixture->Text(2, 8), strDone);
    QMap<QString, QByteArray> mapExpected = mapBefore;
    mapExpected.remove("ABC-1000_SN0002.kfb");
    QCOMPARE(m_pFixture->TakeFiles(), mapExpected);
}

void tst_MainWidget_Workers::NextBatch_EveryThreadRefused_EndsWithoutAMessage()
{
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    m_pFixture->TickAll();
    ScriptedCameras::OpenTogether(2);
    m_pFixture->Run("ExportBtn", m_pFixture->Dir());
    for (QOperateThread *pWorker : Workers())
        pWorker->setStackSize(1);
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir());
    m_pFixture->ClickButton("BackBtn");
    m_pFixture->ClickButton("ExportBtn"); // returns when the busy dialog has closed
    QVERIFY(hands.AllDone());
    QCOMPARE(m_pFixture->Counts(), QString("0, 0, 2"));
    QVERIFY(m_pFixture->m_pWindow->isEnabled());
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_MainWidget_Workers::NextBatch_ThreadAllowedAgain_Succeeds()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    m_pFixture->Run("ExportBtn", m_pFixture->Dir());
    Workers().value(0)->setStackSize(1);
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir());
    m_pFixture->ClickButton("BackBtn");
    m_pFixture->ClickButton("ExportBtn");
    QCOMPARE(m_pFixture->Counts(), QString("0, 0, 1"));
    Workers().value(0)->setStackSize(0);
    m_pFixture->Run("ExportBtn", m_pFixture->Dir());
    QCOMPARE(m_pFixture->Counts(), QString("0, 1, 0"));
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

void tst_MainWidget_Workers::RemovedCamera_BackAgain_GetsAWorkerOfItsOwn()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    m_pFixture->Run("ExportBtn", m_pFixture->Dir());
    m_pFixture->ChangeCameras({});
    QTRY_VERIFY(Workers().isEmpty());
    m_pFixture->ChangeCameras({NetworkCamera(1)});
    QTRY_COMPARE(m_pFixture->m_pWindow->GetCameraNum(), 1);
    m_pFixture->ClickCheckBox(0);
    m_pFixture->Run("ExportBtn", m_pFixture->Dir());
    QCOMPARE(m_pFixture->Counts(), QString("0, 1, 0"));
    QCOMPARE(Workers().size(), 1);
}

void tst_MainWidget_Workers::RemovedCamera_LateSignals_DoNotCountForTheCameraThatIsBack()
{
    HoldWorkerOfABatchThatEnded();
    m_pFixture->ChangeCameras({});
    QTRY_COMPARE(m_pFixture->m_pWindow->GetCameraNum(), 0);
    m_pFixture->ChangeCameras({NetworkCamera(1)});
    QTRY_COMPARE(m_pFixture->m_pWindow->GetCameraNum(), 1);
    ScriptedCameras::Release("SN0001");
    QTRY_VERIFY(Workers().isEmpty());
    QCOMPARE(m_pFixture->Counts(), QString("0, 1, 0")); // as the batch left them
    QCOMPARE(m_pFixture->Text(0, 8), QString());
}

void tst_MainWidget_Workers::Close_WorkerRunsButNoneIsCounted_Closes()
{
    HoldWorkerOfABatchThatEnded();
    QVERIFY(m_pFixture->m_pWindow->close());
    ScriptedCameras::Release("SN0001");
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
