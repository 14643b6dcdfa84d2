#include "features/featurebag.h"

#include <algorithm>
#include <map>

#include "KxCameraControl/kxerrors.h"

namespace kxcc {
namespace {

/// An integer selector with more values than this counts something else than banks of settings.
constexpr std::size_t kMostIntegerChoices = 256;

bool IsStreamable(ArvDomNode *pNode)
{
    for (ArvDomNode *pChild = arv_dom_node_get_first_child(pNode); pChild != nullptr;
         pChild = arv_dom_node_get_next_sibling(pChild)) {
        if (ARV_IS_GC_PROPERTY_NODE(pChild) && arv_gc_property_node_get_node_type(ARV_GC_PROPERTY_NODE(
                                                   pChild)) == ARV_GC_PROPERTY_NODE_TYPE_STREAMABLE)
            return arv_gc_property_node_get_streamable(ARV_GC_PROPERTY_NODE(pChild), ARV_GC_STREAMABLE_NO) ==
                   ARV_GC_STREAMABLE_YES;
    }
    return false;
}

/// Every node of the description, those inside a <Group>, too.
void Collect(ArvDomNode *pParent, std::vector<ArvGcNode *> &nodes)
{
    for (ArvDomNode *pNode = arv_dom_node_get_first_child(pParent); pNode != nullptr;
         pNode = arv_dom_node_get_next_sibling(pNode)) {
        if (ARV_IS_GC_GROUP_NODE(pNode) || ARV_IS_GC_STRUCT_REG_NODE(pNode))
            Collect(pNode, nodes);
        else if (ARV_IS_GC_FEATURE_NODE(pNode))
            nodes.push_back(ARV_GC_NODE(pNode));
    }
}

std::vector<std::string> SelectedBy(ArvGcNode *pNode)
{
    std::vector<std::string> names;
    if (!ARV_IS_GC_SELECTOR(pNode) || arv_gc_selector_is_selector(ARV_GC_SELECTOR(pNode)) == FALSE)
        return names;
    for (const GSList *pItem = arv_gc_selector_get_selected_features(ARV_GC_SELECTOR(pNode));
         pItem != nullptr; pItem = pItem->next) {
        if (ARV_IS_GC_FEATURE_NODE(pItem->data))
            names.emplace_back(arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(pItem->data)));
    }
    return names;
}

bool IsSelector(ArvGc *pGenICam, const std::string &strName)
{
    ArvGcNode *pNode = arv_gc_get_node(pGenICam, strName.c_str());
    return pNode != nullptr && ARV_IS_GC_SELECTOR(pNode) &&
           arv_gc_selector_is_selector(ARV_GC_SELECTOR(pNode)) != FALSE;
}

bool EndsTheWork(int nCode)
{
    return nCode == KX_CC_E_TIMEOUT || nCode == KX_CC_E_LOST;
}

bool Contains(const std::vector<std::string> &names, const std::string &strName)
{
    return std::find(names.begin(), names.end(), strName) != names.end();
}

} // namespace

FeatureBag::FeatureBag(ArvGc *pGenICam, FeatureAccess &access, std::function<int()> alive)
    : m_pGenICam(pGenICam)
    , m_access(access)
    , m_alive(std::move(alive))
{
}

void FeatureBag::FindSettings()
{
    m_settings.clear();
    m_selectors.clear();
    std::vector<ArvGcNode *> nodes;
    Collect(ARV_DOM_NODE(arv_dom_document_get_document_element(ARV_DOM_DOCUMENT(m_pGenICam))), nodes);
    for (ArvGcNode *pNode : nodes) {
        const char *szName = arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(pNode));
        if (szName == nullptr || KindOf(pNode) == FeatureKind::None)
            continue;
        const bool bReadWrite =
            arv_gc_feature_node_get_actual_access_mode(ARV_GC_FEATURE_NODE(pNode)) == ARV_GC_ACCESS_MODE_RW;
        if (IsStreamable(ARV_DOM_NODE(pNode)) && bReadWrite)
            m_settings.emplace_back(szName);
        Names selected = SelectedBy(pNode);
        if (!selected.empty())
            m_selectors.emplace_back(szName, std::move(selected));
    }
}

