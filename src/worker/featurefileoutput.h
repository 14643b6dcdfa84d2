#ifndef WORKER_FEATUREFILEOUTPUT_H
#define WORKER_FEATUREFILEOUTPUT_H

#include <QString>

/// Putting the text of a feature file on the disk, whole or not at all.
namespace FeatureFileOutput {

/// Writes the text as UTF-8, whatever the locale, without changing its line ends. The file appears, or
/// replaces an older one, in one step when everything is written: a process that is killed, a disk that is
/// full or a folder that goes away leaves what was there before. Callable from any thread.
///
/// @return false when the file cannot be opened for writing; errors after that are not told
bool Write(const QString &strPath, const QString &strText);

/// Waits for the files being written by other threads, and lets no further one begin: for a program that
/// ends while workers run. Cannot be undone; Write() blocks from here on.
void Close();

} // namespace FeatureFileOutput

#endif
