#include "toolwindow.h"

#include <QResource>

#include <ToolBase/lumointerface.h>
#include <camerafarm.h>

ToolWindow::ToolWindow()
{
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home.path()));
    m_pWindow = std::make_unique<MainWidget>();
}

ToolWindow::~ToolWindow() = default;

void ToolWindow::Show(int nCameras)
{
    m_pWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow.get(), 20000));
    QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->GetEnabledNum() >= nCameras, kSearchLimitMs);
    if (m_pWindow->GetCameraNum() > nCameras)
        QSKIP("there are other cameras, and the system does not allow a network of our own");
}

TestDesktop &WindowDesktop()
{
    static TestDesktop desktop;
    return desktop;
}

QString WindowTestObstacle()
{
    if (!WindowDesktop().Reason().isEmpty())
        return WindowDesktop().Reason();
    if (!CameraFarm::IsInstalled())
        return "kx-camera-farm is not built";
    QResource::registerResource(LumoInterface::readonlyCfgPath() + "/rcc/lumo.rcc");
    return {};
}