FeatureBag::Names FeatureBag::SelectorsOf(const std::string &strFeature) const
{
    Names selectors;
    for (const auto &selector : m_selectors) {
        if (Contains(selector.second, strFeature))
            selectors.push_back(selector.first);
    }
    return selectors;
}

std::vector<FeatureBag::Group> FeatureBag::Groups() const
{
    std::vector<Group> groups(1); // the first is for what no selector selects
    for (const std::string &strName : m_settings) {
        const Names selectors = SelectorsOf(strName);
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&](const Group &candidate) { return candidate.selectors == selectors; });
        if (group == groups.end())
            group = groups.insert(groups.end(), Group{selectors, {}});
        group->features.push_back(strName);
    }
    return groups;
}

FeatureBag::Names FeatureBag::ChoicesOf(const std::string &strSelector)
{
    Names choices;
    ArvGcNode *pNode = arv_gc_get_node(m_pGenICam, strSelector.c_str());
    if (KindOf(pNode) == FeatureKind::Enumeration) {
        for (const GSList *pItem = arv_gc_enumeration_get_entries(ARV_GC_ENUMERATION(pNode));
             pItem != nullptr; pItem = pItem->next)
            choices.insert(choices.begin(), arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(pItem->data)));
    } else if (KindOf(pNode) == FeatureKind::Boolean) {
        choices = {"0", "1"};
    } else if (KindOf(pNode) == FeatureKind::Integer) {
        const std::int64_t nMin = arv_gc_integer_get_min(ARV_GC_INTEGER(pNode), nullptr);
        const std::int64_t nMax = arv_gc_integer_get_max(ARV_GC_INTEGER(pNode), nullptr);
        for (std::int64_t n = nMin; n <= nMax && choices.size() < kMostIntegerChoices; ++n) {
            choices.push_back(std::to_string(n));
            if (n == nMax)
                break; // the largest number has none behind it
        }
    }
    return choices;
}

int FeatureBag::Save(std::vector<FeatureLine> &lines)
{
    FindSettings();
    std::vector<FeatureLine> original;
    for (const auto &selector : m_selectors) {
        std::string strValue;
        const int nCode = m_access.GetText(selector.first, strValue);
        if (EndsTheWork(nCode))
            return nCode;
        if (nCode == KX_CC_OK)
            original.push_back({selector.first, strValue, {}});
    }
    int nCode = KX_CC_OK;
    for (const Group &group : Groups()) {
        nCode = SaveGroup(group, 0, lines);
        if (nCode != KX_CC_OK)
            break;
    }
    const int nRestored = Restore(original, lines);
    return nCode != KX_CC_OK ? nCode : nRestored;
}

/// Sets the selectors of the group to each of their combinations, the first one slowest.
int FeatureBag::SaveGroup(const Group &group, std::size_t nLevel, std::vector<FeatureLine> &lines)
{
    if (nLevel == group.selectors.size())
        return SaveFeatures(group.features, lines);
    const std::string &strSelector = group.selectors[nLevel];
    for (const std::string &strChoice : ChoicesOf(strSelector)) {
        int nCode = m_access.SetText(strSelector, strChoice);
        if (EndsTheWork(nCode))
            return nCode;
        if (nCode != KX_CC_OK)
            continue; // this camera does not have the entry, or not now
        const std::size_t nBefore = lines.size();
        lines.push_back({strSelector, strChoice, {}});
        nCode = SaveGroup(group, nLevel + 1, lines);
        if (nCode != KX_CC_OK)
            return nCode;
        if (lines.size() == nBefore + 1)
            lines.pop_back(); // nothing is there for this entry
    }
    return KX_CC_OK;
}

int FeatureBag::SaveFeatures(const Names &features, std::vector<FeatureLine> &lines)
{
    for (const std::string &strName : features) {
        std::string strValue;
        const int nCode = m_access.GetText(strName, strValue);
        if (EndsTheWork(nCode))
            return nCode;
        if (nCode == KX_CC_OK)
            lines.push_back({strName, strValue, {}});
        const int nAlive = m_alive();
        if (nAlive != KX_CC_OK)
            return nAlive;
    }
    return KX_CC_OK;
}

