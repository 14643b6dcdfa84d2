// What a person waits for in the window with many cameras: ticking all, ticking one, changing the filter,
// sorting; and how long the event loop is held up while cameras are found and while a batch runs.
//
// Cameras and camera SDK are scripted, so only the window's own work counts. Offscreen.

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <ctime>

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <scriptedcameras.h>
#include <scripteddevices.h>
#include <ui/mainwidget.h>

namespace {

const int ROUNDS = 20;

/// Runs the event loop until the condition holds; false after a minute.
template <typename Condition>
bool Wait(Condition condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 60000)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 100);
    return condition();
}

/// A stretch of time: on the clock, and of this thread's work, which other programs do not lengthen.
struct Span
{
    double wallMs = 0;
    double cpuMs = 0;
    void Raise(const Span &other)
    {
        wallMs = qMax(wallMs, other.wallMs);
        cpuMs = qMax(cpuMs, other.cpuMs);
    }
};

class Stopwatch
{
public:
    Stopwatch() { Restart(); }
    void Restart()
    {
        m_wall.start();
        m_cpuMs = CpuMs();
    }
    Span Elapsed() const { return {double(m_wall.nsecsElapsed()) / 1e6, CpuMs() - m_cpuMs}; }

private:
    static double CpuMs()
    {
        timespec time = {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
    }
    QElapsedTimer m_wall;
    double m_cpuMs = 0;
};

/// Longest time between two passes of the event loop.
class LoopWatch
{
public:
    LoopWatch()
    {
        QObject::connect(&m_tick, &QTimer::timeout, &m_tick, [this] {
            m_longest.Raise(m_sinceLast.Elapsed());
            m_sinceLast.Restart();
        });
        m_tick.start(1);
    }
    void Restart()
    {
        m_longest = Span();
        m_sinceLast.Restart();
    }
    Span Longest() const { return m_longest; }

private:
    QTimer m_tick;
    Stopwatch m_sinceLast;
    Span m_longest;
};

void Report(const char *pName, const Span &longest, double limitMs)
{
    std::printf("%-42s %8.2f %8.2f %8.0f\n", pName, longest.wallMs, longest.cpuMs, limitMs);
}

/// The longest of some runs, the painting that follows included.
template <typename Action>
void Measure(const char *pName, double limitMs, Action action)
{
    Span longest;
    for (int nRound = 0; nRound < ROUNDS; ++nRound) {
        const Stopwatch watch;
        action(nRound);
        QCoreApplication::processEvents();
        longest.Raise(watch.Elapsed());
    }
    Report(pName, longest, limitMs);
}

QVector<KX_CC_DEVICE_INFO> Cameras(int nCount)
{
    QVector<KX_CC_DEVICE_INFO> vecCameras;
    for (int n = 1; n <= nCount; ++n)
        vecCameras.append(NetworkCamera(n, KX_CC_ACCESS_FREE, n % 2 ? "eth0" : "eth1"));
    return vecCameras;
}

QTreeWidgetItem *Group(const LumoDeviceTree *pTree, const char *pText)
{
    return pTree->findItems(pText, Qt::MatchExactly | Qt::MatchRecursive).value(0);
}

void MeasureTable(MainWidget &window)
{
    auto *pTable = window.findChild<TarnCustomTableWidget *>("DeviceTable");
    auto *pTree = window.findChild<LumoDeviceTree *>("ToolTree");
    auto *pHeader = qobject_cast<TarnCustomCheckHeaderView *>(pTable->horizontalHeader());
    Measure("tick the header, then clear it", 50,
            [&](int nRound) { pHeader->setCheckState(0, nRound % 2 ? Qt::Unchecked : Qt::Checked, true); });
    Measure("tick one row, then clear it", 5, [&](int nRound) {
        pTable->setCellCheckState(500, 0, nRound % 2 ? Qt::Unchecked : Qt::Checked, true);
    });
    Measure("choose a group of half the cameras", 50, [&](int nRound) {
        pTree->setCurrentItem(Group(pTree, nRound % 2 ? "All Cameras" : "GigE Vision - eth1"));
    });
    pTree->setCurrentItem(Group(pTree, "All Cameras"));
    Measure("sort by serial number, turn by turn", 50,
            [&](int nRound) { window.onSortTableWidget(4, nRound % 2 == 0); });
    pTree->setCurrentItem(Group(pTree, "GigE Vision - eth1"));
    Measure("sort while half the rows are hidden", 50,
            [&](int nRound) { window.onSortTableWidget(4, nRound % 2 == 0); });
    pTree->setCurrentItem(Group(pTree, "All Cameras"));
}

/// Puts the export of the ticked cameras through, without its file dialog.
bool MeasureBatch(MainWidget &window, int nCameras)
{
    LoopWatch watch;
    QTimer closer;
    QTemporaryDir folder;
    bool bOver = false;
    QObject::connect(&closer, &QTimer::timeout, &closer, [&] {
        QWidget *pModal = QApplication::activeModalWidget();
        if (!pModal)
            return;
        if (QLineEdit *pEdit = pModal->findChild<QLineEdit *>("fileNameEdit")) {
            pEdit->setText(folder.path());
            static_cast<QDialog *>(pModal)->accept();
            watch.Restart(); // building that dialog is no part of the batch
        } else if (pModal->objectName() == "SaveDoneHintDlg") {
            bOver = true;
            pModal->close();
        }
    });
    closer.start(5);
    ScriptedCameras::OpenTogether(nCameras);
    window.OnBtnExport();
    const bool bDone = Wait([&] { return bOver; });
    char name[64];
    std::snprintf(name, sizeof name, "event loop, an export of %d cameras", nCameras);
    Report(name, watch.Longest(), 50);
    return bDone;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(settings.path()));
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));

    ScriptedDevices devices;
    MainWidget window;
    window.show();
    std::printf("%-42s %8s %8s %8s\n", "longest, in milliseconds", "clock", "CPU", "limit");
    {
        LoopWatch watch;
        devices.Set(Cameras(1000));
        if (!Wait([&] { return window.GetCameraNum() == 1000; }))
            return 1;
        Report("event loop, 1000 cameras are found", watch.Longest(), 50);
    }
    MeasureTable(window);

    // As many as a batch may have: ticking the header stops there.
    auto *pTable = window.findChild<TarnCustomTableWidget *>("DeviceTable");
    qobject_cast<TarnCustomCheckHeaderView *>(pTable->horizontalHeader())
        ->setCheckState(0, Qt::Checked, true);
    return MeasureBatch(window, window.GetCheckedNum()) ? 0 : 1;
}
