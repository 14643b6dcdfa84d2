#ifndef KXCAMERAFARM_NODEMAP_H
#define KXCAMERAFARM_NODEMAP_H

#include "genicam/formula.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <cstdint>
#include <vector>

namespace KxFarm {

/// One child element of a node.
struct NodeProperty
{
    QByteArray tag;
    QByteArray text;
    QByteArray name;   ///< its "Name" attribute: what a formula calls the variable
    QByteArray offset; ///< "Offset", "pOffset" of a pIndex; "Index" of an indexed value; "Count" of a PowerUp
    int target = -1;   ///< the node that the text names, for pointers; -1: none
};

/// One node of a description. StructEntry nodes also have the properties of their StructReg.
struct Node
{
    QByteArray tag;
    QByteArray name;
    std::vector<NodeProperty> properties;
    std::vector<int> entries; ///< of an Enumeration: its EnumEntry nodes
    Formula formula;          ///< Formula, FormulaFrom
    Formula formulaTo;

    const NodeProperty *Find(const char *tag) const; ///< the first of its kind, null without one
    QByteArray Text(const char *tag) const;          ///< of the first of its kind
    int Target(const char *tag) const;               ///< of the first of its kind, -1 without one
    bool Is(const char *kind) const { return tag == kind; }
};

/// A GenICam description as a list of nodes that point at each other. Never changes after Parse().
class NodeMap
{
public:
    /// False, with one line in *pError, when `xml` is not well-formed or has another root element.
    bool Parse(const QByteArray &xml, QString *pError);

    QByteArray VendorName() const { return m_vendor; }
    QByteArray ModelName() const { return m_model; }

    int Count() const { return static_cast<int>(m_listNodes.size()); }
    const Node &At(int index) const { return m_listNodes[static_cast<std::size_t>(index)]; }
    int Find(const QByteArray &name) const { return m_hashNames.value(name, -1); }

private:
    friend class NodeReader;
    void ResolvePointers();
    void CompileFormulas();

    QByteArray m_vendor;
    QByteArray m_model;
    std::vector<Node> m_listNodes;
    QHash<QByteArray, int> m_hashNames; // without EnumEntry nodes, whose names repeat
};

/// A number as descriptions write them: decimal, 0x..., or with a fraction that is cut off.
std::int64_t ParseDescriptionInteger(const QByteArray &text);

} // namespace KxFarm

#endif
