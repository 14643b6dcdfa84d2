#ifndef FEATUREFILE_FEATUREFILEOUTPUT_H
#define FEATUREFILE_FEATUREFILEOUTPUT_H

#include <QString>

/// Putting the text of a feature file on the disk, whole or not at all.
namespace FeatureFileOutput {

/// Writes the text as UTF-8, whatever the locale, without changing its line ends. The file appears, or
/// replaces an older one, in one step when everything is written: a process that is killed, a disk that is
/// full or a folder that goes away leaves what was there before.
///
/// Where the folder lets no file be replaced, but the older file may be written, it is written in place,
/// after the room for it is reserved; if it fails all the same, the old content is put back. A process that
/// is killed just then leaves a mixture.
///
/// Only regular files are written. A link is followed to one inside its own folder. Everything else of that
/// name, be it a device, a FIFO, a socket or a link to somewhere else, is left alone and counts as a file
/// that cannot be opened. Callable from any thread.
///
/// @param pWhole  may be null. Out: whether the text is on the disk; also false when the disk was full
/// @return false when the file cannot be opened for writing
bool Write(const QString &strPath, const QString &strText, bool *pWhole = nullptr);

/// Waits for the files being written by other threads, and lets no further one begin: for a program that
/// ends while workers run. Cannot be undone; Write() blocks from here on.
void Close();

} // namespace FeatureFileOutput

#endif
