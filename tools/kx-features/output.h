#ifndef KXFEATURES_OUTPUT_H
#define KXFEATURES_OUTPUT_H

#include <QString>

/// The program's standard streams. Main thread only.
namespace Output {

/// Writes the text to standard output at once, as UTF-8.
void Print(const QString &text);

/// The same to standard error. Nothing is known about what cannot be written there.
void PrintError(const QString &text);

/// Whether all that was printed was written. False after a full disk, a reader that went away, or a standard
/// output that was closed from the start; it stays false.
bool IsComplete();

} // namespace Output

#endif
