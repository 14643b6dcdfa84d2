#include "server/simulatedcamera.h"

#include "faults/faultvalue.h"

#include <algorithm>

namespace KxFarm {

namespace {

struct IdentityKey
{
    const char *key;
    QByteArray CameraIdentity::*text;
};

constexpr IdentityKey kIdentityKeys[] = {
    {"vendor", &CameraIdentity::vendor},   {"model", &CameraIdentity::model},
    {"version", &CameraIdentity::version}, {"info", &CameraIdentity::info},
    {"serial", &CameraIdentity::serial},   {"user-name", &CameraIdentity::userName}};

std::size_t OrderOf(const QByteArray &key)
{
    const auto &kinds = AllFaultKinds();
    return static_cast<std::size_t>(
        std::find_if(kinds.begin(), kinds.end(), [&key](const FaultKind &kind) { return key == kind.key; }) -
        kinds.begin());
}

QByteArray MacText(std::uint64_t mac)
{
    QByteArray bytes(6, 0);
    for (int i = 5; i >= 0; --i, mac >>= 8U)
        bytes[i] = static_cast<char>(mac & 0xFFU);
    return bytes.toHex(':');
}

} // namespace

SimulatedCamera::SimulatedCamera(std::shared_ptr<const CameraModel> pModel, const CameraIdentity &identity,
                                 std::uint32_t ipAddress)
    : m_camera(std::move(pModel), identity, ipAddress)
    , m_random(ipAddress) // the same run plays the same accidents
{
}

SimulatedCamera::~SimulatedCamera() = default;

void SimulatedCamera::Receive(const std::uint8_t *data, std::size_t size, const Endpoint &from, TimePoint now,
                              std::vector<Reply> *pReplies)
{
    if (IsSilent(now))
        return;
    Gvcp::Request request;
    const Gvcp::Parsed parsed = Gvcp::ParseRequest(data, size, &request);
    if (parsed == Gvcp::Parsed::Ignore)
        return;
    Exchange exchange{request, from, now, m_camera, m_random};
    if (parsed == Gvcp::Parsed::BadHeader)
        exchange.refusedWith = Gvcp::STATUS_INVALID_HEADER;
    for (const ActiveFault &active : m_listFaults)
        active.pFault->BeforeCommand(&exchange);
    if (!exchange.dropped) {
        Bytes answer;
        if (exchange.refusedWith == Gvcp::STATUS_SUCCESS)
            answer = m_camera.Handle(request, from, now);
        else if (request.AckRequired())
            answer = Gvcp::MakeErrorAck(exchange.refusedWith, request);
        if (!answer.empty())
            exchange.replies.push_back(Reply{std::move(answer)});
        for (const ActiveFault &active : m_listFaults)
            active.pFault->AfterCommand(&exchange);
    }
    std::move(exchange.replies.begin(), exchange.replies.end(), std::back_inserter(*pReplies));
    Settle(exchange);
}

void SimulatedCamera::Settle(const Exchange &exchange)
{
    if (exchange.silentFor.count() > 0) {
        m_camera.Reboot();
        m_silentUntil = exchange.now + exchange.silentFor;
    }
    if (exchange.moveTo != 0)
        m_camera.SetIpAddress(exchange.moveTo);
    if (exchange.closePort)
        m_bPortOpen = false;
}

bool SimulatedCamera::SetIdentityText(const QByteArray &key, const QByteArray &value, bool *pKnown,
                                      QString *pError)
{
    *pKnown = true;
    CameraIdentity identity = m_camera.Identity();
    if (key == "mac") {
        const QByteArray bytes = QByteArray::fromHex(value);
        if (bytes.size() != 6) {
            *pError = QStringLiteral("\"%1\" is no MAC address").arg(QString::fromUtf8(value));
            return false;
        }
        identity.mac = bytes.toHex().toULongLong(nullptr, 16);
        m_camera.SetIdentity(identity);
        return true;
    }
    for (const IdentityKey &entry : kIdentityKeys) {
        if (key == entry.key) {
            identity.*entry.text = Unescaped(value);
            m_camera.SetIdentity(identity);
            return true;
        }
    }
    *pKnown = false;
    return false;
}

bool SimulatedCamera::Set(const QByteArray &key, const QByteArray &value, QString *pError)
{
    pError->clear();
    bool known = false;
    const bool done = SetIdentityText(key, value, &known, pError);
    if (known)
        return done;
    if (key == "port") {
        if (value != "open" && value != "closed") {
            *pError = QStringLiteral("port is \"open\" or \"closed\"");
            return false;
        }
        m_bPortOpen = value == "open";
        return true;
    }
    if (key == "address") {
        std::uint32_t address = 0;
        if (!ParseLoopbackAddress(QString::fromUtf8(value), &address)) {
            *pError = QStringLiteral("\"%1\" is no camera address").arg(QString::fromUtf8(value));
            return false;
        }
        m_camera.SetIpAddress(address);
        return true;
    }
    const std::size_t order = OrderOf(key);
    if (order == AllFaultKinds().size()) {
        *pError = QStringLiteral("there is no key \"%1\"").arg(QString::fromUtf8(key));
        return false;
    }
    return SetFault(AllFaultKinds()[order], value, pError);
}

void SimulatedCamera::DropFault(const QByteArray &key)
{
    const auto found = std::find_if(m_listFaults.begin(), m_listFaults.end(),
                                    [&key](const ActiveFault &active) { return key == active.kind.key; });
    if (found == m_listFaults.end())
        return;
    found->pFault->Stop(&m_camera);
    m_listFaults.erase(found);
}

bool SimulatedCamera::SetFault(const FaultKind &kind, const QByteArray &value, QString *pError)
{
    std::unique_ptr<Fault> pFault;
    if (!IsOff(value)) {
        pFault = MakeFault(kind, value, m_camera, pError);
        if (!pFault)
            return false;
    }
    ++m_nGeneration;
    DropFault(kind.key);
    if (!pFault)
        return true;
    pFault->Start(&m_camera);
    const std::size_t order = OrderOf(kind.key);
    const auto place =
        std::find_if(m_listFaults.begin(), m_listFaults.end(),
                     [order](const ActiveFault &active) { return OrderOf(active.kind.key) > order; });
    m_listFaults.insert(place, ActiveFault{kind, value, std::move(pFault)});
    return true;
}

QByteArray SimulatedCamera::Get(const QByteArray &key) const
{
    if (key == "mac")
        return MacText(m_camera.Identity().mac);
    if (key == "port")
        return m_bPortOpen ? "open" : "closed";
    if (key == "address")
        return AddressText(m_camera.IpAddress()).toUtf8();
    for (const IdentityKey &entry : kIdentityKeys) {
        if (key == entry.key)
            return QByteArray(m_camera.Identity().*entry.text).append("");
    }
    for (const ActiveFault &active : m_listFaults) {
        if (key == active.kind.key)
            return active.text;
    }
    return OrderOf(key) < AllFaultKinds().size() ? QByteArray("off") : QByteArray();
}

QVector<QPair<QByteArray, QByteArray>> SimulatedCamera::ActiveFaults() const
{
    QVector<QPair<QByteArray, QByteArray>> list;
    for (const ActiveFault &active : m_listFaults)
        list.append({QByteArray(active.kind.key), active.text});
    return list;
}

void SimulatedCamera::ClearFaults()
{
    ++m_nGeneration;
    for (const ActiveFault &active : m_listFaults)
        active.pFault->Stop(&m_camera);
    m_listFaults.clear();
    m_bPortOpen = true;
}

void SimulatedCamera::Unplug()
{
    m_bUnplugged = true;
    ++m_nGeneration;
    m_camera.Reboot();
}

void SimulatedCamera::Plug(TimePoint now)
{
    m_bUnplugged = false;
    m_silentUntil = now;
}

} // namespace KxFarm
