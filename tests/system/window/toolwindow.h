#ifndef TESTS_SYSTEM_TOOLWINDOW_H
#define TESTS_SYSTEM_TOOLWINDOW_H

#include <QApplication>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

#include <ownnetwork.h>
#include <testdesktop.h>

#include "windowhands.h"

/// The real window in the test's own process, with settings of its own.
class ToolWindow
{
public:
    ToolWindow();
    ~ToolWindow();
    Q_DISABLE_COPY(ToolWindow)

    /// Shows it and waits until it has a row for each of so many cameras, all of them free. Fails the running
    /// test, or skips it when there are other cameras.
    void Show(int nCameras);

    MainWidget &Window() const { return *m_pWindow; }
    WindowHands Hands() const { return WindowHands(*m_pWindow); }
    QString Home() const { return m_home.path(); }

    static const int kSearchLimitMs = 30000; ///< a camera that goes is missed three times first

private:
    QTemporaryDir m_home;
    std::unique_ptr<MainWidget> m_pWindow;
};

/// The display of the program, started by RunWindowTest().
TestDesktop &WindowDesktop();

/// Why the windows of this program cannot be tested here; empty when they can. Loads the tool's images.
QString WindowTestObstacle();

/// main() of a test of the window: a network and a display of its own, the application as the tool sets it
/// up.
template <typename Test>
int RunWindowTest(int argc, char **argv)
{
    EnterOwnNetwork();
    WindowDesktop().Start();
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QCoreApplication::setAttribute(Qt::AA_NativeWindows);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

#endif
