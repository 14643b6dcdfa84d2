#include <QtTest>

#include <QFileDialog>
#include <QLineEdit>

#include <StyleCtl/tarncustomloadingdialog.h>
#include <worker/qoperatethread.h>

#include "scriptedcameras.h"
#include "windowfixture.h"

class tst_MainWidget_Batch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Import_OneFails_CountsTextsTipAndOneMessage();
    void Import_AllFail_NoMessageAndWindowEnabled();
    void Import_Cancelled_OnlyTheCaptionsChange();
    void Import_OnlyHiddenRowsTicked_ClearsTextsAndStartsNothing();
    void Import_FileChosen_IsWhereTheNextDialogStarts();
    void Import_Dialog_HasItsCaptionAndFilter();
    void Export_Succeeds_WritesFilesAndShowsWhere();
    void Export_Dialog_HasItsCaption();
    void Export_Cancelled_OnlyTheCaptionsChange();
    void Export_FolderChosen_IsWhereBothDialogsStart();
    void Export_CamerasOfManyRows_EachTickedOneIsOpenedOnce();
    void Running_Window_IsDisabledUntilTheLastWorkerEnds();
    void Running_CloseRequested_IsIgnored();
    void Running_CountsFollowBeginAndEnd();
    void Running_BusyDialog_TellsTheOperation();
    void Running_CameraGoesInUse_ItsBatchGoesOn();
    void Running_CameraRemoved_NeitherAbortsNorBlocks();
    void NextBatch_SameCamera_ReusesItsWorker();
    void NextBatch_AfterAFailure_ClearsTextAndTipButNotColour();
    void RemovedCamera_IdleWorker_IsDeleted();
    void Destroy_WorkerAtWork_WaitsForIt();
    void BeginThread_CameraWithoutARow_IsDropped();
    void BeginThread_Text_FollowsTheType_data();
    void BeginThread_Text_FollowsTheType();
    void ThreadInfo_Failure_IsRedWithoutLineBreaks();
    void ThreadInfo_Normal_IsBlackAndKeepsTheTip();
    void ThreadInfo_CameraWithoutARow_IsDropped();
    void EndThread_FailureThenNormalMessage_CountsAsSuccess();
    void EndThread_CameraWithoutARow_LowersNothing();
    void EndThread_BeginAndEndBeforeTheNextBegins_EndsTheBatchEachTime();
    void EndThread_Type_DecidesTheMessage();
    void ShowMsg_EmptyTitle_IsPrompt();

private:
    QString WriteFile(const QString &strName, const QByteArray &model);
    void TickAll();
    ModalHands &ChooseFile(ModalHands &hands, const QString &strPath);
    QStringList StartsOfBothDialogs();

    std::unique_ptr<WindowFixture> m_pFixture;
};

void tst_MainWidget_Batch::init()
{
    ScriptedCameras::Reset();
    m_pFixture = std::make_unique<WindowFixture>();
}

void tst_MainWidget_Batch::cleanup()
{
    ScriptedCameras::Reset();
    m_pFixture.reset();
}

QString tst_MainWidget_Batch::WriteFile(const QString &strName, const QByteArray &model)
{
    QFile file(m_pFixture->Dir() + '/' + strName);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Features>\r\n<DeviceModelName>" + model +
               "</DeviceModelName>\r\n<Feature>\r\n<Name>Width</Name>\r\n<Type>Integer</Type>\r\n"
               "<Value>640</Value>\r\n<Streamable>Yes</Streamable>\r\n</Feature>\r\n</Features>");
    return file.fileName();
}

void tst_MainWidget_Batch::TickAll()
{
    m_pFixture->ClickHeader(0);
    QVERIFY(m_pFixture->Button("ImportBtn")->isEnabled());
}

ModalHands &tst_MainWidget_Batch::ChooseFile(ModalHands &hands, const QString &strPath)
{
    return hands.Then("QFileDialog", [strPath](QWidget *pDialog) { ModalHands::Choose(pDialog, strPath); });
}

/// Where the dialogs of Import and then Export start; both are cancelled.
QStringList tst_MainWidget_Batch::StartsOfBothDialogs()
{
    QStringList listStarts;
    const auto note = [&](QWidget *pDialog) {
        listStarts.append(qobject_cast<QFileDialog *>(pDialog)->directory().absolutePath());
        ModalHands::Cancel(pDialog);
    };
    ModalHands hands;
    hands.Then("QFileDialog", note).Then("QFileDialog", note);
    m_pFixture->m_pWindow->OnBtnImport();
    m_pFixture->m_pWindow->OnBtnExport();
    return hands.AllDone() ? listStarts : QStringList();
}

