#include "commandline.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

const char kListUsage[] = "kx-features list [--json] [--verbose]";
const char kExportUsage[] =
    "kx-features export --to DIR (--all | --serial S ... | --model M ... | --address A ...) [--overwrite] "
    "[--json] [--verbose]";
const char kImportUsage[] =
    "kx-features import FILE (--all | --serial S ... | --model M ... | --address A ...) [--json] [--verbose]";

const int kShortestSearchMs = 1;
const int kLongestSearchMs = 10000;

CommandLine Wrong(const QString &what, const char *usage)
{
    CommandLine command;
    command.action = CommandLine::Action::Wrong;
    command.strText = QStringLiteral("kx-features: %1; usage: %2").arg(what, QLatin1String(usage));
    return command;
}

CommandLine ShowText(const QString &text)
{
    CommandLine command;
    command.action = CommandLine::Action::ShowText;
    command.strText = text;
    return command;
}

const char kHelp[] =
    "Copies camera settings between cameras and files, for many cameras at once.\n"
    "\n"
    "  %1\n"
    "      Lists the cameras that are found: model, serial number, user name, address, transport, access.\n"
    "  %2\n"
    "      Writes one file per camera, MODEL_SERIAL.kfb, into the folder DIR.\n"
    "  %3\n"
    "      Writes the settings of one file into every chosen camera of the file's model.\n"
    "\n"
    "Cameras are chosen by any of the options; --serial, --model and --address may be repeated.\n"
    "\n"
    "  --all            every camera that is found\n"
    "  --serial S ...   cameras with these serial numbers\n"
    "  --model M ...    cameras of these models\n"
    "  --address A ...  network cameras at these IPv4 addresses, asked directly\n"
    "  --search-ms N    how long to search for cameras, %4 to %5 milliseconds (default %6)\n"
    "  --overwrite      export cameras of one file name all the same: the last file stays\n"
    "  --json           one JSON array on standard output instead of lines\n"
    "  --verbose        on standard error: why a camera could not be opened or was lost, in full\n"
    "\n"
    "Exit code: 0 when every camera succeeded; 1 when one failed or was not found, also because the file of\n"
    "an import is missing, empty, not well-formed or of another model, or when standard output could not be\n"
    "written; 2 for wrong usage, and for an import that is refused before it begins: of a folder, FIFO,\n"
    "socket or device, of a pipe that does not end, or of a file with a record that is not streamable;\n"
    "130 when interrupted.\n";

QString HelpText()
{
    return QString::fromLatin1(kHelp)
        .arg(QLatin1String(kListUsage), QLatin1String(kExportUsage), QLatin1String(kImportUsage))
        .arg(kShortestSearchMs)
        .arg(kLongestSearchMs)
        .arg(CommandLine().nSearchMs);
}

bool TakesManyValues(const QString &argument)
{
    return argument == QLatin1String("--serial") || argument == QLatin1String("--address") ||
           argument == QLatin1String("--model");
}

// "--serial A B" means "--serial A --serial B". An import's file is the first word that no option needs.
QStringList WithRepeatedOptions(const QStringList &arguments, bool fileExpected)
{
    QStringList expanded;
    QString many;          // the option whose values may go on
    bool valueDue = false; // the word is the value of the option before it
    for (const QString &argument : arguments) {
        const bool isOption = argument.startsWith(QLatin1Char('-')) && !valueDue;
        if (isOption) {
            many = TakesManyValues(argument) ? argument : QString();
            valueDue = !many.isEmpty() || argument == QLatin1String("--to") ||
                       argument == QLatin1String("--search-ms");
        } else if (valueDue) {
            valueDue = false;
        } else if (fileExpected) {
            fileExpected = false;
        } else if (!many.isEmpty()) {
            expanded << many;
        }
        expanded << argument;
    }
    return expanded;
}

const char *UsageOf(CommandLine::Action action)
{
    switch (action) {
    case CommandLine::Action::Export:
        return kExportUsage;
    case CommandLine::Action::Import:
        return kImportUsage;
    default:
        return kListUsage;
    }
}

void AddOptions(QCommandLineParser &parser, CommandLine::Action action)
{
    parser.addOption(QCommandLineOption(QStringLiteral("json")));
    parser.addOption(QCommandLineOption(QStringLiteral("verbose")));
    parser.addOption({QStringLiteral("search-ms"), QString(), QStringLiteral("N")});
    if (action == CommandLine::Action::List) {
        return;
    }
    parser.addOption(QCommandLineOption(QStringLiteral("all")));
    parser.addOption({QStringLiteral("serial"), QString(), QStringLiteral("S")});
    parser.addOption({QStringLiteral("model"), QString(), QStringLiteral("M")});
    parser.addOption({QStringLiteral("address"), QString(), QStringLiteral("A")});
    if (action == CommandLine::Action::Export) {
        parser.addOption({QStringLiteral("to"), QString(), QStringLiteral("DIR")});
        parser.addOption(QCommandLineOption(QStringLiteral("overwrite")));
    }
}

