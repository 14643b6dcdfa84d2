#include "mainwidget.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustomlabel.h>
#include <StyleCtl/tarncustomlinewidget.h>
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

TarnCustomLineWidget *MakeDivider()
{
    auto *pLine = new TarnCustomLineWidget;
    pLine->setFixedSize(1, 20);
    pLine->cSetLineType(TarnCustomLineWidget::SolidLine);
    pLine->cSetBackgroundColor(QColor(QStringLiteral("#BFBFBF")));
    return pLine;
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
    CreateLabels();
    NameCtrls();
    return true;
}

void MainWidget::CreateButtons()
{
    m_pImportBtn = MakeOperateButton(tr("Import"), QStringLiteral("ImportBtn"));
    m_pExportBtn = MakeOperateButton(tr("Export"), QStringLiteral("ExportBtn"));
}

void MainWidget::CreateLabels()
{
    for (TarnCustomLabel **ppLabel : {&m_pTotalNumLabel, &m_pDoingLabel, &m_pSuccessNumLabel,
                                      &m_pSuccessLabel, &m_pFailedNumLabel, &m_pFailedLabel})
        *ppLabel = new TarnCustomLabel;
    m_pResultPage = new QWidget;
    m_pOperatePage = new QWidget;
    m_pStackedWidget = new QStackedWidget;
    m_pBackBtn = new TarnCustomPushButton(TarnCustomPushButton::OutlineStyle);
    m_pBackBtn->setText(tr("Back"));
    m_pBackBtn->setFixedSize(86, 26);

    QFont countFont = m_pTotalNumLabel->font();
    countFont.setPixelSize(32);
    countFont.setWeight(QFont::Bold);
    countFont.setItalic(true);
    const auto initCount = [&](TarnCustomLabel *pLabel, const QString &strColor) {
        pLabel->setText(QStringLiteral("0"));
        pLabel->setFont(countFont);
        pLabel->setAlignment(Qt::AlignCenter);
        pLabel->setFixedWidth(50);
        pLabel->cSetFontColor(QColor(strColor));
    };
    initCount(m_pTotalNumLabel, QStringLiteral("#FAB700"));
    initCount(m_pSuccessNumLabel, QStringLiteral("#00D53C"));
    initCount(m_pFailedNumLabel, QStringLiteral("#FC2F2F"));

    for (TarnCustomLabel *pLabel : {m_pDoingLabel, m_pSuccessLabel, m_pFailedLabel}) {
        pLabel->cSetFontColor(QColor(QStringLiteral("#6C6C6C")));
        pLabel->cSetFontSize(12);
    }
    m_pFailedLabel->setText(tr("Failed"));
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
    LayoutResultPage();
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

void MainWidget::LayoutResultPage()
{
    auto *pLayout = new QHBoxLayout;
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    const auto addCount = [&](TarnCustomLabel *pCount, TarnCustomLabel *pText) {
        pLayout->addWidget(pCount);
        pLayout->addWidget(pText);
    };
    const auto addDivider = [&] {
        pLayout->addSpacing(20);
        pLayout->addWidget(MakeDivider());
        pLayout->addSpacing(20);
    };
    addCount(m_pTotalNumLabel, m_pDoingLabel);
    addDivider();
    addCount(m_pSuccessNumLabel, m_pSuccessLabel);
    addDivider();
    addCount(m_pFailedNumLabel, m_pFailedLabel);
    pLayout->addStretch();
    pLayout->addWidget(m_pBackBtn);
    m_pResultPage->setLayout(pLayout);
}