void tst_MainWidget_Batch::Import_OneFails_CountsTextsTipAndOneMessage()
{
    KX_CC_DEVICE_INFO other = NetworkCamera(2);
    SetText(other.SpecialInfo.stGigEInfo.chModelName, 32, "XYZ");
    m_pFixture->ShowCameras({NetworkCamera(1), other});
    TickAll();
    ScriptedCameras::OpenTogether(2);
    QStringList listMessages;
    ModalHands hands;
    ChooseFile(hands, WriteFile("in.kfb", "ABC-1000")).Then("MessageBox", [&](QWidget *pBox) {
        listMessages.append(pBox->findChild<QLabel *>("MessageContent")->text());
        QVERIFY(m_pFixture->m_pWindow->isEnabled());
        pBox->close();
    });

    m_pFixture->ClickButton("ImportBtn");
    QTRY_VERIFY(hands.AllDone());

    QCOMPARE(m_pFixture->Counts(), QString("0, 1, 1"));
    QCOMPARE(m_pFixture->Text(0, 8), QString("Imported."));
    const QString strFailure = "Failed to import features. Camera models mismatch.";
    QCOMPARE(m_pFixture->Text(1, 8), strFailure);
    QCOMPARE(m_pFixture->Table()->item(1, 8)->foreground(), QBrush(Qt::red));
    QCOMPARE(m_pFixture->Table()->detailTip(1, 8), "The Reasons of Failure :\r\n" + strFailure);
    QCOMPARE(listMessages, QStringList("Importing process is over."));
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(m_pFixture->IsResultPage());
    QCOMPARE(m_pFixture->LabelText("DoingLabel"), QString(" Importing"));
    QCOMPARE(m_pFixture->LabelText("SuccessLabel"), QString(" Imported."));
}

void tst_MainWidget_Batch::Import_AllFail_NoMessageAndWindowEnabled()
{
    ScriptedCameras::FailOpen("SN0001");
    ScriptedCameras::FailOpen("SN0002");
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    TickAll();
    ScriptedCameras::OpenTogether(2);
    ModalHands hands;
    ChooseFile(hands, WriteFile("in.kfb", "ABC-1000"));
    m_pFixture->ClickButton("ImportBtn"); // returns when the busy dialog has closed
    QVERIFY(hands.AllDone());
    QCOMPARE(m_pFixture->Counts(), QString("0, 0, 2"));
    QVERIFY(m_pFixture->m_pWindow->isEnabled());
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(m_pFixture->Text(0, 8), QString("Failed to import features.Failed to open device."));
}

void tst_MainWidget_Batch::Import_Cancelled_OnlyTheCaptionsChange()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Info(1, "left from before", false);
    TickAll();
    ModalHands hands;
    hands.Then("QFileDialog", &ModalHands::Cancel);
    m_pFixture->ClickButton("ImportBtn");
    QVERIFY(hands.AllDone());
    QCOMPARE(m_pFixture->LabelText("DoingLabel"), QString(" Importing"));
    QCOMPARE(m_pFixture->LabelText("SuccessLabel"), QString(" Imported."));
    QCOMPARE(m_pFixture->Text(0, 8), QString("left from before"));
    QVERIFY(!m_pFixture->IsResultPage());
    QVERIFY(ScriptedCameras::Opened().isEmpty());
}

void tst_MainWidget_Batch::Import_OnlyHiddenRowsTicked_ClearsTextsAndStartsNothing()
{
    m_pFixture->ShowCameras({NetworkCamera(1), UsbCamera(2)});
    m_pFixture->ClickCheckBox(0);
    m_pFixture->Info(1, "left from before", true);
    m_pFixture->ClickTree(m_pFixture->Group("USB3 Vision"));
    ModalHands hands;
    ChooseFile(hands, WriteFile("in.kfb", "ABC-1000"));
    m_pFixture->m_pWindow->OnBtnImport(); // the button is disabled
    QVERIFY(hands.AllDone());
    QCOMPARE(m_pFixture->Text(0, 8), QString());
    QCOMPARE(m_pFixture->Table()->detailTip(0, 8), QString());
    QVERIFY(!m_pFixture->IsResultPage());
    QVERIFY(m_pFixture->m_pWindow->isEnabled());
    QVERIFY(ScriptedCameras::Opened().isEmpty());
}

