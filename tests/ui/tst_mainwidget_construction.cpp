#include <QtTest>

#include <QAbstractEventDispatcher>
#include <QDialog>
#include <QLayout>
#include <QMetaMethod>
#include <QPointer>
#include <QStackedWidget>

#include <dlfcn.h>
#include <functional>

#include <StyleCtl/tarncustomloadingdialog.h>
#include <StyleCtl/tarncustomtitlebar.h>
#include <ToolBase/lumointerface.h>
#include <language/languageversion.h>

#include "marker.h"
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
    void Construct_OperateTexts_AreEmpty();
    void Translate_Chinese_EveryTextChanges();
    void Translate_NoOperation_OperateTextsStay();
    void Translate_AfterAnImport_KeepsTheImportTexts();
    void Translate_AfterAnExport_KeepsTheExportTexts();
    void Translate_RowsWithStatus_AreCleared();
    void CustomEvent_LanguageChanged_TheNewOneIsShown();
    void CustomEvent_OtherType_IsAcceptedAndChangesNothing();
    void CustomEvent_Null_IsIgnored();
    void ChangeEvent_OtherType_GoesOnToTheFrame();
    void MaxCameraNum_SettingChanged_IsTheNewOne();
    void ApplicationState_Active_MarksTheWindowMappedAndHandlesEvents();
    void ApplicationState_DialogClosedMeanwhile_IsDeletedAfterwards();
    void ApplicationState_Active_TheThreeCallsComeInTheirOrder();
    void ApplicationState_Others_DoNothing();
    void Back_Pressed_ShowsTheOperatePage();
    void Close_NoBatch_Closes();
    void EndRefresh_RowsTicked_UpdatesHeaderAndButtons();
    void Keyboard_Tab_ReachesTreeHeaderAndTable();
};

struct _GMainContext; // of GLib
using GMainContext = _GMainContext;
static std::function<void()> whenWokenUp;

// GLib's own, which Qt calls through this program.
extern "C" Q_DECL_EXPORT void g_main_context_wakeup(GMainContext *pContext)
{
    if (whenWokenUp && QThread::currentThread() == qApp->thread())
        whenWokenUp();
    using Wakeup = void (*)(GMainContext *);
    static const auto pReal = reinterpret_cast<Wakeup>(dlsym(RTLD_NEXT, "g_main_context_wakeup"));
    pReal(pContext);
}

namespace {

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
    const QMetaObject &meta = MainWidget::staticMetaObject;
    QStringList listNames;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        listNames.append(meta.method(i).name() + ": " + meta.method(i).parameterNames().join(' '));
    QCOMPARE(listNames, QStringList({"OnBtnRefresh: ", "OnEndRefresh: ", "OnBtnImport: ", "OnBtnExport: ",
                                     "OnShowMsg: strTitle strContent strDetail", "onNewDevice: pItem",
                                     "onDeleteDevice: ", "onUpdateDevice: ", "OnTreeSelectesChanged: ",
                                     "onCellCheckStateChanged: nRow nColumn", "onHeaderCheckStateChanged: ",
                                     "onSortTableWidget:  bAscending", "onBeginThread: lCamerID nThreadType",
                                     "onEndThread: lCameraID nThreadType strFilePath",
                                     "onThreadInfo: nDeviceID strMsg bFailed",
                                     "onBackClicked: ", "OnApplicationStateChange: "}));
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

void tst_MainWidget_Construction::CustomEvent_Null_IsIgnored()
{
    struct Access : MainWidget
    {
        using MainWidget::customEvent;
    };
    WindowFixture fixture;
    (fixture.m_pWindow.get()->*&Access::customEvent)(nullptr);
    QCOMPARE(fixture.Button("ImportBtn")->text(), QString("Import"));
}

void tst_MainWidget_Construction::ChangeEvent_OtherType_GoesOnToTheFrame()
{
    WindowFixture fixture;
    fixture.Show();
    QVERIFY(!fixture.m_pWindow->layout()->contentsMargins().isNull());
    fixture.m_pWindow->setWindowState(Qt::WindowMaximized);
    QTRY_VERIFY(fixture.m_pWindow->layout()->contentsMargins().isNull()); // a frame at the screen's edge
}

void tst_MainWidget_Construction::MaxCameraNum_SettingChanged_IsTheNewOne()
{
    WindowFixture fixture(5);
    QCOMPARE(fixture.m_pWindow->GetMaxCameraNum(), 5);
    fixture.WriteSettings("ENG", 7);
    QCOMPARE(fixture.m_pWindow->GetMaxCameraNum(), 7);
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

// Interrupting shows as a wake-up of the event loop.
void tst_MainWidget_Construction::ApplicationState_Active_TheThreeCallsComeInTheirOrder()
{
    if (!QThread::currentThread()->eventDispatcher()->inherits("QEventDispatcherGlib"))
        QSKIP("needs the GLib event loop");
    WindowFixture fixture;
    QCoreApplication::processEvents();
    fixture.m_pWindow->setAttribute(Qt::WA_Mapped, false);
    QStringList listCalls;
    const auto note = [&](const char *pCall) {
        listCalls.append(QString(pCall) +
                         (fixture.m_pWindow->testAttribute(Qt::WA_Mapped) ? ", mapped" : ", not mapped"));
    };
    QTimer::singleShot(0, qApp, [&] { note("events"); });
    whenWokenUp = [&] { note("interrupt"); };
    fixture.m_pWindow->OnApplicationStateChange(Qt::ApplicationActive);
    whenWokenUp = nullptr;
    QCOMPARE(listCalls, QStringList({"interrupt, mapped", "events, mapped"}));
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
