#ifndef DESCRIPTION_DIRECTTEXT_H
#define DESCRIPTION_DIRECTTEXT_H

#include <QDomElement>
#include <QString>

/// The text of an element without that of elements inside it, untrimmed.
///
/// For what a description points with. QDomElement::text() copies the text of all that is inside once per
/// level: descriptions come from cameras, and a long text inside many pointers would take minutes.
QString DirectText(const QDomElement &element);

#endif
