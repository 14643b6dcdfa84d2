#ifndef APP_STARTUP_H
#define APP_STARTUP_H

#include <QAbstractNativeEventFilter>
#include <QString>

class QWidget;

/// Name of the tool's processes, under which other instances are found and ended.
extern QString g_strExeName;

/// Hook for native events; lets all of them pass.
class LumoNativeEventFilter : public QAbstractNativeEventFilter
{
public:
    /// @param pMainWindow  borrowed, outlives the filter
    explicit LumoNativeEventFilter(QWidget *pMainWindow);
    ~LumoNativeEventFilter() override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, long *result) override;

private:
    QWidget *m_pMainWindow;
};

/// Whether another instance of the tool runs: more than one process has its name, this one included. False
/// when the process list cannot be read.
bool IsIAppClientRuning();

/// The whole run of the tool: prepares the application, shows the window, runs the event loop, ends what
/// is left of the tool.
/// @return exit code: the event loop's, or 0 when another instance runs
int RunTool(int argc, char **argv);

/// Kept for the tools' common start-up interface; none of them does anything.
bool Init();
void Linux_CoredDump();
int qInitResources_Lumo_Import_Export_Features();
int qCleanupResources_Lumo_Import_Export_Features();

#endif
