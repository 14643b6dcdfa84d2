#include "device/camera.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace KxFarm {

using namespace Gvcp;

Camera::Camera(std::shared_ptr<const CameraModel> pModel, CameraIdentity identity, std::uint32_t ipAddress)
    : m_pModel(std::move(pModel))
    , m_pDescription(m_pModel->pDescription)
    , m_identity(std::move(identity))
    , m_nIpAddress(ipAddress)
    , m_nPersistentIp(ipAddress)
    , m_memory(m_pModel->pRegisters)
    , m_userSets(m_memory, m_pModel->userSetFirst, m_pModel->userSetEnd)
    , m_firmware(m_pModel->nodes, *m_pModel->pFeatures, m_pModel->strict, &m_memory, &m_userSets)
{
    Reboot();
}

void Camera::Reboot()
{
    m_firmware.Restart();
    m_control.Release();
    m_nIpAddress = m_nPersistentIp;
    FillBootstrap(&m_memory, m_identity, m_nIpAddress);
    PublishUrls();
}

void Camera::SetIdentity(const CameraIdentity &identity)
{
    m_identity = identity;
    FillBootstrap(&m_memory, m_identity, m_nIpAddress);
    PublishUrls();
    PublishControl();
}

void Camera::SeizeControl(const Endpoint &owner)
{
    m_control.Seize(owner);
    PublishControl();
}

void Camera::ReleaseControl()
{
    m_control.Release();
    PublishControl();
}

void Camera::SetIpAddress(std::uint32_t ipAddress)
{
    m_nIpAddress = m_nPersistentIp = ipAddress;
    m_memory.WriteWord(Bootstrap::CURRENT_IP, ipAddress);
    m_memory.WriteWord(Bootstrap::PERSISTENT_IP, ipAddress);
}

void Camera::SetDescription(std::shared_ptr<const PublishedDescription> pDescription)
{
    m_pDescription = std::move(pDescription);
    PublishUrls();
}

void Camera::PublishUrls()
{
    WriteText(&m_memory, Bootstrap::FIRST_URL, m_pDescription->url, Bootstrap::kUrlSize);
    WriteText(&m_memory, Bootstrap::SECOND_URL, QByteArray(), Bootstrap::kUrlSize);
}

void Camera::PublishControl()
{
    m_memory.WriteWord(Bootstrap::CONTROL_PRIVILEGE, m_control.Privilege());
    m_memory.WriteWord(Bootstrap::PRIMARY_PORT, m_control.Controller().port);
    m_memory.WriteWord(Bootstrap::PRIMARY_ADDRESS, m_control.Controller().address);
}

std::chrono::milliseconds Camera::HeartbeatTimeout() const
{
    if (m_memory.ReadWord(Bootstrap::GVCP_CONFIGURATION) & Bootstrap::kHeartbeatDisabled)
        return std::chrono::hours(24 * 365);
    return std::chrono::milliseconds(m_memory.ReadWord(Bootstrap::HEARTBEAT_TIMEOUT));
}

Bytes Camera::Handle(const Request &request, const Endpoint &from, TimePoint now)
{
    if (m_control.IsHeld() && m_control.Expire(now, HeartbeatTimeout()))
        PublishControl();
    m_control.Touch(from, now);
    switch (request.command) {
    case DISCOVERY_CMD:
        return Discover(request);
    case FORCEIP_CMD:
        return ForceIp(request);
    case READREG_CMD:
        return ReadRegisters(request, from);
    case WRITEREG_CMD:
        return WriteRegisters(request, from, now);
    case READMEM_CMD:
        return ReadMemory(request, from);
    case WRITEMEM_CMD:
        return WriteMemory(request, from, now);
    case PACKETRESEND_CMD: // has no acknowledge, and there is no stream to resend from
        return {};
    default:
        return request.AckRequired() ? MakeErrorAck(STATUS_NOT_IMPLEMENTED, request) : Bytes();
    }
}

Bytes Camera::Discover(const Request &request) const
{
    std::uint8_t payload[kDiscoveryAckPayload];
    m_memory.Read(0, payload, sizeof payload);
    return MakeAck(STATUS_SUCCESS, DISCOVERY_CMD + 1, request.id, payload, sizeof payload);
}

Bytes Camera::ForceIp(const Request &request)
{
    constexpr std::size_t kMac = 2;
    constexpr std::size_t kAddress = 20;
    constexpr std::size_t kMask = 36;
    constexpr std::size_t kGateway = 52;
    // Everybody hears it; nobody else says a word.
    if (request.size != kForceipPayload || LoadBe16(request.payload + kMac) != m_identity.mac >> 32U ||
        LoadBe32(request.payload + kMac + 2) != (m_identity.mac & 0xFFFFFFFFU))
        return {};
    const std::uint32_t address = LoadBe32(request.payload + kAddress);
    if (address == 0)
        return {}; // look for an address again: it is the one there is
    Status status = STATUS_SUCCESS;
    if (m_control.IsHeld())
        status = STATUS_ACCESS_DENIED;
    else if (address >> 24U != 127)
        status = STATUS_INVALID_PARAMETER;
    if (status == STATUS_SUCCESS) {
        m_nIpAddress = address; // until a reboot
        m_memory.WriteWord(Bootstrap::CURRENT_IP, address);
        m_memory.WriteWord(Bootstrap::CURRENT_MASK, LoadBe32(request.payload + kMask));
        m_memory.WriteWord(Bootstrap::CURRENT_GATEWAY, LoadBe32(request.payload + kGateway));
    }
    return request.AckRequired() ? MakeAck(status, FORCEIP_CMD + 1, request.id) : Bytes();
}

