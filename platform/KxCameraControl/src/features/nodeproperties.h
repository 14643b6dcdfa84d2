#ifndef KXCAMERACONTROL_FEATURES_NODEPROPERTIES_H
#define KXCAMERACONTROL_FEATURES_NODEPROPERTIES_H

#include <string>
#include <vector>

#include <arv.h>

/**
 * @file
 * What stands inside a node of the description. Nodes are borrowed from it.
 */

namespace kxcc {

/// All properties of the node, in the order of the description.
std::vector<ArvGcPropertyNode *> PropertiesOf(ArvGcNode *pNode);
/// A property of the node itself; null when it has none of the type.
ArvGcPropertyNode *PropertyOf(ArvGcNode *pNode, ArvGcPropertyNodeType type);
/// The node that the feature hands its value on to; null at the end of the chain.
ArvGcNode *ValueNode(ArvGcNode *pNode);

/// The text of a property that is no pointer.
std::string TextOf(ArvGcPropertyNode *pProperty);
/// The name that a variable, constant or expression has in a formula.
std::string NameOf(ArvGcPropertyNode *pProperty);

} // namespace kxcc

#endif
