#include <QCoreApplication>

#include <ToolBase/lumointerface.h>

#include <process/processsetup.h>
#include <worker/cameralog.h>

#include "commands.h"

int main(int argc, char **argv)
{
    ProcessSetup::Prepare();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kx-features"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PROJECT_VERSION_TEXT));
    // What the workers log goes where the window's log goes, not between the lines for the user.
    LumoInterface::initLog4qtConfig(LumoInterface::readonlyCfgPath() +
                                    QStringLiteral("/log4qt/log4qt_IEFeatures.conf"));
    const CommandLine command = ParseCommandLine(QCoreApplication::arguments().mid(1));
    FeedCameraLog(command.bVerbose);
    return RunCommand(command);
}
