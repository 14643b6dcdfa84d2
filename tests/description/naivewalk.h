#ifndef TESTS_DESCRIPTION_NAIVEWALK_H
#define TESTS_DESCRIPTION_NAIVEWALK_H

#include <QDomElement>
#include <QList>
#include <QMap>
#include <QString>

/// The invalidator lists by plain recursion, as their definition reads: what the pointer graph is compared
/// with. Knows no bounds, so give it only descriptions without cycles and diamonds.
class NaiveWalk
{
public:
    explicit NaiveWalk(const QMap<QString, QDomElement> &mapElement)
        : m_mapElement(mapElement)
    {
    }

    QList<QString> OfFeature(const QDomElement &feature)
    {
        m_listed.clear();
        for (QDomElement child = feature.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            const QString strTag = child.tagName();
            if (strTag == QLatin1String("pVariable"))
                m_listed.append(child.text());
            else if (strTag == QLatin1String("pValue") || IsFollowedOnly(strTag))
                Below(child.text());
        }
        return m_listed;
    }

private:
    static bool IsFollowedOnly(const QString &strTag)
    {
        static const QStringList tags = {QStringLiteral("pMin"),           QStringLiteral("pMax"),
                                         QStringLiteral("pInc"),           QStringLiteral("pIsLocked"),
                                         QStringLiteral("pIsImplemented"), QStringLiteral("pIsAvailable")};
        return tags.contains(strTag);
    }

    void Below(const QString &strNode)
    {
        const QDomElement node = m_mapElement.value(strNode);
        if (node.isNull())
            return;
        if (node.tagName() == QLatin1String("StructEntry")) {
            const QString strInvalidator = QStringLiteral("pInvalidator");
            for (QDomElement before = node.previousSiblingElement(strInvalidator); !before.isNull();
                 before = before.previousSiblingElement(strInvalidator))
                m_listed.append(before.text());
        }
        for (QDomElement child = node.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            const QString strTag = child.tagName();
            const bool bListed = strTag == QLatin1String("pVariable") || strTag == QLatin1String("pValue");
            if (bListed || strTag == QLatin1String("pInvalidator"))
                m_listed.append(child.text());
            if (bListed || IsFollowedOnly(strTag))
                Below(child.text());
        }
    }

    const QMap<QString, QDomElement> &m_mapElement;
    QList<QString> m_listed;
};

#endif
