#include <QtTest>

#include <QDialog>
#include <QFont>
#include <QFrame>
#include <QHBoxLayout>
#include <QMetaMethod>
#include <QPointer>
#include <QStackedWidget>
#include <QTranslator>

#include <StyleCtl/tarncustomlinewidget.h>
#include <StyleCtl/tarncustomloadingdialog.h>
#include <StyleCtl/tarncustomtitlebar.h>
#include <ToolBase/lumointerface.h>
#include <language/languageversion.h>

#include "scriptedcameras.h"
#include "windowfixture.h"

class tst_MainWidget_Construction : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setApplicationVersion("9.8.7"); }
    void cleanup() { SetLanguageVersion("ENG"); }

    void MetaObject_Slots_StandInTheirOrder();
    void MetaObject_ParameterNames_AreRegistered();
    void Construct_Window_HasTitleSizeAndColour();
    void Construct_Buttons_AreDisabledAndStyled();
    void Construct_Counts_ReadZeroInTheirColours();
    void Construct_Pages_OperatePageIsShown();
    void Construct_Layout_HasItsMarginsAndOrder();
    void Construct_OperateTexts_AreEmpty();
    void Translate_Chinese_EveryTextChanges();
    void Translate_NoOperation_OperateTextsStay();
    void Translate_AfterAnImport_KeepsTheImportTexts();
    void Translate_AfterAnExport_KeepsTheExportTexts();
    void Translate_RowsWithStatus_AreCleared();
    void CustomEvent_LanguageChanged_TheNewOneIsShown();
    void CustomEvent_OtherType_IsAcceptedAndChangesNothing();
    void ApplicationState_Active_MarksTheWindowMappedAndHandlesEvents();
    void ApplicationState_DialogClosedMeanwhile_IsDeletedAfterwards();
    void ApplicationState_Others_DoNothing();
    void Back_Pressed_ShowsTheOperatePage();
    void Close_NoBatch_Closes();
    void EndRefresh_RowsTicked_UpdatesHeaderAndButtons();
    void Keyboard_Tab_ReachesTreeHeaderAndTable();
};

namespace {

/// Marks every text of the window's context, so that one that is not re-applied shows.
class Marker : public QTranslator
{
public:
    QString translate(const char *pContext, const char *pText, const char *, int) const override
    {
        return qstrcmp(pContext, "MainWidget") == 0 ? QStringLiteral("#") + pText : QString();
    }
    bool isEmpty() const override { return false; }
};

void MakeBatch(WindowFixture &fixture, unsigned int nType)
{
    // One camera runs through an import (2) or export (3), without the dialogs.
    QVERIFY(QMetaObject::invokeMethod(fixture.m_pWindow.get(), "onBackClicked"));
    fixture.ShowCameras({NetworkCamera(1)});
    fixture.ClickCheckBox(0);
    ModalHands hands;
    if (nType == 2) {
        QFile file(fixture.Dir() + "/in.kfb");
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(
            "<?xml version=\"1.0\"?>\n<Features><DeviceModelName>ABC-1000</DeviceModelName></Features>");
        file.close();
        hands.Then("QFileDialog", [&](QWidget *pDialog) { ModalHands::Choose(pDialog, file.fileName()); })
            .Then("MessageBox", [](QWidget *pBox) { pBox->close(); });
        fixture.ClickButton("ImportBtn");
    } else {
        hands.Then("QFileDialog", [&](QWidget *pDialog) { ModalHands::Choose(pDialog, fixture.Dir()); })
            .Then("SaveDoneHintDlg", [](QWidget *pBox) { pBox->close(); });
        fixture.ClickButton("ExportBtn");
    }
    QTRY_VERIFY(hands.AllDone());
    QCOMPARE(fixture.Counts(), QString("0, 1, 0"));
}

} // namespace

void tst_MainWidget_Construction::MetaObject_Slots_StandInTheirOrder()
{
    const QMetaObject &meta = MainWidget::staticMetaObject;
    QStringList listSlots;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        listSlots.append(meta.method(i).methodSignature());
    }
    QCOMPARE(listSlots, QStringList({"OnBtnRefresh()", "OnEndRefresh()", "OnBtnImport()", "OnBtnExport()",
                                     "OnShowMsg(QString,QString,QString)", "onNewDevice(QTreeWidgetItem*)",
                                     "onDeleteDevice(QTreeWidgetItem*)", "onUpdateDevice(QTreeWidgetItem*)",
                                     "OnTreeSelectesChanged()", "onCellCheckStateChanged(int,int)",
                                     "onHeaderCheckStateChanged(int)", "onSortTableWidget(int,bool)",
                                     "onBeginThread(long,uint)", "onEndThread(long,uint,QString)",
                                     "onThreadInfo(long,QString,bool)", "onBackClicked()",
                                     "OnApplicationStateChange(Qt::ApplicationState)"}));
}

