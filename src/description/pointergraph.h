#ifndef DESCRIPTION_POINTERGRAPH_H
#define DESCRIPTION_POINTERGRAPH_H

#include <QDomElement>
#include <QList>
#include <QMap>
#include <QString>
#include <QVector>

#include "elementindex.h"

/// The pointers of a GenICam description, for collecting what is met on the walk along them.
///
/// A walk starts at a node and meets the texts of its children in document order: pInvalidator is listed;
/// pVariable and pValue are listed and followed; pMin, pMax, pInc, pIsLocked, pIsImplemented and
/// pIsAvailable are followed. A StructEntry lists the pInvalidator elements before it in its register
/// first, nearest first. Pointers to unknown names end there.
///
/// A walk follows every path, so a node that two paths lead to is met twice. A path ends where it
/// meets one of its own nodes again, so cycles end too. Since the number of paths can grow exponentially
/// and descriptions come from cameras, walks have bounds:
///  - Beyond kLongestWalk steps a walk meets every node once and lists every name once, in the order of
///    their first occurrence: the same names as on every path.
///  - Beyond kWalkBudget steps of all walks together, a walk lists nothing but the one name that is
///    needed, if it would list that. Descriptions of real cameras take less than a hundredth of this.
/// Stack and memory do not depend on the length of the paths.
///
/// Each node's element is read once, when it is met first. Owned and used by one thread; the index must
/// outlive it and stay as it is.
class PointerGraph
{
public:
    static constexpr int kLongestWalk = 10000;
    static constexpr int kWalkBudget = 5000000;

    /// Who names a pointer: a value feature, or a node that is met on the way.
    enum class At
    {
        Feature,
        Node
    };

    /// What a child element of this tag does.
    struct Role
    {
        bool bListed = false;
        bool bVariable = false;
        bool bFollowed = false;
    };
    static Role RoleOf(const QString &strTag, At at);

    /// @param elements   the element index
    /// @param strNeeded  the name that is listed even beyond all bounds
    PointerGraph(const ElementMap &elements, const QString &strNeeded);

    /// Appends what the walk from the node lists, and what it meets as pVariable, to the two lists.
    void Walk(const QString &strNode, QList<QString> *pListed, QList<QString> *pVariables);

private:
    struct Link
    {
        int nName = 0;
        Role role;
    };
    struct Node
    {
        bool bRead = false;
        int nFirstLink = 0; // in m_links
        int nEndLink = 0;
        int nRegister = -1; // in m_registers: of a StructEntry, else -1
        int nInherited = 0; // so many of the register's invalidators stand before this entry
    };
    struct Register
    {
        QVector<int> invalidators; // names, in document order
        int nNeeded = 0;           // how many of them stand before the needed name, or a huge number
    };
    struct Frame
    {
        int nNode = 0;
        int nNextLink = 0;
    };
    enum class Paths
    {
        Every,
        EachNodeOnce
    };
    struct Output
    {
        Paths paths;
        QList<QString> *pListed;
        QList<QString> *pVariables;
    };

    int NameId(const QString &strName);
    void Read(int nNode);
    void ReadRegister(const QDomNode &structReg);
    bool WalkPaths(int nRoot, int nMostSteps, const Output &output);
    void Enter(int nNode, const Output &output);
    void Leave(const Output &output);
    void Meet(const Link &link, const Output &output);
    bool ListsNeeded(const Node &node) const;
    void FindNodesThatLeadToNeeded();

    const ElementMap &m_elements;
    QMap<QString, int> m_ids; // no hash: a camera could choose names that share one
    QVector<QString> m_names;
    QVector<Node> m_nodes; // by name, like the next three
    QVector<int> m_met;    // the walk on whose path, or in whose course, the node was met
    QVector<int> m_listed; // the walk that listed the name
    QVector<int> m_variables;
    QVector<Link> m_links;
    QVector<Register> m_registers;
    QVector<Frame> m_path;
    int m_nWalk = 0;
    int m_nSteps = 0; // of the current walk
    int m_nBudget = kWalkBudget;
    const int m_nNeeded;           // a name; behind the members that naming it fills
    QVector<bool> m_leadsToNeeded; // by name; filled when the budget is used up
};

#endif
