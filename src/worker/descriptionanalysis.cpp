// The worker's side of the description: its members, filled by the rules in src/description.
#include "qoperatethread.h"

#include "description/featurelist.h"
#include "description/featureselector.h"
#include "description/invalidatormap.h"
#include "description/pointergraph.h"

#include "workerlog.h"

namespace {

const char *const kFunction = "void QOperateThread::GenerateFeatureXmlMap()";

} // namespace

void QOperateThread::GenerateDomElementMap(QDomElement &element)
{
    ElementIndex(&m_mapDomElement).AddBelow(element);
}

bool QOperateThread::GetDomElementNode(const QString &strName, QDomElement &element)
{
    return ElementIndex(&m_mapDomElement).Find(strName, &element);
}

void QOperateThread::GenerateFeaturesInvalidatorMap(QDomElement &element)
{
    InvalidatorMap(m_mapDomElement, QLatin1String(kUserSetCommand), &m_mapFeatureInvalidator)
        .AddFeaturesAt(element);
}

void QOperateThread::InsertFeatureInvalidator(QDomElement &feature)
{
    InvalidatorMap(m_mapDomElement, QLatin1String(kUserSetCommand), &m_mapFeatureInvalidator)
        .AddFeature(feature);
}

void QOperateThread::GenerateInvalidatorListByProperty(const QString &strNodeName,
                                                       QList<QString> &listInvalidator,
                                                       QList<QString> &listVariable)
{
    PointerGraph(m_mapDomElement, QLatin1String(kUserSetCommand))
        .Walk(strNodeName, &listInvalidator, &listVariable);
}

bool QOperateThread::IsFeatureInQList(const QString &strName, const QList<QString> &list)
{
    return FeatureSelector::Holds(list, strName);
}

QList<QString> QOperateThread::GetFeatureInvalidatorList(const QString &strName)
{
    return FeatureSelector(m_mapFeatureInvalidator).InvalidatedBy(strName);
}

void QOperateThread::GenerateFeatureXmlMap()
{
    const std::optional<QString> text = FetchDescription();
    if (!text) {
        LogWorkerFailure(kFunction, QStringLiteral("CAMEAR_CREAT_BUF_FAILED"));
        ReleaseThread(); // the export goes on all the same, and ends a second time
        return;
    }
    FeatureList list(&m_domDocument, &m_mapDomElement, &m_mapFeatureInvalidator, &m_mapFeatureXml);
    if (!list.Generate(*text))
        LogWorkerFailure(kFunction, QStringLiteral("Load xml failed."));
}
