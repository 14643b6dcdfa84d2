#ifndef UI_MAINWIDGET_H
#define UI_MAINWIDGET_H

#include <QMap>
#include <QVector>

#include <StyleCtl/tarncustommainwindow.h>

#include "batchcourse.h"
#include "batchworkers.h"
#include "camerarows.h"
#include "groupfilter.h"
#include "resultpage.h"
#include "rowprogress.h"
#include "tickrules.h"

class LumoDeviceTree;
class QFrame;
class QHBoxLayout;
class QOperateThread;
class QStackedWidget;
class QTreeWidgetItem;
class QVBoxLayout;
class TarnCustomLabel;
class TarnCustomLoadingDialog;
class TarnCustomPushButton;
class TarnCustomTableWidget;
struct _STRUCT_DEVICE_INFO_;

/// The tool's window: the device tree, the table of the cameras it found, and the batches that import and
/// export their features.
///
/// The table has one row per camera at its top and empty rows below, so that it never has fewer than ten.
/// A batch gives each ticked, visible camera to a worker of its own; the window is disabled until the last
/// one ends, and cannot be closed meanwhile. All of it lives in the GUI thread; the workers are heard
/// through queued signals only.
///
/// It puts its parts together and forwards to them: what the rows, the ticks, the batch and the counts mean
/// is theirs, and so are the tests of it. They keep no state: they work on the members here.
///
/// Object names: "ToolTree", "DeviceTable", "ImportBtn", "ExportBtn", "BackBtn", "PageStack",
/// "OperatePage", "ResultPage", "TotalNumLabel", "DoingLabel", "SuccessNumLabel", "SuccessLabel",
/// "FailedNumLabel", "FailedLabel".
class MainWidget : public TarnCustomMainWindow
{
    Q_OBJECT

public:
    /// Throws std::bad_alloc when a part of the window cannot be set up.
    explicit MainWidget(QWidget *parent = nullptr);

    /// Waits for workers that are still at work.
    ~MainWidget() override;

    /// Rows with a camera, hidden ones included.
    int GetCameraNum();
    /// Visible rows that are ticked.
    int GetCheckedNum();
    /// Visible rows that can be ticked.
    int GetEnabledNum();
    /// Most cameras that the installation lets a batch have.
    int GetMaxCameraNum();
    /// Row of a camera; -1 when it has none.
    int rowFromDeviceID(int nDeviceID);

public slots:
    void OnBtnRefresh();
    void OnEndRefresh();
    void OnBtnImport();
    void OnBtnExport();
    /// Shows a message and waits until it is closed; an empty title is "Prompt".
    void OnShowMsg(QString strTitle, QString strContent, QString strDetail);
    void onNewDevice(QTreeWidgetItem *pItem);
    void onDeleteDevice(QTreeWidgetItem *);
    void onUpdateDevice(QTreeWidgetItem *);
    void OnTreeSelectesChanged();
    void onCellCheckStateChanged(int nRow, int nColumn);
    void onHeaderCheckStateChanged(int);
    void onSortTableWidget(int, bool bAscending);
    void onBeginThread(long lCamerID, unsigned int nThreadType);
    void onEndThread(long lCameraID, unsigned int nThreadType, QString strFilePath);
    void onThreadInfo(long nDeviceID, const QString &strMsg, bool bFailed);
    void onBackClicked();
    void OnApplicationStateChange(Qt::ApplicationState);

protected:
    /// Ignored while a batch runs.
    void closeEvent(QCloseEvent *pEvent) override;
    /// Type 1100: the language of the installation has changed.
    void customEvent(QEvent *pEvent) override;
    void changeEvent(QEvent *pEvent) override;

private:
    // ---- Construction (mainwidget.cpp, mainwidget_layout.cpp) ------------------------------------------
    bool InitWidget();
    bool CreatCtrls();
    bool InitSlots();
    bool InitLayout();
    void CreateButtons();
    void CreatePages();
    void NameCtrls();
    void LayoutOperatePage();
    void ShowTitle();
    void translate();
    void Release();
    void EnabledOperateCtrls(bool bEnable);
    void EnabledRefreshBtn(bool);

    // ---- Device table (mainwidget_table.cpp) -----------------------------------------------------------
    void InitTableWidget();
    void InitDeviceTree();
    void updateDeviceInfo(int nRow, const QVariant &deviceInfo, const QString &strInterfaceType);
    void UpdateItemVisible(int nRow);
    void getCheckedDeviceInfo(QVector<_STRUCT_DEVICE_INFO_> &vecDevice);

    // ---- Batch (mainwidget_batch.cpp) ------------------------------------------------------------------
    QString StartFolder() const;
    QString BusyText(unsigned int nType) const;
    void setAndStartThread(unsigned int nType, QString strPath);
    QOperateThread *getOperateThread(long nDeviceID);
    bool IsLateSignal(long nDeviceID) const;
    void ClearOperateStatus();
    bool IsThreadRunning();
    void ShowLoadingDlg(bool bShow, QString strText);
    void ConnectWorker(QOperateThread *pThread);
    void ShowBatchEnd(unsigned int nThreadType, const QString &strFilePath);

    bool m_bHasSucceeded = false;
    qint32 m_nRunningNum = 0;
    qint32 m_nSuccessNum = 0;
    qint32 m_nFailedNum = 0;
    quint32 m_nOperateType = ~0u; // no operation yet
    LumoDeviceTree *m_pDeviceTree = nullptr;
    TarnCustomTableWidget *m_pTableWidget = nullptr;
    QFrame *m_pLineFrame = nullptr;
    QHBoxLayout *m_pOperateLayout = nullptr;
    TarnCustomPushButton *m_pImportBtn = nullptr;
    TarnCustomPushButton *m_pExportBtn = nullptr;
    TarnCustomLoadingDialog *m_pLoadingDlg = nullptr;
    QHBoxLayout *m_pSpareLayout = nullptr;
    QVBoxLayout *m_pMainLayout = nullptr;
    QMap<long, QOperateThread *> m_mapThread; // by device identifier; owned, kept for later batches
    qint32 m_nMaxCameraNum = 0;
    QString m_strFilePath; // file or folder that was chosen last
    TarnCustomLabel *m_pTotalNumLabel = nullptr;
    TarnCustomLabel *m_pDoingLabel = nullptr;
    TarnCustomLabel *m_pSuccessNumLabel = nullptr;
    TarnCustomLabel *m_pSuccessLabel = nullptr;
    TarnCustomLabel *m_pFailedNumLabel = nullptr;
    TarnCustomLabel *m_pFailedLabel = nullptr;
    QWidget *m_pResultPage = nullptr;
    QWidget *m_pOperatePage = nullptr;
    QStackedWidget *m_pStackedWidget = nullptr;
    TarnCustomPushButton *m_pBackBtn = nullptr;

    // The parts. Each is given the members above that it works on, so they come behind them.
    CameraRows m_rows{m_pTableWidget};
    GroupFilter m_filter{m_pTableWidget, m_pDeviceTree};
    TickRules m_ticks;
    RowProgress m_progress{m_pTableWidget};
    ResultPage m_results;
    BatchWorkers m_workers;
    BatchCourse m_batch;
};

#endif
