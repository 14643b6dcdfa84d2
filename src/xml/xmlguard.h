#ifndef XML_XMLGUARD_H
#define XML_XMLGUARD_H

#include <QString>

#include <limits>

/// Elements may be nested this deep; the root counts as 1. The DOM is walked and freed recursively, so
/// that some ten thousand levels would overflow a thread's stack.
constexpr int kMaxXmlDepth = 256;

/// What the tree of a text may hold.
struct XmlLimits
{
    int nMostNodes = std::numeric_limits<int>::max();    ///< all but texts, of which there are hardly more
    int nMostChildren = std::numeric_limits<int>::max(); ///< elements directly below the root
};

/// Whether the text may be handed to QDomDocument::setContent(): nested no deeper than kMaxXmlDepth and
/// without a document type declaration, whose entities could expand without bound, and within the limits. One
/// linear scan. It does not check well-formedness; setContent() does, and stops where it is violated.
bool IsXmlSafeToParse(const QString &strText, const XmlLimits &limits = XmlLimits());

#endif
