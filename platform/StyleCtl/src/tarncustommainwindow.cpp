#include "tarncustommainwindow.h"

#include <QKeyEvent>

TarnCustomMainWindow::TarnCustomMainWindow(QWidget *pParent)
    : TarnCustomDialog(pParent, Qt::Window | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint)
{
    setObjectName(QStringLiteral("MainWindow"));
}

TarnCustomMainWindow::~TarnCustomMainWindow() = default;

void TarnCustomMainWindow::keyPressEvent(QKeyEvent *pEvent)
{
    // QDialog closes on the cancel key and presses its default button on Enter: neither is meant here.
    if (pEvent->matches(QKeySequence::Cancel) || pEvent->key() == Qt::Key_Return ||
        pEvent->key() == Qt::Key_Enter)
        pEvent->ignore();
    else
        TarnCustomDialog::keyPressEvent(pEvent);
}
