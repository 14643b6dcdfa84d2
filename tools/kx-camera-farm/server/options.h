#ifndef KXCAMERAFARM_OPTIONS_H
#define KXCAMERAFARM_OPTIONS_H

#include <QString>
#include <QStringList>
#include <cstdint>

namespace KxFarm {

/// The command line.
struct Options
{
    int count = 1;
    std::uint32_t firstAddress = 0x7F000A01; // 127.0.10.1
    QString descriptionFile;                 // empty: the built-in description
    int latencyUs = 0;
    QString configFile;
    QString controlSocket;
    bool help = false;
    bool version = false;

    /// False and one line in *pError for a wrong command line. `arguments` begins with the program's name.
    static bool Parse(const QStringList &arguments, Options *pOptions, QString *pError);
    static QString HelpText(); ///< needs the application object
};

} // namespace KxFarm

#endif
