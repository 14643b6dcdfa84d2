#include <QtTest>

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustompushbutton.h>
#include <camerafarm.h>
#include <language/languageversion.h>
#include <modalhands.h>

#include "toolwindow.h"

namespace {

const int kCameras = 4;
const QStringList kSerials{"SIM0001", "SIM0002", "SIM0003", "SIM0004"};
const QByteArray kFirst = "127.61.1.1";
const int kSearchLimitMs = ToolWindow::kSearchLimitMs;

} // namespace

/// The real window with the real camera SDK and simulated cameras, operated by mouse and keyboard.
class tst_WindowCameras : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void Rows_CamerasFound_ShowThem();
    void Message_Shown_StandsOverTheWindow();
    void Tick_ByMouseAndKeyboard_EnablesTheButtons();
    void Header_Ticked_TicksAll();
    void Sort_ByClicks_TurnsTheOrder();
    void Filter_GroupSelected_ShowsItsCameras();
    void Export_AllCameras_WritesAFileEach();
    void Import_ExportedFile_GoesIntoEveryCamera();
    void Language_EventPosted_WindowChanges();
    void Batch_CloseRequested_WindowStays();
    void Batch_CameraUnplugged_CostsItsRowAlone();
    void Camera_UnpluggedAndBack_KeepsItsIdentifier();
    void Camera_TakenByAnotherClient_CannotBeTicked();

private:
    MainWidget &Window() const { return m_pTool->Window(); }
    WindowHands Hands() const { return m_pTool->Hands(); }
    TarnCustomTableWidget *Table() const { return Hands().Table(); }
    LumoDeviceTree *Tree() const { return Hands().Tree(); }
    QString Text(int nRow, int nColumn) const { return Hands().Text(nRow, nColumn); }
    QStringList Serials() const { return Hands().Serials(); }
    QString FileOf(int nRow) const;

    CameraFarm m_farm;
    std::unique_ptr<ToolWindow> m_pTool;
};

QString tst_WindowCameras::FileOf(int nRow) const
{
    return m_pTool->Home() + '/' + Text(nRow, 2) + '_' + Text(nRow, 4) + ".kfb";
}

void tst_WindowCameras::initTestCase()
{
    if (const QString strWhy = WindowTestObstacle(); !strWhy.isEmpty())
        QSKIP(qPrintable(strWhy));
    QVERIFY2(m_farm.Start({"--count", QString::number(kCameras), "--first-address", kFirst}),
             qPrintable(m_farm.Error()));
}

void tst_WindowCameras::init()
{
    QCOMPARE(m_farm.Command("clear *"), QByteArray("ok"));
    m_pTool = std::make_unique<ToolWindow>();
    m_pTool->Show(kCameras);
}

void tst_WindowCameras::cleanup()
{
    SetLanguageVersion("ENG");
    m_pTool.reset();
}

void tst_WindowCameras::Rows_CamerasFound_ShowThem()
{
    QCOMPARE(Serials(), kSerials);
    QCOMPARE(Text(0, 5), QString("GigE Vision - lo"));
    QVERIFY(!Text(0, 2).isEmpty());
    QVERIFY(!Text(0, 6).isEmpty());
    QCOMPARE(Tree()->findItem(LumoDeviceTree::AllCamerasItem, -1)->text(1), QString::number(kCameras));
}

void tst_WindowCameras::Message_Shown_StandsOverTheWindow()
{
    QTRY_VERIFY(!Window().pos().isNull()); // the display's corner is not where it is put
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        QTRY_COMPARE((pBox->geometry().center() - Window().geometry().center()).manhattanLength() < 10, true);
        QTest::keyClick(pBox, Qt::Key_Return);
    });
    Window().OnShowMsg("title", "content", "detail");
    QVERIFY(hands.AllDone());
}

