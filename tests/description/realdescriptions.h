#ifndef TESTS_DESCRIPTION_REALDESCRIPTIONS_H
#define TESTS_DESCRIPTION_REALDESCRIPTIONS_H

#include <QDir>
#include <QFile>
#include <QStringList>

/// Descriptions that cameras of several makers publish: NAME.xml, with the features that a user set stores in
/// NAME.selected and those that are exported in NAME.expected, one "TYPE NAME" a line. Link a test with the
/// definition PROJECT_DESCRIPTIONS_DIR; the folder may be empty.
namespace RealDescriptions {

inline QDir Folder()
{
    return QDir(QStringLiteral(PROJECT_DESCRIPTIONS_DIR));
}

inline QStringList Names()
{
    QStringList names;
    for (const QFileInfo &file : Folder().entryInfoList({QStringLiteral("*.xml")}))
        names.append(file.completeBaseName());
    return names;
}

inline QByteArray Bytes(const QString &strFile)
{
    QFile file(Folder().filePath(strFile));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QStringList Lines(const QString &strFile)
{
    return QString::fromUtf8(Bytes(strFile)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace RealDescriptions

#endif
