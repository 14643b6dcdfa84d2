#include <QtTest>

#include <QFileDialog>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <StyleCtl/tarncustommessagebox.h>
#include <ToolBase/lumointerface.h>

#include "batchfixture.h"
#include "marker.h"
#include "scriptedcameras.h"
#include "tabledevices.h"

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
    void Import_Done_BoxHasNoTitleOfItsOwnNoDetailAndTheInformationSign();
    void FirstDialogs_NothingChosenYet_StartWithTheUsersFiles();
    void FirstDialog_Open_CaptionsAreThoseOfBefore();
    void Export_Running_TheNextDialogStillStartsWhereItWould();
    void Export_TickedRowWithoutATreeItem_IsLeftOut();
    void Export_AllFailAfterASuccess_NoMessage();
    void Export_Succeeds_WritesFilesAndShowsWhere();
    void Export_Dialog_HasItsCaption();
    void Export_Cancelled_OnlyTheCaptionsChange();
    void Export_FolderChosen_IsWhereBothDialogsStart();
    void Export_CamerasOfManyRows_EachTickedOneIsOpenedOnce();
    void ShowMsg_EmptyTitle_IsThePromptOfTheWindow();
    void ShowMsg_Texts_StandWhereTheyBelong();

private:
    QStringList StartsOfBothDialogs();
    QStringList ShownMessage(const QString &strTitle, const QString &strContent, const QString &strDetail);

    std::unique_ptr<BatchFixture> m_pFixture;
};

namespace {

/// Title, content and detail of a message.
QStringList TextsOf(const QWidget *pBox)
{
    return {pBox->windowTitle(), pBox->findChild<QLabel *>("MessageContent")->text(),
            pBox->findChild<QPlainTextEdit *>("MessageDetail")->toPlainText()};
}

QImage SignOf(QWidget *pBox)
{
    auto *pIcon = pBox->findChild<QWidget *>("MessageIcon");
    return pIcon->isVisibleTo(pBox) ? pIcon->grab().toImage() : QImage();
}

QImage InformationSign()
{
    TarnCustomMessageBox box;
    box.SetIconStyle(TarnCustomMessageBox::HintInformation);
    return SignOf(&box);
}

} // namespace

void tst_MainWidget_Batch::init()
{
    ScriptedCameras::Reset();
    m_pFixture = std::make_unique<BatchFixture>();
}

void tst_MainWidget_Batch::cleanup()
{
    ScriptedCameras::Reset();
    m_pFixture.reset();
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

/// What a message of the window shows; its sign is that of an information.
QStringList tst_MainWidget_Batch::ShownMessage(const QString &strTitle, const QString &strContent,
                                               const QString &strDetail)
{
    QStringList listTexts;
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        listTexts = TextsOf(pBox);
        if (SignOf(pBox) != InformationSign())
            listTexts.append("another sign");
        pBox->close();
    });
    m_pFixture->m_pWindow->OnShowMsg(strTitle, strContent, strDetail);
    return listTexts;
}

