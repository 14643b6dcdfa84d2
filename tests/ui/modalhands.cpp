#include "modalhands.h"

#include <QApplication>
#include <QLineEdit>
#include <QtTest>

ModalHands::ModalHands()
{
    connect(&m_timer, &QTimer::timeout, this, &ModalHands::Look);
    m_timer.start(10);
}

ModalHands::~ModalHands()
{
    // A window that nobody handled would keep its event loop for ever.
    if (QWidget *pModal = QApplication::activeModalWidget())
        pModal->close();
}

ModalHands &ModalHands::Then(const QString &strName, Handler handler)
{
    m_vecSteps.append({strName, std::move(handler)});
    return *this;
}

void ModalHands::Look()
{
    QWidget *pModal = QApplication::activeModalWidget();
    if (!pModal || m_vecSteps.isEmpty())
        return;
    const Step step = m_vecSteps.first();
    if (pModal->objectName() != step.strName && !pModal->inherits(step.strName.toLatin1().constData()))
        return;
    m_vecSteps.removeFirst();
    step.handler(pModal);
}

void ModalHands::Choose(QWidget *pDialog, const QString &strPath)
{
    QLineEdit *pEdit = pDialog->findChild<QLineEdit *>("fileNameEdit");
    QVERIFY(pEdit);
    pEdit->setText(strPath);
    QTest::keyClick(pEdit, Qt::Key_Return);
}

void ModalHands::Cancel(QWidget *pDialog)
{
    QTest::keyClick(pDialog, Qt::Key_Escape);
}
