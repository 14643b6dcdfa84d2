#include "featurelist.h"

#include "featureselector.h"
#include "xml/xmlguard.h"

FeatureList::FeatureList(QDomDocument *pDocument, ElementMap *pElements, InvalidatorLists *pInvalidators,
                         ElementMap *pFeatures)
    : m_pDocument(pDocument)
    , m_pElements(pElements)
    , m_pInvalidators(pInvalidators)
    , m_pFeatures(pFeatures)
{
}

bool FeatureList::Generate(const QString &strText)
{
    if (!Parse(strText))
        return false;
    Analyse();
    return true;
}

bool FeatureList::Parse(const QString &strText)
{
    return IsXmlSafeToParse(strText) && m_pDocument->setContent(strText);
}

void FeatureList::Analyse()
{
    m_pElements->clear();
    m_pInvalidators->clear();
    m_pFeatures->clear();

    const QString strCommand = QLatin1String(kUserSetCommand);
    const QDomElement root = m_pDocument->documentElement();
    ElementIndex index(m_pElements);
    index.AddBelow(root);
    InvalidatorMap(*m_pElements, strCommand, m_pInvalidators).AddFeaturesAt(root);
    FeatureSelector(*m_pInvalidators).Select(strCommand, index, m_pFeatures);
}
