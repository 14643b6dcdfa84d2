#include "device/firmware.h"

#include <algorithm>
#include <cmath>

namespace KxFarm {

Firmware::Firmware(const NodeMap &map, const FeatureIndex &index, bool strict, RegisterMemory *pMemory,
                   UserSets *pUserSets)
    : m_map(map)
    , m_index(index)
    , m_bStrict(strict)
    , m_pMemory(pMemory)
    , m_pUserSets(pUserSets)
    , m_powerUp(*pMemory)
    , m_access(pMemory)
    , m_evaluator(map, &m_access)
{
}

bool Firmware::TakeResetRequest()
{
    return std::exchange(m_bReset, false);
}

bool Firmware::IsBehind(int feature, std::uint32_t address, std::size_t size)
{
    const auto field = FieldOf(feature);
    return field && field->address < std::uint64_t{address} + size &&
           address < std::uint64_t{field->address} + field->size;
}

bool Firmware::IsWritable(int feature)
{
    return m_evaluator.Condition(feature, "pIsImplemented", true) &&
           m_evaluator.Condition(feature, "pIsAvailable", true) &&
           !m_evaluator.Condition(feature, "pIsLocked", false);
}

Gvcp::Status Firmware::Write(std::uint32_t address, const std::uint8_t *data, std::size_t size)
{
    std::vector<Change> changes;
    std::vector<int> commands;
    bool readOnly = false;
    for (const int feature : m_index.Candidates(address, size)) {
        if (!IsBehind(feature, address, size))
            continue;
        if (m_map.At(feature).Is("Command")) {
            commands.push_back(feature);
            continue;
        }
        readOnly |= IsReadOnly(m_map.At(feature), m_map.At(m_evaluator.RegisterOf(feature)));
        changes.push_back({feature, m_evaluator.Float(feature).value_or(NAN), IsWritable(feature)});
    }
    if (!commands.empty() && changes.empty())
        return Run(commands, data, size);
    if (!m_bStrict) {
        m_pMemory->Write(address, data, size);
        return Gvcp::STATUS_SUCCESS;
    }
    if (readOnly)
        return Gvcp::STATUS_WRITE_PROTECT;
    const RegisterMemory before = *m_pMemory;
    m_pMemory->Write(address, data, size);
    for (const Change &change : changes) {
        const Gvcp::Status status = Check(change);
        if (status != Gvcp::STATUS_SUCCESS) {
            *m_pMemory = before;
            return status;
        }
    }
    if (m_index.Disturbs(address, size))
        Settle();
    return Gvcp::STATUS_SUCCESS;
}

Gvcp::Status Firmware::Check(const Change &change)
{
    const auto now = m_evaluator.Float(change.feature);
    if (!now || std::isnan(*now))
        return Gvcp::STATUS_INVALID_PARAMETER;
    // Fields share registers: only one that changes is being written.
    if (*now == change.before)
        return Gvcp::STATUS_SUCCESS;
    if (!change.writable)
        return Gvcp::STATUS_WRITE_PROTECT;
    const Node &node = m_map.At(change.feature);
    if (node.Is("Enumeration"))
        return IsEntry(change.feature) ? Gvcp::STATUS_SUCCESS : Gvcp::STATUS_INVALID_PARAMETER;
    if (!IsNumber(node))
        return Gvcp::STATUS_SUCCESS;
    const Correction correction = Corrected(change.feature);
    if ((correction.clamped && !m_bClamp) || (correction.rounded && !m_bRound && !correction.clamped))
        return Gvcp::STATUS_INVALID_PARAMETER;
    if (correction.clamped || correction.rounded)
        Assign(change.feature, correction.value);
    return Gvcp::STATUS_SUCCESS;
}

bool Firmware::IsEntry(int feature)
{
    const auto value = m_evaluator.Integer(feature);
    const std::vector<int> &entries = m_map.At(feature).entries;
    return std::any_of(entries.begin(), entries.end(), [&](int entry) {
        return m_evaluator.Integer(entry) == value && m_evaluator.Condition(entry, "pIsImplemented", true) &&
               m_evaluator.Condition(entry, "pIsAvailable", true);
    });
}

Firmware::Correction Firmware::Corrected(int feature)
{
    Correction correction;
    const double value = m_evaluator.Float(feature).value_or(0.0);
    const auto minimum = m_evaluator.Limit(feature, "Min");
    const auto maximum = Maximum(feature);
    const auto increment = m_evaluator.Limit(feature, "Inc");
    correction.value = value;
    if (maximum)
        correction.value = std::min(correction.value, *maximum);
    if (minimum)
        correction.value = std::max(correction.value, *minimum);
    correction.clamped = correction.value != value;
    if (increment && *increment > 0) {
        const double start = minimum.value_or(0.0);
        const double rounded = start + std::floor((correction.value - start) / *increment) * *increment;
        correction.rounded = rounded != correction.value;
        correction.value = rounded;
    }
    return correction;
}

void Firmware::Assign(int feature, double value)
{
    if (m_evaluator.IsFloat(feature))
        m_evaluator.SetFloat(feature, value);
    else
        m_evaluator.SetInteger(feature, static_cast<std::int64_t>(std::llround(value)));
}

void Firmware::SetMaximum(int feature, std::optional<double> maximum)
{
    if (maximum)
        m_mapMaximum[feature] = *maximum;
    else
        m_mapMaximum.erase(feature);
}

std::optional<double> Firmware::Maximum(int feature)
{
    const auto described = m_evaluator.Limit(feature, "Max");
    const auto found = m_mapMaximum.find(feature);
    if (found == m_mapMaximum.end())
        return described;
    return described ? std::min(*described, found->second) : found->second;
}

std::optional<RegisterField> Firmware::FieldOf(int feature)
{
    const int target = m_evaluator.RegisterOf(feature);
    return target >= 0 ? m_evaluator.Field(target) : std::nullopt;
}

void Firmware::ToPowerUpValue(int feature)
{
    const auto field = FieldOf(feature);
    if (!field)
        return;
    std::uint8_t wanted[8];
    std::uint8_t present[8];
    m_powerUp.Read(field->address, wanted, field->size);
    m_pMemory->Read(field->address, present, field->size);
    if (!std::equal(wanted, wanted + field->size, present))
        m_pMemory->Write(field->address, wanted, field->size);
}

void Firmware::Settle()
{
    // What cannot be set has its power-up value, whatever order things were written in; so two cameras with
    // the same settings are equal in everything. Numbers follow limits that moved.
    for (const int feature : m_index.Dependents()) {
        if (!IsWritable(feature)) {
            ToPowerUpValue(feature);
        } else if (IsNumber(m_map.At(feature))) {
            const Correction correction = Corrected(feature);
            if (correction.clamped || correction.rounded)
                Assign(feature, correction.value);
        }
    }
}

Gvcp::Status Firmware::Run(const std::vector<int> &commands, const std::uint8_t *data, std::size_t size)
{
    const std::uint32_t word = size == 4 ? LoadBe32(data) : 0;
    for (const int command : commands) {
        const Node &node = m_map.At(command);
        if (m_bStrict && ParseDescriptionInteger(node.Text("CommandValue")) != word)
            continue;
        return IsWritable(command) || !m_bStrict ? RunCommand(node.name) : Gvcp::STATUS_ACCESS_DENIED;
    }
    return Gvcp::STATUS_INVALID_PARAMETER;
}

Gvcp::Status Firmware::RunCommand(const QByteArray &name)
{
    const auto selected = m_evaluator.Integer(m_map.Find("UserSetSelector")).value_or(0);
    if (name == "UserSetLoad") {
        LoadUserSet();
    } else if (name == "UserSetSave") {
        if (!m_pUserSets->Save(selected, *m_pMemory))
            return Gvcp::STATUS_ACCESS_DENIED;
    } else if (name == "AcquisitionStart" || name == "AcquisitionStop" || name == "AcquisitionAbort") {
        m_evaluator.SetInteger(m_map.Find("AcquisitionActiveReg"), name == "AcquisitionStart" ? 1 : 0);
    } else if (name == "DeviceReset") {
        m_bReset = true;
    }
    // The register stays zero: a command is done as soon as it is acknowledged.
    return Gvcp::STATUS_SUCCESS;
}

void Firmware::LoadUserSet()
{
    // The sets of a foreign description are all its registers, so what chooses among them is kept apart.
    const int selector = m_map.Find("UserSetSelector");
    const int atStart = m_map.Find("UserSetDefault");
    const auto selected = m_evaluator.Integer(selector);
    const auto selectedAtStart = m_evaluator.Integer(atStart);
    m_pUserSets->Load(selected.value_or(0), m_pMemory);
    m_evaluator.SetInteger(selector, selected.value_or(0));
    m_evaluator.SetInteger(atStart, selectedAtStart.value_or(0));
    if (m_bStrict)
        Settle();
}

void Firmware::Restart()
{
    const int selector = m_map.Find("UserSetSelector");
    const int atStart = m_map.Find("UserSetDefault");
    const auto selectedAtStart = m_evaluator.Integer(atStart); // kept without power
    *m_pMemory = m_powerUp;
    if (!selectedAtStart)
        return;
    const auto selected = m_evaluator.Integer(selector);
    m_evaluator.SetInteger(atStart, *selectedAtStart);
    m_evaluator.SetInteger(selector, *selectedAtStart);
    LoadUserSet();
    m_evaluator.SetInteger(selector, selected.value_or(0));
}

} // namespace KxFarm
