#ifndef DESCRIPTION_FEATURESELECTOR_H
#define DESCRIPTION_FEATURESELECTOR_H

#include <QList>
#include <QString>

#include "elementindex.h"
#include "invalidatormap.h"

/// Chooses features by what invalidates them. The lists are borrowed and must outlive it. For one thread at a
/// time.
class FeatureSelector
{
public:
    explicit FeatureSelector(const InvalidatorLists &lists);

    /// Whether the list holds exactly this name.
    static bool Holds(const QList<QString> &list, const QString &strName);

    /// Features whose list holds the name, each once, in no particular order.
    QList<QString> InvalidatedBy(const QString &strName) const;

    /// Adds the elements of the features that the name invalidates. A feature that the index does not know is
    /// left out.
    void Select(const QString &strName, const ElementIndex &index, ElementMap *pFeatures) const;

private:
    const InvalidatorLists &m_lists;
};

#endif
