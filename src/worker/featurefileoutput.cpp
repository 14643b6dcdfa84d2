#include "featurefileoutput.h"

#include <QReadLocker>
#include <QReadWriteLock>
#include <QSaveFile>
#include <QTextStream>

namespace {

// Held for reading while a file is written, for writing by the one that closes the output.
QReadWriteLock &Gate()
{
    static QReadWriteLock gate;
    return gate;
}

} // namespace

bool FeatureFileOutput::Write(const QString &strPath, const QString &strText)
{
    const QReadLocker open(&Gate());
    QSaveFile file(strPath);
    // In a folder that takes no new files, an existing one that may be written still can be.
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QTextStream stream(&file);
    stream.setCodec("UTF-8"); // as the text declares; the default would be the locale's
    stream << strText;
    stream.flush();
    // QSaveFile itself overlooks a write that the system cut short, as it does when the disk fills up.
    if (stream.status() != QTextStream::Ok || !file.flush())
        file.cancelWriting();
    file.commit();
    return true;
}

void FeatureFileOutput::Close()
{
    Gate().lockForWrite();
}
