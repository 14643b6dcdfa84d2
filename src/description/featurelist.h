#ifndef DESCRIPTION_FEATURELIST_H
#define DESCRIPTION_FEATURELIST_H

#include <QDomDocument>
#include <QString>

#include "elementindex.h"
#include "invalidatormap.h"

/// The command that reloads a user set. What it invalidates is what a user set stores.
constexpr char kUserSetCommand[] = "UserSetLoad";

/// The features that a user set of a camera stores, from the camera's own description: text in, list out.
///
/// The document and the three maps, which hold what is found on the way and the features in the end, are its
/// caller's and must outlive it. For one thread at a time.
class FeatureList
{
public:
    FeatureList(QDomDocument *pDocument, ElementMap *pElements, InvalidatorLists *pInvalidators,
                ElementMap *pFeatures);

    /// Parses the text and analyses it. False when it cannot be parsed; the three maps stay as they were
    /// then.
    bool Generate(const QString &strText);

    /// The first half: the document. False when the text is not well-formed or not safe to parse.
    bool Parse(const QString &strText);

    /// The second half: clears the maps and fills them from the document.
    void Analyse();

private:
    QDomDocument *m_pDocument;         // borrowed, as are the maps
    ElementMap *m_pElements;           // the description's nodes by name
    InvalidatorLists *m_pInvalidators; // per feature: what invalidates it
    ElementMap *m_pFeatures;           // those that a user set stores
};

#endif
