#include "elementindex.h"

ElementIndex::ElementIndex(ElementMap *pElements)
    : m_pElements(pElements)
{
}

void ElementIndex::AddBelow(const QDomElement &element)
{
    static const QString strNameAttribute = QStringLiteral("Name");
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        // Names of enumeration entries are unique only within their enumeration.
        if (child.tagName() == QLatin1String("EnumEntry"))
            continue;
        const QString strName = child.attribute(strNameAttribute);
        if (!strName.isEmpty())
            m_pElements->insert(strName, child);
        AddBelow(child);
    }
}

bool ElementIndex::Find(const QString &strName, QDomElement *pElement) const
{
    const auto it = m_pElements->constFind(strName);
    if (it == m_pElements->constEnd())
        return false;
    *pElement = it.value();
    return !pElement->isNull();
}
