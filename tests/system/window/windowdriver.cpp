// The tool with somebody at its window: its own start-up code, window and event loop, and a hand that ticks
// some cameras and exports them, in one process that a test can kill.
//
//   window-driver FOLDER CAMERAS SERIAL ...
//
// Waits for rows of so many cameras, ticks those of the serial numbers and exports them to the folder. Writes
// "exporting" when the batch runs and "done" when it is over; then it stays until it is ended.

#include <QApplication>
#include <QTimer>

#include <cstdio>

#include <app/startup.h>

#include "windowhands.h"

namespace {

const int kLookMs = 20;

void Say(const char *pWord)
{
    std::puts(pWord);
    std::fflush(stdout);
}

MainWidget *FindWindow()
{
    const QWidgetList listWindows = QApplication::topLevelWidgets();
    for (QWidget *pWidget : listWindows) {
        if (auto *pWindow = qobject_cast<MainWidget *>(pWidget))
            return pWindow;
    }
    return nullptr;
}

bool CanBeTicked(const WindowHands &hands, const QStringList &listSerials)
{
    for (const QString &strSerial : listSerials) {
        const int nRow = hands.RowOf(strSerial);
        if (nRow < 0 || !hands.Table()->cellCheckEnable(nRow, 0))
            return false;
    }
    return true;
}

void Look()
{
    const QStringList listArguments = QCoreApplication::arguments();
    const QStringList listSerials = listArguments.mid(3);
    MainWidget *pWindow = FindWindow();
    if (!pWindow || !pWindow->isVisible() || pWindow->GetCameraNum() < listArguments.value(2).toInt() ||
        !CanBeTicked(WindowHands(*pWindow), listSerials)) {
        QTimer::singleShot(kLookMs, qApp, &Look);
        return;
    }
    const WindowHands hands(*pWindow);
    for (const QString &strSerial : listSerials)
        hands.ClickRow(hands.RowOf(strSerial));
    hands.Export(listArguments.value(1), {nullptr, [](QWidget *) { Say("exporting"); }, nullptr});
    Say("done");
}

void BeginToLook()
{
    QTimer::singleShot(kLookMs, qApp, &Look);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(BeginToLook) // the tool makes the application itself

int main(int argc, char **argv)
{
    return RunTool(argc, argv);
}
