#include "directtext.h"

QString DirectText(const QDomElement &element)
{
    QString strText;
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (child.isText()) // or a CDATA section, which is one
            strText += child.nodeValue();
    }
    return strText;
}
