#include "exportrule.h"

#include <algorithm>

using namespace KxFarm;

namespace {

bool Reaches(const NodeMap &map, int index)
{
    if (index < 0)
        return false;
    const Node &node = map.At(index);
    return std::any_of(node.properties.begin(), node.properties.end(), [&map](const NodeProperty &property) {
        const bool named =
            property.tag == "pInvalidator" || property.tag == "pVariable" || property.tag == "pValue";
        if (named && property.text == "UserSetLoad")
            return true;
        for (const char *tag :
             {"pVariable", "pValue", "pMin", "pMax", "pInc", "pIsLocked", "pIsImplemented", "pIsAvailable"}) {
            if (property.tag == tag)
                return Reaches(map, property.target);
        }
        return false;
    });
}

bool IsSelected(const NodeMap &map, const Node &feature)
{
    for (const char *tag :
         {"pValue", "pMin", "pMax", "pInc", "pIsLocked", "pIsImplemented", "pIsAvailable"}) {
        if (Reaches(map, feature.Target(tag)))
            return true;
    }
    return false;
}

} // namespace

QList<QByteArray> ExportedFeatures(const NodeMap &map)
{
    QList<QByteArray> names;
    for (int i = 0; i < map.Count(); ++i) {
        const Node &node = map.At(i);
        const bool value = node.Is("Boolean") || node.Is("Integer") || node.Is("IntReg") ||
                           node.Is("Float") || node.Is("Enumeration");
        const bool excluded = node.name == "UserSetDefault" || node.name == "UserSetSelector";
        if (value && !excluded && node.Text("Streamable").toLower() == "yes" && IsSelected(map, node))
            names.append(node.name);
    }
    std::sort(names.begin(), names.end());
    return names;
}
