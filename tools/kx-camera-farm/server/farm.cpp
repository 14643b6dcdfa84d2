#include "server/farm.h"

#include "faults/faultvalue.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace KxFarm {

namespace {

CameraIdentity MakeIdentity(const CameraModel &model, int number, std::uint32_t address)
{
    CameraIdentity identity;
    identity.vendor = model.vendor;
    identity.model = model.model;
    identity.version = "1.0.0";
    identity.info = "simulated camera";
    identity.serial = "SIM" + QByteArray::number(number).rightJustified(4, '0');
    identity.mac = (std::uint64_t{0x0200} << 32U) | address; // 02: locally administered
    return identity;
}

/// Takes the first word off *pLine.
QByteArray TakeWord(QByteArray *pLine)
{
    const int blank = pLine->indexOf(' ');
    QByteArray word = blank < 0 ? *pLine : pLine->left(blank);
    *pLine = blank < 0 ? QByteArray() : pLine->mid(blank + 1).trimmed();
    return word;
}

QByteArray TextOf(const QJsonValue &value)
{
    if (value.isBool())
        return value.toBool() ? "1" : "0";
    return value.toVariant().toString().toUtf8();
}

} // namespace

bool Farm::Populate(const std::shared_ptr<const CameraModel> &pModel, int count, std::uint32_t firstAddress)
{
    std::uint32_t address = firstAddress;
    for (int i = 0; i < count; ++i, ++address) {
        while ((address & 0xFFU) == 0 || (address & 0xFFU) == 255)
            ++address;
        if ((address >> 24U) != 127)
            return false;
        m_listCameras.push_back(
            std::make_unique<SimulatedCamera>(pModel, MakeIdentity(*pModel, i + 1, address), address));
    }
    return true;
}

std::vector<SimulatedCamera *> Farm::Select(const QByteArray &who) const
{
    std::vector<SimulatedCamera *> selected;
    for (const auto &pCamera : m_listCameras) {
        if (who == "*" || who == pCamera->Get("address") || who == pCamera->Get("serial"))
            selected.push_back(pCamera.get());
    }
    return selected;
}

QByteArray Farm::List() const
{
    QByteArray answer = "ok " + QByteArray::number(static_cast<int>(m_listCameras.size()));
    for (const auto &pCamera : m_listCameras)
        answer += ' ' + pCamera->Get("address") + '/' + pCamera->Get("serial");
    return answer;
}

bool Farm::IsAddressFree(const QByteArray &who, const QByteArray &address) const
{
    return Select(who).size() == 1 &&
           std::none_of(m_listCameras.begin(), m_listCameras.end(),
                        [&](const auto &pCamera) { return pCamera->Get("address") == address; });
}

QByteArray Farm::Set(const QByteArray &who, const QByteArray &key, const QByteArray &value)
{
    if (key == "address" && !IsAddressFree(who, value))
        return "error the address is taken, or meant for several cameras";
    QString error;
    for (SimulatedCamera *pCamera : Select(who)) {
        if (!pCamera->Set(key, value, &error))
            return "error " + error.toUtf8();
    }
    return "ok";
}

QByteArray Farm::Get(const QByteArray &who, const QByteArray &key) const
{
    const SimulatedCamera &camera = *Select(who).front();
    if (!key.isEmpty()) {
        const QByteArray text = camera.Get(key);
        return text.isNull() ? "error there is no key \"" + key + '"' : "ok " + text;
    }
    QByteArray answer = "ok";
    for (const auto &fault : camera.ActiveFaults())
        answer += ' ' + fault.first + '=' + fault.second + ';';
    return answer;
}

QByteArray Farm::Execute(const QByteArray &line, TimePoint now)
{
    QByteArray rest = line.trimmed();
    const QByteArray verb = TakeWord(&rest);
    if (verb == "list")
        return List();
    const QByteArray who = TakeWord(&rest);
    const auto cameras = Select(who);
    if (cameras.empty())
        return "error there is no camera \"" + who + '"';
    if (verb == "get")
        return Get(who, rest);
    if (verb == "set") {
        const QByteArray key = TakeWord(&rest);
        return Set(who, key, rest);
    }
    void (*action)(SimulatedCamera *, TimePoint) = nullptr;
    if (verb == "unplug")
        action = [](SimulatedCamera *pCamera, TimePoint) { pCamera->Unplug(); };
    else if (verb == "plug")
        action = [](SimulatedCamera *pCamera, TimePoint when) { pCamera->Plug(when); };
    else if (verb == "reboot")
        action = [](SimulatedCamera *pCamera, TimePoint) { pCamera->Device().Reboot(); };
    else if (verb == "clear")
        action = [](SimulatedCamera *pCamera, TimePoint) { pCamera->ClearFaults(); };
    if (!action)
        return "error there is no command \"" + verb + '"';
    for (SimulatedCamera *pCamera : cameras)
        action(pCamera, now);
    return "ok";
}

bool Farm::Configure(const QByteArray &config, QString *pError)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(config, &parseError);
    if (!document.isObject()) {
        *pError =
            document.isNull() ? parseError.errorString() : QStringLiteral("the outermost value is no object");
        return false;
    }
    // Objects iterate in the order of their keys: "*" comes before every address and serial number, so what
    // is said of one camera replaces what is said of all.
    const QJsonObject all = document.object();
    for (auto camera = all.begin(); camera != all.end(); ++camera) {
        const QByteArray who = camera.key().toUtf8();
        if (Select(who).empty() || !camera.value().isObject()) {
            *pError = QStringLiteral("\"%1\" is no camera with an object of settings").arg(camera.key());
            return false;
        }
        const QJsonObject settings = camera.value().toObject();
        for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
            const QByteArray answer = Set(who, setting.key().toUtf8(), TextOf(setting.value()));
            if (answer != "ok") {
                *pError = QStringLiteral("\"%1\", \"%2\": %3")
                              .arg(camera.key(), setting.key(), QString::fromUtf8(answer.mid(6)));
                return false;
            }
        }
    }
    return true;
}

} // namespace KxFarm