// The readers below take their part of the arguments and give what is wrong with it, or nothing.

QString ReadSearchTime(const QCommandLineParser &parser, CommandLine *pCommand)
{
    if (!parser.isSet(QStringLiteral("search-ms"))) {
        return {};
    }
    bool isNumber = false;
    pCommand->nSearchMs = parser.value(QStringLiteral("search-ms")).toInt(&isNumber);
    if (isNumber && pCommand->nSearchMs >= kShortestSearchMs && pCommand->nSearchMs <= kLongestSearchMs) {
        return {};
    }
    return QStringLiteral("--search-ms takes a number from %1 to %2")
        .arg(kShortestSearchMs)
        .arg(kLongestSearchMs);
}

QString ReadPath(const QCommandLineParser &parser, CommandLine *pCommand)
{
    const QStringList words = parser.positionalArguments();
    const bool isImport = pCommand->action == CommandLine::Action::Import;
    if (words.size() > (isImport ? 1 : 0)) {
        return QStringLiteral("unexpected '%1'").arg(words.last());
    }
    if (isImport) {
        pCommand->strPath = words.value(0);
        return pCommand->strPath.isEmpty() ? QStringLiteral("no file is named") : QString();
    }
    if (pCommand->action == CommandLine::Action::Export) {
        pCommand->strPath = parser.value(QStringLiteral("to"));
        return pCommand->strPath.isEmpty() ? QStringLiteral("no folder is named") : QString();
    }
    return {};
}

QString ReadChoice(const QCommandLineParser &parser, CommandLine *pCommand)
{
    if (pCommand->action == CommandLine::Action::List) {
        return {};
    }
    pCommand->choice.bAll = parser.isSet(QStringLiteral("all"));
    pCommand->choice.serials = parser.values(QStringLiteral("serial"));
    pCommand->choice.models = parser.values(QStringLiteral("model"));
    pCommand->choice.addresses = parser.values(QStringLiteral("address"));
    return pCommand->choice.IsEmpty() ? QStringLiteral("no camera is chosen") : QString();
}

CommandLine ParseAction(CommandLine::Action action, const QStringList &arguments)
{
    QCommandLineParser parser;
    AddOptions(parser, action);
    const bool fileExpected = action == CommandLine::Action::Import;
    if (!parser.parse(QStringList(QString()) + WithRepeatedOptions(arguments, fileExpected))) {
        // "Unknown option 'x'.", one sentence a line
        const QString sentence = parser.errorText().section(QLatin1Char('\n'), 0, 0);
        return Wrong(sentence.endsWith(QLatin1Char('.')) ? sentence.chopped(1) : sentence, UsageOf(action));
    }
    CommandLine command;
    command.action = action;
    command.bJson = parser.isSet(QStringLiteral("json"));
    command.bOverwrite = action == CommandLine::Action::Export && parser.isSet(QStringLiteral("overwrite"));
    command.bVerbose = parser.isSet(QStringLiteral("verbose"));
    for (const auto read : {ReadSearchTime, ReadPath, ReadChoice}) {
        const QString problem = read(parser, &command);
        if (!problem.isEmpty()) {
            return Wrong(problem, UsageOf(action));
        }
    }
    return command;
}

} // namespace

CommandLine ParseCommandLine(const QStringList &arguments)
{
    const QString first = arguments.value(0);
    const QStringList rest = arguments.mid(1);
    if (arguments.contains(QStringLiteral("--help")) || first == QLatin1String("-h") ||
        first == QLatin1String("help")) {
        return ShowText(HelpText());
    }
    if (first == QLatin1String("--version")) {
        return ShowText(QStringLiteral("kx-features %1\n").arg(QCoreApplication::applicationVersion()));
    }
    if (first == QLatin1String("list")) {
        return ParseAction(CommandLine::Action::List, rest);
    }
    if (first == QLatin1String("export")) {
        return ParseAction(CommandLine::Action::Export, rest);
    }
    if (first == QLatin1String("import")) {
        return ParseAction(CommandLine::Action::Import, rest);
    }
    return Wrong(first.isEmpty() ? QStringLiteral("no command is given")
                                 : QStringLiteral("unknown command '%1'").arg(first),
                 "kx-features (list | export | import) ..., see kx-features --help");
}
