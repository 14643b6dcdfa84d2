#include "windowbench.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>

#include <cstdio>

#include <ui/mainwidget.h>

bool Wait(const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 120000)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 100);
    return condition();
}

void Report(const char *pName, const Span &longest, double limitMs)
{
    std::printf("%-42s %8.2f %8.2f %8.0f\n", pName, longest.wallMs, longest.cpuMs, limitMs);
}

int CountOf(const MainWidget &window, const char *pLabel)
{
    return window.findChild<QLabel *>(QString::fromLatin1(pLabel))->text().toInt();
}

bool ExportTicked(MainWidget &window, LoopWatch &watch, int nCameras,
                  const std::function<void()> &beforeStart)
{
    const QTemporaryDir folder;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, &closer, [&] {
        QWidget *pModal = QApplication::activeModalWidget();
        if (!pModal)
            return;
        if (QLineEdit *pEdit = pModal->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))) {
            if (beforeStart)
                beforeStart();
            pEdit->setText(folder.path());
            static_cast<QDialog *>(pModal)->accept();
            watch.Restart(); // building that dialog is no part of the batch
        } else if (pModal->objectName() == QLatin1String("SaveDoneHintDlg")) {
            pModal->close();
        }
    });
    closer.start(5);
    window.OnBtnExport();
    return Wait([&] {
        return CountOf(window, "SuccessNumLabel") + CountOf(window, "FailedNumLabel") == nCameras &&
               !QApplication::activeModalWidget();
    });
}
