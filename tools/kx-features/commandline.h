#ifndef KXFEATURES_COMMANDLINE_H
#define KXFEATURES_COMMANDLINE_H

#include <QString>
#include <QStringList>

#include "camerachoice.h"

/// What the user asked for.
struct CommandLine
{
    enum class Action
    {
        List,
        Export,
        Import,
        ShowText, ///< print strText and end with success: help and version
        Wrong,    ///< print strText on stderr and end with exit code 2
    };

    Action action = Action::Wrong;
    QString strText;     ///< of ShowText and Wrong; a Wrong text is one line, with the usage in it
    QString strPath;     ///< folder of an export, file of an import
    CameraChoice choice; ///< empty only for List
    bool bJson = false;
    bool bOverwrite = false; ///< export: cameras of one file name are no failure
    bool bVerbose = false;   ///< on stderr: why a camera could not be opened or was lost, and such
    int nSearchMs = 1000;    ///< how long cameras are searched for, in milliseconds
};

/// Reads the arguments of the program, without its name. Never fails: what is wrong comes as Wrong.
CommandLine ParseCommandLine(const QStringList &arguments);

#endif
