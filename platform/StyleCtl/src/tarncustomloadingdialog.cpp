#include "tarncustomloadingdialog.h"

#include <QCloseEvent>
#include <QHBoxLayout>

#include "loadingspinner.h"
#include "tarncustomlabel.h"
#include "tarncustomtitlebar.h"

TarnCustomLoadingDialog::TarnCustomLoadingDialog(QWidget *pParent)
    : TarnCustomDialog(pParent)
{
    setObjectName(QStringLiteral("LoadingDlg"));
    setModal(true);
    cTitleBar()->hide();
    cEnableDefualtShadow();
    cSetBackgroundColor(Qt::white);

    auto *pContent = new QWidget;
    m_pSpinner = new LoadingSpinner;
    m_pLabel = new TarnCustomLabel;
    m_pLabel->setObjectName(QStringLiteral("LoadingLabel"));
    m_pLabel->setWordWrap(true);
    m_pLabel->setMinimumWidth(180);
    auto *pLayout = new QHBoxLayout(pContent);
    pLayout->setContentsMargins(28, 24, 32, 24);
    pLayout->setSpacing(18);
    pLayout->addWidget(m_pSpinner);
    pLayout->addWidget(m_pLabel, 1);
    cSetCentralWidget(pContent);
}

TarnCustomLoadingDialog::~TarnCustomLoadingDialog() = default;

void TarnCustomLoadingDialog::SetLabelText(const QString &text)
{
    m_pLabel->setText(text);
    setAccessibleName(text);
    setWindowTitle(text);
    if (isVisible())
        adjustSize();
}

QString TarnCustomLoadingDialog::LabelText() const
{
    return m_pLabel->text();
}

void TarnCustomLoadingDialog::closeEvent(QCloseEvent *pEvent)
{
    // Spontaneous: the window manager asks on behalf of the user.
    if (pEvent->spontaneous())
        pEvent->ignore();
    else
        TarnCustomDialog::closeEvent(pEvent);
}

void TarnCustomLoadingDialog::keyPressEvent(QKeyEvent *pEvent)
{
    // No key does anything here: QDialog's Escape would end the wait.
    pEvent->accept();
}
