#include "device/cameramodel.h"
#include "server/farm.h"
#include "server/farmserver.h"
#include "server/options.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <sys/resource.h>

namespace {

using namespace KxFarm;

int Fail(int code, const QString &reason)
{
    std::fprintf(stderr, "kx-camera-farm: %s\n", qUtf8Printable(reason));
    return code;
}

bool ReadFile(const QString &path, QByteArray *pContent, QString *pError)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *pError = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    *pContent = file.readAll();
    return true;
}

std::shared_ptr<const CameraModel> LoadModel(const QString &path, QString *pError)
{
    if (path.isEmpty())
        return MakeBuiltinModel(pError);
    QByteArray content;
    if (!ReadFile(path, &content, pError))
        return nullptr;
    auto pModel = MakeCameraModel(content, QFileInfo(path).fileName().toUtf8(), true, pError);
    if (!pModel)
        *pError = QStringLiteral("%1: %2").arg(path, *pError);
    return pModel;
}

bool SetUp(const Options &options, Farm *pFarm, QString *pError)
{
    const auto pModel = LoadModel(options.descriptionFile, pError);
    if (!pModel)
        return false;
    if (!pFarm->Populate(pModel, options.count, options.firstAddress)) {
        *pError = QStringLiteral("the addresses run out of 127.0.0.0/8");
        return false;
    }
    if (options.latencyUs > 0)
        pFarm->Execute("set * latency-us " + QByteArray::number(options.latencyUs), TimePoint());
    if (options.configFile.isEmpty())
        return true;
    QByteArray config;
    if (!ReadFile(options.configFile, &config, pError))
        return false;
    if (pFarm->Configure(config, pError))
        return true;
    *pError = QStringLiteral("%1: %2").arg(options.configFile, *pError);
    return false;
}

/// Every camera is a socket; the usual soft limit is 1024.
void RaiseDescriptorLimit()
{
    rlimit limit = {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

int Serve(const Options &options)
{
    QString error;
    Farm farm;
    RaiseDescriptorLimit();
    if (!SetUp(options, &farm, &error))
        return Fail(1, error);
    FarmServer server(&farm);
    if (!server.Open(options.controlSocket, &error))
        return Fail(1, error);
    std::printf("ready %d cameras\n", options.count);
    std::fflush(stdout);
    server.Run();
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    Options options;
    QString error;
    if (!Options::Parse(QCoreApplication::arguments(), &options, &error))
        return Fail(2, error);
    if (options.help || options.version) {
        std::fputs(options.help ? qUtf8Printable(Options::HelpText())
                                : "kx-camera-farm " PROJECT_VERSION "\n",
                   stdout);
        return 0;
    }
    return Serve(options);
}