void tst_MainWidget_Batch::Import_OneFails_CountsTextsTipAndOneMessage()
{
    KX_CC_DEVICE_INFO other = NetworkCamera(2);
    SetText(other.SpecialInfo.stGigEInfo.chModelName, 32, "XYZ");
    m_pFixture->ShowCameras({NetworkCamera(1), other});
    m_pFixture->TickAll();
    ScriptedCameras::OpenTogether(2);
    QStringList listMessages;
    ModalHands hands;
    ChooseFile(hands, m_pFixture->WriteFile("in.kfb", "ABC-1000")).Then("MessageBox", [&](QWidget *pBox) {
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
    m_pFixture->TickAll();
    ScriptedCameras::OpenTogether(2);
    ModalHands hands;
    ChooseFile(hands, m_pFixture->WriteFile("in.kfb", "ABC-1000"));
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
    m_pFixture->TickAll();
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
    ChooseFile(hands, m_pFixture->WriteFile("in.kfb", "ABC-1000"));
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
    const QString strFile = m_pFixture->WriteFile("files/in.kfb", "ABC-1000");
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
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
    m_pFixture->TickAll();
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

void tst_MainWidget_Batch::Import_Done_BoxHasNoTitleOfItsOwnNoDetailAndTheInformationSign()
{
    Marker marker; // a title of the window would be marked
    QCoreApplication::installTranslator(&marker);
    m_pFixture->ShowCameras({NetworkCamera(1)});
    QStringList listTexts;
    QImage sign;
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        listTexts = TextsOf(pBox);
        sign = SignOf(pBox);
        pBox->close();
    });
    m_pFixture->Begin(1, 2);
    m_pFixture->End(1, 2);
    QVERIFY(hands.AllDone());
    QCOMPARE(listTexts, QStringList({"Prompt", "#Importing process is over.", ""}));
    QVERIFY(sign == InformationSign());
}

void tst_MainWidget_Batch::FirstDialogs_NothingChosenYet_StartWithTheUsersFiles()
{
    const QString strPath = QDir(LumoInterface::userDataPath()).absolutePath();
    QVERIFY(strPath != QDir::currentPath());
    QCOMPARE(StartsOfBothDialogs(), QStringList({strPath, strPath}));
}

void tst_MainWidget_Batch::FirstDialog_Open_CaptionsAreThoseOfBefore()
{
    QStringList listCaptions;
    const auto note = [&](QWidget *pDialog) {
        listCaptions.append(m_pFixture->LabelText("DoingLabel") + '|' +
                            m_pFixture->LabelText("SuccessLabel"));
        ModalHands::Cancel(pDialog);
    };
    ModalHands hands;
    hands.Then("QFileDialog", note).Then("QFileDialog", note).Then("QFileDialog", note);
    m_pFixture->m_pWindow->OnBtnImport();
    m_pFixture->m_pWindow->OnBtnExport();
    m_pFixture->m_pWindow->OnBtnImport();
    QCOMPARE(listCaptions, QStringList({"|", " Importing| Imported.", " Exporting| Exported."}));
}

void tst_MainWidget_Batch::Export_Running_TheNextDialogStillStartsWhereItWould()
{
    QVERIFY(QDir(m_pFixture->Dir()).mkdir("out"));
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    ScriptedCameras::Hold("SN0001");
    QString strStart;
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir() + "/out").Then("LoadingDlg", [&](QWidget *) {
        ModalHands others; // the first ones are busy here
        others.Then("QFileDialog", [&](QWidget *pDialog) {
            strStart = qobject_cast<QFileDialog *>(pDialog)->directory().absolutePath();
            pDialog->close(); // disabled with the window, so that no key reaches it
        });
        m_pFixture->m_pWindow->OnBtnImport();
        ScriptedCameras::Release("SN0001");
    });
    CloseMessage(hands, "ExportBtn");
    m_pFixture->ClickButton("ExportBtn");
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(strStart, QDir(LumoInterface::userDataPath()).absolutePath());
}

void tst_MainWidget_Batch::Export_TickedRowWithoutATreeItem_IsLeftOut()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    const HandMadeItem unknown(NetworkCamera(2), 1, "eth0");
    m_pFixture->m_pWindow->onNewDevice(unknown.pItem);
    m_pFixture->Table()->setRowHidden(1, false);
    m_pFixture->TickAll();
    QVERIFY(m_pFixture->IsChecked(1));
    m_pFixture->Run("ExportBtn", m_pFixture->Dir());
    QCOMPARE(m_pFixture->Counts(), QString("0, 1, 0"));
    QCOMPARE(m_pFixture->Text(1, 8), QString());
    QCOMPARE(ScriptedCameras::Opened(), QStringList("SN0001"));
}

void tst_MainWidget_Batch::Export_AllFailAfterASuccess_NoMessage()
{
    m_pFixture->ShowCameras({NetworkCamera(1)});
    m_pFixture->TickAll();
    m_pFixture->Run("ExportBtn", m_pFixture->Dir());
    QCOMPARE(m_pFixture->Counts(), QString("0, 1, 0"));
    ScriptedCameras::FailOpen("SN0001");
    ModalHands hands;
    ChooseFile(hands, m_pFixture->Dir());
    m_pFixture->ClickButton("BackBtn");
    m_pFixture->ClickButton("ExportBtn"); // returns when the busy dialog has closed
    QCOMPARE(m_pFixture->Counts(), QString("0, 0, 1"));
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_MainWidget_Batch::Export_Succeeds_WritesFilesAndShowsWhere()
{
    m_pFixture->ShowCameras({NetworkCamera(1), UsbCamera(2)});
    m_pFixture->TickAll();
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
    m_pFixture->TickAll();
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
    m_pFixture->TickAll();
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
    m_pFixture->TickAll();
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
    m_pFixture->TickAll();
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

// The box itself would say "Prompt", but in its own words.
void tst_MainWidget_Batch::ShowMsg_EmptyTitle_IsThePromptOfTheWindow()
{
    Marker marker;
    QCoreApplication::installTranslator(&marker);
    QCOMPARE(ShownMessage({}, "content", "detail"), QStringList({"#Prompt", "content", "detail"}));
}

void tst_MainWidget_Batch::ShowMsg_Texts_StandWhereTheyBelong()
{
    QCOMPARE(ShownMessage("title", "content", "detail"), QStringList({"title", "content", "detail"}));
    QCOMPARE(ShownMessage("title", "content", {}), QStringList({"title", "content", ""}));
}

QTEST_MAIN(tst_MainWidget_Batch)
#include "tst_mainwidget_batch.moc"
