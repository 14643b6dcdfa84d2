#include "pointergraph.h"

#include <algorithm>
#include <limits>

#include "directtext.h"

PointerGraph::Role PointerGraph::RoleOf(const QString &strTag, At at)
{
    if (!strTag.startsWith(QLatin1Char('p')))
        return {};
    const bool bNode = at == At::Node;
    if (strTag == QLatin1String("pValue"))
        return {bNode, false, true};
    if (strTag == QLatin1String("pVariable"))
        return {true, true, bNode};
    if (strTag == QLatin1String("pInvalidator"))
        return {bNode, false, false};
    static const QLatin1String followed[] = {QLatin1String("pMin"),           QLatin1String("pMax"),
                                             QLatin1String("pInc"),           QLatin1String("pIsLocked"),
                                             QLatin1String("pIsImplemented"), QLatin1String("pIsAvailable")};
    const bool bFollowed = std::any_of(std::begin(followed), std::end(followed),
                                       [&strTag](QLatin1String tag) { return strTag == tag; });
    return {false, false, bFollowed};
}

PointerGraph::PointerGraph(const ElementMap &elements, const QString &strNeeded)
    : m_elements(elements)
    , m_nNeeded(NameId(strNeeded))
{
}

void PointerGraph::Walk(const QString &strNode, QList<QString> *pListed, QList<QString> *pVariables)
{
    const int nRoot = NameId(strNode);
    if (m_nBudget > 0 &&
        (WalkPaths(nRoot, std::min(kLongestWalk, m_nBudget), {Paths::Every, pListed, pVariables}) ||
         WalkPaths(nRoot, m_nBudget, {Paths::EachNodeOnce, pListed, pVariables})))
        return;
    m_nBudget = 0;
    if (m_leadsToNeeded.isEmpty())
        FindNodesThatLeadToNeeded();
    if (m_leadsToNeeded.value(nRoot)) // a name that came up after that is in no index and leads nowhere
        pListed->append(m_names.at(m_nNeeded));
}

bool PointerGraph::WalkPaths(int nRoot, int nMostSteps, const Output &output)
{
    const int nListed = output.pListed->size();
    const int nVariables = output.pVariables->size();
    ++m_nWalk;
    m_nSteps = 0;
    m_path.clear();
    Enter(nRoot, output);
    while (!m_path.isEmpty() && m_nSteps < nMostSteps) {
        Frame &frame = m_path.last();
        if (frame.nNextLink == m_nodes.at(frame.nNode).nEndLink) {
            Leave(output);
            continue;
        }
        const Link link = m_links.at(frame.nNextLink++);
        Meet(link, output);
        if (link.role.bFollowed)
            Enter(link.nName, output);
    }
    m_nBudget -= std::min(m_nSteps, m_nBudget);
    if (m_path.isEmpty() && m_nSteps <= nMostSteps)
        return true;
    output.pListed->erase(output.pListed->begin() + nListed, output.pListed->end());
    output.pVariables->erase(output.pVariables->begin() + nVariables, output.pVariables->end());
    return false;
}

/// Puts the node on the path and lists what it inherits from its register, unless the walk has met it.
void PointerGraph::Enter(int nNode, const Output &output)
{
    ++m_nSteps;
    if (m_met.at(nNode) == m_nWalk)
        return;
    m_met[nNode] = m_nWalk;
    Read(nNode);
    const Node node = m_nodes.at(nNode);
    m_path.append({nNode, node.nFirstLink});
    for (int i = node.nInherited - 1; i >= 0; --i)
        Meet({m_registers.at(node.nRegister).invalidators.at(i), {true, false, false}}, output);
}

void PointerGraph::Leave(const Output &output)
{
    if (output.paths == Paths::Every)
        m_met[m_path.last().nNode] = 0;
    m_path.removeLast();
}

