// Datagrams from any client to a simulated camera. The input's first byte chooses the camera; then come
// datagrams: a byte for client and pause, two for the length (big-endian), the bytes.
#include <algorithm>
#include <vector>

#include "genicam/nodeevaluator.h"
#include "server/simulatedcamera.h"

#include "check.h"

using namespace KxFarm;

namespace {

/// A description of somebody else's, where every address is memory.
const char kForeignDescription[] =
    "<RegisterDescription ModelName='M' VendorName='V'>"
    "<Integer "
    "Name='Width'><pValue>WidthReg</pValue><Min>16</Min><pMax>WidthMaxReg</pMax><Inc>4</Inc></Integer>"
    "<IntReg Name='WidthReg'><Address>0xA000</Address><Length>4</Length><AccessMode>RW</AccessMode></IntReg>"
    "<IntReg Name='WidthMaxReg'><Address>0xA004</Address><Length>4</Length></IntReg>"
    "<Enumeration Name='UserSetSelector'><EnumEntry Name='Default'><Value>0</Value></EnumEntry>"
    "<EnumEntry Name='One'><Value>1</Value></EnumEntry><pValue>UserSetSelectorReg</pValue></Enumeration>"
    "<IntReg Name='UserSetSelectorReg'><Address>0xA008</Address><Length>4</Length></IntReg>"
    "<Command Name='UserSetLoad'><pValue>LoadReg</pValue><CommandValue>1</CommandValue></Command>"
    "<IntReg Name='LoadReg'><Address>0xA00C</Address><Length>4</Length></IntReg>"
    "<Command Name='UserSetSave'><pValue>SaveReg</pValue><CommandValue>1</CommandValue></Command>"
    "<IntReg Name='SaveReg'><Address>0xA010</Address><Length>4</Length></IntReg>"
    "</RegisterDescription>";

constexpr std::uint64_t kMac = 0x02007F1E0901;

std::shared_ptr<const CameraModel> ModelOf(bool builtin)
{
    QString error;
    static const auto pBuiltin = MakeBuiltinModel(&error);
    static const auto pForeign = MakeCameraModel(kForeignDescription, "M.xml", false, &error);
    auto pModel = builtin ? pBuiltin : pForeign;
    FUZZ_CHECK(pModel);
    return pModel;
}

CameraIdentity Identity()
{
    CameraIdentity identity;
    identity.vendor = "Simulated";
    identity.model = "SimCam-150";
    identity.serial = "SIM0001";
    identity.mac = kMac;
    return identity;
}

std::vector<Reply> Send(SimulatedCamera *pCamera, const Bytes &datagram, const Endpoint &from, TimePoint now)
{
    std::vector<Reply> replies;
    pCamera->Receive(datagram.data(), datagram.size(), from, now, &replies);
    return replies;
}

/// Bytes of payload that a successful answer has (GigE Vision 2.0, section 16).
std::size_t PayloadOfSuccess(const Gvcp::Request &request)
{
    switch (request.command) {
    case Gvcp::DISCOVERY_CMD:
        return Gvcp::kDiscoveryAckPayload;
    case Gvcp::READREG_CMD:
        return request.size;
    case Gvcp::READMEM_CMD:
        return 4 + std::size_t{LoadBe16(request.payload + 6)};
    case Gvcp::FORCEIP_CMD:
        return 0;
    default:
        return 4; // the writes: how much was written
    }
}

void CheckWritten(const Gvcp::Request &request, const Bytes &ack, bool success)
{
    const std::size_t written = LoadBe16(ack.data() + Gvcp::kHeaderSize + 2);
    const std::size_t all = request.command == Gvcp::WRITEREG_CMD ? request.size / 8 : request.size - 4;
    FUZZ_CHECK(LoadBe16(ack.data() + Gvcp::kHeaderSize) == 0);
    FUZZ_CHECK(success ? written == all : written == 0 || written < all);
}

void CheckAck(const Gvcp::Request &request, const Bytes &ack)
{
    FUZZ_CHECK(ack.size() >= Gvcp::kHeaderSize && ack.size() <= Gvcp::kHeaderSize + Gvcp::kMaxPayload);
    const std::size_t payload = LoadBe16(ack.data() + 4);
    FUZZ_CHECK(payload == ack.size() - Gvcp::kHeaderSize);
    FUZZ_CHECK(LoadBe16(ack.data() + 2) == static_cast<std::uint16_t>(request.command + 1));
    FUZZ_CHECK(LoadBe16(ack.data() + 6) == request.id);
    const std::uint16_t status = LoadBe16(ack.data());
    const bool success = status == Gvcp::STATUS_SUCCESS;
    FUZZ_CHECK(success || status > 0x8000);
    if (success)
        FUZZ_CHECK(payload == PayloadOfSuccess(request));
    if (request.command == Gvcp::WRITEREG_CMD || request.command == Gvcp::WRITEMEM_CMD) {
        FUZZ_CHECK(payload == 4);
        CheckWritten(request, ack, success);
    } else if (!success && request.command == Gvcp::READREG_CMD) {
        FUZZ_CHECK(payload % 4 == 0 && (payload == 0 || payload < request.size));
    } else if (!success) {
        FUZZ_CHECK(payload == 0);
    }
    if (success && request.command == Gvcp::READMEM_CMD)
        FUZZ_CHECK(std::equal(request.payload, request.payload + 4, ack.data() + Gvcp::kHeaderSize));
}

void CheckReplies(const Bytes &datagram, const std::vector<Reply> &replies)
{
    Gvcp::Request request;
    const Gvcp::Parsed parsed = Gvcp::ParseRequest(datagram.data(), datagram.size(), &request);
    const bool good = parsed == Gvcp::Parsed::Ok;
    // An address is given to one camera; the others that hear of it are silent.
    const bool meant = !replies.empty() || request.command != Gvcp::FORCEIP_CMD;
    const bool mute = good && (request.command == Gvcp::PACKETRESEND_CMD || !meant);
    const bool asked = request.AckRequired() || (request.command == Gvcp::DISCOVERY_CMD && good);
    FUZZ_CHECK(replies.size() == (parsed != Gvcp::Parsed::Ignore && asked && !mute ? 1 : 0));
    for (const Reply &reply : replies) {
        FUZZ_CHECK(reply.delay.count() == 0 && reply.repeat.count() == 0 && !reply.foreignSource);
        CheckAck(request, reply.bytes);
    }
}

bool IsWrite(const Bytes &datagram)
{
    Gvcp::Request request;
    Gvcp::ParseRequest(datagram.data(), datagram.size(), &request);
    return request.command == Gvcp::WRITEREG_CMD || request.command == Gvcp::WRITEMEM_CMD;
}

/// The register says who controls the camera.
void CheckControl(Camera *pCamera)
{
    const ControlChannel &control = pCamera->Control();
    FUZZ_CHECK(pCamera->Memory().ReadWord(Bootstrap::CONTROL_PRIVILEGE) == control.Privilege());
    FUZZ_CHECK(pCamera->Memory().ReadWord(Bootstrap::PRIMARY_ADDRESS) == control.Controller().address);
    FUZZ_CHECK(control.IsHeld() || control.Controller() == Endpoint());
    FUZZ_CHECK(pCamera->HeartbeatTimeout() >= std::chrono::milliseconds(Bootstrap::kMinHeartbeatMs));
}

/// Whatever was written, the built-in camera has values that its description allows.
void CheckValues(Camera *pCamera)
{
    const NodeMap &nodes = pCamera->Model().nodes;
    MemoryAccess access(&pCamera->Memory());
    NodeEvaluator evaluator(nodes, &access);
    for (int i = 0; i < nodes.Count(); ++i) {
        const Node &node = nodes.At(i);
        const bool writable = evaluator.Condition(i, "pIsAvailable", true) &&
                              !evaluator.Condition(i, "pIsLocked", false) &&
                              node.Text("ImposedAccessMode") != "RO";
        if (!writable || !(node.Is("Integer") || node.Is("Float")) || evaluator.RegisterOf(i) < 0)
            continue;
        const auto value = evaluator.Float(i);
        const auto minimum = evaluator.Limit(i, "Min");
        const auto maximum = evaluator.Limit(i, "Max");
        const bool inside = value && !(minimum && *value < *minimum) && !(maximum && *value > *maximum);
        if (!inside)
            std::fprintf(stderr, "%s\n", node.name.constData());
        FUZZ_CHECK(inside);
    }
}

/// It can still be found, and is still the same.
void CheckDiscovery(SimulatedCamera *pCamera, TimePoint now)
{
    const Bytes request = {0x42, 0x11, 0, 2, 0, 0, 0xFF, 0xFF};
    const auto replies = Send(pCamera, request, Endpoint{0x7F000009, 999}, now);
    CheckReplies(request, replies);
    const std::uint8_t *p = replies.front().bytes.data() + Gvcp::kHeaderSize;
    FUZZ_CHECK(LoadBe16(p + Bootstrap::MAC_HIGH + 2) == kMac >> 32U);
    FUZZ_CHECK(LoadBe32(p + Bootstrap::MAC_LOW) == (kMac & 0xFFFFFFFFU));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const Endpoint clients[] = {
        {0x7F000001, 40000}, {0x7F000001, 40001}, {0x7F000002, 40000}, {0x7F000002, 40002}};
    const bool builtin = (data[0] & 1U) == 0;
    SimulatedCamera camera(ModelOf(builtin), Identity(), 0x7F1E0901);
    TimePoint now(std::chrono::hours(1));
    std::size_t pos = 1;
    bool written = false;
    while (pos + 3 <= size) {
        now += std::chrono::milliseconds(100) * (data[pos] >> 2U);
        const Endpoint &from = clients[data[pos] & 3U];
        const std::size_t length = std::min<std::size_t>(LoadBe16(data + pos + 1), size - pos - 3);
        const Bytes datagram(data + pos + 3, data + pos + 3 + length);
        pos += 3 + length;
        CheckReplies(datagram, Send(&camera, datagram, from, now));
        CheckControl(&camera.Device());
        written = written || IsWrite(datagram);
    }
    if (builtin && written)
        CheckValues(&camera.Device());
    CheckDiscovery(&camera, now);
    return 0;
}
