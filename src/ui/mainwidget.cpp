#include "mainwidget.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QStackedWidget>
#include <QThread>
#include <QTreeWidget>

#include <new>

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomloadingdialog.h>
#include <StyleCtl/tarncustompushbutton.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <StyleCtl/tarncustomtitlebar.h>
#include <ToolBase/lumointerface.h>
#include <language/languageversion.h>

#include "helddeletes.h"

namespace {

const int kLanguageEvent = QEvent::User + 100; // posted by the program that changes the stored language

} // namespace

MainWidget::MainWidget(QWidget *parent)
    : TarnCustomMainWindow(parent)
    , m_ticks(m_pTableWidget, m_nMaxCameraNum,
              {[this](bool bEnable) { EnabledOperateCtrls(bEnable); },
               [this](const QString &strText) { OnShowMsg(tr("Prompt"), strText, QString()); }})
    , m_results({m_pTotalNumLabel, m_pDoingLabel, m_pSuccessNumLabel, m_pSuccessLabel, m_pFailedNumLabel,
                 m_pFailedLabel})
    , m_workers(m_mapThread, this, [this](QOperateThread *pThread) { ConnectWorker(pThread); })
    , m_batch({m_bHasSucceeded, m_nRunningNum, m_nSuccessNum, m_nFailedNum}, {m_rows, m_progress, m_results},
              {[this](const StructDeviceInfo &stDeviceInfo, unsigned int nType, const QString &strPath) {
                   return m_workers.Start(stDeviceInfo, nType, strPath);
               },
               [this] { setEnabled(true); }, [this] { ShowLoadingDlg(false, QString()); },
               [this](unsigned int nType, const QString &strPath) { ShowBatchEnd(nType, strPath); }},
              this)
{
    cSetBackgroundColor(QColor(QStringLiteral("#F2F3F5")), TarnCustom::StateNormal);
    cSetStrechEdges(TarnCustom::StrechAllButTop);
    cEnableDefualtShadow();
    if (!InitWidget())
        throw std::bad_alloc();
    EnabledOperateCtrls(false); // until a camera is ticked
}

MainWidget::~MainWidget()
{
    Release();
}

bool MainWidget::InitWidget()
{
    ShowTitle();
    if (cTitleBar())
        cTitleBar()->setFixedHeight(37);
    resize(1058, 632);
    setMinimumWidth(1058);
    if (!CreatCtrls() || !InitSlots() || !InitLayout())
        return false;
    m_nMaxCameraNum = GetMaxCameraNum();
    return true;
}

bool MainWidget::InitSlots()
{
    connect(m_pImportBtn, SIGNAL(clicked()), this, SLOT(OnBtnImport()));
    connect(m_pExportBtn, SIGNAL(clicked()), this, SLOT(OnBtnExport()));
    connect(m_pTableWidget, &TarnCustomTableWidget::SigCellCheckStateChanged, this,
            &MainWidget::onCellCheckStateChanged);
    if (TarnCustomCheckHeaderView *pHeader = m_ticks.Header()) {
        connect(pHeader, &TarnCustomCheckHeaderView::SigCheckStateChange, this,
                &MainWidget::onHeaderCheckStateChanged);
        connect(pHeader, &TarnCustomSortHeaderView::SigSortByColumn, this, &MainWidget::onSortTableWidget);
    }
    connect(m_pDeviceTree, SIGNAL(sigNewDeviceItem(QTreeWidgetItem *)), this,
            SLOT(onNewDevice(QTreeWidgetItem *)));
    connect(m_pDeviceTree, SIGNAL(sigUpdateDeviceItem(QTreeWidgetItem *)), this,
            SLOT(onUpdateDevice(QTreeWidgetItem *)));
    connect(m_pDeviceTree, SIGNAL(sigDeleteDeviceItem(QTreeWidgetItem *)), this,
            SLOT(onDeleteDevice(QTreeWidgetItem *)));
    connect(m_pDeviceTree, SIGNAL(itemSelectionChanged()), this, SLOT(OnTreeSelectesChanged()));
    connect(m_pBackBtn, SIGNAL(clicked()), this, SLOT(onBackClicked()));
    connect(qApp, SIGNAL(applicationStateChanged(Qt::ApplicationState)), this,
            SLOT(OnApplicationStateChange(Qt::ApplicationState)));
    return true;
}

void MainWidget::ShowTitle()
{
    const QString strTitle = tr("Import/Export Features");
    if (cTitleBar())
        cTitleBar()->cSetText(QStringLiteral("%1 %2").arg(strTitle, LumoInterface::curExeVersion()));
    setWindowTitle(strTitle);
}

void MainWidget::translate()
{
    m_rows.SetTexts();
    ShowTitle();
    m_pImportBtn->setText(tr("Import"));
    m_pExportBtn->setText(tr("Export"));
    m_pBackBtn->setText(tr("Back"));
    m_results.SetTexts(m_nOperateType);
}

void MainWidget::Release()
{
    m_workers.DeleteAll();
    const auto release = [](auto *&pObject) {
        delete pObject;
        pObject = nullptr;
    };
    release(m_pLineFrame);
    release(m_pTableWidget);
    release(m_pImportBtn);
    release(m_pExportBtn);
    release(m_pOperateLayout);
    release(m_pSpareLayout);
    release(m_pMainLayout);
}

void MainWidget::EnabledOperateCtrls(bool bEnable)
{
    if (!m_pImportBtn || !m_pExportBtn)
        return;
    m_pImportBtn->setEnabled(bEnable);
    m_pExportBtn->setEnabled(bEnable);
}

// The tool has no refresh button: the device tree searches all the time. These two answer the tools' common
// interface.
void MainWidget::EnabledRefreshBtn(bool)
{
}

void MainWidget::OnBtnRefresh()
{
}

void MainWidget::OnEndRefresh()
{
    onCellCheckStateChanged(0, 0);
}

void MainWidget::onBackClicked()
{
    m_pStackedWidget->setCurrentWidget(m_pOperatePage);
}

void MainWidget::OnApplicationStateChange(Qt::ApplicationState state)
{
    if (state != Qt::ApplicationActive)
        return;
    // A window that was minimised by the window manager may come back without being told that it is mapped;
    // it would stay blank until the next event.
    setAttribute(Qt::WA_Mapped);
    // Qt sends the signal in the middle of making a window the active one, and goes on with that window: a
    // click that closes it, handled here, must not delete it yet.
    const HeldDeletes held;
    QThread::currentThread()->eventDispatcher()->interrupt();
    QCoreApplication::processEvents();
}

void MainWidget::closeEvent(QCloseEvent *pEvent)
{
    if (m_nRunningNum > 0 && IsThreadRunning()) {
        pEvent->ignore();
        return;
    }
    QDialog::closeEvent(pEvent);
}

void MainWidget::customEvent(QEvent *pEvent)
{
    if (!pEvent)
        return;
    if (pEvent->type() == kLanguageEvent)
        SetLanguageVersion(LumoInterface::language());
    pEvent->accept();
}

void MainWidget::changeEvent(QEvent *pEvent)
{
    // Without a table the window is being built or taken down.
    if (pEvent->type() == QEvent::LanguageChange && m_pTableWidget) {
        translate();
        ClearOperateStatus();
        const QString strBusy = BusyText(m_nOperateType);
        if (!strBusy.isEmpty())
            m_pLoadingDlg->SetLabelText(strBusy);
    }
    TarnCustomMainWindow::changeEvent(pEvent);
}
