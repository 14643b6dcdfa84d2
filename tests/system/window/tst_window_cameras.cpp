#include <QtTest>

#include <QResource>
#include <QStackedWidget>
#include <QStyleFactory>
#include <QTemporaryDir>

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomlabel.h>
#include <StyleCtl/tarncustompushbutton.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <ToolBase/lumointerface.h>
#include <app/languageversion.h>
#include <camerafarm.h>
#include <modalhands.h>
#include <ownnetwork.h>
#include <testdesktop.h>
#include <ui/mainwidget.h>

namespace {

const int CAMERAS = 4;
const QStringList SERIALS{"SIM0001", "SIM0002", "SIM0003", "SIM0004"};
const QByteArray FIRST = "127.61.1.1";
const int SEARCH_LIMIT_MS = 30000; // a camera that goes is missed three times first
const int BATCH_LIMIT_MS = 60000;

TestDesktop desktop;

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
    TarnCustomTableWidget *Table() const
    {
        return m_pWindow->findChild<TarnCustomTableWidget *>("DeviceTable");
    }
    LumoDeviceTree *Tree() const { return m_pWindow->findChild<LumoDeviceTree *>("ToolTree"); }
    QString Text(int nRow, int nColumn) const { return Table()->item(nRow, nColumn)->text(); }
    QStringList Serials() const;
    int RowOf(const QString &strSerial) const { return Serials().indexOf(strSerial); }
    QString Counts() const;
    void Click(QWidget *pWidget, const QPoint &point)
    {
        QTest::mouseClick(pWidget, Qt::LeftButton, {}, point);
    }
    void ClickHeader(int nColumn);
    void ClickRow(int nRow);
    void Press(const QString &strButton);
    void TickAll();
    void Export(ModalHands &hands, const ModalHands::Handler &whileBusy = nullptr);

    CameraFarm m_farm;
    std::unique_ptr<QTemporaryDir> m_pHome;
    std::unique_ptr<MainWidget> m_pWindow;
};

QStringList tst_WindowCameras::Serials() const
{
    QStringList listSerials;
    for (int nRow = 0; nRow < m_pWindow->GetCameraNum(); ++nRow)
        listSerials.append(Text(nRow, 4));
    return listSerials;
}

QString tst_WindowCameras::Counts() const
{
    QStringList listCounts;
    for (const char *pName : {"TotalNumLabel", "SuccessNumLabel", "FailedNumLabel"})
        listCounts.append(m_pWindow->findChild<TarnCustomLabel *>(pName)->text());
    return listCounts.join(", ");
}

void tst_WindowCameras::ClickHeader(int nColumn)
{
    QHeaderView *pHeader = Table()->horizontalHeader();
    Click(pHeader->viewport(),
          QPoint(pHeader->sectionViewportPosition(nColumn) + pHeader->sectionSize(nColumn) / 2,
                 pHeader->height() / 2));
}

void tst_WindowCameras::ClickRow(int nRow)
{
    Click(Table()->viewport(), Table()->visualRect(Table()->model()->index(nRow, 0)).center());
}

void tst_WindowCameras::Press(const QString &strButton)
{
    auto *pButton = m_pWindow->findChild<TarnCustomPushButton *>(strButton);
    QVERIFY(pButton->isVisible() && pButton->isEnabled());
    QTest::mouseClick(pButton, Qt::LeftButton);
}

void tst_WindowCameras::TickAll()
{
    ClickHeader(0);
    QCOMPARE(m_pWindow->GetCheckedNum(), CAMERAS);
}

/// Exports the ticked cameras into the home directory; returns when the final dialog was closed.
void tst_WindowCameras::Export(ModalHands &hands, const ModalHands::Handler &whileBusy)
{
    hands.Then("QFileDialog", [&](QWidget *pDialog) { ModalHands::Choose(pDialog, m_pHome->path()); });
    if (whileBusy)
        hands.Then("LoadingDlg", whileBusy);
    hands.Then("SaveDoneHintDlg", [](QWidget *pDialog) { QTest::keyClick(pDialog, Qt::Key_Escape); });
    Press("ExportBtn");
    QTRY_VERIFY_WITH_TIMEOUT(hands.AllDone(), BATCH_LIMIT_MS);
}

void tst_WindowCameras::initTestCase()
{
    if (!desktop.Reason().isEmpty())
        QSKIP(qPrintable(desktop.Reason()));
    if (!CameraFarm::IsInstalled())
        QSKIP("kx-camera-farm is not built");
    QVERIFY2(m_farm.Start({"--count", QString::number(CAMERAS), "--first-address", FIRST}),
             qPrintable(m_farm.Error()));
    QResource::registerResource(LumoInterface::readonlyCfgPath() + "/rcc/lumo.rcc");
}

