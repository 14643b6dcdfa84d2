// What invalidates each value feature, as far as the pointers that make up its value tell.
#include "worker/qoperatethread.h"

#include <QScopedValueRollback>

#include "directtext.h"
#include "featureselector.h"
#include "pointergraph.h"

namespace {

bool IsValueFeature(const QString &strTag)
{
    return strTag == QLatin1String("Enumeration") || strTag == QLatin1String("Integer") ||
           strTag == QLatin1String("IntReg") || strTag == QLatin1String("Boolean") ||
           strTag == QLatin1String("Float");
}

} // namespace

void QOperateThread::GenerateFeaturesInvalidatorMap(QDomElement &element)
{
    if (element.isNull())
        return;
    if (!m_pPointerGraph) {
        // The outermost call: one graph serves all features below.
        PointerGraph graph(m_mapDomElement, QLatin1String(kUserSetCommand));
        const QScopedValueRollback<PointerGraph *> rollback(m_pPointerGraph, &graph);
        return GenerateFeaturesInvalidatorMap(element);
    }
    if (IsValueFeature(element.tagName()))
        InsertFeatureInvalidator(element);
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        GenerateFeaturesInvalidatorMap(child);
}

void QOperateThread::InsertFeatureInvalidator(QDomElement &feature)
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
            GenerateInvalidatorListByProperty(DirectText(child), listInvalidator, listVariable);
    }
    if (!listInvalidator.isEmpty())
        m_mapFeatureInvalidator.insert(feature.attribute(QStringLiteral("Name")), listInvalidator);
}

void QOperateThread::GenerateInvalidatorListByProperty(const QString &strNodeName,
                                                       QList<QString> &listInvalidator,
                                                       QList<QString> &listVariable)
{
    if (m_pPointerGraph)
        return m_pPointerGraph->Walk(strNodeName, &listInvalidator, &listVariable);
    PointerGraph(m_mapDomElement, QLatin1String(kUserSetCommand))
        .Walk(strNodeName, &listInvalidator, &listVariable);
}
