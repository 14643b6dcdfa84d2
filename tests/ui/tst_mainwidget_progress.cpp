#include <QtTest>

#include <QLabel>

#include <StyleCtl/tarncustomloadingdialog.h>

#include "batchfixture.h"
#include "marker.h"
#include "scriptedcameras.h"

class tst_MainWidget_Progress : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void Running_CountsFollowBeginAndEnd();
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
    void EndThread_AllFailAfterABatchThatSucceeded_NoMessage();
    void EndThread_TwiceForOneBegin_EndsTheBatchOnce();
    void EndThread_ColourOfTheLastMessage_Stays();
    void EndThread_CellMissing_OnlyCounts();
    void BeginThread_CellMissing_Counts();
    void ThreadInfo_CellMissing_IsDropped();
    void ClearedTexts_SuccessFlag_Stays_data();
    void ClearedTexts_SuccessFlag_Stays();
    void Close_CountedButNoWorkerRuns_Closes();
    void Running_BusyDialog_TellsTheOperation();
    void Running_LanguageSwitched_BusyDialogFollows();
    void End_BusyDialog_IsClosedBeforeTheMessage_data();
    void End_BusyDialog_IsClosedBeforeTheMessage();

private:
    std::unique_ptr<BatchFixture> m_pFixture;
};

void tst_MainWidget_Progress::init()
{
    ScriptedCameras::Reset();
    m_pFixture = std::make_unique<BatchFixture>();
}

void tst_MainWidget_Progress::cleanup()
{
    ScriptedCameras::Reset();
    m_pFixture.reset();
}

void tst_MainWidget_Progress::Running_CountsFollowBeginAndEnd()
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

void tst_MainWidget_Progress::BeginThread_CameraWithoutARow_IsDropped()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Begin(99, 2);
    QCOMPARE(m_pFixture->Counts(), QString("0, 0, 0"));
}

void tst_MainWidget_Progress::BeginThread_Text_FollowsTheType_data()
{
    QTest::addColumn<uint>("nType");
    QTest::addColumn<QString>("strText");
    QTest::newRow("button's import") << 0u << "Start importing...";
    QTest::newRow("button's export") << 1u << "Start exporting...";
    QTest::newRow("worker's import") << 2u << "Start importing...";
    QTest::newRow("worker's export") << 3u << "Start exporting...";
    QTest::newRow("another") << 4u << "";
}

void tst_MainWidget_Progress::BeginThread_Text_FollowsTheType()
{
    QFETCH(uint, nType);
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Begin(1, nType);
    QTEST(m_pFixture->Text(0, 8), "strText");
    QVERIFY(m_pFixture->Table()->item(0, 8)->data(Qt::UserRole + 2).toBool());
}

void tst_MainWidget_Progress::ThreadInfo_Failure_IsRedWithoutLineBreaks()
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

void tst_MainWidget_Progress::ThreadInfo_Normal_IsBlackAndKeepsTheTip()
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

void tst_MainWidget_Progress::ThreadInfo_CameraWithoutARow_IsDropped()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Info(99, "lost", true);
    QCOMPARE(m_pFixture->Text(0, 8), QString());
}

void tst_MainWidget_Progress::EndThread_FailureThenNormalMessage_CountsAsSuccess()
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

void tst_MainWidget_Progress::EndThread_CameraWithoutARow_LowersNothing()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Begin(1, 3);
    m_pFixture->End(99, 3);
    QCOMPARE(m_pFixture->Counts(), QString("1, 0, 0"));
}

void tst_MainWidget_Progress::EndThread_BeginAndEndBeforeTheNextBegins_EndsTheBatchEachTime()
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

void tst_MainWidget_Progress::EndThread_Type_DecidesTheMessage()
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

void tst_MainWidget_Progress::EndThread_AllFailAfterABatchThatSucceeded_NoMessage()
{
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    {
        ModalHands hands;
        hands.Then("MessageBox", [](QWidget *pBox) { pBox->close(); });
        m_pFixture->Begin(1, 2);
        m_pFixture->End(1, 2);
        QVERIFY(hands.AllDone());
    }
    ModalHands hands;
    hands.Then("MessageBox", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->Begin(2, 2);
    m_pFixture->Info(2, "no", true);
    m_pFixture->End(2, 2);
    QVERIFY(!hands.AllDone());
}

void tst_MainWidget_Progress::EndThread_TwiceForOneBegin_EndsTheBatchOnce()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    int nMessages = 0;
    ModalHands hands;
    const auto count = [&](QWidget *pBox) {
        ++nMessages;
        pBox->close();
    };
    hands.Then("MessageBox", count).Then("MessageBox", count);
    m_pFixture->Begin(1, 2);
    m_pFixture->End(1, 2);
    m_pFixture->m_pWindow->setDisabled(true);
    m_pFixture->End(1, 2);
    QCOMPARE(nMessages, 1);
    QVERIFY(!m_pFixture->m_pWindow->isEnabled());
    QCOMPARE(m_pFixture->Counts(), QString("-1, 2, 0"));

    // The next batch starts from 0 all the same.
    m_pFixture->m_pWindow->setEnabled(true);
    ScriptedCameras::Hold("SN0001");
    ModalHands next;
    QString strCounts;
    ChooseFile(next, m_pFixture->Dir()).Then("LoadingDlg", [&](QWidget *pBusy) {
        QTRY_COMPARE(m_pFixture->Text(0, 8), QString("Start exporting..."));
        strCounts = m_pFixture->Counts();
        ScriptedCameras::Release("SN0001");
        if (strCounts != "1, 0, 0")
            pBusy->close(); // nothing else would
    });
    CloseMessage(next, "ExportBtn");
    m_pFixture->ClickButton("ExportBtn");
    QCOMPARE(strCounts, QString("1, 0, 0"));
    QTRY_VERIFY(next.AllDone());
    QCOMPARE(m_pFixture->Counts(), QString("0, 1, 0"));
}

