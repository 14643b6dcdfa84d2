#include "tarncustomsavedonehintdlg.h"

#include <QDesktopServices>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QLineEdit>
#include <QUrl>

#include "hinticon.h"
#include "stylepainter.h"
#include "tarncustomlabel.h"
#include "tarncustompushbutton.h"
#include "tarncustomtitlebar.h"

TarnCustomSaveDoneHintDlg::TarnCustomSaveDoneHintDlg(QWidget *pParent, const QString &text,
                                                     const QString &path)
    : TarnCustomDialog(pParent)
{
    setObjectName(QStringLiteral("SaveDoneHintDlg"));
    cEnableDefualtShadow();
    cSetBackgroundColor(Qt::white);

    m_pText = new TarnCustomLabel;
    m_pText->setObjectName(QStringLiteral("SaveDoneText"));
    m_pText->setWordWrap(true);
    m_pPath = new QLineEdit;
    m_pPath->setObjectName(QStringLiteral("SaveDonePath"));
    m_pPath->setReadOnly(true);
    m_pError = new TarnCustomLabel;
    m_pError->setObjectName(QStringLiteral("SaveDoneError"));
    m_pError->cSetFontColor(StylePainter::ErrorRed);
    m_pError->setWordWrap(true);
    m_pError->hide();
    m_pOpenBtn = new TarnCustomPushButton(TarnCustomPushButton::OutlineStyle);
    m_pOpenBtn->setObjectName(QStringLiteral("OpenFolderBtn"));
    m_pOpenBtn->setMinimumWidth(86);
    m_pCloseBtn = new TarnCustomPushButton(TarnCustomPushButton::FilledStyle);
    m_pCloseBtn->setObjectName(QStringLiteral("SaveDoneCloseBtn"));
    m_pCloseBtn->setMinimumWidth(86);
    m_pCloseBtn->setDefault(true);
    connect(m_pOpenBtn, &QPushButton::clicked, this, &TarnCustomSaveDoneHintDlg::OpenFolder);
    connect(m_pCloseBtn, &QPushButton::clicked, this, &QWidget::close);

    auto *pButtons = new QHBoxLayout;
    pButtons->setSpacing(10);
    pButtons->addStretch();
    pButtons->addWidget(m_pOpenBtn);
    pButtons->addWidget(m_pCloseBtn);
    auto *pCentral = new QWidget;
    auto *pLayout = new QGridLayout(pCentral);
    pLayout->setContentsMargins(24, 22, 24, 18);
    pLayout->setHorizontalSpacing(16);
    pLayout->setVerticalSpacing(10);
    pLayout->addWidget(new HintIcon(HintIcon::Done), 0, 0, Qt::AlignTop);
    pLayout->addWidget(m_pText, 0, 1);
    pLayout->addWidget(m_pPath, 1, 1);
    pLayout->addWidget(m_pError, 2, 1);
    pLayout->setRowMinimumHeight(3, 4);
    pLayout->addLayout(pButtons, 4, 0, 1, 2);
    pLayout->setColumnStretch(1, 1);
    cSetCentralWidget(pCentral);
    SetMsgText(text, path);
    ApplyTexts();
    m_pCloseBtn->setFocus();
}

TarnCustomSaveDoneHintDlg::~TarnCustomSaveDoneHintDlg() = default;

void TarnCustomSaveDoneHintDlg::SetMsgText(const QString &text, const QString &path)
{
    m_pText->setText(text);
    m_pPath->setText(path);
    m_pPath->setToolTip(path);
    m_pPath->setMinimumWidth(qBound(320, m_pPath->fontMetrics().horizontalAdvance(path) + 24, 560));
    m_pPath->setCursorPosition(0);
    m_pPath->setVisible(!path.isEmpty());
    m_pOpenBtn->setVisible(!path.isEmpty());
    m_pError->hide();
}

void TarnCustomSaveDoneHintDlg::ApplyTexts()
{
    cTitleBar()->cSetText(tr("Prompt"));
    setWindowTitle(tr("Prompt"));
    m_pPath->setAccessibleName(tr("Folder"));
    m_pError->setText(tr("The folder cannot be opened."));
    m_pOpenBtn->setText(tr("Open Folder"));
    m_pCloseBtn->setText(tr("Close"));
}

void TarnCustomSaveDoneHintDlg::OpenFolder()
{
    const QFileInfo info(QDir::fromNativeSeparators(m_pPath->text()));
    const QString folder = info.isDir() ? info.absoluteFilePath() : info.absolutePath();
    const bool bOpened = info.exists() && QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
    m_pError->setVisible(!bOpened);
    if (bOpened)
        close();
    else
        adjustSize();
}

void TarnCustomSaveDoneHintDlg::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        ApplyTexts();
    TarnCustomDialog::changeEvent(pEvent);
}