Bytes Camera::ReadRegisters(const Request &request, const Endpoint &from)
{
    if (!request.AckRequired())
        return {};
    if (request.size == 0 || request.size % 4 != 0)
        return MakeErrorAck(STATUS_INVALID_PARAMETER, request);
    std::uint8_t values[kMaxPayload];
    std::size_t done = 0;
    Status status = STATUS_SUCCESS;
    for (; done < request.size && status == STATUS_SUCCESS; done += 4) {
        status = Read(LoadBe32(request.payload + done), values + done, 4, from);
        if (status != STATUS_SUCCESS)
            break; // the length of the acknowledge says which register it was
    }
    return MakeAck(status, READREG_CMD + 1, request.id, values, done);
}

Bytes Camera::WriteRegisters(const Request &request, const Endpoint &from, TimePoint now)
{
    Status status = STATUS_SUCCESS;
    std::size_t done = 0;
    if (request.size == 0 || request.size % 8 != 0)
        status = STATUS_INVALID_PARAMETER;
    for (; status == STATUS_SUCCESS && done < request.size; done += 8) {
        status = Write(LoadBe32(request.payload + done), request.payload + done + 4, 4, from, now);
        if (status != STATUS_SUCCESS)
            break;
    }
    if (!request.AckRequired())
        return {};
    std::uint8_t index[4] = {};
    StoreBe16(index + 2, static_cast<std::uint16_t>(done / 8)); // how many were written
    return MakeAck(status, WRITEREG_CMD + 1, request.id, index, sizeof index);
}

Bytes Camera::ReadMemory(const Request &request, const Endpoint &from)
{
    if (!request.AckRequired())
        return {};
    if (request.size != 8)
        return MakeErrorAck(STATUS_INVALID_PARAMETER, request);
    const std::uint32_t address = LoadBe32(request.payload);
    const std::size_t count = LoadBe16(request.payload + 6);
    if (count == 0 || count > kMaxReadmem)
        return MakeErrorAck(STATUS_INVALID_PARAMETER, request);
    if (count % 4 != 0)
        return MakeErrorAck(STATUS_BAD_ALIGNMENT, request);
    std::uint8_t answer[kMaxPayload];
    std::memcpy(answer, request.payload, 4);
    const Status status = Read(address, answer + 4, count, from);
    if (status != STATUS_SUCCESS)
        return MakeErrorAck(status, request);
    return MakeAck(STATUS_SUCCESS, READMEM_CMD + 1, request.id, answer, 4 + count);
}

Bytes Camera::WriteMemory(const Request &request, const Endpoint &from, TimePoint now)
{
    Status status = STATUS_SUCCESS;
    if (request.size < 8)
        status = STATUS_INVALID_PARAMETER;
    else if (request.size % 4 != 0)
        status = STATUS_BAD_ALIGNMENT;
    else
        status = Write(LoadBe32(request.payload), request.payload + 4, request.size - 4, from, now);
    if (!request.AckRequired())
        return {};
    if (status != STATUS_SUCCESS)
        return MakeErrorAck(status, request);
    std::uint8_t index[4] = {};
    StoreBe16(index + 2, static_cast<std::uint16_t>(request.size - 4)); // bytes written
    return MakeAck(status, WRITEMEM_CMD + 1, request.id, index, sizeof index);
}

bool Camera::IsInDescription(std::uint64_t address, std::size_t size) const
{
    const std::uint64_t first = m_pDescription->address;
    // A client reads in whole words, often in whole blocks, so it may ask for a little more.
    const std::uint64_t end =
        first + static_cast<std::uint64_t>(m_pDescription->content.size()) + kMaxReadmem;
    return !m_pDescription->content.isEmpty() && address >= first && address + size <= end;
}

bool Camera::IsRegister(std::uint64_t address, std::size_t size) const
{
    return address >= m_pModel->registersFirst && address + size <= m_pModel->registersEnd;
}

Status Camera::CheckReadable(std::uint32_t address, std::size_t size) const
{
    if (!m_pModel->strict || IsRegister(address, size))
        return STATUS_SUCCESS;
    if (std::uint64_t{address} + size > Bootstrap::MANUFACTURER_SPACE)
        return STATUS_INVALID_ADDRESS;
    for (std::size_t i = 0; i < size; i += 4) {
        if (Bootstrap::AccessOf(address + static_cast<std::uint32_t>(i)) == Bootstrap::Access::None)
            return STATUS_INVALID_ADDRESS;
    }
    return STATUS_SUCCESS;
}

