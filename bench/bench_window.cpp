// What a person waits for in the window with many cameras: ticking all, ticking one, changing the filter,
// sorting; and how long the event loop is held up while cameras are found and while a batch runs.
//
// Cameras and camera SDK are scripted, so only the window's own work counts. Offscreen.

#include <QApplication>
#include <QStyleFactory>
#include <QTemporaryDir>

#include <cstdio>

#include <DevListMgr/lumodevicetree.h>
#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <scriptedcameras.h>
#include <scripteddevices.h>
#include <ui/mainwidget.h>

#include "loopwatch.h"
#include "windowbench.h"

namespace {

const int kRounds = 20;

/// The longest of some runs, the painting that follows included.
template <typename Action>
void Measure(const char *pName, double limitMs, Action action)
{
    Span longest;
    for (int nRound = 0; nRound < kRounds; ++nRound) {
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

/// Puts the export of the ticked cameras through.
bool MeasureBatch(MainWidget &window, int nCameras)
{
    LoopWatch watch;
    ScriptedCameras::OpenTogether(nCameras);
    const bool bDone = ExportTicked(window, watch, nCameras);
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
