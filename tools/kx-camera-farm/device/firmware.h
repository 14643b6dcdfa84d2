#ifndef KXCAMERAFARM_FIRMWARE_H
#define KXCAMERAFARM_FIRMWARE_H

#include "device/usersets.h"
#include "genicam/featureindex.h"
#include "genicam/initialvalues.h"
#include "wire/gvcp.h"

#include <map>
#include <optional>
#include <vector>

namespace KxFarm {

/// What a camera does when somebody writes a manufacturer register: commands, limits, locks, dependencies.
class Firmware
{
public:
    /// All outlive the firmware. *pMemory is as after the first power-up. Without `strict` there are
    /// commands and user sets, but every other write is carried out: what a description that is not ours
    /// means by its limits and locks is for its clients to know.
    Firmware(const NodeMap &map, const FeatureIndex &index, bool strict, RegisterMemory *pMemory,
             UserSets *pUserSets);

    /// Refuses the write and leaves the memory as it was, or carries it out with all it entails.
    Gvcp::Status Write(std::uint32_t address, const std::uint8_t *data, std::size_t size);

    /// Switches the camera off and on: power-up values, then the default user set.
    void Restart();

    /// Whether a number beyond its limits, or between two increments, is moved to where it may be instead of
    /// refused.
    void SetClamping(bool on) { m_bClamp = on; }
    void SetRounding(bool on) { m_bRound = on; }

    /// Refuses numbers above `maximum` even if the description allows more; nothing: as described.
    void SetMaximum(int feature, std::optional<double> maximum);
    std::optional<double> Maximum(int feature);

    void ToPowerUpValue(int feature);                  ///< with the selectors as they are
    std::optional<RegisterField> FieldOf(int feature); ///< the register behind a feature now

    /// Set by a written DeviceReset, until asked.
    bool TakeResetRequest();

private:
    struct Change
    {
        int feature;
        double before;
        bool writable;
    };

    bool IsBehind(int feature, std::uint32_t address, std::size_t size);
    Gvcp::Status Run(const std::vector<int> &commands, const std::uint8_t *data, std::size_t size);
    Gvcp::Status RunCommand(const QByteArray &name);
    bool IsWritable(int feature);
    Gvcp::Status Check(const Change &change);
    bool IsEntry(int feature);
    struct Correction
    {
        double value = 0;
        bool clamped = false;
        bool rounded = false;
    };
    Correction Corrected(int feature); ///< where a number would be within its limits, on its increment
    void Assign(int feature, double value);
    void Settle();
    void LoadUserSet();

    const NodeMap &m_map;
    const FeatureIndex &m_index;
    const bool m_bStrict;
    RegisterMemory *m_pMemory;
    UserSets *m_pUserSets;
    const RegisterMemory m_powerUp;
    MemoryAccess m_access;
    NodeEvaluator m_evaluator;
    std::map<int, double> m_mapMaximum;
    bool m_bClamp = false;
    bool m_bRound = false;
    bool m_bReset = false;
};

} // namespace KxFarm

#endif
