#include "lanes.h"

#include <QElapsedTimer>
#include <QThread>

#include <KxCameraControl/kxcameracontrol.h>

#include <future>
#include <random>
#include <vector>

namespace {

const qint64 kOpenAgainMs = 15000;

bool Opens(const QByteArray &address)
{
    KX_CC_DEVICE_INFO info = {};
    void *hDevice = nullptr;
    const bool opened = KX_CC_FindDevice(address, 1000, &info) == KX_CC_OK &&
                        KX_CC_CreateHandle(&hDevice, &info) == KX_CC_OK &&
                        KX_CC_OpenDevice(hDevice, KX_CC_ACCESS_MODE_EXCLUSIVE, 0) == KX_CC_OK;
    if (hDevice != nullptr)
        KX_CC_DestroyHandle(hDevice);
    return opened;
}

} // namespace

QString RunLanes(int nLanes, const std::function<QString(int)> &run)
{
    std::vector<std::future<QString>> lanes(static_cast<std::size_t>(nLanes));
    for (int lane = 0; lane < nLanes; ++lane)
        lanes[lane] = std::async(std::launch::async, run, lane);
    QStringList errors;
    for (int lane = 0; lane < nLanes; ++lane) {
        const QString error = lanes[lane].get();
        if (!error.isEmpty())
            errors << QStringLiteral("lane %1: %2").arg(lane).arg(error);
    }
    return errors.join('\n');
}

QString CheckOpenAgain(const QStringList &addresses)
{
    QElapsedTimer timer;
    timer.start();
    for (const QString &address : addresses) {
        while (!Opens(address.toLatin1())) {
            if (timer.elapsed() > kOpenAgainMs)
                return address + " cannot be opened";
            QThread::msleep(50);
        }
    }
    return {};
}

unsigned int RandomSeed()
{
    const unsigned int seed = qEnvironmentVariableIsSet("KX_TEST_SEED")
                                  ? qEnvironmentVariableIntValue("KX_TEST_SEED")
                                  : std::random_device()();
    qInfo("KX_TEST_SEED=%u", seed);
    return seed;
}
