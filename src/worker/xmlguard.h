#ifndef WORKER_XMLGUARD_H
#define WORKER_XMLGUARD_H

#include <QString>

/// Elements may be nested this deep; the root counts as 1. The DOM is walked and freed recursively, so
/// that some ten thousand levels would overflow a thread's stack.
constexpr int kMaxXmlDepth = 256;

/// Whether the text may be handed to QDomDocument::setContent(): nested no deeper than kMaxXmlDepth and
/// without a document type declaration, whose entities could expand without bound. One linear scan. It
/// does not check well-formedness; setContent() does, and stops where it is violated.
bool IsXmlSafeToParse(const QString &strText);

#endif
