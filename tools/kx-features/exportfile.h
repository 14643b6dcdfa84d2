#ifndef KXFEATURES_EXPORTFILE_H
#define KXFEATURES_EXPORTFILE_H

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

#include <sys/stat.h>

#include "camera.h"

/// The file that one camera's export is to write. The worker does not tell that a disk was full, so the file
/// is looked at: what is there before the export, and what after it.
class ExportFile
{
public:
    /// Of a camera without a file.
    ExportFile() = default;

    /// Takes note of what is there now.
    explicit ExportFile(const QString &path);

    const QString &Path() const { return m_strPath; }

    /// @param written  what the writer says; where it wrote in place and failed, the file does not show it
    /// @return empty when the file is there, another one than before, and whole; otherwise what is wrong
    QString Problem(bool written) const;

private:
    bool IsWhole() const;

    QString m_strPath;
    std::optional<struct stat> m_before; ///< none when there was no file
};

/// The file of each camera.
QStringList ExportPaths(const QVector<Camera> &cameras, const QString &folder);

/// For each camera why it shares its file with others, which it names by their addresses, some of them when
/// there are many; empty where it does not.
QStringList SharedFiles(const QVector<Camera> &cameras, const QString &folder);

#endif