void tst_MainWidget_Construction::MetaObject_ParameterNames_AreRegistered()
{
    const auto names = [](const char *pSlot) {
        const QMetaObject &meta = MainWidget::staticMetaObject;
        return meta.method(meta.indexOfMethod(pSlot)).parameterNames();
    };
    QCOMPARE(names("OnShowMsg(QString,QString,QString)"),
             QList<QByteArray>({"strTitle", "strContent", "strDetail"}));
    QCOMPARE(names("onNewDevice(QTreeWidgetItem*)"), QList<QByteArray>({"pItem"}));
    QCOMPARE(names("onDeleteDevice(QTreeWidgetItem*)"), QList<QByteArray>({""}));
    QCOMPARE(names("onUpdateDevice(QTreeWidgetItem*)"), QList<QByteArray>({""}));
    QCOMPARE(names("onCellCheckStateChanged(int,int)"), QList<QByteArray>({"nRow", "nColumn"}));
    QCOMPARE(names("onHeaderCheckStateChanged(int)"), QList<QByteArray>({""}));
    QCOMPARE(names("onSortTableWidget(int,bool)"), QList<QByteArray>({"", "bAscending"}));
    QCOMPARE(names("onBeginThread(long,uint)"), QList<QByteArray>({"lCamerID", "nThreadType"}));
    QCOMPARE(names("onEndThread(long,uint,QString)"),
             QList<QByteArray>({"lCameraID", "nThreadType", "strFilePath"}));
    QCOMPARE(names("onThreadInfo(long,QString,bool)"), QList<QByteArray>({"nDeviceID", "strMsg", "bFailed"}));
}

void tst_MainWidget_Construction::Construct_Window_HasTitleSizeAndColour()
{
    WindowFixture fixture;
    QCOMPARE(fixture.m_pWindow->windowTitle(), QString("Import/Export Features"));
    QCOMPARE(fixture.m_pWindow->cTitleBar()->cText(), QString("Import/Export Features V9.8.7"));
    QCOMPARE(fixture.m_pWindow->cTitleBar()->minimumHeight(), 37);
    QCOMPARE(fixture.m_pWindow->cTitleBar()->maximumHeight(), 37);
    QCOMPARE(fixture.m_pWindow->size(), QSize(1058, 632));
    QCOMPARE(fixture.m_pWindow->minimumWidth(), 1058);
    QCOMPARE(int(fixture.m_pWindow->cStrechEdges()), 0xCB);
}

void tst_MainWidget_Construction::Construct_Buttons_AreDisabledAndStyled()
{
    WindowFixture fixture;
    for (const QString &strName : {QString("ImportBtn"), QString("ExportBtn")}) {
        TarnCustomPushButton *pButton = fixture.Button(strName);
        QVERIFY(!pButton->isEnabled());
        QCOMPARE(pButton->minimumSize(), QSize(70, 26));
        QCOMPARE(pButton->maximumSize(), QSize(70, 26));
        QCOMPARE(pButton->cBorderColor(TarnCustom::StateNormal), QColor("#f76900"));
        QCOMPARE(int(pButton->cStyle()), 1);
    }
    QCOMPARE(fixture.Button("ImportBtn")->text(), QString("Import"));
    QCOMPARE(fixture.Button("ExportBtn")->text(), QString("Export"));
    QCOMPARE(fixture.Button("BackBtn")->text(), QString("Back"));
    QCOMPARE(fixture.Button("BackBtn")->minimumSize(), QSize(86, 26));
    QCOMPARE(fixture.Button("BackBtn")->maximumSize(), QSize(86, 26));
}

