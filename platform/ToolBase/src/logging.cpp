#include "lumointerface.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <log4cxx/logger.h>
#include <log4cxx/propertyconfigurator.h>

#include <atomic>
#include <cstdio>
#include <exception>

namespace {

log4cxx::LevelPtr LevelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return log4cxx::Level::getDebug();
    case QtInfoMsg:
        return log4cxx::Level::getInfo();
    case QtWarningMsg:
        return log4cxx::Level::getWarn();
    case QtCriticalMsg:
        return log4cxx::Level::getError();
    case QtFatalMsg:
        break;
    }
    return log4cxx::Level::getFatal();
}

const char *OrEmpty(const char *text)
{
    return text != nullptr ? text : "";
}

void WriteToLog(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const log4cxx::LevelPtr level = LevelOf(type);
    const log4cxx::LoggerPtr logger = log4cxx::Logger::getLogger(std::string(OrEmpty(context.category)));
    if (!logger->isEnabledFor(level)) {
        return;
    }
    const char *file = OrEmpty(context.file);
    // LogString is UTF-8 in Debian's build; forcedLog() would convert from the locale's encoding instead.
    logger->forcedLogLS(level, message.toStdString(),
                        log4cxx::spi::LocationInfo(file, log4cxx::spi::LocationInfo::calcShortFileName(file),
                                                   OrEmpty(context.function), context.line));
}

// One call per line, so that the lines of several threads do not mix.
void TellOnStderr(const QString &line)
{
    fprintf(stderr, "%s\n", qUtf8Printable(line));
}

void SayOnceWhyThereIsNoLog(const char *reason)
{
    static std::atomic_bool s_said{false};
    if (!s_said.exchange(true)) {
        TellOnStderr(QStringLiteral("The log cannot be written, its messages follow here: %1")
                         .arg(QString::fromLocal8Bit(reason)));
    }
}

// Called by Qt from whatever thread wrote the message. An exception would end the program: most of Qt's
// callers, and all threads, let none pass.
void TakeMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    try {
        WriteToLog(type, context, message);
    } catch (const std::exception &error) { // a full disk, for one
        SayOnceWhyThereIsNoLog(error.what());
        TellOnStderr(qFormatLogMessage(type, context, message));
    }
}

void SetLogDirectory()
{
    if (!qEnvironmentVariableIsEmpty("LUMO_LOG_DIR")) {
        return;
    }
    // Qt 5 knows no name for the state directory of the XDG base directories, where logs belong.
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (state.isEmpty()) {
        state = QDir::homePath() + QStringLiteral("/.local/state");
    }
    const QString directory = state + QStringLiteral("/lumo");
    QDir().mkpath(directory);
    qputenv("LUMO_LOG_DIR", QFile::encodeName(directory));
}

} // namespace

void LumoInterface::initLog4qtConfig(const QString &file)
{
    if (!QFileInfo(file).isReadable()) {
        return; // Qt's own handler writes to stderr
    }
    SetLogDirectory();
    try {
        const auto status =
            log4cxx::PropertyConfigurator::configure(log4cxx::File(QFile::encodeName(file).toStdString()));
        if (status == log4cxx::spi::ConfigurationStatus::Configured &&
            !log4cxx::Logger::getRootLogger()->getAllAppenders().empty()) {
            qInstallMessageHandler(TakeMessage);
            // The log's own static objects end before the last messages of a process can come.
            qAddPostRoutine([] { qInstallMessageHandler(nullptr); });
        }
    } catch (const std::exception &error) {
        qWarning("Logging stays on stderr, %s: %s", qUtf8Printable(file), error.what());
    }
}