/// Gives the selectors their own values back, on the camera and at the end of the file.
int FeatureBag::Restore(const std::vector<FeatureLine> &selectors, std::vector<FeatureLine> &lines)
{
    for (const FeatureLine &selector : selectors) {
        const int nCode = m_access.SetText(selector.strName, selector.strValue);
        if (EndsTheWork(nCode))
            return nCode;
        if (nCode == KX_CC_OK)
            lines.push_back(selector);
    }
    return KX_CC_OK;
}

int FeatureBag::Load(const std::vector<FeatureLine> &lines)
{
    FindSettings();
    const std::vector<FeatureLine> selections = SelectionsAfter(lines);
    // A refused line may only wait for a later one: a limit, a lock, a mode.
    std::vector<bool> refused(lines.size(), true);
    const auto countRefused = [&] { return std::count(refused.begin(), refused.end(), true); };
    for (auto nBefore = countRefused() + 1; countRefused() > 0 && countRefused() < nBefore;) {
        nBefore = countRefused();
        const int nCode = LoadRefused(lines, refused);
        if (nCode != KX_CC_OK)
            return nCode;
    }
    for (const FeatureLine &selection : selections) {
        const int nCode = SetLine(selection);
        if (EndsTheWork(nCode))
            return nCode;
    }
    return countRefused() == 0 ? KX_CC_OK : KX_CC_E_FILE_PARTIAL;
}

/// Selectors are set again each time, because a refused value belongs to the selection that the lines
/// before it make.
int FeatureBag::LoadRefused(const std::vector<FeatureLine> &lines, std::vector<bool> &refused)
{
    std::set<std::string> refusedSelectors;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const FeatureLine &line = lines[i];
        const bool bSelector = line.selection.empty() && IsSelector(m_pGenICam, line.strName);
        if (!refused[i] && !bSelector)
            continue;
        if (line.selection.empty() && IsWronglySelected(line.strName, refusedSelectors))
            continue;
        const int nCode = SetLine(line);
        if (EndsTheWork(nCode))
            return nCode;
        refused[i] = nCode != KX_CC_OK;
        if (bSelector && refused[i])
            refusedSelectors.insert(line.strName);
        else if (bSelector)
            refusedSelectors.erase(line.strName);
        const int nAlive = m_alive();
        if (nAlive != KX_CC_OK)
            return nAlive;
    }
    return KX_CC_OK;
}

int FeatureBag::SetLine(const FeatureLine &line)
{
    for (const auto &selector : line.selection) {
        const int nCode = m_access.SetText(selector.first, selector.second);
        if (nCode != KX_CC_OK)
            return nCode;
    }
    return m_access.SetText(line.strName, line.strValue);
}

/// Whether the file means another selection than the one that the camera has.
bool FeatureBag::IsWronglySelected(const std::string &strFeature,
                                   const std::set<std::string> &refusedSelectors) const
{
    if (refusedSelectors.empty())
        return false;
    const Names selectors = SelectorsOf(strFeature);
    return std::any_of(selectors.begin(), selectors.end(), [&](const std::string &strSelector) {
        return refusedSelectors.count(strSelector) != 0;
    });
}

/// The selectors of lines with a selection of their own, with the values that they are to have in the end:
/// those of their own lines, or those that they have now.
std::vector<FeatureLine> FeatureBag::SelectionsAfter(const std::vector<FeatureLine> &lines)
{
    std::map<std::string, std::string> values;
    for (const FeatureLine &line : lines) {
        for (const auto &selector : line.selection) {
            std::string strValue;
            if (values.count(selector.first) == 0 && m_access.GetText(selector.first, strValue) == KX_CC_OK)
                values[selector.first] = strValue;
        }
    }
    for (const FeatureLine &line : lines) {
        const auto own = values.find(line.strName);
        if (line.selection.empty() && own != values.end())
            own->second = line.strValue;
    }
    std::vector<FeatureLine> selections;
    selections.reserve(values.size());
    for (const auto &value : values)
        selections.push_back({value.first, value.second, {}});
    return selections;
}

} // namespace kxcc
