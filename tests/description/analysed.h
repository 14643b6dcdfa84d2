#ifndef TESTS_DESCRIPTION_ANALYSED_H
#define TESTS_DESCRIPTION_ANALYSED_H

#include <description/featurelist.h>

/// A description with what its analysis finds.
struct Analysed
{
    QDomDocument document;
    ElementMap elements;
    InvalidatorLists invalidators;
    ElementMap features;

    bool Generate(const QString &strText)
    {
        return FeatureList(&document, &elements, &invalidators, &features).Generate(strText);
    }
};

#endif
