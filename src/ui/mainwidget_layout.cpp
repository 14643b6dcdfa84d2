#include "mainwidget.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustomlabel.h>
#include <StyleCtl/tarncustomloadingdialog.h>
#include <StyleCtl/tarncustompushbutton.h>
#include <StyleCtl/tarncustomtablewidget.h>

namespace {

TarnCustomPushButton *MakeOperateButton(const QString &strText, const QString &strName)
{
    auto *pButton = new TarnCustomPushButton(TarnCustomPushButton::OutlineStyle);
    pButton->setText(strText);
    pButton->setObjectName(strName);
    pButton->setFixedSize(70, 26);
    pButton->cSetBorderColor(QColor(QStringLiteral("#f76900")), TarnCustom::BorderAll,
                             TarnCustom::StateNormal);
    return pButton;
}

} // namespace

bool MainWidget::CreatCtrls()
{
    m_pTableWidget = new TarnCustomTableWidget(this);
    m_pDeviceTree = new LumoDeviceTree(this);
    InitTableWidget();
    m_pLineFrame = new QFrame;
    m_pLineFrame->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    m_pOperateLayout = new QHBoxLayout;
    CreateButtons();
    m_pLoadingDlg = new TarnCustomLoadingDialog(this);
    m_pSpareLayout = new QHBoxLayout;
    m_pMainLayout = new QVBoxLayout;
    m_results.Create();
    CreatePages();
    NameCtrls();
    return true;
}

void MainWidget::CreateButtons()
{
    m_pImportBtn = MakeOperateButton(tr("Import"), QStringLiteral("ImportBtn"));
    m_pExportBtn = MakeOperateButton(tr("Export"), QStringLiteral("ExportBtn"));
}

void MainWidget::CreatePages()
{
    m_pResultPage = new QWidget;
    m_pOperatePage = new QWidget;
    m_pStackedWidget = new QStackedWidget;
    m_pBackBtn = new TarnCustomPushButton(TarnCustomPushButton::OutlineStyle);
    m_pBackBtn->setText(tr("Back"));
    m_pBackBtn->setFixedSize(86, 26);
}

void MainWidget::NameCtrls()
{
    m_pTableWidget->setObjectName(QStringLiteral("DeviceTable"));
    m_pBackBtn->setObjectName(QStringLiteral("BackBtn"));
    m_pStackedWidget->setObjectName(QStringLiteral("PageStack"));
    m_pOperatePage->setObjectName(QStringLiteral("OperatePage"));
    m_pResultPage->setObjectName(QStringLiteral("ResultPage"));
    m_pTotalNumLabel->setObjectName(QStringLiteral("TotalNumLabel"));
    m_pDoingLabel->setObjectName(QStringLiteral("DoingLabel"));
    m_pSuccessNumLabel->setObjectName(QStringLiteral("SuccessNumLabel"));
    m_pSuccessLabel->setObjectName(QStringLiteral("SuccessLabel"));
    m_pFailedNumLabel->setObjectName(QStringLiteral("FailedNumLabel"));
    m_pFailedLabel->setObjectName(QStringLiteral("FailedLabel"));
}

bool MainWidget::InitLayout()
{
    if (!m_pOperateLayout || !m_pExportBtn || !m_pMainLayout)
        return false;
    LayoutOperatePage();
    m_results.Layout(m_pResultPage, m_pBackBtn);
    m_pStackedWidget->addWidget(m_pOperatePage);
    m_pStackedWidget->addWidget(m_pResultPage);
    m_pStackedWidget->setCurrentWidget(m_pOperatePage);
    m_pStackedWidget->setFixedHeight(57);

    auto *pBodyLayout = new QHBoxLayout;
    pBodyLayout->setContentsMargins(0, 0, 0, 0);
    pBodyLayout->setSpacing(0);
    pBodyLayout->addWidget(m_pDeviceTree);
    pBodyLayout->addWidget(m_pTableWidget);

    m_pMainLayout->setContentsMargins(25, 0, 25, 20);
    m_pMainLayout->setSpacing(0);
    m_pMainLayout->addWidget(m_pStackedWidget);
    m_pMainLayout->addLayout(pBodyLayout);
    m_pMainLayout->addSpacing(0);

    auto *pCentral = new QWidget;
    pCentral->setLayout(m_pMainLayout);
    cSetCentralWidget(pCentral);
    return true;
}

void MainWidget::LayoutOperatePage()
{
    m_pOperateLayout->setContentsMargins(0, 0, 0, 0);
    m_pOperateLayout->setSpacing(0);
    m_pOperateLayout->addWidget(m_pImportBtn);
    m_pOperateLayout->addSpacing(10);
    m_pOperateLayout->addWidget(m_pExportBtn);
    m_pOperateLayout->addStretch();
    m_pOperatePage->setLayout(m_pOperateLayout);
}
