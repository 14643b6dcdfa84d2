#ifndef DESCRIPTION_INVALIDATORMAP_H
#define DESCRIPTION_INVALIDATORMAP_H

#include <QDomElement>
#include <QList>
#include <QMap>
#include <QString>

#include "elementindex.h"
#include "pointergraph.h"

/// Per feature, by name: what invalidates it, in the order and as often as it is met.
using InvalidatorLists = QMap<QString, QList<QString>>;

/// What invalidates each value feature, as far as the pointers that make up its value tell. One graph, and so
/// one budget of steps, serves all features that are added to one map.
///
/// Fills lists that its caller owns; they and the elements must outlive it, and the elements stay as they
/// are. For one thread at a time.
class InvalidatorMap
{
public:
    /// @param strNeeded  the name that is listed even beyond the bounds of PointerGraph
    InvalidatorMap(const ElementMap &elements, const QString &strNeeded, InvalidatorLists *pLists);

    /// Adds every value feature at and below the element. Nothing for a null element.
    void AddFeaturesAt(const QDomElement &element);

    /// Adds one feature, whatever its tag; an entry of its name is replaced. None when nothing invalidates it
    /// through its pointers.
    void AddFeature(const QDomElement &feature);

private:
    PointerGraph m_graph;
    InvalidatorLists *m_pLists; // borrowed
};

#endif
