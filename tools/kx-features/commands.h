#ifndef KXFEATURES_COMMANDS_H
#define KXFEATURES_COMMANDS_H

#include "commandline.h"

/// Exit codes of the program.
enum ExitCode
{
    ExitSuccess = 0,
    ExitFailure = 1,      ///< a camera failed or was not found, or standard output could not be written
    ExitWrongUsage = 2,   ///< wrong arguments, or an import file that is refused
    ExitInterrupted = 130 ///< as shells report an end by Ctrl-C
};

/// Runs one command from start to end and gives the exit code. Needs the application object; runs its
/// event loop.
int RunCommand(const CommandLine &command);

#endif
