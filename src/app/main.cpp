#include <QCoreApplication>

#include <process/processsetup.h>
#include <worker/cameralog.h>

#include "startup.h"

int main(int argc, char **argv)
{
    ProcessSetup::Prepare();
    // These count only when they are set before there is an application: the version for the window's
    // title, and sharp drawing on screens with more dots per inch.
    QCoreApplication::setApplicationVersion(QStringLiteral(PROJECT_VERSION_TEXT));
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    FeedCameraLog(false);
    return RunTool(argc, argv);
}
