// A feature file from anywhere: bytes, text, guard, document, records.
#include <QVector>

#include <featurefile/featurefilereader.h>
#include <featurefile/featurefilewriter.h>
#include <xml/xmlguard.h>

#include "check.h"
#include "domdepth.h"

using namespace FeatureFile;

namespace {

/// Shorter than what nests so deep that the document's recursion overflows the stack.
constexpr std::size_t kLongestInput = 16 << 10;

QVector<Record> RecordsOf(const QDomDocument &document)
{
    QVector<Record> records;
    for (QDomElement element = ModelElement(document).nextSiblingElement(); !element.isNull();
         element = element.nextSiblingElement()) {
        Record record;
        ReadRecord(element, &record);
        records.append(record);
    }
    return records;
}

QVector<Record> Walked(const QDomDocument &document, Pass pass)
{
    QVector<Record> records;
    WalkRecords(ModelElement(document), pass, ReadRecord,
                [&records](const Record &record) { records.append(record); });
    return records;
}

/// Every pass takes its records and no other, in the order of the file.
void CheckPasses(const QDomDocument &document)
{
    for (const Pass pass : {Pass::Booleans, Pass::Enumerations, Pass::Numbers, Pass::NumbersAgain}) {
        const QVector<Record> walked = Walked(document, pass);
        int nNext = 0;
        for (const Record &record : RecordsOf(document)) {
            if (!BelongsToPass(record.strType, pass))
                continue;
            FUZZ_CHECK(nNext < walked.size());
            FUZZ_CHECK(walked.at(nNext).strName == record.strName);
            FUZZ_CHECK(walked.at(nNext).strType == record.strType);
            FUZZ_CHECK(walked.at(nNext).strValue == record.strValue);
            ++nNext;
        }
        FUZZ_CHECK(nNext == walked.size());
    }
}

/// Whether the writer, which escapes nothing, and the reader, which drops text of blanks alone, leave it as
/// it is.
bool SurvivesWriting(const QString &strText)
{
    bool bHasText = strText.isEmpty();
    for (const QChar c : strText) {
        if (c == QLatin1Char('<') || c == QLatin1Char('&') || c == QLatin1Char('%') ||
            c == QLatin1Char('>') || c == QLatin1Char('\r') || !c.isPrint())
            return false;
        bHasText = bHasText || !c.isSpace();
    }
    return bHasText;
}

bool SurvivesWriting(const Record &record)
{
    return SurvivesWriting(record.strName) && SurvivesWriting(record.strType) &&
           SurvivesWriting(record.strValue);
}

void CheckRoundTrip(const QVector<Record> &records)
{
    FeatureFileWriter writer;
    writer.AppendModelName(QStringLiteral("Model"));
    QVector<Record> written;
    for (const Record &record : records) {
        if (!SurvivesWriting(record))
            continue;
        writer.AppendFeature(record.strName, record.strType, record.strValue);
        written.append(record);
    }
    QDomDocument document;
    const QString strText = DecodeText(writer.Finish().toUtf8());
    FUZZ_CHECK(Parse(strText, &document));
    FUZZ_CHECK(!FindEndlessRecord(strText));
    FUZZ_CHECK(ModelElement(document).text() == QLatin1String("Model"));
    const QVector<Record> read = RecordsOf(document);
    FUZZ_CHECK(read.size() == written.size());
    for (int i = 0; i < read.size(); ++i) {
        FUZZ_CHECK(read.at(i).strName == written.at(i).strName);
        FUZZ_CHECK(read.at(i).strType == written.at(i).strType);
        FUZZ_CHECK(read.at(i).strValue == written.at(i).strValue);
    }
}

/// Nothing is refused but what is no XML, nested too deep, or has a document type.
void CheckRefusal(const QString &strText)
{
    QDomDocument document;
    if (document.setContent(strText))
        FUZZ_CHECK(DepthOf(document.documentElement()) > kMaxXmlDepth ||
                   !document.doctype().name().isEmpty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *pData, std::size_t nSize)
{
    if (nSize > kLongestInput)
        return 0;
    const QString strText =
        DecodeText(QByteArray(reinterpret_cast<const char *>(pData), static_cast<int>(nSize)));
    FUZZ_CHECK(!strText.contains(QChar()));
    QDomDocument document;
    if (!Parse(strText, &document)) {
        FUZZ_CHECK(!FindEndlessRecord(strText));
        CheckRefusal(strText);
        return 0;
    }
    FUZZ_CHECK(DepthOf(document.documentElement()) <= kMaxXmlDepth);
    FUZZ_CHECK(document.doctype().name().isEmpty());
    if (!FindEndlessRecord(strText))
        CheckPasses(document);
    CheckRoundTrip(RecordsOf(document));
    return 0;
}
