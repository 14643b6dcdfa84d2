#include <QtTest>

#include <QAbstractEventDispatcher>
#include <QAbstractNativeEventFilter>
#include <QPushButton>
#include <QStyle>

#include <StyleCtl/tarncustom.h>
#include <ToolBase/lumointerface.h>
#include <app/startup.h>
#include <language/languageversion.h>
#include <scripteddevices.h>
#include <ui/mainwidget.h>

/// The shared services, played by this program: they note when they are called, and what the application
/// was like then.
struct Services
{
    QString strLanguage = "ENG";
    QList<long long> listProcesses{1};
    QString strConfigPath = QStringLiteral(PROJECT_SHARE_DIR);
    std::function<void()> whenWindowShown; // called in the event loop
    QStringList listCalls;
};

static Services services;

namespace {

/// The main window that exists now.
QWidget *Window()
{
    for (QWidget *pWidget : QApplication::topLevelWidgets()) {
        if (qobject_cast<MainWidget *>(pWidget))
            return pWidget;
    }
    return nullptr;
}

void Note(const QString &strCall)
{
    services.listCalls.append(strCall);
}

const QAbstractNativeEventFilter *pInstalledFilter = nullptr;

QImage AppIcon(const QIcon &icon)
{
    return icon.pixmap(32, 32).toImage();
}

/// Waits for the event loop: showing the window handles events too, but cannot be ended.
void WhenRunning()
{
    if (QThread::currentThread()->loopLevel() == 0) {
        QTimer::singleShot(0, qApp, WhenRunning);
        return;
    }
    Note(Window() && Window()->isVisible() ? "window shown" : "no window");
    services.whenWindowShown();
}

} // namespace

QString LumoInterface::readonlyCfgPath()
{
    return services.strConfigPath;
}

QString LumoInterface::curExeVersion()
{
    return "V1";
}

int LumoInterface::toolsSupportNum()
{
    Note("window built");
    QTimer::singleShot(0, qApp, WhenRunning);
    return 64;
}

void LumoInterface::initLog4qtConfig(const QString &file)
{
    Note("log " + QString(file).remove(services.strConfigPath));
    Note("style " + QApplication::style()->objectName());
    Note(QFile::exists(":/Lumo/State/use.png") ? "images" : "no images");
    Note(QFile::exists(":/Lumo/ToolBarBtn/import.png") ? "tool bar images" : "no tool bar images");
    Note(QCoreApplication::libraryPaths().contains(QDir(services.strConfigPath + "/plugins").canonicalPath())
             ? "plug-ins"
             : "no plug-ins");
    Note(QCoreApplication::testAttribute(Qt::AA_NativeWindows) ? "native too early" : "not native yet");
}

QString LumoInterface::language()
{
    Note(QCoreApplication::testAttribute(Qt::AA_NativeWindows) ? "language, native" : "language");
    Note(QGuiApplication::windowIcon().isNull() ? "no icon yet" : "icon too early");
    return services.strLanguage;
}

void LumoInterface::processID(const QString &name, QList<long long> *ids)
{
    Note("processes of " + name);
    const QIcon wanted(":/Lumo/AppIcon/FeatureBag.ico");
    Note(AppIcon(wanted).isNull() || AppIcon(QGuiApplication::windowIcon()) != AppIcon(wanted) ? "no icon"
                                                                                               : "icon");
    Note(TarnCustom::language() == TarnCustom::Chinese ? "Chinese" : "English");
    Note(Window() ? "window too early" : "no window yet");
    ids->append(services.listProcesses);
}

void LumoInterface::killProcess(const QString &name)
{
    Note("end " + name);
    Note(Window() ? "window still there" : "window has gone");
}

// Qt's own, which are called through this program too; they note when the tool's filter comes and goes.
void QCoreApplication::installNativeEventFilter(QAbstractNativeEventFilter *pFilter)
{
    if (dynamic_cast<LumoNativeEventFilter *>(pFilter)) {
        pInstalledFilter = pFilter;
        Note(QThread::currentThread()->loopLevel() == 0 && Window() && Window()->isVisible()
                 ? "filter installed"
                 : "filter installed at the wrong time");
    }
    QAbstractEventDispatcher::instance()->installNativeEventFilter(pFilter);
}

