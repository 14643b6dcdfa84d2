#include "featureselector.h"

FeatureSelector::FeatureSelector(const InvalidatorLists &lists)
    : m_lists(lists)
{
}

bool FeatureSelector::Holds(const QList<QString> &list, const QString &strName)
{
    return list.contains(strName);
}

QList<QString> FeatureSelector::InvalidatedBy(const QString &strName) const
{
    QList<QString> listFeature;
    for (auto it = m_lists.constBegin(); it != m_lists.constEnd(); ++it) {
        if (Holds(it.value(), strName))
            listFeature.append(it.key());
    }
    return listFeature; // each once, as the keys of a map are
}

void FeatureSelector::Select(const QString &strName, const ElementIndex &index, ElementMap *pFeatures) const
{
    const QList<QString> listFeature = InvalidatedBy(strName);
    for (const QString &strFeature : listFeature) {
        QDomElement element;
        if (index.Find(strFeature, &element))
            pFeatures->insert(strFeature, element);
    }
}
