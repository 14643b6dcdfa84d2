#ifndef TESTS_FUZZ_DOMDEPTH_H
#define TESTS_FUZZ_DOMDEPTH_H

#include <QDomElement>

/// Levels of elements at and below this one, without recursion: the depth may be what is wrong.
inline int DepthOf(const QDomElement &root)
{
    int nDeepest = root.isNull() ? 0 : 1;
    int nDepth = nDeepest;
    QDomElement element = root;
    while (!element.isNull()) {
        const QDomElement child = element.firstChildElement();
        if (!child.isNull()) {
            element = child;
            nDeepest = qMax(nDeepest, ++nDepth);
            continue;
        }
        while (element != root && element.nextSiblingElement().isNull()) {
            element = element.parentNode().toElement();
            --nDepth;
        }
        element = element == root ? QDomElement() : element.nextSiblingElement();
    }
    return nDeepest;
}

#endif
