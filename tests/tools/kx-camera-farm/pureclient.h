#ifndef TESTS_PURECLIENT_H
#define TESTS_PURECLIENT_H

#include "genicam/nodeevaluator.h"
#include "server/simulatedcamera.h"

#include <QByteArray>

/// A client of one camera without a network between them: requests and answers as hexadecimal text, registers
/// through READMEM and WRITEMEM.
class PureClient : public KxFarm::RegisterAccess
{
public:
    explicit PureClient(KxFarm::SimulatedCamera *pCamera, std::uint16_t port = 40000);

    /// Sends the datagram; the answers it causes, separated by " | ".
    QByteArray Send(const QByteArray &hex);
    std::vector<KxFarm::Reply> SendBytes(const QByteArray &bytes);

    bool TakeControl(std::uint32_t privilege = 2);
    std::uint32_t ReadWord(std::uint32_t address);
    KxFarm::Gvcp::Status WriteWord(std::uint32_t address, std::uint32_t value);

    bool Read(std::uint32_t address, std::uint8_t *data, std::size_t size) override;
    bool Write(std::uint32_t address, const std::uint8_t *data, std::size_t size) override;

    void Wait(std::chrono::milliseconds time) { m_now += time; } ///< moves the clock of all clients
    KxFarm::Gvcp::Status LastStatus() const { return m_lastStatus; }

private:
    QByteArray Request(std::uint16_t command, const QByteArray &payload);

    KxFarm::SimulatedCamera *m_pCamera;
    KxFarm::Endpoint m_self;
    std::uint16_t m_nId = 0;
    KxFarm::Gvcp::Status m_lastStatus = KxFarm::Gvcp::STATUS_SUCCESS;
    static KxFarm::TimePoint m_now;
};

/// A built-in camera at 127.30.9.1 with serial number SIM0001.
std::unique_ptr<KxFarm::SimulatedCamera> MakeBuiltinCamera();

#endif