void QCoreApplication::removeNativeEventFilter(QAbstractNativeEventFilter *pFilter)
{
    if (pFilter == pInstalledFilter)
        Note("filter removed");
    QAbstractEventDispatcher::instance()->removeNativeEventFilter(pFilter);
}

QAbstractNativeEventFilter::~QAbstractNativeEventFilter()
{
    if (this == pInstalledFilter)
        Note("filter deleted");
}

class tst_Startup : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void Run_OnlyInstance_StepsComeInTheirOrder();
    void Run_AnotherStyleWished_StyleIsFusion();
    void Run_ProcessListEmpty_WindowOpens();
    void Run_AnotherInstance_EndsSilentlyWithZero();
    void Run_EventLoopEnds_ItsResultIsReturned();
    void Run_WindowClosed_EndsWithZero();
    void Run_FilesMissing_WindowOpens();
    void Run_Argument_ChoosesTheLanguage_data();
    void Run_Argument_ChoosesTheLanguage();
    void Run_Twice_NothingIsLeftOfTheFirst();
    void NativeEventFilter_AnyEvent_LetsItPass();
    void Interface_UnusedFunctions_DoNothing();

private:
    static int Run(QVector<QByteArray> vecArguments = {});

    ScriptedDevices m_devices; // no camera
};

void tst_Startup::init()
{
    services = Services();
    services.whenWindowShown = [] { QCoreApplication::exit(0); };
    pInstalledFilter = nullptr;
    // What an earlier run left in the process.
    QResource::unregisterResource(services.strConfigPath + "/rcc/lumo.rcc");
    QResource::unregisterResource(services.strConfigPath + "/rcc/ToolBarBtn.rcc");
    QCoreApplication::setAttribute(Qt::AA_NativeWindows, false);
    QGuiApplication::setWindowIcon(QIcon());
}

int tst_Startup::Run(QVector<QByteArray> vecArguments)
{
    vecArguments.prepend("tool");
    QVector<char *> vecPointers;
    for (QByteArray &argument : vecArguments)
        vecPointers.append(argument.data());
    vecPointers.append(nullptr);
    return RunTool(vecArguments.size(), vecPointers.data());
}

void tst_Startup::Run_OnlyInstance_StepsComeInTheirOrder()
{
    services.whenWindowShown = [] {
        connect(Window(), &QObject::destroyed,
                [] { Note(qApp ? "window destroyed" : "window destroyed too late"); });
        QCoreApplication::exit(0);
    };
    QCOMPARE(Run(), 0);
    QCOMPARE(services.listCalls, QStringList({"log /log4qt/log4qt_IEFeatures.conf",
                                              "style fusion",
                                              "images",
                                              "tool bar images",
                                              "plug-ins",
                                              "not native yet",
                                              "language, native",
                                              "no icon yet",
                                              "processes of Lumo_ImportExportFeatures",
                                              "icon",
                                              "English",
                                              "no window yet",
                                              "window built",
                                              "filter installed",
                                              "window shown",
                                              "filter removed",
                                              "filter deleted",
                                              "end Lumo_ImportExportFeatures",
                                              "window still there",
                                              "window destroyed"}));
    QVERIFY(!qApp);
}

void tst_Startup::Run_AnotherStyleWished_StyleIsFusion()
{
    qputenv("QT_STYLE_OVERRIDE", "windows");
    QString strShown;
    services.whenWindowShown = [&] {
        strShown = QApplication::style()->objectName();
        QCoreApplication::exit(0);
    };
    QCOMPARE(Run(), 0);
    qunsetenv("QT_STYLE_OVERRIDE");
    QVERIFY(services.listCalls.contains("style fusion"));
    QCOMPARE(strShown, QString("fusion"));
}

void tst_Startup::Run_ProcessListEmpty_WindowOpens()
{
    services.listProcesses.clear();
    QCOMPARE(Run(), 0);
    QVERIFY(services.listCalls.contains("window shown"));
}

