#include <QtTest>

#include <QProcess>
#include <QTemporaryDir>

#include <ToolBase/lumointerface.h>
#include <camerafarm.h>
#include <ownnetwork.h>
#include <testdesktop.h>

namespace {

TestDesktop desktop;

QByteArray Xdotool(const QStringList &listArguments)
{
    QProcess process;
    process.start("xdotool", listArguments);
    process.waitForFinished(10000);
    return process.readAllStandardOutput().trimmed();
}

} // namespace

/// The installed program as a whole, from its start to its exit code.
class tst_ToolProcess : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void Run_StartedTwiceAndClosed_OneWindowAndExitCodeZero();

private:
    static QList<long long> Running();
};

QList<long long> tst_ToolProcess::Running()
{
    QList<long long> listIDs;
    LumoInterface::processID("Lumo_ImportExportFeatures", &listIDs);
    return listIDs;
}

void tst_ToolProcess::initTestCase()
{
    if (!desktop.Reason().isEmpty())
        QSKIP(qPrintable(desktop.Reason()));
    if (QStandardPaths::findExecutable("xdotool").isEmpty())
        QSKIP("xdotool is not installed");
    QDeadlineTimer deadline(30000);
    while (!Running().isEmpty() && !deadline.hasExpired())
        QTest::qWait(100);
    if (!Running().isEmpty())
        QSKIP("the tool is running on this computer already");
}

void tst_ToolProcess::Run_StartedTwiceAndClosed_OneWindowAndExitCodeZero()
{
    QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *pName : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"})
        environment.insert(pName, home.path());
    environment.insert("QT_QPA_PLATFORM", "xcb"); // the display, not the pictures of the other tests
    CameraFarm farm;
    QVERIFY2(farm.Start({"--count", "2", "--first-address", "127.62.1.1"}), qPrintable(farm.Error()));

    QProcess first;
    first.setProcessEnvironment(environment);
    first.start(PROJECT_BIN_DIR "/Lumo_ImportExportFeatures", QStringList());
    const QStringList listSearch{"search", "--onlyvisible", "--name", "^Import/Export Features$"};
    QTRY_VERIFY_WITH_TIMEOUT(!Xdotool(listSearch).isEmpty(), 30000);

    QProcess second;
    second.setProcessEnvironment(environment);
    second.start(PROJECT_BIN_DIR "/Lumo_ImportExportFeatures", QStringList("CH"));
    QVERIFY(second.waitForFinished());
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(Xdotool(listSearch).split('\n').size(), 1);
    QCOMPARE(first.state(), QProcess::Running);

    Xdotool({"windowactivate", "--sync", Xdotool(listSearch)});
    Xdotool({"key", "--clearmodifiers", "alt+F4"});
    QVERIFY(first.waitForFinished());
    QCOMPARE(first.exitStatus(), QProcess::NormalExit);
    QCOMPARE(first.exitCode(), 0);
    QVERIFY(Running().isEmpty());
    QVERIFY(QFile::exists(home.filePath("lumo/ImportExportFeatures.log")));
}

int main(int argc, char **argv)
{
    EnterOwnNetwork();
    desktop.Start();
    QCoreApplication application(argc, argv);
    tst_ToolProcess test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_tool_process.moc"
