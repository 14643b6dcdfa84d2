#include "invalidatormap.h"

#include "directtext.h"

namespace {

bool IsValueFeature(const QString &strTag)
{
    return strTag == QLatin1String("Enumeration") || strTag == QLatin1String("Integer") ||
           strTag == QLatin1String("IntReg") || strTag == QLatin1String("Boolean") ||
           strTag == QLatin1String("Float");
}

} // namespace

InvalidatorMap::InvalidatorMap(const ElementMap &elements, const QString &strNeeded, InvalidatorLists *pLists)
    : m_graph(elements, strNeeded)
    , m_pLists(pLists)
{
}

void InvalidatorMap::AddFeaturesAt(const QDomElement &element)
{
    if (IsValueFeature(element.tagName()))
        AddFeature(element);
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        AddFeaturesAt(child);
}

void InvalidatorMap::AddFeature(const QDomElement &feature)
{
    QList<QString> listInvalidator;
    QList<QString> listVariable;
    for (QDomElement child = feature.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const PointerGraph::Role role = PointerGraph::RoleOf(child.tagName(), PointerGraph::At::Feature);
        if (role.bListed)
            listInvalidator.append(DirectText(child));
        if (role.bVariable)
            listVariable.append(DirectText(child));
        if (role.bFollowed)
            m_graph.Walk(DirectText(child), &listInvalidator, &listVariable);
    }
    if (!listInvalidator.isEmpty())
        m_pLists->insert(feature.attribute(QStringLiteral("Name")), listInvalidator);
}