void tst_MainWidget_Construction::Construct_Counts_ReadZeroInTheirColours()
{
    WindowFixture fixture;
    QCOMPARE(fixture.Counts(), QString("0, 0, 0"));
    const QVector<QPair<QString, QString>> vecColors{
        {"TotalNumLabel", "#FAB700"}, {"SuccessNumLabel", "#00D53C"}, {"FailedNumLabel", "#FC2F2F"}};
    for (const auto &color : vecColors) {
        const auto *pLabel = fixture.m_pWindow->findChild<TarnCustomLabel *>(color.first);
        QCOMPARE(pLabel->cFontColor(), QColor(color.second));
        QCOMPARE(pLabel->font().pixelSize(), 32);
        QCOMPARE(pLabel->font().weight(), 75);
        QVERIFY(pLabel->font().italic());
        QCOMPARE(pLabel->alignment(), Qt::AlignCenter);
        QCOMPARE(pLabel->minimumWidth(), 50);
        QCOMPARE(pLabel->maximumWidth(), 50);
    }
    for (const QString &strName : {QString("DoingLabel"), QString("SuccessLabel"), QString("FailedLabel")}) {
        const auto *pLabel = fixture.m_pWindow->findChild<TarnCustomLabel *>(strName);
        QCOMPARE(pLabel->cFontColor(), QColor("#6C6C6C"));
        QCOMPARE(pLabel->font().pixelSize(), 12);
    }
}

void tst_MainWidget_Construction::Construct_Pages_OperatePageIsShown()
{
    WindowFixture fixture;
    const auto *pStack = fixture.m_pWindow->findChild<QStackedWidget *>("PageStack");
    QCOMPARE(pStack->count(), 2);
    QCOMPARE(pStack->widget(0)->objectName(), QString("OperatePage"));
    QCOMPARE(pStack->widget(1)->objectName(), QString("ResultPage"));
    QCOMPARE(pStack->currentIndex(), 0);
    QCOMPARE(pStack->minimumHeight(), 57);
    QCOMPARE(pStack->maximumHeight(), 57);
}

void tst_MainWidget_Construction::Construct_Layout_HasItsMarginsAndOrder()
{
    WindowFixture fixture;
    const QLayout *pMain = fixture.m_pWindow->cCentralWidget()->layout();
    QCOMPARE(pMain->contentsMargins(), QMargins(25, 0, 25, 20));
    QCOMPARE(pMain->spacing(), 0);
    QCOMPARE(pMain->itemAt(0)->widget()->objectName(), QString("PageStack"));
    const QLayout *pBody = pMain->itemAt(1)->layout();
    QCOMPARE(pBody->itemAt(0)->widget(), static_cast<QWidget *>(fixture.Tree()));
    QCOMPARE(pBody->itemAt(1)->widget(), static_cast<QWidget *>(fixture.Table()));

    const QLayout *pResult = fixture.m_pWindow->findChild<QWidget *>("ResultPage")->layout();
    QStringList listItems; // widgets by name, dividers as "|", spaces by their width
    for (int i = 0; i < pResult->count(); ++i) {
        QLayoutItem *pItem = pResult->itemAt(i);
        if (qobject_cast<TarnCustomLineWidget *>(pItem->widget()))
            listItems.append("|");
        else if (pItem->widget())
            listItems.append(pItem->widget()->objectName());
        else
            listItems.append(QString::number(pItem->sizeHint().width()));
    }
    QCOMPARE(listItems,
             QStringList({"TotalNumLabel", "DoingLabel", "20", "|", "20", "SuccessNumLabel", "SuccessLabel",
                          "20", "|", "20", "FailedNumLabel", "FailedLabel", "0", "BackBtn"}));
    for (const auto *pLine : fixture.m_pWindow->findChildren<TarnCustomLineWidget *>()) {
        QCOMPARE(pLine->maximumSize(), QSize(1, 20));
        QCOMPARE(pLine->cBackgroundColor(), QColor("#BFBFBF"));
    }
}

void tst_MainWidget_Construction::Construct_OperateTexts_AreEmpty()
{
    WindowFixture fixture;
    QCOMPARE(fixture.LabelText("DoingLabel"), QString());
    QCOMPARE(fixture.LabelText("SuccessLabel"), QString());
    QCOMPARE(fixture.LabelText("FailedLabel"), QString("Failed"));
}