void tst_WindowCameras::init()
{
    QCOMPARE(m_farm.Command("clear *"), QByteArray("ok"));
    m_pHome = std::make_unique<QTemporaryDir>();
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_pHome->path()));
    m_pWindow = std::make_unique<MainWidget>();
    m_pWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow.get(), 20000));
    QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->GetEnabledNum() >= CAMERAS, SEARCH_LIMIT_MS);
    if (m_pWindow->GetCameraNum() > CAMERAS)
        QSKIP("there are other cameras, and the system does not allow a network of our own");
}

void tst_WindowCameras::cleanup()
{
    SetLanguageVersion("ENG");
    m_pWindow.reset();
}

void tst_WindowCameras::Rows_CamerasFound_ShowThem()
{
    QCOMPARE(Serials(), SERIALS);
    QCOMPARE(Text(0, 5), QString("GigE Vision - lo"));
    QVERIFY(!Text(0, 2).isEmpty());
    QVERIFY(!Text(0, 6).isEmpty());
    QCOMPARE(Tree()->findItem(LumoDeviceTree::AllCamerasItem, -1)->text(1), QString::number(CAMERAS));
}

void tst_WindowCameras::Message_Shown_StandsOverTheWindow()
{
    QTRY_VERIFY(!m_pWindow->pos().isNull()); // the display's corner is not where it is put
    ModalHands hands;
    hands.Then("MessageBox", [&](QWidget *pBox) {
        QTRY_COMPARE((pBox->geometry().center() - m_pWindow->geometry().center()).manhattanLength() < 10,
                     true);
        QTest::keyClick(pBox, Qt::Key_Return);
    });
    m_pWindow->OnShowMsg("title", "content", "detail");
    QVERIFY(hands.AllDone());
}

void tst_WindowCameras::Tick_ByMouseAndKeyboard_EnablesTheButtons()
{
    ClickRow(1);
    QCOMPARE(m_pWindow->GetCheckedNum(), 1);
    QVERIFY(m_pWindow->findChild<TarnCustomPushButton *>("ExportBtn")->isEnabled());
    ClickRow(1);
    QCOMPARE(m_pWindow->GetCheckedNum(), 0);
    Table()->setFocus();
    QTest::keyClick(Table(), Qt::Key_Down);
    QTest::keyClick(Table(), Qt::Key_Space);
    QCOMPARE(Table()->cellCheckState(2, 0), Qt::Checked);
    QVERIFY(m_pWindow->findChild<TarnCustomPushButton *>("ImportBtn")->isEnabled());
}

void tst_WindowCameras::Header_Ticked_TicksAll()
{
    TickAll();
    ClickHeader(0);
    QCOMPARE(m_pWindow->GetCheckedNum(), 0);
}

void tst_WindowCameras::Sort_ByClicks_TurnsTheOrder()
{
    ClickHeader(4);
    QCOMPARE(Serials(), SERIALS);
    ClickHeader(4);
    QStringList listTurned = SERIALS;
    std::reverse(listTurned.begin(), listTurned.end());
    QCOMPARE(Serials(), listTurned);
}

void tst_WindowCameras::Filter_GroupSelected_ShowsItsCameras()
{
    QTreeWidgetItem *pCamera = Tree()->findCameraItem(1);
    QVERIFY(pCamera);
    Click(Tree()->viewport(), Tree()->visualItemRect(pCamera).center());
    QCOMPARE(m_pWindow->GetEnabledNum(), 0); // a camera is no group
    Click(Tree()->viewport(), Tree()->visualItemRect(pCamera->parent()).center());
    QCOMPARE(m_pWindow->GetEnabledNum(), CAMERAS);
}

void tst_WindowCameras::Export_AllCameras_WritesAFileEach()
{
    TickAll();
    ModalHands hands;
    Export(hands);
    QCOMPARE(Counts(), QString("0, 4, 0"));
    const QStringList listFiles = QDir(m_pHome->path()).entryList({"*.kfb"}, QDir::Files);
    QCOMPARE(listFiles.size(), CAMERAS);
    for (int nRow = 0; nRow < CAMERAS; ++nRow) {
        QCOMPARE(Text(nRow, 8), QString("Exported."));
        QFile file(m_pHome->filePath(Text(nRow, 2) + '_' + Text(nRow, 4) + ".kfb"));
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
        const QByteArray text = file.readAll();
        QVERIFY(text.contains("<DeviceModelName>" + Text(nRow, 2).toUtf8() + "</DeviceModelName>"));
        QVERIFY(text.count("<Feature>") > 5);
    }
}

void tst_WindowCameras::Import_ExportedFile_GoesIntoEveryCamera()
{
    TickAll();
    ModalHands hands;
    Export(hands);
    Press("BackBtn");
    const QString strFile = m_pHome->filePath(Text(0, 2) + '_' + Text(0, 4) + ".kfb");
    QString strMessage;
    hands.Then("QFileDialog", [&](QWidget *pDialog) { ModalHands::Choose(pDialog, strFile); })
        .Then("MessageBox", [&](QWidget *pBox) {
            strMessage = pBox->findChild<QLabel *>("MessageContent")->text();
            QTest::keyClick(pBox, Qt::Key_Return);
        });
    Press("ImportBtn");
    QTRY_VERIFY_WITH_TIMEOUT(hands.AllDone(), BATCH_LIMIT_MS);
    QCOMPARE(strMessage, QString("Importing process is over."));
    QCOMPARE(Counts(), QString("0, 4, 0"));
    QCOMPARE(Text(3, 8), QString("Imported."));
}

