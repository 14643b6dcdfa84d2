#ifndef TESTS_DESCRIPTION_REFERENCEWALK_H
#define TESTS_DESCRIPTION_REFERENCEWALK_H

#include <QDomElement>
#include <QHash>
#include <QMap>
#include <QSet>
#include <QStringList>
#include <QVector>

#include <description/directtext.h>

/// What walks along the pointers of a description list, by the plainest means: what the pointer graph, which
/// has bounds to keep, is compared with.
class ReferenceWalk
{
public:
    explicit ReferenceWalk(const QMap<QString, QDomElement> &mapElement)
        : m_mapElement(mapElement)
    {
    }

    /// Appends the names met on every path from the node. False when there are too many steps for it.
    bool ListEveryPath(const QString &strNode, QStringList *pListed)
    {
        if (m_path.contains(strNode))
            return true; // a cycle closes
        m_path.insert(strNode);
        bool bDone = true;
        for (const Link &link : LinksOf(strNode)) {
            bDone = bDone && --m_nStepsLeft > 0;
            if (link.bListed)
                pListed->append(link.strName);
            if (bDone && link.bFollowed)
                bDone = ListEveryPath(link.strName, pListed);
        }
        m_path.remove(strNode);
        return bDone;
    }

    /// The list of a feature's walks, no more than nMostSteps each. False when a walk takes more.
    bool ListFeature(const QDomElement &feature, int nMostSteps, QStringList *pListed)
    {
        for (QDomElement child = feature.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            if (child.tagName() == QLatin1String("pVariable"))
                pListed->append(DirectText(child));
            AllowSteps(nMostSteps);
            if (IsFollowedByFeature(child) && !ListEveryPath(DirectText(child), pListed))
                return false;
        }
        return true;
    }

    /// Adds every name that some path from the node meets.
    void AddNames(const QString &strNode, QSet<QString> *pNames)
    {
        QSet<QString> reached{strNode};
        QStringList pending{strNode};
        while (!pending.isEmpty()) {
            for (const Link &link : LinksOf(pending.takeLast())) {
                --m_nStepsLeft;
                if (link.bListed)
                    pNames->insert(link.strName);
                if (link.bFollowed && !reached.contains(link.strName)) {
                    reached.insert(link.strName);
                    pending.append(link.strName);
                }
            }
        }
    }

    /// Bounds what the next calls together may do.
    void AllowSteps(int nSteps) { m_nStepsLeft = nSteps; }
    bool HasStepsLeft() const { return m_nStepsLeft > 0; }

    /// Whether a feature's walks go along this child.
    static bool IsFollowedByFeature(const QDomElement &child)
    {
        return child.tagName() == QLatin1String("pValue") || IsFollowedOnly(child.tagName());
    }

private:
    static bool IsFollowedOnly(const QString &strTag)
    {
        static const QStringList tags = {QStringLiteral("pMin"),           QStringLiteral("pMax"),
                                         QStringLiteral("pInc"),           QStringLiteral("pIsLocked"),
                                         QStringLiteral("pIsImplemented"), QStringLiteral("pIsAvailable")};
        return tags.contains(strTag);
    }

    struct Link
    {
        QString strName;
        bool bListed;
        bool bFollowed;
    };

    QVector<Link> LinksOf(const QString &strNode)
    {
        const auto it = m_links.constFind(strNode);
        if (it != m_links.constEnd())
            return it.value();
        QVector<Link> links;
        const QDomElement node = m_mapElement.value(strNode);
        const QString strInvalidator = QStringLiteral("pInvalidator");
        if (node.tagName() == QLatin1String("StructEntry")) {
            for (QDomElement before = node.previousSiblingElement(strInvalidator); !before.isNull();
                 before = before.previousSiblingElement(strInvalidator))
                links.append({DirectText(before), true, false});
        }
        for (QDomElement child = node.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            const QString strTag = child.tagName();
            const bool bBoth = strTag == QLatin1String("pVariable") || strTag == QLatin1String("pValue");
            links.append(
                {DirectText(child), bBoth || strTag == strInvalidator, bBoth || IsFollowedOnly(strTag)});
        }
        m_links.insert(strNode, links);
        return links;
    }

    const QMap<QString, QDomElement> &m_mapElement;
    QHash<QString, QVector<Link>> m_links;
    QSet<QString> m_path;
    int m_nStepsLeft = 0;
};

#endif