void tst_MainWidget_Progress::EndThread_ColourOfTheLastMessage_Stays()
{
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    m_pFixture->Begin(2, 3); // keeps the batch from ending
    m_pFixture->Info(1, "broken", true);
    m_pFixture->Begin(1, 3);
    m_pFixture->End(1, 3);
    QCOMPARE(m_pFixture->Text(0, 8), QString("Exported."));
    QCOMPARE(m_pFixture->Table()->item(0, 8)->foreground(), QBrush(Qt::red));
}

void tst_MainWidget_Progress::EndThread_CellMissing_OnlyCounts()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->m_pWindow->setDisabled(true);
    m_pFixture->Begin(1, 2);
    delete m_pFixture->Table()->takeItem(0, 8);
    m_pFixture->End(1, 2); // a message would wait for ever
    QCOMPARE(m_pFixture->Counts(), QString("0, 0, 0"));
    QVERIFY(m_pFixture->m_pWindow->isEnabled());
}

void tst_MainWidget_Progress::BeginThread_CellMissing_Counts()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    delete m_pFixture->Table()->takeItem(0, 8);
    m_pFixture->Begin(1, 2);
    QCOMPARE(m_pFixture->Counts(), QString("1, 0, 0"));
}

void tst_MainWidget_Progress::ThreadInfo_CellMissing_IsDropped()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    delete m_pFixture->Table()->takeItem(0, 8);
    m_pFixture->Info(1, "broken", true);
    QCOMPARE(m_pFixture->Table()->detailTip(0, 8), QString());
}

void tst_MainWidget_Progress::ClearedTexts_SuccessFlag_Stays_data()
{
    QTest::addColumn<bool>("bFailed");
    QTest::addColumn<QString>("strCounts");
    QTest::newRow("failed") << true << "1, 0, 1";
    QTest::newRow("succeeded") << false << "1, 1, 0";
}

void tst_MainWidget_Progress::ClearedTexts_SuccessFlag_Stays()
{
    QFETCH(bool, bFailed);
    m_pFixture->ShowCameras({NetworkCamera(1), NetworkCamera(2)});
    m_pFixture->Begin(2, 3); // keeps the batch from ending
    m_pFixture->Begin(1, 3);
    m_pFixture->Info(1, "message", bFailed);
    QEvent switched(QEvent::LanguageChange); // clears the texts
    QCoreApplication::sendEvent(m_pFixture->m_pWindow.get(), &switched);
    QCOMPARE(m_pFixture->Text(0, 8), QString());
    QCOMPARE(m_pFixture->Table()->item(0, 8)->foreground(), QBrush(bFailed ? Qt::red : Qt::black));
    m_pFixture->End(1, 3);
    QTEST(m_pFixture->Counts(), "strCounts");
}

void tst_MainWidget_Progress::Close_CountedButNoWorkerRuns_Closes()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->Begin(1, 3);
    QVERIFY(m_pFixture->m_pWindow->close());
}

void tst_MainWidget_Progress::Running_BusyDialog_TellsTheOperation()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    const auto *pBusy = m_pFixture->m_pWindow->findChild<TarnCustomLoadingDialog *>();
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir()).Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(pBusy->LabelText(), QString("Exporting features..."));
    QVERIFY(!pBusy->isVisible());

    ChooseFile(hands, m_pFixture->WriteFile("in.kfb", "ABC-1000")).Then("MessageBox", [](QWidget *pBox) {
        pBox->close();
    });
    m_pFixture->ClickButton("BackBtn");
    m_pFixture->ClickButton("ImportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(pBusy->LabelText(), QString("Importing features..."));
}

void tst_MainWidget_Progress::Running_LanguageSwitched_BusyDialogFollows()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    m_pFixture->Run("ImportBtn", m_pFixture->WriteFile("in.kfb", "ABC-1000"));
    ScriptedCameras::Hold("SN0001");
    const auto *pBusy = m_pFixture->m_pWindow->findChild<TarnCustomLoadingDialog *>();
    Marker marker;
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir()).Then("LoadingDlg", [&](QWidget *) {
        QCoreApplication::installTranslator(&marker);
        QTRY_COMPARE(pBusy->LabelText(), QString("#Exporting features..."));
        ScriptedCameras::Release("SN0001");
    });
    CloseMessage(hands, "ExportBtn");
    m_pFixture->ClickButton("BackBtn");
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
}

void tst_MainWidget_Progress::End_BusyDialog_IsClosedBeforeTheMessage_data()
{
    QTest::addColumn<QString>("strButton");
    QTest::newRow("import") << "ImportBtn";
    QTest::newRow("export") << "ExportBtn";
}

void tst_MainWidget_Progress::End_BusyDialog_IsClosedBeforeTheMessage()
{
    QFETCH(QString, strButton);
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    const auto *pBusy = m_pFixture->m_pWindow->findChild<TarnCustomLoadingDialog *>();
    bool bClosed = false;
    ModalHands hands;
    const bool bImport = strButton == "ImportBtn";
    ChooseFile(hands, bImport ? m_pFixture->WriteFile("in.kfb", "ABC-1000") : m_pFixture->Dir())
        .Then(bImport ? "MessageBox" : "SaveDoneHintDlg", [&](QWidget *pBox) {
            bClosed = !pBusy->isVisible();
            pBox->close();
        });
    m_pFixture->ClickButton(strButton);
    QTRY_VERIFY(hands.AllDone());
    QVERIFY(bClosed);
}

QTEST_MAIN(tst_MainWidget_Progress)
#include "tst_mainwidget_progress.moc"