void tst_WindowCameras::Tick_ByMouseAndKeyboard_EnablesTheButtons()
{
    Hands().ClickRow(1);
    QCOMPARE(Window().GetCheckedNum(), 1);
    QVERIFY(Window().findChild<TarnCustomPushButton *>("ExportBtn")->isEnabled());
    Hands().ClickRow(1);
    QCOMPARE(Window().GetCheckedNum(), 0);
    Table()->setFocus();
    QTest::keyClick(Table(), Qt::Key_Down);
    QTest::keyClick(Table(), Qt::Key_Space);
    QCOMPARE(Table()->cellCheckState(2, 0), Qt::Checked);
    QVERIFY(Window().findChild<TarnCustomPushButton *>("ImportBtn")->isEnabled());
}

void tst_WindowCameras::Header_Ticked_TicksAll()
{
    Hands().ClickHeader(0);
    QCOMPARE(Window().GetCheckedNum(), kCameras);
    Hands().ClickHeader(0);
    QCOMPARE(Window().GetCheckedNum(), 0);
}

void tst_WindowCameras::Sort_ByClicks_TurnsTheOrder()
{
    Hands().ClickHeader(4);
    QCOMPARE(Serials(), kSerials);
    Hands().ClickHeader(4);
    QStringList listTurned = kSerials;
    std::reverse(listTurned.begin(), listTurned.end());
    QCOMPARE(Serials(), listTurned);
}

void tst_WindowCameras::Filter_GroupSelected_ShowsItsCameras()
{
    QTreeWidgetItem *pCamera = Tree()->findCameraItem(1);
    QVERIFY(pCamera);
    WindowHands::Click(Tree()->viewport(), Tree()->visualItemRect(pCamera).center());
    QCOMPARE(Window().GetEnabledNum(), 0); // a camera is no group
    WindowHands::Click(Tree()->viewport(), Tree()->visualItemRect(pCamera->parent()).center());
    QCOMPARE(Window().GetEnabledNum(), kCameras);
}

void tst_WindowCameras::Export_AllCameras_WritesAFileEach()
{
    Hands().TickAll();
    const WindowHands::Batch batch = Hands().Export(m_pTool->Home());
    QCOMPARE(batch.strMessage, QString("Exporting process is over."));
    QCOMPARE(Hands().Counts(), QString("0, 4, 0"));
    const QStringList listFiles = QDir(m_pTool->Home()).entryList({"*.kfb"}, QDir::Files);
    QCOMPARE(listFiles.size(), kCameras);
    for (int nRow = 0; nRow < kCameras; ++nRow) {
        QCOMPARE(Text(nRow, 8), QString("Exported."));
        QFile file(FileOf(nRow));
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
        const QByteArray text = file.readAll();
        QVERIFY(text.contains("<DeviceModelName>" + Text(nRow, 2).toUtf8() + "</DeviceModelName>"));
        QVERIFY(text.count("<Feature>") > 5);
    }
}

void tst_WindowCameras::Import_ExportedFile_GoesIntoEveryCamera()
{
    Hands().TickAll();
    Hands().Export(m_pTool->Home());
    Hands().Press("BackBtn");
    const WindowHands::Batch batch = Hands().Import(FileOf(0));
    QCOMPARE(batch.strMessage, QString("Importing process is over."));
    QCOMPARE(Hands().Counts(), QString("0, 4, 0"));
    QCOMPARE(Text(3, 8), QString("Imported."));
}

void tst_WindowCameras::Language_EventPosted_WindowChanges()
{
    QVERIFY(QDir(m_pTool->Home()).mkdir("lumo"));
    QFile file(m_pTool->Home() + "/lumo/installation.conf");
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("Language=CH\n");
    file.close();
    QCoreApplication::postEvent(&Window(), new QEvent(QEvent::Type(1100)));
    QTRY_COMPARE(Window().findChild<TarnCustomPushButton *>("ExportBtn")->text(), QString::fromUtf8("导出"));
    QCOMPARE(Table()->horizontalHeaderItem(4)->text(), QString::fromUtf8("序列号"));
    QCOMPARE(Serials(), kSerials);
}

