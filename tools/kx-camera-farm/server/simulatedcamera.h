#ifndef KXCAMERAFARM_SIMULATEDCAMERA_H
#define KXCAMERAFARM_SIMULATEDCAMERA_H

#include "faults/fault.h"

#include <QPair>
#include <QVector>

namespace KxFarm {

/// A camera together with the faults it plays and its place on the network. Pure: datagrams in, datagrams
/// out, with the time of their arrival.
class SimulatedCamera
{
public:
    SimulatedCamera(std::shared_ptr<const CameraModel> pModel, const CameraIdentity &identity,
                    std::uint32_t ipAddress);
    ~SimulatedCamera();

    /// Answers one datagram; appends to *pReplies.
    void Receive(const std::uint8_t *data, std::size_t size, const Endpoint &from, TimePoint now,
                 std::vector<Reply> *pReplies);

    /// Sets an identity text or a fault by its key. False and one line in *pError for a key or value that
    /// does not exist; then nothing changed.
    bool Set(const QByteArray &key, const QByteArray &value, QString *pError);

    /// The text of `key` as it was set, "off" for a fault that is not; null for an unknown key.
    QByteArray Get(const QByteArray &key) const;

    /// All keys that differ from a plain camera, with their texts.
    QVector<QPair<QByteArray, QByteArray>> ActiveFaults() const;

    void ClearFaults();

    void Unplug();            ///< off the network, without power: control and volatile registers are gone
    void Plug(TimePoint now); ///< back again
    bool IsSilent(TimePoint now) const { return m_bUnplugged || now < m_silentUntil; }

    /// Whether the camera's UDP port is open. A closed one makes the system answer "port unreachable".
    bool IsPortOpen() const { return m_bPortOpen; }

    /// Changes whenever a repeating reply made earlier has to stop.
    unsigned Generation() const { return m_nGeneration; }

    Camera &Device() { return m_camera; }
    const Camera &Device() const { return m_camera; }

private:
    struct ActiveFault
    {
        FaultKind kind;
        QByteArray text;
        std::unique_ptr<Fault> pFault;
    };

    bool SetIdentityText(const QByteArray &key, const QByteArray &value, bool *pKnown, QString *pError);
    bool SetFault(const FaultKind &kind, const QByteArray &value, QString *pError);
    void DropFault(const QByteArray &key);
    void Settle(const Exchange &exchange);

    Camera m_camera;
    std::vector<ActiveFault> m_listFaults; // in the order of AllFaultKinds()
    std::minstd_rand m_random;
    TimePoint m_silentUntil;
    unsigned m_nGeneration = 0;
    bool m_bUnplugged = false;
    bool m_bPortOpen = true;
};

} // namespace KxFarm

#endif