void PointerGraph::Meet(const Link &link, const Output &output)
{
    ++m_nSteps;
    const bool bOnce = output.paths == Paths::EachNodeOnce;
    if (link.role.bListed && !(bOnce && m_listed.at(link.nName) == m_nWalk)) {
        m_listed[link.nName] = m_nWalk;
        output.pListed->append(m_names.at(link.nName));
    }
    if (link.role.bVariable && !(bOnce && m_variables.at(link.nName) == m_nWalk)) {
        m_variables[link.nName] = m_nWalk;
        output.pVariables->append(m_names.at(link.nName));
    }
}

int PointerGraph::NameId(const QString &strName)
{
    const auto it = m_ids.constFind(strName);
    if (it != m_ids.constEnd())
        return it.value();
    const int nName = m_names.size();
    m_ids.insert(strName, nName);
    m_names.append(strName);
    m_nodes.append(Node());
    m_met.append(0);
    m_listed.append(0);
    m_variables.append(0);
    return nName;
}

void PointerGraph::Read(int nNode)
{
    if (m_nodes.at(nNode).bRead)
        return;
    const QDomElement element = m_elements.value(m_names.at(nNode)); // null for an unknown name
    if (element.tagName() == QLatin1String("StructEntry") && m_nodes.at(nNode).nRegister < 0)
        ReadRegister(element.parentNode());
    const int nFirst = m_links.size();
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const Role role = RoleOf(child.tagName(), At::Node);
        if (role.bListed || role.bFollowed)
            m_links.append({NameId(DirectText(child)), role});
    }
    Node &node = m_nodes[nNode];
    node.bRead = true;
    node.nFirstLink = nFirst;
    node.nEndLink = m_links.size();
}

/// Reads what all entries of a register inherit, in one go: looking backwards from each of its entries
/// would be quadratic.
void PointerGraph::ReadRegister(const QDomNode &structReg)
{
    Register reg;
    reg.nNeeded = std::numeric_limits<int>::max();
    for (QDomElement child = structReg.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const QString strTag = child.tagName();
        if (strTag == QLatin1String("pInvalidator")) {
            const int nName = NameId(DirectText(child));
            if (nName == m_nNeeded)
                reg.nNeeded = std::min(reg.nNeeded, reg.invalidators.size());
            reg.invalidators.append(nName);
        } else if (strTag == QLatin1String("StructEntry")) {
            const QString strName = child.attribute(QStringLiteral("Name"));
            if (m_elements.value(strName) != child)
                continue; // another element has the name
            Node &node = m_nodes[NameId(strName)];
            node.nRegister = m_registers.size();
            node.nInherited = reg.invalidators.size();
        }
    }
    m_registers.append(reg);
}

bool PointerGraph::ListsNeeded(const Node &node) const
{
    if (node.nRegister >= 0 && node.nInherited > m_registers.at(node.nRegister).nNeeded)
        return true;
    return std::any_of(m_links.begin() + node.nFirstLink, m_links.begin() + node.nEndLink,
                       [this](const Link &link) { return link.role.bListed && link.nName == m_nNeeded; });
}

/// Goes backwards from the nodes that list the needed name to all that lead there: every pointer once.
void PointerGraph::FindNodesThatLeadToNeeded()
{
    for (auto it = m_elements.constBegin(); it != m_elements.constEnd(); ++it)
        Read(NameId(it.key()));
    m_leadsToNeeded.fill(false, m_names.size());
    QVector<QVector<int>> pointedToBy(m_names.size());
    QVector<int> found;
    for (int nNode = 0; nNode < m_nodes.size(); ++nNode) {
        const Node &node = m_nodes.at(nNode);
        for (int i = node.nFirstLink; i < node.nEndLink; ++i) {
            if (m_links.at(i).role.bFollowed)
                pointedToBy[m_links.at(i).nName].append(nNode);
        }
        if (ListsNeeded(node)) {
            m_leadsToNeeded[nNode] = true;
            found.append(nNode);
        }
    }
    while (!found.isEmpty()) {
        for (const int nNode : qAsConst(pointedToBy[found.takeLast()])) {
            if (!m_leadsToNeeded.at(nNode)) {
                m_leadsToNeeded[nNode] = true;
                found.append(nNode);
            }
        }
    }
}