void tst_WindowCameras::Batch_CloseRequested_WindowStays()
{
    Hands().TickAll();
    QCOMPARE(m_farm.Command("set * latency-us 5000"), QByteArray("ok"));
    const auto tryToClose = [&](QWidget *pBusy) {
        QTRY_COMPARE(Hands().Counts(), QString("4, 0, 0"));
        QVERIFY(!Window().close());
        QTest::keyClick(pBusy, Qt::Key_Escape);
        QVERIFY(pBusy->isVisible());
        QVERIFY(Window().isVisible());
        QVERIFY(!Window().isEnabled());
    };
    Hands().Export(m_pTool->Home(), {nullptr, tryToClose, nullptr});
    QCOMPARE(Hands().Counts(), QString("0, 4, 0"));
    QVERIFY(Window().close());
}

void tst_WindowCameras::Batch_CameraUnplugged_CostsItsRowAlone()
{
    Hands().TickAll();
    QCOMPARE(m_farm.Command("set * latency-us 5000"), QByteArray("ok"));
    const auto unplug = [&](QWidget *) {
        QTRY_COMPARE(Hands().Counts(), QString("4, 0, 0"));
        QCOMPARE(m_farm.Command("unplug SIM0002"), QByteArray("ok"));
    };
    Hands().Export(m_pTool->Home(), {nullptr, unplug, nullptr});
    const int nRow = Hands().RowOf("SIM0002");
    QVERIFY(nRow >= 0);
    QCOMPARE(Hands().Counts(), QString("0, 3, 1"));
    QCOMPARE(Text(nRow, 8), QString("Failed to export features.Failed to open device."));
    QCOMPARE(Table()->item(nRow, 8)->foreground(), QBrush(Qt::red));
    QVERIFY(Window().isEnabled());
    QTRY_COMPARE_WITH_TIMEOUT(Window().GetCameraNum(), kCameras - 1, kSearchLimitMs);
    QCOMPARE(m_farm.Command("plug SIM0002"), QByteArray("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(Window().GetCameraNum(), kCameras, kSearchLimitMs);
}

void tst_WindowCameras::Camera_UnpluggedAndBack_KeepsItsIdentifier()
{
    const int nDeviceID = Table()->item(Hands().RowOf("SIM0003"), 0)->data(Qt::UserRole + 1).toInt();
    QCOMPARE(m_farm.Command("unplug SIM0003"), QByteArray("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(Window().GetCameraNum(), kCameras - 1, kSearchLimitMs);
    QCOMPARE(Hands().RowOf("SIM0003"), -1);
    QCOMPARE(m_farm.Command("plug SIM0003"), QByteArray("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(Window().GetCameraNum(), kCameras, kSearchLimitMs);
    QCOMPARE(Table()->item(Hands().RowOf("SIM0003"), 0)->data(Qt::UserRole + 1).toInt(), nDeviceID);
}

void tst_WindowCameras::Camera_TakenByAnotherClient_CannotBeTicked()
{
    Hands().ClickRow(0);
    QVERIFY(Table()->cellCheckState(0, 0) == Qt::Checked);
    QCOMPARE(m_farm.Command("set SIM0001 control-held 1"), QByteArray("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(Table()->item(0, 7)->data(Qt::UserRole + 3).toInt(), 3, kSearchLimitMs);
    QCOMPARE(Table()->cellCheckState(0, 0), Qt::Unchecked);
    Hands().ClickRow(0);
    QCOMPARE(Window().GetCheckedNum(), 0);
    QCOMPARE(m_farm.Command("clear SIM0001"), QByteArray("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(Table()->item(0, 7)->data(Qt::UserRole + 3).toInt(), 1, kSearchLimitMs);
}

int main(int argc, char **argv)
{
    return RunWindowTest<tst_WindowCameras>(argc, argv);
}
#include "tst_window_cameras.moc"
