#include "exportfile.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <featurefile/cameraidentity.h>
#include <featurefile/featurefilewriter.h>

namespace {

const int kMostNamed = 3; // so that a thousand cameras of one name do not fill a thousand lines

std::optional<struct stat> Look(const QString &path)
{
    struct stat st = {};
    if (stat(QFile::encodeName(path).constData(), &st) != 0) {
        return std::nullopt;
    }
    return st;
}

// A file that was replaced has another number, one that was written in place another time.
bool IsUntouched(const struct stat &before, const struct stat &now)
{
    return before.st_dev == now.st_dev && before.st_ino == now.st_ino &&
           before.st_ctim.tv_sec == now.st_ctim.tv_sec && before.st_ctim.tv_nsec == now.st_ctim.tv_nsec;
}

// Two names can be one file: a link leads to the other.
QString FileOf(const QString &path)
{
    const QString file = QFileInfo(path).canonicalFilePath();
    return file.isEmpty() ? path : file;
}

QString AddressOf(const Camera &camera)
{
    return camera.strAddress.isEmpty() ? QStringLiteral("?") : camera.strAddress;
}

QString SharedBy(const QVector<Camera> &cameras, int self, const QVector<int> &sharing, const QString &path)
{
    QStringList named = {AddressOf(cameras.at(self))};
    for (const int index : sharing) {
        if (index != self && named.size() < kMostNamed) {
            named << AddressOf(cameras.at(index));
        }
    }
    const int more = sharing.size() - named.size();
    const QString last = more > 0 ? QStringLiteral("%1 more").arg(more) : named.takeLast();
    return QStringLiteral("%1 and %2 have the same file, %3; with --overwrite the last one stays")
        .arg(named.join(QStringLiteral(", ")), last, path);
}

} // namespace

ExportFile::ExportFile(const QString &path)
    : m_strPath(path)
    , m_before(Look(path))
{
}

QString ExportFile::Problem(bool written) const
{
    const std::optional<struct stat> now = Look(m_strPath);
    if (!written || !now || (m_before && IsUntouched(*m_before, *now))) {
        return QStringLiteral("The file was not written; the disk may be full.");
    }
    return IsWhole() ? QString() : QStringLiteral("The file is not whole.");
}

bool ExportFile::IsWhole() const
{
    const QByteArray end = QByteArrayLiteral("</Features>");
    const QByteArray begin = FeatureFileWriter().Finish().toUtf8().chopped(end.size());
    QFile file(m_strPath);
    return file.open(QIODevice::ReadOnly) && file.read(begin.size()) == begin &&
           file.seek(file.size() - end.size()) && file.read(end.size()) == end;
}

QStringList ExportPaths(const QVector<Camera> &cameras, const QString &folder)
{
    QStringList paths;
    for (const Camera &camera : cameras) {
        paths << CameraIdentity::FilePath(folder, {camera.strModel, camera.strSerial});
    }
    return paths;
}

QStringList SharedFiles(const QVector<Camera> &cameras, const QString &folder)
{
    const QStringList paths = ExportPaths(cameras, folder);
    QHash<QString, QVector<int>> byFile;
    for (int index = 0; index < paths.size(); ++index) {
        byFile[FileOf(paths.at(index))] << index;
    }
    QStringList shared;
    for (int index = 0; index < paths.size(); ++index) {
        const QVector<int> sharing = byFile.value(FileOf(paths.at(index)));
        shared << (sharing.size() > 1 ? SharedBy(cameras, index, sharing, paths.at(index)) : QString());
    }
    return shared;
}