void tst_MainWidget_Batch::Import_FileChosen_IsWhereTheNextDialogStarts()
{
    QVERIFY(QDir(m_pFixture->Dir()).mkdir("files"));
    const QString strFile = WriteFile("files/in.kfb", "ABC-1000");
    m_pFixture->ShowCameras({NetworkCamera(1)});
    TickAll();
    ModalHands hands;
    ChooseFile(hands, strFile).Then("MessageBox", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->ClickButton("ImportBtn");
    QTRY_VERIFY(hands.AllDone());
    const QString strExpected = QFileInfo(strFile).absolutePath();
    QCOMPARE(StartsOfBothDialogs(), QStringList({strExpected, strExpected}));
}

void tst_MainWidget_Batch::Import_Dialog_HasItsCaptionAndFilter()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    TickAll();
    ModalHands hands;
    QString strCaption;
    QStringList listFilters;
    hands.Then("QFileDialog", [&](QWidget *pDialog) {
        strCaption = pDialog->windowTitle();
        listFilters = qobject_cast<QFileDialog *>(pDialog)->nameFilters();
        ModalHands::Cancel(pDialog);
    });
    m_pFixture->ClickButton("ImportBtn");
    QVERIFY(hands.AllDone());
    QCOMPARE(strCaption, QString("Select Import File"));
    QCOMPARE(listFilters, QStringList("Import File(*.kfb)"));
}

void tst_MainWidget_Batch::Export_Succeeds_WritesFilesAndShowsWhere()
{
    m_pFixture->ShowCameras({NetworkCamera(1), UsbCamera(2)});
    TickAll();
    ScriptedCameras::OpenTogether(2);
    const QString strFolder = m_pFixture->Dir();
    ModalHands hands;
    QString strText;
    QString strPath;
    ChooseFile(hands, strFolder).Then("SaveDoneHintDlg", [&](QWidget *pDialog) {
        strText = pDialog->findChild<QLabel *>("SaveDoneText")->text();
        strPath = pDialog->findChild<QLineEdit *>("SaveDonePath")->text();
        pDialog->close();
    });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(strText, QString("Exporting process is over."));
    QCOMPARE(strPath, QDir::toNativeSeparators(strFolder));
    QCOMPARE(m_pFixture->Counts(), QString("0, 2, 0"));
    QCOMPARE(m_pFixture->Text(0, 8), QString("Exported."));
    QFile file(strFolder + "/ABC-1000_SN0001.kfb");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("<Name>Width</Name>\r\n<Type>Integer</Type>\r\n<Value>640</Value>"));
    QVERIFY(QFile::exists(strFolder + "/USB-2000_US0002.kfb"));
}

void tst_MainWidget_Batch::Export_Dialog_HasItsCaption()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    TickAll();
    ModalHands hands;
    QString strCaption;
    bool bDirsOnly = false;
    hands.Then("QFileDialog", [&](QWidget *pDialog) {
        strCaption = pDialog->windowTitle();
        bDirsOnly = qobject_cast<QFileDialog *>(pDialog)->testOption(QFileDialog::ShowDirsOnly);
        ModalHands::Cancel(pDialog);
    });
    m_pFixture->ClickButton("ExportBtn");
    QVERIFY(hands.AllDone());
    QCOMPARE(strCaption, QString("Export Features"));
    QVERIFY(bDirsOnly);
}

void tst_MainWidget_Batch::Export_Cancelled_OnlyTheCaptionsChange()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    TickAll();
    ModalHands hands;
    hands.Then("QFileDialog", &ModalHands::Cancel);
    m_pFixture->ClickButton("ExportBtn");
    QVERIFY(hands.AllDone());
    QCOMPARE(m_pFixture->LabelText("DoingLabel"), QString(" Exporting"));
    QCOMPARE(m_pFixture->LabelText("SuccessLabel"), QString(" Exported."));
    QVERIFY(!m_pFixture->IsResultPage());
}

void tst_MainWidget_Batch::Export_FolderChosen_IsWhereBothDialogsStart()
{
    QVERIFY(QDir(m_pFixture->Dir()).mkdir("out"));
    const QString strFolder = m_pFixture->Dir() + "/out";
    m_pFixture->ShowCameras({NetworkCamera(1)});
    TickAll();
    ModalHands hands;
    ChooseFile(hands, strFolder).Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(StartsOfBothDialogs(), QStringList({strFolder, strFolder}));
}

