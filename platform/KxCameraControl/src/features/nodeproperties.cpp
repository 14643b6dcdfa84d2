#include "features/nodeproperties.h"

namespace kxcc {

std::vector<ArvGcPropertyNode *> PropertiesOf(ArvGcNode *pNode)
{
    std::vector<ArvGcPropertyNode *> properties;
    for (ArvDomNode *pChild = arv_dom_node_get_first_child(ARV_DOM_NODE(pNode)); pChild != nullptr;
         pChild = arv_dom_node_get_next_sibling(pChild)) {
        if (ARV_IS_GC_PROPERTY_NODE(pChild))
            properties.push_back(ARV_GC_PROPERTY_NODE(pChild));
    }
    return properties;
}

ArvGcPropertyNode *PropertyOf(ArvGcNode *pNode, ArvGcPropertyNodeType type)
{
    for (ArvGcPropertyNode *pProperty : PropertiesOf(pNode)) {
        if (arv_gc_property_node_get_node_type(pProperty) == type)
            return pProperty;
    }
    return nullptr;
}

ArvGcNode *ValueNode(ArvGcNode *pNode)
{
    ArvGcPropertyNode *pLink = PropertyOf(pNode, ARV_GC_PROPERTY_NODE_TYPE_P_VALUE);
    return pLink == nullptr ? nullptr : arv_gc_property_node_get_linked_node(pLink);
}

std::string TextOf(ArvGcPropertyNode *pProperty)
{
    const char *szText = arv_gc_property_node_get_string(pProperty, nullptr);
    return szText == nullptr ? std::string() : szText;
}

std::string NameOf(ArvGcPropertyNode *pProperty)
{
    const char *szName = arv_gc_property_node_get_name(pProperty);
    return szName == nullptr ? std::string() : szName;
}

} // namespace kxcc
