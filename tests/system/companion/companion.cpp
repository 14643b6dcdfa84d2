#include "companion.h"

#include <QFile>
#include <QJsonDocument>

namespace {

const int kLongestRunMs = 60000;

// Where the text of the feature's Value begins and how long it is; -1 when there is no such feature.
std::pair<int, int> FindValue(const QByteArray &file, const QByteArray &feature)
{
    const int name = file.indexOf("<Name>" + feature + "</Name>");
    const int begin = name < 0 ? -1 : file.indexOf("<Value>", name);
    if (begin < 0) {
        return {-1, 0};
    }
    const int text = begin + 7;
    return {text, file.indexOf("</Value>", text) - text};
}

} // namespace

QJsonArray CompanionRun::Json() const
{
    return QJsonDocument::fromJson(out).array();
}

QJsonObject CompanionRun::Camera(const QString &address) const
{
    const QJsonArray cameras = Json();
    for (const QJsonValue camera : cameras) {
        if (camera.toObject().value("address").toString() == address) {
            return camera.toObject();
        }
    }
    return {};
}

QStringList CompanionRun::Lines() const
{
    return QString::fromUtf8(out).split('\n', Qt::SkipEmptyParts);
}

CompanionRun RunCompanion(const QStringList &arguments, const QStringList &environment)
{
    QProcess process;
    process.setProcessEnvironment([&] {
        QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
        for (const QString &pair : environment) {
            all.insert(pair.section('=', 0, 0), pair.section('=', 1));
        }
        return all;
    }());
    StartCompanion(process, arguments);
    CompanionRun run;
    const bool ended = process.waitForFinished(kLongestRunMs);
    run.exitCode = ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}

void StartCompanion(QProcess &process, const QStringList &arguments)
{
    process.start(PROJECT_BIN_DIR "/kx-features", arguments);
    process.waitForStarted();
}

QByteArray ReadFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray WithValue(QByteArray file, const QByteArray &feature, const QByteArray &value)
{
    const auto [begin, length] = FindValue(file, feature);
    return begin < 0 ? file : file.replace(begin, length, value);
}

QByteArray ValueOf(const QByteArray &file, const QByteArray &feature)
{
    const auto [begin, length] = FindValue(file, feature);
    return begin < 0 ? QByteArray() : file.mid(begin, length);
}
