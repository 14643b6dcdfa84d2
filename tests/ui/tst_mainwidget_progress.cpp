#include <QtTest>

#include <QLabel>

#include "batchfixture.h"
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

QTEST_MAIN(tst_MainWidget_Progress)
#include "tst_mainwidget_progress.moc"
