#include "genicam/initialvalues.h"

#include <algorithm>
#include <cmath>

namespace KxFarm {

namespace {

class Filler
{
public:
    Filler(const NodeMap &map, RegisterMemory *pMemory)
        : m_map(map)
        , m_pMemory(pMemory)
        , m_access(pMemory)
        , m_evaluator(map, &m_access)
    {
    }

    void Run(bool everythingExists)
    {
        for (int i = 0; i < m_map.Count(); ++i)
            PowerUp(i);
        ForEach("Boolean", &Filler::FixBoolean);
        // Limits and conditions depend on other features, so what the first round moved may need a second.
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; everythingExists && i < m_map.Count(); ++i)
                MakeExist(i);
            ForEach("Enumeration", &Filler::FixEnumeration);
            ForEach("Integer", &Filler::FixNumber);
            ForEach("Float", &Filler::FixNumber);
        }
    }

private:
    void ForEach(const char *tag, void (Filler::*fix)(int))
    {
        for (int i = 0; i < m_map.Count(); ++i) {
            if (m_map.At(i).Is(tag))
                (this->*fix)(i);
        }
    }

    /// Registers whose content at power-up the description tells.
    void PowerUp(int index)
    {
        const NodeProperty *pPowerUp = m_map.At(index).Find("PowerUp");
        if (!pPowerUp)
            return;
        if (m_evaluator.IsFloat(index))
            m_evaluator.SetFloat(index, pPowerUp->text.toDouble());
        else
            m_evaluator.SetInteger(index, ParseDescriptionInteger(pPowerUp->text));
        const auto field = m_evaluator.Field(index); // of index 0: selectors are still zero
        if (!field)
            return;
        std::uint8_t content[8];
        m_pMemory->Read(field->address, content, field->size);
        for (std::int64_t i = 1; i < ParseDescriptionInteger(pPowerUp->offset); ++i)
            m_pMemory->Write(field->address + static_cast<std::uint32_t>(i) * Stride(index, *field), content,
                             field->size);
    }

    std::uint32_t Stride(int index, const RegisterField &field) const
    {
        const NodeProperty *pIndex = m_map.At(index).Find("pIndex");
        return pIndex && !pIndex->offset.isEmpty()
                   ? static_cast<std::uint32_t>(ParseDescriptionInteger(pIndex->offset))
                   : static_cast<std::uint32_t>(field.size);
    }

    void MakeExist(int index)
    {
        for (const char *pointer : {"pIsImplemented", "pIsAvailable"}) {
            const int condition = m_map.At(index).Target(pointer);
            if (condition >= 0 && !m_evaluator.Condition(index, pointer, true))
                SwitchOn(condition, 0);
        }
    }

    /// Sets the read-only registers below a condition, which tell what the camera has, to all ones.
    void SwitchOn(int index, int depth)
    {
        if (index < 0 || depth > 20)
            return;
        const Node &node = m_map.At(index);
        if (IsRegisterNode(node)) {
            const QByteArray access = node.Text("AccessMode");
            if (access == "RO" || (node.Is("StructEntry") && access.isEmpty()))
                m_evaluator.SetInteger(index, -1);
            return;
        }
        for (const NodeProperty &property : node.properties) {
            if (property.tag == "pVariable" || property.tag == "pValue")
                SwitchOn(property.target, depth + 1);
        }
    }

    void FixBoolean(int index)
    {
        const Node &node = m_map.At(index);
        const auto value = m_evaluator.Integer(node.Target("pValue"));
        const QByteArray on = node.Text("OnValue");
        const QByteArray off = node.Text("OffValue");
        const std::int64_t onValue = on.isEmpty() ? 1 : ParseDescriptionInteger(on);
        const std::int64_t offValue = ParseDescriptionInteger(off);
        if (value && *value != onValue && *value != offValue)
            m_evaluator.SetInteger(node.Target("pValue"), offValue);
    }

    void FixEnumeration(int index)
    {
        const Node &node = m_map.At(index);
        const auto value = m_evaluator.Integer(index);
        int first = -1;
        for (const int entry : node.entries) {
            const bool available = m_evaluator.Condition(entry, "pIsImplemented", true) &&
                                   m_evaluator.Condition(entry, "pIsAvailable", true);
            if (value && m_evaluator.Integer(entry) == value && available)
                return;
            if (available && first < 0)
                first = entry;
        }
        if (first < 0 && !node.entries.empty())
            first = node.entries.front();
        if (first >= 0)
            m_evaluator.SetInteger(index, m_evaluator.Integer(first).value_or(0));
    }

    void FixNumber(int index)
    {
        const auto value = m_evaluator.Float(index);
        const auto minimum = m_evaluator.Limit(index, "Min");
        const auto maximum = m_evaluator.Limit(index, "Max");
        if (value && std::isfinite(*value) && (!minimum || *value >= *minimum) &&
            (!maximum || *value <= *maximum))
            return;
        double wanted = minimum.value_or(0.0);
        if (!minimum && maximum)
            wanted = std::min(0.0, *maximum);
        if (m_evaluator.IsFloat(index))
            m_evaluator.SetFloat(index, wanted);
        else
            m_evaluator.SetInteger(index, static_cast<std::int64_t>(wanted));
    }

    const NodeMap &m_map;
    RegisterMemory *m_pMemory;
    MemoryAccess m_access;
    NodeEvaluator m_evaluator;
};

} // namespace

void FillInitialValues(const NodeMap &map, RegisterMemory *pMemory, bool everythingExists)
{
    Filler(map, pMemory).Run(everythingExists);
}

} // namespace KxFarm
