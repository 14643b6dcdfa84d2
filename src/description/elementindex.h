#ifndef DESCRIPTION_ELEMENTINDEX_H
#define DESCRIPTION_ELEMENTINDEX_H

#include <QDomElement>
#include <QMap>
#include <QString>

/// A description's nodes by name; the elements share the nodes of the document.
using ElementMap = QMap<QString, QDomElement>;

/// How the text of a pointer leads to the element that declares the node.
///
/// Fills and reads a map that its caller owns and keeps alive. For one thread at a time.
class ElementIndex
{
public:
    explicit ElementIndex(ElementMap *pElements);

    /// Adds the named elements below the element, enumeration entries and what is inside them left out. The
    /// last element of a name wins. Nothing for a null element.
    void AddBelow(const QDomElement &element);

    /// The element of this name. False when there is none, with *pElement left alone, and when a null element
    /// is stored.
    bool Find(const QString &strName, QDomElement *pElement) const;

private:
    ElementMap *m_pElements; // borrowed
};

#endif
