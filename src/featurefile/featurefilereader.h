#ifndef FEATUREFILE_FEATUREFILEREADER_H
#define FEATUREFILE_FEATUREFILEREADER_H

#include <QByteArray>
#include <QDomDocument>
#include <QDomElement>
#include <QString>

#include <functional>
#include <optional>

/// Reading feature files: one root, whose first child element holds the camera's model name and every
/// further one a record with the elements Name, Type, Value and Streamable. Tags of the root and of its
/// children are not looked at. Everything here is callable from any thread.
namespace FeatureFile {

struct Record
{
    QString strName;
    QString strType;
    QString strValue;
};

/// The four orders in which an import goes over the records.
enum class Pass
{
    Booleans,
    Enumerations,
    Numbers,
    NumbersAgain
};

/// No feature file has more in it: a camera has some hundred features. Every camera of a batch parses the
/// file for itself, so these bound what a file costs each of them: some 60 MB, and less than a second.
constexpr int kLongestFile = 4 * 1024 * 1024;
constexpr int kMostRecords = 10000;
constexpr int kMostNodes = 60000; ///< elements, attributes, comments and such; a record has five

/// The text of the file; empty when it cannot be opened or is no regular file, whose end might never come. No
/// more than kLongestFile and one byte are read; Parse() refuses the text of a longer one.
QString ReadText(const QString &strPath);

/// The file's text: its bytes as UTF-8, without a byte-order mark, up to the first NUL.
QString DecodeText(const QByteArray &bytes);

/// Parses the text. False when it is not well-formed, when elements are nested deeper than kMaxXmlDepth,
/// when it holds a document type declaration, which no feature file has, and when it is longer than
/// kLongestFile or has more than kMostRecords or kMostNodes.
bool Parse(const QString &strText, QDomDocument *pDocument);

/// The element that holds the model name, whatever its tag; null when the root has no child element. The
/// records are its following siblings.
QDomElement ModelElement(const QDomDocument &document);

/// Reads one record: texts untrimmed, the last of repeated tags wins, other tags are ignored.
/// @return whether the record is streamable: its Streamable text is "Yes" in any case
bool ReadRecord(const QDomElement &element, Record *pRecord);

/// Whether records of this type are applied in the pass.
bool BelongsToPass(const QString &strType, Pass pass);

using RecordReader = std::function<bool(const QDomElement &, Record *)>;
using RecordSink = std::function<void(const Record &)>;

/// Goes over the records behind the model element once and gives those of the pass to the sink. A record
/// that the reader refuses is read again and again: the walk never gets past it and never returns.
void WalkRecords(const QDomElement &modelElement, Pass pass, const RecordReader &reader,
                 const RecordSink &sink);

/// Tells beforehand whether an import of this file would never end.
/// @param strText  the file's text, from DecodeText()
/// @return the name of the first record that is not streamable, as the record reader reads it, so it may be
///         empty; nothing when every record is streamable, and when the text is not a feature file,
///         which an import reports and ends with
std::optional<QString> FindEndlessRecord(const QString &strText);

} // namespace FeatureFile

#endif