void tst_MainWidget_Construction::Translate_Chinese_EveryTextChanges()
{
    WindowFixture fixture;
    Marker marker;
    QCoreApplication::installTranslator(&marker);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(fixture.m_pWindow->windowTitle(), QString("#Import/Export Features"));
    QCOMPARE(fixture.m_pWindow->cTitleBar()->cText(), QString("#Import/Export Features V9.8.7"));
    QCOMPARE(fixture.Button("ImportBtn")->text(), QString("#Import"));
    QCOMPARE(fixture.Button("ExportBtn")->text(), QString("#Export"));
    QCOMPARE(fixture.Button("BackBtn")->text(), QString("#Back"));
    QCOMPARE(fixture.LabelText("FailedLabel"), QString("#Failed"));
    QStringList listHeader;
    for (int nColumn = 0; nColumn < 9; ++nColumn)
        listHeader.append(fixture.Table()->horizontalHeaderItem(nColumn)->text());
    QCOMPARE(listHeader, QStringList({"", "#PortID", "#Model Name", "#Device User ID", "#Serial Number",
                                      "#Interface Type", "#MAC Address", "#Status", "#Operation Status"}));
}

void tst_MainWidget_Construction::Translate_NoOperation_OperateTextsStay()
{
    WindowFixture fixture;
    SetLanguageVersion("CH");
    QCoreApplication::sendPostedEvents();
    QCOMPARE(fixture.LabelText("DoingLabel"), QString());
    QCOMPARE(fixture.LabelText("SuccessLabel"), QString());
}

void tst_MainWidget_Construction::Translate_AfterAnImport_KeepsTheImportTexts()
{
    WindowFixture fixture;
    MakeBatch(fixture, 2);
    QCOMPARE(fixture.LabelText("DoingLabel"), QString(" Importing"));
    QVERIFY(fixture.IsResultPage());
    SetLanguageVersion("CH");
    QCoreApplication::sendPostedEvents();
    QCOMPARE(fixture.LabelText("DoingLabel"), QString::fromUtf8(" 正在导入"));
    QCOMPARE(fixture.LabelText("SuccessLabel"), QString::fromUtf8(" 已导入"));
    QVERIFY(fixture.IsResultPage());
    const auto *pBusy = fixture.m_pWindow->findChild<TarnCustomLoadingDialog *>();
    QCOMPARE(pBusy->LabelText(), QString::fromUtf8("正在导入属性..."));
}

void tst_MainWidget_Construction::Translate_AfterAnExport_KeepsTheExportTexts()
{
    WindowFixture fixture;
    MakeBatch(fixture, 3);
    QCOMPARE(fixture.LabelText("SuccessLabel"), QString(" Exported."));
    SetLanguageVersion("CH");
    QCoreApplication::sendPostedEvents();
    QCOMPARE(fixture.LabelText("DoingLabel"), QString::fromUtf8(" 正在导出"));
    const auto *pBusy = fixture.m_pWindow->findChild<TarnCustomLoadingDialog *>();
    QCOMPARE(pBusy->LabelText(), QString::fromUtf8("正在导出属性..."));
}

void tst_MainWidget_Construction::Translate_RowsWithStatus_AreCleared()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    fixture.Begin(1, 2);
    fixture.Info(1, "broken", true);
    fixture.End(1, 2);
    QCOMPARE(fixture.Text(0, 8), QString("broken"));
    SetLanguageVersion("CH");
    QCoreApplication::sendPostedEvents();
    QCOMPARE(fixture.Text(0, 8), QString());
    QCOMPARE(fixture.Table()->detailTip(0, 8), QString());
}

void tst_MainWidget_Construction::CustomEvent_LanguageChanged_TheNewOneIsShown()
{
    WindowFixture fixture;
    fixture.WriteSettings("CH", 64);
    QCoreApplication::postEvent(fixture.m_pWindow.get(), new QEvent(QEvent::Type(1100)));
    QTRY_COMPARE(fixture.Button("ImportBtn")->text(), QString::fromUtf8("导入"));
    fixture.WriteSettings("ENG", 64);
    QCoreApplication::postEvent(fixture.m_pWindow.get(), new QEvent(QEvent::Type(1100)));
    QTRY_COMPARE(fixture.Button("ImportBtn")->text(), QString("Import"));
}

void tst_MainWidget_Construction::CustomEvent_OtherType_IsAcceptedAndChangesNothing()
{
    WindowFixture fixture;
    fixture.WriteSettings("CH", 64);
    QEvent event(QEvent::Type(1101));
    event.ignore();
    QCoreApplication::sendEvent(fixture.m_pWindow.get(), &event);
    QVERIFY(event.isAccepted());
    QCOMPARE(fixture.Button("ImportBtn")->text(), QString("Import"));
}