void tst_WindowCameras::Language_EventPosted_WindowChanges()
{
    QVERIFY(QDir(m_pHome->path()).mkdir("lumo"));
    QFile file(m_pHome->filePath("lumo/installation.conf"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("Language=CH\n");
    file.close();
    QCoreApplication::postEvent(m_pWindow.get(), new QEvent(QEvent::Type(1100)));
    QTRY_COMPARE(m_pWindow->findChild<TarnCustomPushButton *>("ExportBtn")->text(),
                 QString::fromUtf8("导出"));
    QCOMPARE(Table()->horizontalHeaderItem(4)->text(), QString::fromUtf8("序列号"));
    QCOMPARE(Serials(), SERIALS);
}

void tst_WindowCameras::Batch_CloseRequested_WindowStays()
{
    TickAll();
    QCOMPARE(m_farm.Command("set * latency-us 5000"), QByteArray("ok"));
    ModalHands hands;
    Export(hands, [&](QWidget *pBusy) {
        QTRY_COMPARE(Counts(), QString("4, 0, 0"));
        QVERIFY(!m_pWindow->close());
        QTest::keyClick(pBusy, Qt::Key_Escape);
        QVERIFY(pBusy->isVisible());
        QVERIFY(m_pWindow->isVisible());
        QVERIFY(!m_pWindow->isEnabled());
    });
    QCOMPARE(Counts(), QString("0, 4, 0"));
    QVERIFY(m_pWindow->close());
}

void tst_WindowCameras::Batch_CameraUnplugged_CostsItsRowAlone()
{
    TickAll();
    QCOMPARE(m_farm.Command("set * latency-us 5000"), QByteArray("ok"));
    ModalHands hands;
    Export(hands, [&](QWidget *) {
        QTRY_COMPARE(Counts(), QString("4, 0, 0"));
        QCOMPARE(m_farm.Command("unplug SIM0002"), QByteArray("ok"));
    });
    const int nRow = RowOf("SIM0002");
    QVERIFY(nRow >= 0);
    QCOMPARE(Counts(), QString("0, 3, 1"));
    QCOMPARE(Text(nRow, 8), QString("Failed to export features.Failed to open device."));
    QCOMPARE(Table()->item(nRow, 8)->foreground(), QBrush(Qt::red));
    QVERIFY(m_pWindow->isEnabled());
    QTRY_COMPARE_WITH_TIMEOUT(m_pWindow->GetCameraNum(), CAMERAS - 1, SEARCH_LIMIT_MS);
    QCOMPARE(m_farm.Command("plug SIM0002"), QByteArray("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(m_pWindow->GetCameraNum(), CAMERAS, SEARCH_LIMIT_MS);
}

void tst_WindowCameras::Camera_UnpluggedAndBack_KeepsItsIdentifier()
{
    const int nDeviceID = Table()->item(RowOf("SIM0003"), 0)->data(Qt::UserRole + 1).toInt();
    QCOMPARE(m_farm.Command("unplug SIM0003"), QByteArray("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(m_pWindow->GetCameraNum(), CAMERAS - 1, SEARCH_LIMIT_MS);
    QCOMPARE(RowOf("SIM0003"), -1);
    QCOMPARE(m_farm.Command("plug SIM0003"), QByteArray("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(m_pWindow->GetCameraNum(), CAMERAS, SEARCH_LIMIT_MS);
    QCOMPARE(Table()->item(RowOf("SIM0003"), 0)->data(Qt::UserRole + 1).toInt(), nDeviceID);
}

void tst_WindowCameras::Camera_TakenByAnotherClient_CannotBeTicked()
{
    ClickRow(0);
    QVERIFY(Table()->cellCheckState(0, 0) == Qt::Checked);
    QCOMPARE(m_farm.Command("set SIM0001 control-held 1"), QByteArray("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(Table()->item(0, 7)->data(Qt::UserRole + 3).toInt(), 3, SEARCH_LIMIT_MS);
    QCOMPARE(Table()->cellCheckState(0, 0), Qt::Unchecked);
    ClickRow(0);
    QCOMPARE(m_pWindow->GetCheckedNum(), 0);
    QCOMPARE(m_farm.Command("clear SIM0001"), QByteArray("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(Table()->item(0, 7)->data(Qt::UserRole + 3).toInt(), 1, SEARCH_LIMIT_MS);
}

int main(int argc, char **argv)
{
    EnterOwnNetwork();
    desktop.Start();
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QCoreApplication::setAttribute(Qt::AA_NativeWindows);
    tst_WindowCameras test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_window_cameras.moc"
