// The description's nodes by name: how a pointer's text leads to the element that declares the node.
#include "worker/qoperatethread.h"

void QOperateThread::GenerateDomElementMap(QDomElement &element)
{
    static const QString strNameAttribute = QStringLiteral("Name");
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        // Names of enumeration entries are unique only within their enumeration.
        if (child.tagName() == QLatin1String("EnumEntry"))
            continue;
        const QString strName = child.attribute(strNameAttribute);
        if (!strName.isEmpty())
            m_mapDomElement.insert(strName, child);
        GenerateDomElementMap(child);
    }
}

bool QOperateThread::GetDomElementNode(const QString &strName, QDomElement &element)
{
    const auto it = m_mapDomElement.constFind(strName);
    if (it == m_mapDomElement.constEnd())
        return false;
    element = it.value();
    return !element.isNull();
}