/// Counts the events of type User that it gets.
class Counter : public QObject
{
public:
    void customEvent(QEvent *) override { ++m_nEvents; }
    int m_nEvents = 0;
};

void tst_MainWidget_Construction::ApplicationState_Active_MarksTheWindowMappedAndHandlesEvents()
{
    WindowFixture fixture;
    fixture.m_pWindow->setAttribute(Qt::WA_Mapped, false);
    Counter counter;
    for (int nRound = 1; nRound <= 2; ++nRound) {
        QCoreApplication::postEvent(&counter, new QEvent(QEvent::User));
        fixture.m_pWindow->OnApplicationStateChange(Qt::ApplicationActive);
        QVERIFY(fixture.m_pWindow->testAttribute(Qt::WA_Mapped));
        QCOMPARE(counter.m_nEvents, nRound);
    }
}

// Qt goes on with the window that became active when the slot returns.
void tst_MainWidget_Construction::ApplicationState_DialogClosedMeanwhile_IsDeletedAfterwards()
{
    WindowFixture fixture;
    QPointer<QDialog> pDialog = new QDialog(fixture.m_pWindow.get());
    pDialog->setAttribute(Qt::WA_DeleteOnClose);
    pDialog->show();
    const auto closeAndDelete = [&] {
        pDialog->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    QMetaObject::invokeMethod(qApp, closeAndDelete, Qt::QueuedConnection);

    emit qApp->applicationStateChanged(Qt::ApplicationActive);

    QVERIFY(pDialog && !pDialog->isVisible());
    QTRY_VERIFY(!pDialog);
}

void tst_MainWidget_Construction::ApplicationState_Others_DoNothing()
{
    WindowFixture fixture;
    fixture.m_pWindow->setAttribute(Qt::WA_Mapped, false);
    Counter counter;
    QCoreApplication::postEvent(&counter, new QEvent(QEvent::User));
    for (auto state : {Qt::ApplicationInactive, Qt::ApplicationHidden, Qt::ApplicationSuspended})
        fixture.m_pWindow->OnApplicationStateChange(state);
    QVERIFY(!fixture.m_pWindow->testAttribute(Qt::WA_Mapped));
    QCOMPARE(counter.m_nEvents, 0);
}

void tst_MainWidget_Construction::Back_Pressed_ShowsTheOperatePage()
{
    WindowFixture fixture;
    MakeBatch(fixture, 2);
    QVERIFY(fixture.IsResultPage());
    fixture.ClickButton("BackBtn");
    QVERIFY(!fixture.IsResultPage());
}

void tst_MainWidget_Construction::Close_NoBatch_Closes()
{
    WindowFixture fixture;
    fixture.Show();
    QVERIFY(fixture.m_pWindow->close());
    QVERIFY(!fixture.m_pWindow->isVisible());
}

void tst_MainWidget_Construction::EndRefresh_RowsTicked_UpdatesHeaderAndButtons()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    fixture.Table()->setCellCheckState(0, 0, Qt::Checked, false);
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
    fixture.m_pWindow->OnBtnRefresh();
    QVERIFY(!fixture.Button("ImportBtn")->isEnabled());
    fixture.m_pWindow->OnEndRefresh();
    QVERIFY(fixture.Button("ImportBtn")->isEnabled());
    QCOMPARE(fixture.Header()->checkState(0), Qt::Checked);
}

void tst_MainWidget_Construction::Keyboard_Tab_ReachesTreeHeaderAndTable()
{
    WindowFixture fixture;
    fixture.ShowCameras({NetworkCamera(1)});
    fixture.ClickCheckBox(0);
    QApplication::setActiveWindow(fixture.m_pWindow.get());
    QSet<QWidget *> setReached;
    for (int nPress = 0; nPress < 12; ++nPress) {
        QTest::keyClick(fixture.m_pWindow.get(), Qt::Key_Tab);
        setReached.insert(QApplication::focusWidget());
    }
    for (QWidget *pWidget : std::initializer_list<QWidget *>{
             fixture.Tree(), fixture.Table(), fixture.Button("ImportBtn"), fixture.Button("ExportBtn")})
        QVERIFY2(setReached.contains(pWidget), qPrintable(pWidget->objectName()));
}

QTEST_MAIN(tst_MainWidget_Construction)
#include "tst_mainwidget_construction.moc"
