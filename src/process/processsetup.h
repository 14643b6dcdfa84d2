#ifndef PROCESS_PROCESSSETUP_H
#define PROCESS_PROCESSSETUP_H

/// What both programs arrange before anything else, as the first thing in main(), while there is one thread.
namespace ProcessSetup {

/// All of the below.
void Prepare();

/// Opens /dev/null in place of each standard stream that the caller closed: the next file, a log or a
/// camera's, would get its number otherwise, and with it every line that is meant for the stream. Output
/// streams are opened such that writing fails: their lines reach nobody.
void OccupyStandardStreams();

/// Ignores SIGPIPE and SIGXFSZ: a reader that goes away or a limit on the size of files makes a write fail,
/// and does not end a batch in the middle of a camera.
void IgnoreSignalsOfFailedWrites();

/// Raises the soft limits of descriptors, to 16384, and of processes as far as the hard ones let it. Each
/// camera of a batch takes some of both, and the usual 1024 descriptors are for programs that use select().
void RaiseLimits();

} // namespace ProcessSetup

#endif
