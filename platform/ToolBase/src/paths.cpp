#include "lumointerface.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

QString LumoInterface::readonlyCfgPath()
{
    const QString fromEnvironment = qEnvironmentVariable("LUMO_READONLY_CFG_PATH");
    if (!fromEnvironment.isEmpty()) {
        return QDir(QDir::cleanPath(fromEnvironment)).absolutePath();
    }
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../share/" TOOLBASE_SHARE_NAME));
}

QString LumoInterface::userDataPath()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir::cleanPath(!documents.isEmpty() && QDir(documents).exists() ? documents : QDir::homePath());
}