void tst_Startup::Run_AnotherInstance_EndsSilentlyWithZero()
{
    services.listProcesses = {1, 2};
    QCOMPARE(Run(), 0);
    QVERIFY(services.listCalls.contains("processes of Lumo_ImportExportFeatures"));
    QCOMPARE(services.listCalls.last(), QString("no window yet")); // nothing is ended, no window is built
    QVERIFY(!qApp);
}

void tst_Startup::Run_EventLoopEnds_ItsResultIsReturned()
{
    services.whenWindowShown = [] { QCoreApplication::exit(7); };
    QCOMPARE(Run(), 7);
    QVERIFY(services.listCalls.contains("end Lumo_ImportExportFeatures"));
}

void tst_Startup::Run_WindowClosed_EndsWithZero()
{
    services.whenWindowShown = [] { Window()->close(); };
    QCOMPARE(Run(), 0);
    QVERIFY(services.listCalls.contains("end Lumo_ImportExportFeatures"));
}

void tst_Startup::Run_FilesMissing_WindowOpens()
{
    QTemporaryDir empty;
    services.strConfigPath = empty.path();
    services.strLanguage = "CH"; // its translations are missing too
    QCOMPARE(Run(), 0);
    QVERIFY(services.listCalls.contains("no images"));
    QVERIFY(services.listCalls.contains("window shown"));
}

void tst_Startup::Run_Argument_ChoosesTheLanguage_data()
{
    QTest::addColumn<QString>("strInstallation");
    QTest::addColumn<QStringList>("listArguments");
    QTest::addColumn<QString>("strShown");
    QTest::newRow("none") << "ENG" << QStringList() << "English";
    QTest::newRow("none, Chinese installation") << "CH" << QStringList() << "Chinese";
    QTest::newRow("CH") << "ENG" << QStringList("CH") << "Chinese";
    QTest::newRow("ENG") << "CH" << QStringList("ENG") << "English";
    QTest::newRow("lower case") << "ENG" << QStringList("ch") << "English";
    QTest::newRow("lower case, Chinese installation") << "CH" << QStringList("eng") << "Chinese";
    QTest::newRow("only the first counts") << "CH" << QStringList({"ENG", "CH"}) << "English";
    QTest::newRow("not the second") << "ENG" << QStringList({"x", "CH"}) << "English";
}

void tst_Startup::Run_Argument_ChoosesTheLanguage()
{
    QFETCH(QString, strInstallation);
    QFETCH(QStringList, listArguments);
    QFETCH(QString, strShown);
    services.strLanguage = strInstallation;
    QString strImport;
    services.whenWindowShown = [&] {
        strImport = Window()->findChild<QPushButton *>("ImportBtn")->text();
        QCoreApplication::exit(0);
    };
    QVector<QByteArray> vecArguments;
    for (const QString &strArgument : listArguments)
        vecArguments.append(strArgument.toLocal8Bit());
    QCOMPARE(Run(vecArguments), 0);
    QVERIFY(services.listCalls.contains(strShown));
    QCOMPARE(strImport, strShown == "Chinese" ? QString::fromUtf8("导入") : QString("Import"));
}

void tst_Startup::Run_Twice_NothingIsLeftOfTheFirst()
{
    QCOMPARE(Run(), 0);
    services.listCalls.clear();
    QCOMPARE(Run(), 0);
    QVERIFY(services.listCalls.contains("window shown"));
}

void tst_Startup::NativeEventFilter_AnyEvent_LetsItPass()
{
    LumoNativeEventFilter filter(nullptr);
    long nResult = 5;
    QVERIFY(!filter.nativeEventFilter("xcb_generic_event_t", nullptr, &nResult));
    QCOMPARE(nResult, 5L);
}

void tst_Startup::Interface_UnusedFunctions_DoNothing()
{
    QVERIFY(Init());
    Linux_CoredDump();
    QCOMPARE(qInitResources_Lumo_Import_Export_Features(), 1);
    QCOMPARE(qCleanupResources_Lumo_Import_Export_Features(), 1);
}

int main(int argc, char **argv)
{
    // The name as it is before a run: the one that is never looked for.
    if (g_strExeName != "Import_Export_Features")
        qFatal("g_strExeName starts as \"%s\"", qPrintable(g_strExeName));
    tst_Startup test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_startup.moc"
