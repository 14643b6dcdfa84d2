#include "genicam/featureindex.h"

#include "genicam/initialvalues.h"

#include <algorithm>

namespace KxFarm {

namespace {

bool IsFeature(const Node &node)
{
    return node.Is("Integer") || node.Is("Float") || node.Is("Enumeration") || node.Is("Boolean") ||
           node.Is("Command") || (node.Is("IntReg") && node.Find("Streamable"));
}

/// How many registers a pIndex chooses from.
std::uint64_t IndexCount(const NodeMap &map, int selector)
{
    constexpr std::uint64_t kWithoutEntries = 256;
    if (selector < 0 || map.At(selector).entries.empty())
        return kWithoutEntries;
    std::int64_t last = 0;
    for (const int entry : map.At(selector).entries)
        last = std::max(last, ParseDescriptionInteger(map.At(entry).Text("Value")));
    return static_cast<std::uint64_t>(std::min<std::int64_t>(last, kWithoutEntries)) + 1;
}

/// Bytes from the first to the last register that a pIndex reaches.
std::uint64_t IndexedSize(const NodeMap &map, const Node &node, std::size_t size)
{
    const NodeProperty *pIndex = node.Find("pIndex");
    if (!pIndex)
        return size;
    const std::int64_t stride = ParseDescriptionInteger(pIndex->offset);
    return (stride > 0 ? static_cast<std::uint64_t>(stride) : size) * IndexCount(map, pIndex->target);
}

} // namespace

bool IsNumber(const Node &node)
{
    return node.Is("Integer") || node.Is("Float");
}

bool IsReadOnly(const Node &feature, const Node &target)
{
    return feature.Text("ImposedAccessMode") == "RO" || target.Text("AccessMode") == "RO";
}

FeatureIndex::FeatureIndex(const NodeMap &map, const RegisterMemory &memory)
{
    RegisterMemory copy = memory;
    MemoryAccess access(&copy);
    NodeEvaluator evaluator(map, &access);
    for (int i = 0; i < map.Count(); ++i) {
        const Node &node = map.At(i);
        const int target = IsFeature(node) ? evaluator.RegisterOf(i) : -1;
        const auto field = target >= 0 ? evaluator.Field(target) : std::nullopt;
        if (!field)
            continue;
        m_listSpans.push_back(
            {field->address, field->address + IndexedSize(map, map.At(target), field->size), i});
        const bool moves = node.Target("pMin") >= 0 || node.Target("pMax") >= 0;
        const bool conditional = node.Target("pIsLocked") >= 0 || node.Target("pIsAvailable") >= 0;
        if (!IsReadOnly(node, map.At(target)) && ((IsNumber(node) && moves) || conditional) &&
            !node.Is("Command"))
            m_listDependents.push_back(i);
    }
    std::vector<bool> visited(static_cast<std::size_t>(map.Count()));
    for (const int feature : m_listDependents) {
        for (const char *pointer : {"pMin", "pMax", "pInc", "pIsLocked", "pIsAvailable", "pIsImplemented"})
            AddSources(map, &evaluator, map.At(feature).Target(pointer), &visited);
        AddSources(map, &evaluator, map.At(evaluator.RegisterOf(feature)).Target("pIndex"), &visited);
    }
}

std::vector<int> FeatureIndex::Candidates(std::uint32_t address, std::size_t size) const
{
    std::vector<int> found;
    for (const Span &span : m_listSpans) {
        if (address < span.end && std::uint64_t{address} + size > span.first)
            found.push_back(span.feature);
    }
    return found;
}

void FeatureIndex::AddSources(const NodeMap &map, NodeEvaluator *pEvaluator, int node,
                              std::vector<bool> *pVisited)
{
    if (node < 0 || (*pVisited)[static_cast<std::size_t>(node)])
        return;
    (*pVisited)[static_cast<std::size_t>(node)] = true;
    if (IsRegisterNode(map.At(node))) {
        if (const auto field = pEvaluator->Field(node))
            m_listSources.push_back(
                {field->address, field->address + IndexedSize(map, map.At(node), field->size), node});
    }
    for (const NodeProperty &property : map.At(node).properties) {
        if (property.tag != "pInvalidator" && property.tag != "pSelected" && property.tag != "pPort")
            AddSources(map, pEvaluator, property.target, pVisited);
    }
}

bool FeatureIndex::Disturbs(std::uint32_t address, std::size_t size) const
{
    return std::any_of(m_listSources.begin(), m_listSources.end(), [&](const Span &span) {
        return address < span.end && std::uint64_t{address} + size > span.first;
    });
}

} // namespace KxFarm
