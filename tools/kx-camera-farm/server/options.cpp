#include "server/options.h"

#include "faults/faultvalue.h"

namespace KxFarm {

namespace {

constexpr int MAX_CAMERAS = 10000;

bool ParseCount(const QString &text, Options *pOptions, QString *pError)
{
    std::int64_t number = 0;
    if (!ParseNumber(text.toUtf8(), 1, MAX_CAMERAS, &number, pError))
        return false;
    pOptions->count = static_cast<int>(number);
    return true;
}

bool ParseAddress(const QString &text, Options *pOptions, QString *pError)
{
    if (ParseLoopbackAddress(text, &pOptions->firstAddress))
        return true;
    *pError = QStringLiteral("\"%1\" is no address 127.x.y.z with z from 1 to 254").arg(text);
    return false;
}

bool ParseLatency(const QString &text, Options *pOptions, QString *pError)
{
    std::int64_t number = 0;
    pOptions->latencyUs = text;
    return ParseNumber(text.toUtf8(), 0, 600000000, &number, pError);
}

template <QString Options::*member>
bool ParseText(const QString &text, Options *pOptions, QString *pError)
{
    pOptions->*member = text;
    if (!text.isEmpty())
        return true;
    *pError = QStringLiteral("its value is empty");
    return false;
}

struct Option
{
    const char *name;
    bool (*parse)(const QString &text, Options *pOptions, QString *pError);
};

constexpr Option OPTIONS[] = {{"--count", ParseCount},
                              {"--first-address", ParseAddress},
                              {"--description", ParseText<&Options::descriptionFile>},
                              {"--latency-us", ParseLatency},
                              {"--config", ParseText<&Options::configFile>},
                              {"--control-socket", ParseText<&Options::controlSocket>}};

const Option *FindOption(const QString &name)
{
    for (const Option &option : OPTIONS) {
        if (name == QLatin1String(option.name))
            return &option;
    }
    return nullptr;
}

} // namespace

bool Options::Parse(const QStringList &arguments, Options *pOptions, QString *pError)
{
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        const int equals = argument.indexOf(QLatin1Char('='));
        const QString name = argument.left(equals);
        if (name == QLatin1String("--help") || name == QLatin1String("--version")) {
            (name == QLatin1String("--help") ? pOptions->help : pOptions->version) = true;
            continue;
        }
        const Option *pOption = FindOption(name);
        if (!pOption) {
            *pError = QStringLiteral("there is no option \"%1\"; --help lists them").arg(argument);
            return false;
        }
        if (equals < 0 && i + 1 == arguments.size()) {
            *pError = QStringLiteral("%1 needs a value").arg(name);
            return false;
        }
        QString error;
        if (!pOption->parse(equals < 0 ? arguments.at(++i) : argument.mid(equals + 1), pOptions, &error)) {
            *pError = QStringLiteral("%1: %2").arg(name, error);
            return false;
        }
    }
    return true;
}

QString Options::HelpText()
{
    return QStringLiteral(
        "Usage: kx-camera-farm [OPTION VALUE]...\n"
        "Simulates GigE Vision cameras on loopback addresses, UDP port 3956.\n"
        "\n"
        "  --count N                 number of cameras (1)\n"
        "  --first-address ADDRESS   address of the first camera, 127.x.y.z; the others follow (127.0.10.1)\n"
        "  --description FILE        GenICam description, .xml or .zip (a built-in one)\n"
        "  --latency-us N            every answer takes N microseconds longer (0)\n"
        "  --config FILE             JSON file with settings and faults per camera\n"
        "  --control-socket PATH     UNIX socket that takes settings and faults while the cameras run\n"
        "  --help, --version         print this text, the version\n"
        "\n"
        "Prints \"ready N cameras\" when they can be found, and ends on SIGTERM or SIGINT.\n"
        "kx-camera-farm(1) describes every key of the file and every command of the socket.\n");
}

} // namespace KxFarm
