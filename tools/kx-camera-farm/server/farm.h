#ifndef KXCAMERAFARM_FARM_H
#define KXCAMERAFARM_FARM_H

#include "server/simulatedcamera.h"

#include <memory>
#include <vector>

namespace KxFarm {

/// All cameras of the process, and the commands that change them while they run.
class Farm
{
public:
    /// `count` cameras of one model on successive addresses from `firstAddress` on. Addresses that end in
    /// .0 or .255 are left out; serial numbers run from SIM0001, MAC addresses from 02:00:NN:NN:NN:NN made
    /// of the address, so that no two farms share one. False when the addresses leave 127.0.0.0/8.
    bool Populate(const std::shared_ptr<const CameraModel> &pModel, int count, std::uint32_t firstAddress);

    std::size_t Size() const { return m_listCameras.size(); }
    SimulatedCamera &At(std::size_t index) { return *m_listCameras[index]; }

    /// Carries out one line of the control protocol; returns the answer without line end: "ok ..." or
    /// "error ...".
    QByteArray Execute(const QByteArray &line, TimePoint now);

    /// Sets what the JSON text `config` says. False and one line in *pError at the first thing wrong.
    bool Configure(const QByteArray &config, QString *pError);

private:
    std::vector<SimulatedCamera *> Select(const QByteArray &who) const;
    QByteArray List() const;
    QByteArray Set(const QByteArray &who, const QByteArray &key, const QByteArray &value);
    QByteArray Get(const QByteArray &who, const QByteArray &key) const;
    bool IsAddressFree(const QByteArray &who, const QByteArray &address) const;

    std::vector<std::unique_ptr<SimulatedCamera>> m_listCameras;
};

} // namespace KxFarm

#endif
