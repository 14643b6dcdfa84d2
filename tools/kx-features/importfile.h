#ifndef KXFEATURES_IMPORTFILE_H
#define KXFEATURES_IMPORTFILE_H

#include <QByteArray>
#include <QString>

/// The file of an import, read once: all cameras get the same bytes, whatever becomes of the file meanwhile,
/// and a pipe can be read no second time.
class ImportFile
{
public:
    ImportFile() = default;
    ~ImportFile();
    Q_DISABLE_COPY(ImportFile)

    static constexpr int kLongestWaitMs = 60000; ///< for the end of a pipe

    /// Reads the file; no more than FeatureFile::kLongestFile and a byte. Regular files are read, and what
    /// a shell gives for "<(...)" or a pipeline. Everything else, a FIFO with a name too, is refused without
    /// being opened. So is a file with a record that is not streamable: no import ever gets past it. A file
    /// that cannot be read counts as empty; that, and whatever else can be wrong with it, is the worker's to
    /// report.
    ///
    /// @return empty, or why the file is refused
    QString Read(const QString &path, int waitMs = kLongestWaitMs);

    /// What the workers read in its place: the bytes, which nobody can change. While the object lives.
    QString WorkerPath() const;

private:
    bool Keep(const QByteArray &bytes);

    int m_nFd = -1;
};

#endif
