// How long the window is held up, and how long the batch takes, when it exports many simulated cameras of
// which some are faulty. The real camera SDK, with its helper processes; offscreen.
//
//   bench_window_scale FAULTS COUNT [DESCRIPTION]
//
// FAULTS is a file that bench/faults wrote. The faults begin with the batch: cameras that are faulty before
// are not free, and cannot be ticked.

#include <QApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QResource>
#include <QStyleFactory>
#include <QTemporaryDir>

#include <cstdio>

#include <sys/resource.h>

#include <StyleCtl/tarncustomcheckheaderview.h>
#include <StyleCtl/tarncustomtablewidget.h>
#include <ToolBase/lumointerface.h>
#include <camerafarm.h>
#include <ownnetwork.h>
#include <ui/mainwidget.h>

#include "windowbench.h"

namespace {

/// The installation lets a batch have so many cameras.
bool WriteSettings(const QString &strFolder, int nCameras)
{
    QFile file(strFolder + QStringLiteral("/lumo/installation.conf"));
    return QDir(strFolder).mkdir(QStringLiteral("lumo")) && file.open(QIODevice::WriteOnly) &&
           file.write("ToolsSupportNum=" + QByteArray::number(nCameras) + '\n') > 0;
}

/// The commands that set the faults of the file.
QList<QByteArray> Commands(const QString &strFaults)
{
    QList<QByteArray> listCommands;
    QFile file(strFaults);
    if (!file.open(QIODevice::ReadOnly))
        return listCommands;
    const QJsonObject cameras = QJsonDocument::fromJson(file.readAll()).object();
    for (auto camera = cameras.begin(); camera != cameras.end(); ++camera) {
        const QJsonObject faults = camera.value().toObject();
        for (auto fault = faults.begin(); fault != faults.end(); ++fault) {
            listCommands.append("set " + camera.key().toUtf8() + ' ' + fault.key().toUtf8() + ' ' +
                                fault.value().toVariant().toString().toUtf8());
        }
    }
    return listCommands;
}

bool Measure(CameraFarm &farm, const QList<QByteArray> &listFaults, int nCameras)
{
    MainWidget window;
    std::printf("%-42s %8s %8s %8s\n", "longest, in milliseconds", "clock", "CPU", "limit");
    LoopWatch watch;
    window.show();
    QCoreApplication::processEvents();
    watch.Restart(); // building the window is not what is measured
    if (!Wait([&] { return window.GetEnabledNum() == nCameras; })) {
        std::fprintf(stderr, "%d of %d cameras are found\n", window.GetEnabledNum(), nCameras);
        return false;
    }
    Report("event loop, the cameras are found", watch.Longest(), 50);

    auto *pTable = window.findChild<TarnCustomTableWidget *>(QStringLiteral("DeviceTable"));
    qobject_cast<TarnCustomCheckHeaderView *>(pTable->horizontalHeader())
        ->setCheckState(0, Qt::Checked, true);
    Stopwatch batch;
    const bool bDone = ExportTicked(window, watch, nCameras, [&] {
        for (const QByteArray &fault : listFaults)
            farm.Command(fault);
        batch.Restart();
    });
    const Span span = batch.Elapsed();
    Report("event loop, the export", watch.Longest(), 50);
    rusage use = {};
    getrusage(RUSAGE_SELF, &use);
    std::printf("\n%d cameras, %d with a fault: %d succeeded, %d failed, in %.1f s\n", nCameras,
                listFaults.size(), CountOf(window, "SuccessNumLabel"), CountOf(window, "FailedNumLabel"),
                span.wallMs / 1e3);
    std::printf("the window's thread worked %.2f s; at most %ld MB resident\n", span.cpuMs / 1e3,
                use.ru_maxrss / 1024);
    return bDone;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: bench_window_scale FAULTS COUNT [DESCRIPTION]\n");
        return 2;
    }
    EnterOwnNetwork();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(settings.path()));
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QResource::registerResource(LumoInterface::readonlyCfgPath() + QStringLiteral("/rcc/lumo.rcc"));

    const int nCameras = QByteArray(argv[2]).toInt();
    const QList<QByteArray> listFaults = Commands(QFile::decodeName(argv[1]));
    QStringList listArguments{QStringLiteral("--count"), QString::number(nCameras),
                              QStringLiteral("--first-address"), QStringLiteral("127.92.1.1")};
    if (argc > 3)
        listArguments << QStringLiteral("--description") << QFile::decodeName(argv[3]);
    CameraFarm farm;
    if (!WriteSettings(settings.path(), nCameras) || !farm.Start(listArguments)) {
        std::fprintf(stderr, "no cameras: %s\n", qPrintable(farm.Error()));
        return 1;
    }
    // Real cameras have processors of their own: the simulator goes first, where the system allows it.
    setpriority(PRIO_PROCESS, static_cast<id_t>(farm.ProcessId()), -20);
    return Measure(farm, listFaults, nCameras) ? 0 : 1;
}
