#include "lumointerface.h"

#include <QCoreApplication>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>

namespace {

const int kDefaultSupportNum = 64;

// The user's own file first, then the one that came with the installation. QSettings is made anew each
// time: another program of the installation may have changed the file.
QVariant InstallationValue(const QString &key, bool (*isValid)(const QVariant &))
{
    const QString files[] = {
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
            QStringLiteral("/lumo/installation.conf"),
        LumoInterface::readonlyCfgPath() + QStringLiteral("/installation.conf"),
    };
    for (const QString &file : files) {
        QVariant value = QSettings(file, QSettings::IniFormat).value(key);
        if (isValid(value)) {
            return value;
        }
    }
    return {};
}

} // namespace

QString LumoInterface::language()
{
    const QVariant value = InstallationValue(QStringLiteral("Language"), [](const QVariant &candidate) {
        const QString text = candidate.toString();
        return text == QLatin1String("CH") || text == QLatin1String("ENG");
    });
    return value.isValid() ? value.toString() : QStringLiteral("ENG");
}

int LumoInterface::toolsSupportNum()
{
    // By way of the text: QVariant's own conversion to int cuts large numbers off instead of refusing them.
    const QVariant value =
        InstallationValue(QStringLiteral("ToolsSupportNum"),
                          [](const QVariant &candidate) { return candidate.toString().toInt() >= 1; });
    return value.isValid() ? value.toInt() : kDefaultSupportNum;
}

QString LumoInterface::curExeVersion()
{
    const QString version = QCoreApplication::applicationVersion();
    return version.isEmpty() ? QString() : QLatin1Char('V') + version;
}
