#ifndef TESTS_SYSTEM_COMPANION_H
#define TESTS_SYSTEM_COMPANION_H

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>

/// One finished run of kx-features.
struct CompanionRun
{
    int exitCode = -1; ///< -1 when it crashed or did not end in time
    QByteArray out;
    QByteArray err;

    QJsonArray Json() const;
    /// The object of the camera at the address, from a run with --json; empty when there is none.
    QJsonObject Camera(const QString &address) const;
    QStringList Lines() const;
};

/// Runs kx-features to its end, at most a minute.
/// @param environment  "NAME=value" pairs on top of the test's own
CompanionRun RunCompanion(const QStringList &arguments, const QStringList &environment = {});

/// Starts kx-features without waiting for it.
void StartCompanion(QProcess &process, const QStringList &arguments);

/// Content of a file; null when it cannot be read.
QByteArray ReadFile(const QString &path);

/// A feature file with the value of one feature replaced; the text unchanged when it has no such feature.
QByteArray WithValue(QByteArray file, const QByteArray &feature, const QByteArray &value);

/// The value of one feature in a feature file; null when it is not there.
QByteArray ValueOf(const QByteArray &file, const QByteArray &feature);

#endif
