#include "helper/featurecheck.h"

namespace kxcc {
namespace {

// Aravis evaluates with several stack frames per pointer; real descriptions need a dozen levels.
constexpr int kMaxDepth = 500;

/// A feature's value depends on these.
bool IsValueLink(ArvGcPropertyNodeType type)
{
    switch (type) {
    case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE:
    case ARV_GC_PROPERTY_NODE_TYPE_P_ADDRESS:
    case ARV_GC_PROPERTY_NODE_TYPE_P_INDEX:
    case ARV_GC_PROPERTY_NODE_TYPE_P_LENGTH:
    case ARV_GC_PROPERTY_NODE_TYPE_P_PORT:
    case ARV_GC_PROPERTY_NODE_TYPE_P_VARIABLE:
    case ARV_GC_PROPERTY_NODE_TYPE_P_COMMAND_VALUE:
    case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE_INDEXED:
    case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE_DEFAULT:
        return true;
    default:
        return false;
    }
}

/// Whether and with what limits it can be used, on these. They may lead back to the feature: the maximum
/// of Width depends on OffsetX, and the maximum of OffsetX on Width.
bool IsConditionLink(ArvGcPropertyNodeType type)
{
    switch (type) {
    case ARV_GC_PROPERTY_NODE_TYPE_P_IS_IMPLEMENTED:
    case ARV_GC_PROPERTY_NODE_TYPE_P_IS_AVAILABLE:
    case ARV_GC_PROPERTY_NODE_TYPE_P_IS_LOCKED:
    case ARV_GC_PROPERTY_NODE_TYPE_P_MINIMUM:
    case ARV_GC_PROPERTY_NODE_TYPE_P_MAXIMUM:
    case ARV_GC_PROPERTY_NODE_TYPE_P_INCREMENT:
        return true;
    default:
        return false;
    }
}

} // namespace

bool FeatureCheck::IsSound(ArvGcNode *pFeature)
{
    const auto known = m_features.find(pFeature);
    if (known != m_features.end())
        return known->second;
    const bool bSound = IsValueSound(pFeature, 0) && AreLinksSound(ARV_DOM_NODE(pFeature), true, 0);
    m_features[pFeature] = bSound;
    return bSound;
}

bool FeatureCheck::IsValueSound(ArvGcNode *pNode, int nDepth)
{
    const auto known = m_values.find(pNode);
    if (known != m_values.end())
        return known->second == Mark::Sound; // one being visited is its own value's cause
    if (nDepth > kMaxDepth)
        return false;
    m_values[pNode] = Mark::Visiting;
    bool bSound = AreLinksSound(ARV_DOM_NODE(pNode), false, nDepth);
    // A StructEntry takes address, length and port from the StructReg around it.
    ArvDomNode *pParent = arv_dom_node_get_parent_node(ARV_DOM_NODE(pNode));
    if (bSound && ARV_IS_GC_STRUCT_ENTRY_NODE(pNode) && pParent != nullptr)
        bSound = AreLinksSound(pParent, false, nDepth);
    m_values[pNode] = bSound ? Mark::Sound : Mark::Broken;
    return bSound;
}

bool FeatureCheck::AreLinksSound(ArvDomNode *pNode, bool bAllLinks, int nDepth)
{
    for (ArvDomNode *pChild = arv_dom_node_get_first_child(pNode); pChild != nullptr;
         pChild = arv_dom_node_get_next_sibling(pChild)) {
        if (ARV_IS_GC_PROPERTY_NODE(pChild)) {
            if (!IsLinkSound(ARV_GC_PROPERTY_NODE(pChild), bAllLinks, nDepth))
                return false;
        } else if (ARV_IS_GC_SWISS_KNIFE(pChild)) {
            // A register may hold the formula of its address as an element of its own.
            if (!AreLinksSound(pChild, bAllLinks, nDepth + 1))
                return false;
        }
    }
    return true;
}

bool FeatureCheck::IsLinkSound(ArvGcPropertyNode *pProperty, bool bAllLinks, int nDepth)
{
    const ArvGcPropertyNodeType type = arv_gc_property_node_get_node_type(pProperty);
    if (!IsValueLink(type) && !(bAllLinks && IsConditionLink(type)))
        return true;
    ArvGcNode *pTarget = arv_gc_property_node_get_linked_node(pProperty);
    if (pTarget == nullptr)
        return false;
    return type == ARV_GC_PROPERTY_NODE_TYPE_P_PORT ? ARV_IS_GC_PORT(pTarget) != FALSE
                                                    : IsValueSound(pTarget, nDepth + 1);
}

} // namespace kxcc
