#ifndef FEATUREFILE_FEATUREFILEWRITER_H
#define FEATUREFILE_FEATUREFILEWRITER_H

#include <QString>

/// Builds the text of a feature file, in time linear in its length. Lines end with CR LF, the last one
/// with nothing; names, types and values are put in as they are, nothing is escaped. Numbers never depend
/// on a locale. Not shared between threads.
class FeatureFileWriter
{
public:
    /// Starts the text with the XML declaration and the root's start tag.
    FeatureFileWriter();

    void AppendModelName(const QString &strModelName);

    /// The three place-holders of a record are filled one after the other, each by QString::arg(): a name
    /// with "%2" in it takes the type in too.
    void AppendFeature(const QString &strName, const QString &strType, const QString &strValue);

    /// The text with its last line; nothing can be appended behind it.
    QString Finish();

    static QString BooleanText(bool bValue);     ///< "1" or "0"
    static QString UnsignedText(quint32 nValue); ///< decimal; a negative value as its 32-bit pattern
    static QString FloatText(float fValue);      ///< fixed notation, six decimals: "29.970000"

private:
    QString m_strText;
};

#endif
