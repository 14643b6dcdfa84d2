#include "featurefilewriter.h"

FeatureFileWriter::FeatureFileWriter()
    : m_strText(QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Features>\r\n"))
{
}

void FeatureFileWriter::AppendModelName(const QString &strModelName)
{
    m_strText += QStringLiteral("<DeviceModelName>%1</DeviceModelName>\r\n").arg(strModelName);
}

void FeatureFileWriter::AppendFeature(const QString &strName, const QString &strType, const QString &strValue)
{
    const QString strTemplate = QStringLiteral("<Feature>\r\n"
                                               "<Name>%1</Name>\r\n"
                                               "<Type>%2</Type>\r\n"
                                               "<Value>%3</Value>\r\n"
                                               "<Streamable>Yes</Streamable>\r\n"
                                               "</Feature>\r\n");
    // One after the other, not all at once: that is how the format is defined.
    m_strText += strTemplate.arg(strName).arg(strType).arg(strValue);
}

QString FeatureFileWriter::Finish()
{
    m_strText += QStringLiteral("</Features>");
    return m_strText;
}

QString FeatureFileWriter::BooleanText(bool bValue)
{
    return QString::number(bValue ? 1 : 0);
}

QString FeatureFileWriter::UnsignedText(quint32 nValue)
{
    return QString::number(nValue);
}

QString FeatureFileWriter::FloatText(float fValue)
{
    return QString::number(static_cast<double>(fValue), 'f', 6);
}