Status Camera::Read(std::uint32_t address, std::uint8_t *data, std::size_t size, const Endpoint &from)
{
    if (address % 4 != 0)
        return STATUS_BAD_ALIGNMENT;
    if (std::uint64_t{address} + size > (std::uint64_t{1} << 32U))
        return STATUS_INVALID_ADDRESS;
    // Everybody may ask who controls the camera.
    if (!m_control.MayRead(from) && address != Bootstrap::CONTROL_PRIVILEGE)
        return STATUS_ACCESS_DENIED;
    if (IsInDescription(address, size)) {
        const QByteArray &content = m_pDescription->content;
        const std::size_t offset = address - m_pDescription->address;
        const auto total = static_cast<std::size_t>(content.size());
        const std::size_t present = offset < total ? std::min(size, total - offset) : 0;
        std::memcpy(data, content.constData() + offset, present);
        std::memset(data + present, 0, size - present);
        return STATUS_SUCCESS;
    }
    const Status status = CheckReadable(address, size);
    if (status == STATUS_SUCCESS)
        m_memory.Read(address, data, size);
    return status;
}

Status Camera::Write(std::uint32_t address, const std::uint8_t *data, std::size_t size, const Endpoint &from,
                     TimePoint now)
{
    if (address % 4 != 0)
        return STATUS_BAD_ALIGNMENT;
    if (std::uint64_t{address} + size > (std::uint64_t{1} << 32U))
        return STATUS_INVALID_ADDRESS;
    if (address == Bootstrap::CONTROL_PRIVILEGE && size == 4)
        return WriteBootstrap(address, LoadBe32(data), from, now);
    if (!m_control.MayWrite(from))
        return STATUS_ACCESS_DENIED;
    if (IsInDescription(address, size))
        return STATUS_WRITE_PROTECT;
    if (address < Bootstrap::MANUFACTURER_SPACE) {
        Status status = STATUS_SUCCESS;
        for (std::size_t i = 0; i < size && status == STATUS_SUCCESS; i += 4)
            status = WriteBootstrap(address + static_cast<std::uint32_t>(i), LoadBe32(data + i), from, now);
        return status;
    }
    if (m_pModel->strict && !IsRegister(address, size))
        return STATUS_INVALID_ADDRESS;
    const Status status = m_firmware.Write(address, data, size);
    if (m_firmware.TakeResetRequest())
        Reboot();
    return status;
}

Status Camera::WriteBootstrap(std::uint32_t address, std::uint32_t value, const Endpoint &from, TimePoint now)
{
    switch (Bootstrap::AccessOf(address)) {
    case Bootstrap::Access::None:
        if (m_pModel->strict)
            return STATUS_INVALID_ADDRESS;
        break;
    case Bootstrap::Access::ReadOnly:
        return STATUS_WRITE_PROTECT;
    case Bootstrap::Access::ReadWrite:
        break;
    }
    if (address == Bootstrap::CONTROL_PRIVILEGE) {
        if (!m_control.WritePrivilege(from, value, now))
            return STATUS_ACCESS_DENIED;
        if (!m_control.IsHeld())
            m_memory.WriteWord(Bootstrap::STREAM_PORT, 0); // the stream ends with its controller
        PublishControl();
        return STATUS_SUCCESS;
    }
    if (address == Bootstrap::TIMESTAMP_CONTROL) {
        LatchTimestamp(value, now);
        return STATUS_SUCCESS;
    }
    if (address == Bootstrap::HEARTBEAT_TIMEOUT)
        value = std::clamp(value, Bootstrap::kMinHeartbeatMs, Bootstrap::kMaxHeartbeatMs);
    m_memory.WriteWord(address, value);
    if (address >= Bootstrap::USER_DEFINED_NAME && address < Bootstrap::USER_DEFINED_NAME + 16) {
        m_identity.userName.resize(16); // non-volatile: a reboot keeps it
        m_memory.Read(Bootstrap::USER_DEFINED_NAME,
                      reinterpret_cast<std::uint8_t *>(m_identity.userName.data()), 16);
    }
    return STATUS_SUCCESS;
}

void Camera::LatchTimestamp(std::uint32_t control, TimePoint now)
{
    constexpr std::uint32_t kReset = 1;
    constexpr std::uint32_t kLatch = 2;
    if (control & kLatch) {
        const auto ticks =
            static_cast<std::uint64_t>(std::chrono::nanoseconds(now - m_timestampZero).count());
        m_memory.WriteWord(Bootstrap::TIMESTAMP_HIGH, static_cast<std::uint32_t>(ticks >> 32U));
        m_memory.WriteWord(Bootstrap::TIMESTAMP_LOW, static_cast<std::uint32_t>(ticks & 0xFFFFFFFFU));
    }
    if (control & kReset)
        m_timestampZero = now;
}

} // namespace KxFarm
