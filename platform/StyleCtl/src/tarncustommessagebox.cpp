#include "tarncustommessagebox.h"

#include <QEvent>
#include <QGridLayout>
#include <QPlainTextEdit>

#include "hinticon.h"
#include "stylepainter.h"
#include "tarncustomlabel.h"
#include "tarncustompushbutton.h"
#include "tarncustomtitlebar.h"

namespace {

constexpr int kLeastTextWidth = 320;
constexpr int kMostTextWidth = 440;
constexpr int kMostDetailHeight = 160;
bool g_bNotBlock = false; // asked for by setNotBlockRun_Mac(), for one message

} // namespace

TarnCustomMessageBox::TarnCustomMessageBox(QWidget *pParent)
    : TarnCustomDialog(pParent)
{
    setObjectName(QStringLiteral("MessageBox"));
    setModal(true);
    cEnableDefualtShadow();
    cSetBackgroundColor(Qt::white);

    m_pIcon = new HintIcon(HintIcon::Information);
    m_pIcon->setObjectName(QStringLiteral("MessageIcon"));
    m_pContent = new TarnCustomLabel;
    m_pContent->setObjectName(QStringLiteral("MessageContent"));
    m_pContent->setWordWrap(true);
    m_pContent->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_pDetail = new QPlainTextEdit;
    m_pDetail->setObjectName(QStringLiteral("MessageDetail"));
    m_pDetail->setReadOnly(true);
    m_pDetail->setFrameShape(QFrame::NoFrame);
    m_pDetail->document()->setDocumentMargin(0);
    m_pOkBtn = new TarnCustomPushButton(TarnCustomPushButton::FilledStyle);
    m_pOkBtn->setObjectName(QStringLiteral("MessageOkBtn"));
    m_pOkBtn->setMinimumWidth(86);
    m_pOkBtn->setDefault(true);
    connect(m_pOkBtn, &QPushButton::clicked, this, &QDialog::accept);

    auto *pCentral = new QWidget;
    auto *pLayout = new QGridLayout(pCentral);
    pLayout->setContentsMargins(24, 22, 24, 18);
    pLayout->setHorizontalSpacing(16);
    pLayout->setVerticalSpacing(10);
    pLayout->addWidget(m_pIcon, 0, 0, Qt::AlignTop);
    pLayout->addWidget(m_pContent, 0, 1);
    pLayout->addWidget(m_pDetail, 1, 1);
    pLayout->setRowMinimumHeight(2, 4);
    pLayout->addWidget(m_pOkBtn, 3, 0, 1, 2, Qt::AlignRight);
    pLayout->setColumnStretch(1, 1);
    pLayout->setRowStretch(0, 1);
    cSetCentralWidget(pCentral);
    SetTexts(QString(), QString(), QString());
    m_pOkBtn->setFocus();
}

TarnCustomMessageBox::~TarnCustomMessageBox() = default;

void TarnCustomMessageBox::SetTexts(const QString &content, const QString &detail, const QString &title)
{
    m_strTitle = title;
    m_pContent->setText(content);
    // A text that fits on a line stays on it.
    const int nNeeded = m_pContent->fontMetrics().size(0, content).width() + 4;
    const int nTextWidth = qBound(kLeastTextWidth, nNeeded, kMostTextWidth);
    m_pContent->setMinimumWidth(nTextWidth);
    m_pDetail->setPlainText(detail);
    m_pDetail->setVisible(!detail.isEmpty());
    if (!detail.isEmpty()) {
        const QRect needed = m_pDetail->fontMetrics().boundingRect(QRect(0, 0, nTextWidth - 8, 10000),
                                                                   Qt::TextWrapAnywhere, detail);
        m_pDetail->setFixedHeight(qMin(needed.height() + 8, kMostDetailHeight));
    }
    ApplyTexts();
}

void TarnCustomMessageBox::SetIconStyle(HintIconStyle eStyle)
{
    m_pIcon->setVisible(eStyle != HintNone);
    m_pIcon->SetSign(eStyle == HintWarning ? HintIcon::Warning
                     : eStyle == HintError ? HintIcon::Error
                                           : HintIcon::Information);
}

void TarnCustomMessageBox::ApplyTexts()
{
    const QString title = m_strTitle.isEmpty() ? tr("Prompt") : m_strTitle;
    cTitleBar()->cSetText(title);
    setWindowTitle(title);
    m_pOkBtn->setText(tr("OK"));
}

void TarnCustomMessageBox::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        ApplyTexts();
    TarnCustomDialog::changeEvent(pEvent);
}

void TarnCustomMessageBox::simple(QWidget *pParent, const QString &content, const QString &detail,
                                  const QString &title, HintIconStyle eStyle)
{
    const bool bNotBlock = g_bNotBlock;
    g_bNotBlock = false;
    if (bNotBlock) {
        auto *pBox = new TarnCustomMessageBox(pParent);
        pBox->setAttribute(Qt::WA_DeleteOnClose);
        pBox->SetTexts(content, detail, title);
        pBox->SetIconStyle(eStyle);
        pBox->open();
        return;
    }
    TarnCustomMessageBox box(pParent);
    box.SetTexts(content, detail, title);
    box.SetIconStyle(eStyle);
    box.exec();
}

void TarnCustomMessageBox::setNotBlockRun_Mac()
{
#ifdef Q_OS_MACOS
    g_bNotBlock = true;
#endif
}
