#include "resultpage.h"

#include <QHBoxLayout>

#include <StyleCtl/tarncustomlabel.h>
#include <StyleCtl/tarncustomlinewidget.h>

#include "operatetype.h"

namespace {

TarnCustomLineWidget *MakeDivider()
{
    auto *pLine = new TarnCustomLineWidget;
    pLine->setFixedSize(1, 20);
    pLine->cSetLineType(TarnCustomLineWidget::SolidLine);
    pLine->cSetBackgroundColor(QColor(QStringLiteral("#BFBFBF")));
    return pLine;
}

} // namespace

ResultPage::ResultPage(const Labels &labels)
    : m_labels(labels)
{
}

void ResultPage::Create()
{
    for (TarnCustomLabel **ppLabel : {&m_labels.pRunningNum, &m_labels.pRunning, &m_labels.pSucceededNum,
                                      &m_labels.pSucceeded, &m_labels.pFailedNum, &m_labels.pFailed})
        *ppLabel = new TarnCustomLabel;

    QFont countFont = m_labels.pRunningNum->font();
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
    initCount(m_labels.pRunningNum, QStringLiteral("#FAB700"));
    initCount(m_labels.pSucceededNum, QStringLiteral("#00D53C"));
    initCount(m_labels.pFailedNum, QStringLiteral("#FC2F2F"));

    for (TarnCustomLabel *pLabel : {m_labels.pRunning, m_labels.pSucceeded, m_labels.pFailed}) {
        pLabel->cSetFontColor(QColor(QStringLiteral("#6C6C6C")));
        pLabel->cSetFontSize(12);
    }
    m_labels.pFailed->setText(tr("Failed"));
}

void ResultPage::Layout(QWidget *pPage, QWidget *pBackBtn)
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
    addCount(m_labels.pRunningNum, m_labels.pRunning);
    addDivider();
    addCount(m_labels.pSucceededNum, m_labels.pSucceeded);
    addDivider();
    addCount(m_labels.pFailedNum, m_labels.pFailed);
    pLayout->addStretch();
    pLayout->addWidget(pBackBtn);
    pPage->setLayout(pLayout);
}

void ResultPage::SetTexts(unsigned int nType)
{
    ShowOperation(nType);
    m_labels.pFailed->setText(tr("Failed"));
}

/// The blank at the start of a text parts it from the number.
void ResultPage::ShowOperation(unsigned int nType)
{
    if (OperateType::IsImport(nType)) {
        m_labels.pRunning->setText(tr(" Importing"));
        m_labels.pSucceeded->setText(tr(" Imported."));
    } else if (OperateType::IsExport(nType)) {
        m_labels.pRunning->setText(tr(" Exporting"));
        m_labels.pSucceeded->setText(tr(" Exported."));
    }
}

void ResultPage::ShowRunning(qint32 nCount)
{
    m_labels.pRunningNum->setText(QString::number(nCount));
}

void ResultPage::ShowSucceeded(qint32 nCount)
{
    m_labels.pSucceededNum->setText(QString::number(nCount));
}

void ResultPage::ShowFailed(qint32 nCount)
{
    m_labels.pFailedNum->setText(QString::number(nCount));
}
