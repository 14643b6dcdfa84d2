#ifndef KXCAMERAFARM_FAULT_H
#define KXCAMERAFARM_FAULT_H

#include "device/camera.h"

#include <QByteArray>
#include <QString>
#include <chrono>
#include <memory>
#include <random>
#include <vector>

namespace KxFarm {

/// One datagram on its way out.
struct Reply
{
    Bytes bytes;
    std::chrono::microseconds delay{0};  ///< after the request came
    std::chrono::microseconds repeat{0}; ///< sent again and again at this interval, until the faults change
    bool foreignSource = false;          ///< leaves from an address that is not the camera's
};

/// One request while it is being answered; faults change what becomes of it.
struct Exchange
{
    const Gvcp::Request &request;
    const Endpoint &from;
    TimePoint now;
    Camera &camera;
    std::minstd_rand &random;
    bool dropped = false;                            ///< never reached the camera
    Gvcp::Status refusedWith = Gvcp::STATUS_SUCCESS; ///< refused with this instead of carried out
    std::chrono::milliseconds silentFor{0};          ///< the camera is off the network afterwards
    std::uint32_t moveTo = 0;                        ///< the camera's address afterwards, 0: as before
    bool closePort = false;                          ///< the camera's UDP port is closed afterwards
    std::vector<Reply> replies = std::vector<Reply>();

    bool IsDiscovery() const { return request.command == Gvcp::DISCOVERY_CMD; }
    bool Succeeded() const; ///< the camera's answer, when there is one, says so
};

/// One way for a camera to misbehave. Built from the text of its value; switched off by destruction.
class Fault
{
public:
    Fault() = default;
    virtual ~Fault() = default;
    Fault(const Fault &) = delete;
    Fault &operator=(const Fault &) = delete;

    /// When it is switched on.
    virtual void Start(Camera *pCamera);
    /// Before the camera sees the request: may drop or refuse it, or change the camera.
    virtual void BeforeCommand(Exchange *pExchange);
    /// With the camera's answer in `replies`: may change, hold, multiply or remove it.
    virtual void AfterCommand(Exchange *pExchange);
    /// When it is switched off.
    virtual void Stop(Camera *pCamera);
};

/// Which commands a fault meets when its value does not narrow it down.
enum class Scope
{
    Commands,   ///< all but discovery, so that a faulty camera is still found
    Discovery,  ///< only discovery
    Everything, ///< all
};

/// A key and how its value becomes a fault. `make` returns null and one line in *pError for a bad value.
struct FaultKind
{
    const char *key;
    Scope scope;
    std::unique_ptr<Fault> (*make)(const QByteArray &value, const Camera &camera, QString *pError);
};

/// The kinds there are, in the order in which their hooks run.
const std::vector<FaultKind> &AllFaultKinds();

/// Makes the fault of `kind` that `text` describes: its value, then any of the words command=NAME,
/// address=NUMBER, after=COUNT and times=COUNT, which narrow down the commands it meets.
std::unique_ptr<Fault> MakeFault(const FaultKind &kind, const QByteArray &text, const Camera &camera,
                                 QString *pError);

std::vector<FaultKind> CommandFaultKinds();     ///< statuses, control, reboot: what the camera does
std::vector<FaultKind> ValueFaultKinds();       ///< what becomes of written values
std::vector<FaultKind> RegisterFaultKinds();    ///< what registers hold
std::vector<FaultKind> DescriptionFaultKinds(); ///< what the camera gives as its description
std::vector<FaultKind> AnswerFaultKinds();      ///< damaged, multiplied, misaddressed acknowledges
std::vector<FaultKind> NetworkFaultKinds();     ///< loss, latency: what the wire does

} // namespace KxFarm

#endif
