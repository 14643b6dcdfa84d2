#include "report.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

QString OrDash(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("-") : text;
}

QStringList Cells(const Camera &camera)
{
    return {OrDash(camera.strModel),   OrDash(camera.strSerial), OrDash(camera.strUserName),
            OrDash(camera.strAddress), camera.strTransport,      camera.strAccess};
}

QString PaddedLine(const QStringList &cells, const QVector<int> &widths)
{
    QString line;
    for (int column = 0; column < cells.size(); ++column) {
        const bool isLast = column + 1 == cells.size();
        line += isLast ? cells.at(column) : cells.at(column).leftJustified(widths.at(column) + 2);
    }
    return line + QLatin1Char('\n');
}

QJsonObject ToObject(const Camera &camera)
{
    return {
        {QStringLiteral("model"), camera.strModel},         {QStringLiteral("serial"), camera.strSerial},
        {QStringLiteral("userName"), camera.strUserName},   {QStringLiteral("address"), camera.strAddress},
        {QStringLiteral("transport"), camera.strTransport}, {QStringLiteral("access"), camera.strAccess},
    };
}

void AppendResult(QJsonObject &object, bool ok, const QString &message, const QString &file)
{
    object.insert(QStringLiteral("result"), ok ? QStringLiteral("ok") : QStringLiteral("failed"));
    object.insert(QStringLiteral("message"), message);
    object.insert(QStringLiteral("file"), file);
}

QByteArray ToText(const QJsonArray &array)
{
    return QJsonDocument(array).toJson(QJsonDocument::Indented);
}

} // namespace

QString Report::Table(const QVector<Camera> &cameras)
{
    QVector<QStringList> lines = {{QStringLiteral("MODEL"), QStringLiteral("SERIAL"),
                                   QStringLiteral("USER NAME"), QStringLiteral("ADDRESS"),
                                   QStringLiteral("TRANSPORT"), QStringLiteral("ACCESS")}};
    for (const Camera &camera : cameras) {
        lines << Cells(camera);
    }
    QVector<int> widths(lines.first().size(), 0);
    for (const QStringList &line : qAsConst(lines)) {
        for (int column = 0; column < line.size(); ++column) {
            widths[column] = std::max(widths.at(column), line.at(column).size());
        }
    }
    QString table;
    for (const QStringList &line : qAsConst(lines)) {
        table += PaddedLine(line, widths);
    }
    return table;
}

QString Report::ResultLine(const Camera &camera, const CameraResult &result)
{
    const QString name =
        QStringList({OrDash(camera.strModel), OrDash(camera.strSerial), OrDash(camera.strAddress)})
            .join(QLatin1Char(' '));
    if (result.bOk) {
        return QStringLiteral("ok      %1  %2").arg(name, result.strFile);
    }
    QString reason = result.bDone ? result.strMessage : QStringLiteral("interrupted");
    reason.remove(QLatin1Char('\r')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    // The worker's message does not tell why a camera cannot be opened; the search often does.
    if (camera.record.nAccessStatus != KX_CC_ACCESS_FREE) {
        reason += QStringLiteral(" (camera is %1)").arg(camera.strAccess);
    }
    return QStringLiteral("failed  %1  %2").arg(name, reason);
}

QString Report::MissingLine(const QString &what)
{
    return QStringLiteral("failed  %1  not found").arg(what);
}

QString Report::Progress(int done, int total, int failed)
{
    return QStringLiteral("%1 of %2 done, %3 failed").arg(done).arg(total).arg(failed);
}

QByteArray Report::ListJson(const QVector<Camera> &cameras)
{
    QJsonArray array;
    for (const Camera &camera : cameras) {
        array << ToObject(camera);
    }
    return ToText(array);
}

QByteArray Report::BatchJson(const QVector<Camera> &cameras, const QVector<CameraResult> &results,
                             const QStringList &missing)
{
    QJsonArray array;
    for (int i = 0; i < cameras.size(); ++i) {
        const CameraResult &result = results.at(i);
        QJsonObject object = ToObject(cameras.at(i));
        AppendResult(object, result.bOk, result.bDone ? result.strMessage : QStringLiteral("interrupted"),
                     result.strFile);
        array << object;
    }
    for (const QString &what : missing) {
        QJsonObject object;
        AppendResult(object, false, QStringLiteral("%1 not found").arg(what), QString());
        array << object;
    }
    return ToText(array);
}
