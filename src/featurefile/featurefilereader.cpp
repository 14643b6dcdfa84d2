#include "featurefilereader.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>

#include "xml/xmlguard.h"

QString FeatureFile::ReadText(const QString &strPath)
{
    QFile file(strPath);
    return QFileInfo(strPath).isFile() && file.open(QIODevice::ReadOnly)
               ? DecodeText(file.read(kLongestFile + 1))
               : QString();
}

QString FeatureFile::DecodeText(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes.constData(),
                             static_cast<int>(qstrnlen(bytes.constData(), static_cast<uint>(bytes.size()))));
}

bool FeatureFile::Parse(const QString &strText, QDomDocument *pDocument)
{
    const XmlLimits limits = {kMostNodes, kMostRecords + 1}; // the model name is a child of the root, too
    return strText.size() <= kLongestFile && IsXmlSafeToParse(strText, limits) &&
           pDocument->setContent(strText);
}

QDomElement FeatureFile::ModelElement(const QDomDocument &document)
{
    return document.documentElement().firstChildElement();
}

bool FeatureFile::ReadRecord(const QDomElement &element, Record *pRecord)
{
    *pRecord = Record();
    bool bStreamable = false;
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const QString strTag = child.tagName();
        if (strTag == QLatin1String("Name"))
            pRecord->strName = child.text();
        else if (strTag == QLatin1String("Type"))
            pRecord->strType = child.text();
        else if (strTag == QLatin1String("Value"))
            pRecord->strValue = child.text();
        else if (strTag == QLatin1String("Streamable"))
            bStreamable = child.text().compare(QLatin1String("Yes"), Qt::CaseInsensitive) == 0;
    }
    return bStreamable;
}

bool FeatureFile::BelongsToPass(const QString &strType, Pass pass)
{
    switch (pass) {
    case Pass::Booleans:
        return strType == QLatin1String("Boolean");
    case Pass::Enumerations:
        return strType == QLatin1String("Enumeration");
    case Pass::Numbers:
    case Pass::NumbersAgain:
        return strType == QLatin1String("Integer") || strType == QLatin1String("IntReg") ||
               strType == QLatin1String("Float");
    }
    return false;
}

void FeatureFile::WalkRecords(const QDomElement &modelElement, Pass pass, const RecordReader &reader,
                              const RecordSink &sink)
{
    Record record;
    QDomElement element = modelElement.nextSiblingElement();
    while (!element.isNull()) {
        if (!reader(element, &record)) {
            // Staying here for good is meant. The pause leaves the processor to the other cameras.
            QThread::msleep(1);
            continue;
        }
        if (BelongsToPass(record.strType, pass))
            sink(record);
        element = element.nextSiblingElement();
    }
}

std::optional<QString> FeatureFile::FindEndlessRecord(const QString &strText)
{
    QDomDocument document;
    if (!Parse(strText, &document))
        return std::nullopt;
    const QDomElement model = ModelElement(document);
    for (QDomElement element = model.nextSiblingElement(); !element.isNull();
         element = element.nextSiblingElement()) {
        Record record;
        if (!ReadRecord(element, &record))
            return record.strName;
    }
    return std::nullopt;
}
