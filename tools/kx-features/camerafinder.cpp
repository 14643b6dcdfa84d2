#include "camerafinder.h"

#include <KxCameraControl/kxcameracontrol.h>

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

#include <process/processroom.h>

namespace {

const unsigned int kAllTransports = KX_CC_TRANSPORT_GIGE | KX_CC_TRANSPORT_USB | KX_CC_TRANSPORT_PORT;

struct DirectAnswer
{
    KX_CC_DEVICE_INFO info;
    int result;
};

const int kMostQuestions = 256; // at once

// How many addresses are asked at the same time: each takes a thread and a socket.
int QuestionsAtOnce(int addresses)
{
    const int byDescriptors = ProcessRoom::FreeDescriptors() / 2;
    return std::clamp(addresses, 1, qMin(kMostQuestions, qMax(1, byDescriptors)));
}

// Side by side: one that does not answer costs the whole time, and there may be many of them.
std::vector<DirectAnswer> AskDirectly(const QStringList &addresses, int searchMs)
{
    std::vector<DirectAnswer> answers(static_cast<size_t>(addresses.size()));
    std::atomic_int next{0};
    const auto askTheRest = [&] {
        for (int i = next++; i < addresses.size(); i = next++) {
            DirectAnswer &answer = answers[static_cast<size_t>(i)];
            answer.result = KX_CC_FindDevice(addresses.at(i).toLatin1().constData(),
                                             static_cast<unsigned int>(searchMs), &answer.info);
        }
    };
    // Counted once: every look at the free descriptors takes a millisecond, and the threads take some.
    const int atOnce = QuestionsAtOnce(addresses.size());
    std::vector<std::thread> threads;
    try {
        for (int i = 1; i < atOnce; ++i) {
            threads.emplace_back(askTheRest);
        }
    } catch (const std::system_error &) { // no further thread is allowed: fewer will do
    }
    askTheRest();
    for (std::thread &thread : threads) {
        thread.join();
    }
    return answers;
}

FoundCameras FindByAddress(const QStringList &addresses, int searchMs)
{
    FoundCameras found;
    QStringList unique = addresses;
    unique.removeDuplicates();
    const std::vector<DirectAnswer> answers = AskDirectly(unique, searchMs);
    for (int i = 0; i < unique.size(); ++i) {
        const DirectAnswer &answer = answers[static_cast<size_t>(i)];
        if (answer.result == KX_CC_OK) {
            found.cameras << MakeCamera(answer.info, found.cameras.size());
        } else {
            found.missing << QStringLiteral("address %1").arg(unique.at(i));
        }
    }
    return found;
}

void AppendMissing(QStringList &missing, const QStringList &names, const QVector<Camera> &found,
                   QString Camera::*pField, const QString &what)
{
    for (const QString &name : names) {
        const bool isThere = std::any_of(found.begin(), found.end(),
                                         [&](const Camera &camera) { return camera.*pField == name; });
        if (!isThere) {
            missing << what.arg(name);
        }
    }
}

} // namespace

QVector<Camera> FindAllCameras(int searchMs)
{
    QVector<Camera> cameras;
    void *hEnumerator = nullptr;
    if (KX_CC_CreateEnumerator(&hEnumerator, kAllTransports) != KX_CC_OK) {
        return cameras;
    }
    KX_CC_DEVICE_LIST list = {};
    KX_CC_Enumerate(hEnumerator, static_cast<unsigned int>(searchMs), &list);
    for (unsigned int i = 0; i < list.nDeviceNum; ++i) {
        cameras << MakeCamera(list.pstDevices[i], static_cast<int>(i));
    }
    KX_CC_DestroyEnumerator(hEnumerator);
    return cameras;
}

FoundCameras FindChosenCameras(const CameraChoice &choice, int searchMs)
{
    return choice.IsByAddressOnly() ? FindByAddress(choice.addresses, searchMs)
                                    : SelectCameras(FindAllCameras(searchMs), choice);
}

FoundCameras SelectCameras(const QVector<Camera> &found, const CameraChoice &choice)
{
    FoundCameras selected;
    std::copy_if(found.begin(), found.end(), std::back_inserter(selected.cameras), [&](const Camera &camera) {
        return choice.bAll || choice.serials.contains(camera.strSerial) ||
               choice.models.contains(camera.strModel) || choice.addresses.contains(camera.strAddress);
    });
    AppendMissing(selected.missing, choice.serials, found, &Camera::strSerial,
                  QStringLiteral("serial number %1"));
    AppendMissing(selected.missing, choice.models, found, &Camera::strModel, QStringLiteral("model %1"));
    AppendMissing(selected.missing, choice.addresses, found, &Camera::strAddress,
                  QStringLiteral("address %1"));
    return selected;
}
