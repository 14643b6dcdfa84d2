#include <QtTest>

#include <ToolBase/lumointerface.h>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

// Where Qt's messages go after the log was configured.
class tst_LumoInterface_Logging : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void initLog4qtConfig_MissingFile_LeavesTheHandlerAlone();
    void initLog4qtConfig_FileWithoutAppender_LeavesTheHandlerAlone();
    void initLog4qtConfig_FileAppender_GetsLevelCategoryPlaceAndText();
    void initLog4qtConfig_LevelBelowThreshold_IsNotWritten();
    void initLog4qtConfig_NoLogDirectoryInEnvironment_MakesOneInTheStateDirectory();
    void initLog4qtConfig_LogCannotBeWritten_MessagesGoToStderr();

private:
    QString Configure(const QByteArray &level);
    static QByteArray ReadAll(const QString &file);

    QScopedPointer<QTemporaryDir> m_dir;
};

static QtMessageHandler CurrentHandler()
{
    const QtMessageHandler handler = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(handler);
    return handler;
}

void tst_LumoInterface_Logging::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
    qputenv("LUMO_LOG_DIR", QFile::encodeName(m_dir->path()));
    qputenv("XDG_STATE_HOME", QFile::encodeName(m_dir->path() + "/state"));
}

void tst_LumoInterface_Logging::cleanup()
{
    qInstallMessageHandler(nullptr);
}

QString tst_LumoInterface_Logging::Configure(const QByteArray &level)
{
    const QString config = m_dir->path() + "/log.conf";
    QFile out(config);
    [&] { QVERIFY(out.open(QIODevice::WriteOnly)); }();
    out.write("log4j.rootLogger=" + level +
              ", FILE\n"
              "log4j.appender.FILE=org.apache.log4j.FileAppender\n"
              "log4j.appender.FILE.File=${LUMO_LOG_DIR}/test.log\n"
              "log4j.appender.FILE.layout=org.apache.log4j.PatternLayout\n"
              "log4j.appender.FILE.layout.ConversionPattern=%p|%c|%F|%L|%m%n\n");
    out.close();
    LumoInterface::initLog4qtConfig(config);
    return QString::fromLocal8Bit(qgetenv("LUMO_LOG_DIR")) + "/test.log";
}

QByteArray tst_LumoInterface_Logging::ReadAll(const QString &file)
{
    QFile in(file);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

void tst_LumoInterface_Logging::initLog4qtConfig_MissingFile_LeavesTheHandlerAlone()
{
    const QtMessageHandler before = CurrentHandler();
    LumoInterface::initLog4qtConfig(m_dir->path() + "/none.conf");
    QVERIFY(CurrentHandler() == before);
}

void tst_LumoInterface_Logging::initLog4qtConfig_FileWithoutAppender_LeavesTheHandlerAlone()
{
    const QString config = m_dir->path() + "/empty.conf";
    QFile out(config);
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write("\x01\x02 no log configuration \xFF\n");
    out.close();
    const QtMessageHandler before = CurrentHandler();
    LumoInterface::initLog4qtConfig(config);
    QVERIFY(CurrentHandler() == before);
}

void tst_LumoInterface_Logging::initLog4qtConfig_FileAppender_GetsLevelCategoryPlaceAndText()
{
    const QString log = Configure("DEBUG");
    QMessageLogger("../../src/Some/Place.cpp", 7, "void F()", "default")
        .critical("failed: %s", "caf\xC3\xA9");
    QCOMPARE(ReadAll(log), QByteArray("ERROR|default|../../src/Some/Place.cpp|7|failed: caf\xC3\xA9\n"));
}

void tst_LumoInterface_Logging::initLog4qtConfig_LevelBelowThreshold_IsNotWritten()
{
    const QString log = Configure("WARN");
    qInfo("quiet");
    qWarning("loud");
    const QByteArray text = ReadAll(log);
    QVERIFY2(!text.contains("quiet"), text.constData());
    QVERIFY2(text.contains("loud"), text.constData());
}

void tst_LumoInterface_Logging::initLog4qtConfig_NoLogDirectoryInEnvironment_MakesOneInTheStateDirectory()
{
    qunsetenv("LUMO_LOG_DIR");
    const QString log = Configure("DEBUG");
    QCOMPARE(log, m_dir->path() + "/state/lumo/test.log");
    qWarning("here");
    QVERIFY(ReadAll(log).contains("here"));
}

// What the function makes this process write to its stderr; at most what a pipe holds.
template <typename Function>
static QByteArray StderrOf(Function function)
{
    int ends[2] = {-1, -1};
    const int before = dup(STDERR_FILENO);
    if (before < 0 || pipe(ends) != 0) {
        return "no pipe";
    }
    dup2(ends[1], STDERR_FILENO);
    close(ends[1]);
    function();
    dup2(before, STDERR_FILENO);
    close(before);
    QFile reader;
    const bool isOpen = reader.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    return isOpen ? reader.readAll() : "no pipe";
}

void tst_LumoInterface_Logging::initLog4qtConfig_LogCannotBeWritten_MessagesGoToStderr()
{
    const QString log = Configure("INFO");
    signal(SIGXFSZ, SIG_IGN);
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit none = {0, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &none);
    const QByteArray told = StderrOf([] {
        qWarning("first");
        qDebug("below the threshold");
        qInfo("caf\xC3\xA9");
    });
    setrlimit(RLIMIT_FSIZE, &limit);
    const QList<QByteArray> lines = told.split('\n');
    QCOMPARE(lines.size(), 4); // one is empty, behind the last line end
    QVERIFY2(lines.at(0).startsWith("The log cannot be written"), told.constData());
    QCOMPARE(lines.at(1), QByteArray("first"));
    QCOMPARE(lines.at(2), QByteArray("caf\xC3\xA9"));

    qWarning("room again");
    QVERIFY(ReadAll(log).endsWith("room again\n"));
}

QTEST_GUILESS_MAIN(tst_LumoInterface_Logging)
#include "tst_lumointerface_logging.moc"
