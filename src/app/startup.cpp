#include "startup.h"

#include <QApplication>
#include <QIcon>
#include <QResource>
#include <QStyleFactory>

#include <ToolBase/lumointerface.h>
#include <language/languageversion.h>
#include <ui/mainwidget.h>

QString g_strExeName = QStringLiteral("Import_Export_Features"); // RunTool() sets the one that is used

LumoNativeEventFilter::LumoNativeEventFilter(QWidget *pMainWindow)
    : m_pMainWindow(pMainWindow)
{
}

LumoNativeEventFilter::~LumoNativeEventFilter() = default;

bool LumoNativeEventFilter::nativeEventFilter(const QByteArray &, void *, long *)
{
    Q_UNUSED(m_pMainWindow)
    return false;
}

bool IsIAppClientRuning()
{
    QList<long long> listIDs;
    LumoInterface::processID(g_strExeName, &listIDs);
    return listIDs.count() > 1;
}

namespace {

/// What a file of the installation gives to the application. A missing one costs its images or messages,
/// not the start.
void LoadInstallation()
{
    const QString strPath = LumoInterface::readonlyCfgPath();
    QResource::registerResource(strPath + QStringLiteral("/rcc/lumo.rcc"));
    QResource::registerResource(strPath + QStringLiteral("/rcc/ToolBarBtn.rcc"));
    QCoreApplication::addLibraryPath(strPath + QStringLiteral("/plugins"));
    LumoInterface::initLog4qtConfig(strPath + QStringLiteral("/log4qt/log4qt_IEFeatures.conf"));
}

void ChooseLanguage(int argc, char **argv)
{
    SetLanguageVersion(LumoInterface::language());
    if (argc < 2)
        return;
    const QString strArgument = QString::fromLocal8Bit(argv[1]);
    if (strArgument == QLatin1String("CH") || strArgument == QLatin1String("ENG"))
        SetLanguageVersion(strArgument);
}

int ShowWindowAndRun(QApplication &application)
{
    MainWidget mainWidget(nullptr);
    mainWidget.show();
    auto *pFilter = new LumoNativeEventFilter(&mainWidget);
    application.installNativeEventFilter(pFilter);

    const int nResult = QApplication::exec();

    application.removeNativeEventFilter(pFilter);
    delete pFilter;
    LumoInterface::killProcess(g_strExeName);
    return nResult;
}

} // namespace

int RunTool(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    g_strExeName = QStringLiteral("Lumo_ImportExportFeatures");
    LoadInstallation();
    QCoreApplication::setAttribute(Qt::AA_NativeWindows, true);
    // Formerly AA_MacPluginApplication. Qt warns about setting it this late, also to what it is.
    if (QCoreApplication::testAttribute(Qt::AA_PluginApplication))
        QCoreApplication::setAttribute(Qt::AA_PluginApplication, false);
    ChooseLanguage(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/Lumo/AppIcon/FeatureBag.ico")));
    if (IsIAppClientRuning())
        return 0;
    return ShowWindowAndRun(application);
}

bool Init()
{
    return true;
}

void Linux_CoredDump()
{
}

// No resource is compiled in: all images come from the resource files of the installation.
int qInitResources_Lumo_Import_Export_Features()
{
    return 1;
}

int qCleanupResources_Lumo_Import_Export_Features()
{
    return 1;
}