void tst_MainWidget_Batch::Export_CamerasOfManyRows_EachTickedOneIsOpenedOnce()
{
    QVector<KX_CC_DEVICE_INFO> vecCameras;
    for (int n = 1; n <= 12; ++n)
        vecCameras.append(NetworkCamera(n));
    m_pFixture->ShowCameras(vecCameras);
    TickAll();
    m_pFixture->ClickCheckBox(3);
    ScriptedCameras::OpenTogether(11);
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir()).Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(m_pFixture->Counts(), QString("0, 11, 0"));
    QStringList listOpened = ScriptedCameras::Opened();
    QCOMPARE(listOpened.removeDuplicates(), 0);
    QCOMPARE(listOpened.size(), 11);
    QVERIFY(!listOpened.contains("SN0004"));
    QCOMPARE(m_pFixture->Text(3, 8), QString());
}

void tst_MainWidget_Batch::Running_Window_IsDisabledUntilTheLastWorkerEnds()
{
    ScriptedCameras::Hold("SN0002");
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    TickAll();
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

void tst_MainWidget_Batch::Running_CloseRequested_IsIgnored()
{
    ScriptedCameras::Hold("SN0001");
    m_pFixture->ShowCameras({NetworkCamera(1)});
    TickAll();
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

void tst_MainWidget_Batch::Running_CountsFollowBeginAndEnd()
{
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2), NetworkCamera(3)});
    m_pFixture->Begin(1, 3);
    m_pFixture->Begin(2, 3);
    m_pFixture->Begin(3, 3);
    QCOMPARE(m_pFixture->Counts(), QString("3, 0, 0"));
    m_pFixture->End(1, 3);
    QCOMPARE(m_pFixture->Counts(), QString("2, 1, 0"));
    m_pFixture->Info(2, "no", true);
    m_pFixture->End(2, 3);
    QCOMPARE(m_pFixture->Counts(), QString("1, 1, 1"));
}

void tst_MainWidget_Batch::Running_BusyDialog_TellsTheOperation()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    TickAll();
    const auto *pBusy = m_pFixture->m_pWindow->findChild<TarnCustomLoadingDialog *>();
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir()).Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(pBusy->LabelText(), QString("Exporting features..."));
    QVERIFY(!pBusy->isVisible());

    ChooseFile(hands, WriteFile("in.kfb", "ABC-1000")).Then("MessageBox", [](QWidget *pBox) {
        pBox->close();
    });
    m_pFixture->ClickButton("BackBtn");
    m_pFixture->ClickButton("ImportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(pBusy->LabelText(), QString("Importing features..."));
}

void tst_MainWidget_Batch::Running_CameraGoesInUse_ItsBatchGoesOn()
{
    ScriptedCameras::Hold("SN0001");
    m_pFixture->ShowCameras({NetworkCamera(1)});
    TickAll();
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

void tst_MainWidget_Batch::Running_CameraRemoved_NeitherAbortsNorBlocks()
{
    ScriptedCameras::Hold("SN0001");
    ScriptedCameras::Hold("SN0002");
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    TickAll();
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

void tst_MainWidget_Batch::NextBatch_SameCamera_ReusesItsWorker()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    TickAll();
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

void tst_MainWidget_Batch::NextBatch_AfterAFailure_ClearsTextAndTipButNotColour()
{
    ScriptedCameras::Hold("SN0001");
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Info(1, "broken", true);
    TickAll();
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

void tst_MainWidget_Batch::RemovedCamera_IdleWorker_IsDeleted()
{
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    TickAll();
    ScriptedCameras::OpenTogether(2);
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir()).Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(m_pFixture->m_pWindow->findChildren<QOperateThread *>().size(), 2);
    m_pFixture->ChangeCameras({NetworkCamera(2)});
    QTRY_COMPARE(m_pFixture->m_pWindow->findChildren<QOperateThread *>().size(), 1);
}

void tst_MainWidget_Batch::Destroy_WorkerAtWork_WaitsForIt()
{
    ScriptedCameras::Hold("SN0001");
    m_pFixture->ShowCameras({NetworkCamera(1)});
    TickAll();
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

void tst_MainWidget_Batch::BeginThread_CameraWithoutARow_IsDropped()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Begin(99, 2);
    QCOMPARE(m_pFixture->Counts(), QString("0, 0, 0"));
}

void tst_MainWidget_Batch::BeginThread_Text_FollowsTheType_data()
{
    QTest::addColumn<uint>("nType");
    QTest::addColumn<QString>("strText");
    QTest::newRow("button's import") << 0u << "Start importing...";
    QTest::newRow("button's export") << 1u << "Start exporting...";
    QTest::newRow("worker's import") << 2u << "Start importing...";
    QTest::newRow("worker's export") << 3u << "Start exporting...";
    QTest::newRow("another") << 4u << "";
}

void tst_MainWidget_Batch::BeginThread_Text_FollowsTheType()
{
    QFETCH(uint, nType);
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Begin(1, nType);
    QTEST(m_pFixture->Text(0, 8), "strText");
    QVERIFY(m_pFixture->Table()->item(0, 8)->data(Qt::UserRole + 2).toBool());
}

void tst_MainWidget_Batch::ThreadInfo_Failure_IsRedWithoutLineBreaks()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Begin(1, 2);
    m_pFixture->Info(1, "First.\r\nSecond.\r\nThird\nline", true);
    const QTableWidgetItem *pItem = m_pFixture->Table()->item(0, 8);
    QCOMPARE(pItem->text(), QString("First.Second.Third\nline"));
    QCOMPARE(pItem->foreground(), QBrush(Qt::red));
    QVERIFY(!pItem->data(Qt::UserRole + 2).toBool());
    QCOMPARE(m_pFixture->Table()->detailTip(0, 8),
             QString("The Reasons of Failure :\r\nFirst.\r\nSecond.\r\nThird\nline"));
}

void tst_MainWidget_Batch::ThreadInfo_Normal_IsBlackAndKeepsTheTip()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Info(1, "broken", true);
    m_pFixture->Info(1, "half\r\ndone", false);
    const QTableWidgetItem *pItem = m_pFixture->Table()->item(0, 8);
    QCOMPARE(pItem->text(), QString("half\r\ndone"));
    QCOMPARE(pItem->foreground(), QBrush(Qt::black));
    QVERIFY(pItem->data(Qt::UserRole + 2).toBool());
    QCOMPARE(m_pFixture->Table()->detailTip(0, 8), QString("The Reasons of Failure :\r\nbroken"));
}

void tst_MainWidget_Batch::ThreadInfo_CameraWithoutARow_IsDropped()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Info(99, "lost", true);
    QCOMPARE(m_pFixture->Text(0, 8), QString());
}

void tst_MainWidget_Batch::EndThread_FailureThenNormalMessage_CountsAsSuccess()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Begin(1, 3);
    m_pFixture->Info(1, "broken", true);
    m_pFixture->Info(1, "mended", false);
    ModalHands hands;
    hands.Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->End(1, 3);
    QCOMPARE(m_pFixture->Counts(), QString("0, 1, 0"));
    QCOMPARE(m_pFixture->Text(0, 8), QString("Exported."));
    QTRY_VERIFY(hands.AllDone());
}

void tst_MainWidget_Batch::EndThread_CameraWithoutARow_LowersNothing()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Begin(1, 3);
    m_pFixture->End(99, 3);
    QCOMPARE(m_pFixture->Counts(), QString("1, 0, 0"));
}

void tst_MainWidget_Batch::EndThread_BeginAndEndBeforeTheNextBegins_EndsTheBatchEachTime()
{
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    int nMessages = 0;
    ModalHands hands;
    const auto count = [&](QWidget *pBox) {
        ++nMessages;
        pBox->close();
    };
    hands.Then("MessageBox", count).Then("MessageBox", count);
    m_pFixture->Begin(1, 2);
    m_pFixture->End(1, 2);
    m_pFixture->Begin(2, 2);
    m_pFixture->End(2, 2);
    QCOMPARE(nMessages, 2);
    QCOMPARE(m_pFixture->Counts(), QString("0, 2, 0"));
}

void tst_MainWidget_Batch::EndThread_Type_DecidesTheMessage()
{
    // The batch was an export, but the last worker to end says import.
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    m_pFixture->Begin(1, 3);
    m_pFixture->Begin(2, 2);
    m_pFixture->End(1, 3);
    QString strMessage;
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        strMessage = pBox->findChild<QLabel *>("MessageContent")->text();
        pBox->close();
    });
    m_pFixture->End(2, 2);
    QCOMPARE(strMessage, QString("Importing process is over."));
    QCOMPARE(m_pFixture->Text(0, 8), QString("Exported."));
    QCOMPARE(m_pFixture->Text(1, 8), QString("Imported."));
}

void tst_MainWidget_Batch::ShowMsg_EmptyTitle_IsPrompt()
{
    QStringList listTexts;
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        listTexts = QStringList{pBox->windowTitle(), pBox->findChild<QLabel *>("MessageContent")->text()};
        pBox->close();
    });
    m_pFixture->Show();
    m_pFixture->m_pWindow->OnShowMsg("", "content", "detail");
    QCOMPARE(listTexts, QStringList({"Prompt", "content"}));
}

QTEST_MAIN(tst_MainWidget_Batch)
#include "tst_mainwidget_batch.moc"
