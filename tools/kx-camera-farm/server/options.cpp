#include "server/options.h"

#include <QCommandLineParser>

#include "faults/faultvalue.h"

namespace KxFarm {

namespace {

constexpr int kMaxCameras = 10000;
constexpr int kMaxLatencyUs = 600000000; // ten minutes

const char *const kCount = "count";
const char *const kFirstAddress = "first-address";
const char *const kDescription = "description";
const char *const kLatency = "latency-us";
const char *const kConfig = "config";
const char *const kControlSocket = "control-socket";
const char *const kHelp = "help";
const char *const kVersion = "version";

void Declare(QCommandLineParser *pParser)
{
    pParser->setApplicationDescription(
        QStringLiteral("Simulates GigE Vision cameras on loopback addresses, UDP port 3956.\n"
                       "\n"
                       "Prints \"ready N cameras\" when they can be found, and ends on SIGTERM or SIGINT.\n"
                       "kx-camera-farm(1) describes every key of the file and every command of the socket."));
    const auto add = [pParser](const char *szName, const char *szMeaning, const char *szValue = "") {
        pParser->addOption({QLatin1String(szName), QLatin1String(szMeaning), QLatin1String(szValue)});
    };
    add(kCount, "number of cameras (1)", "N");
    add(kFirstAddress, "address of the first camera, 127.x.y.z; the others follow (127.0.10.1)", "ADDRESS");
    add(kDescription, "GenICam description, .xml or .zip (a built-in one)", "FILE");
    add(kLatency, "every answer takes N microseconds longer (0)", "N");
    add(kConfig, "JSON file with settings and faults per camera", "FILE");
    add(kControlSocket, "UNIX socket that takes settings and faults while the cameras run", "PATH");
    add(kHelp, "print this text");
    add(kVersion, "print the version");
}

/// The values of a command line that the parser took; the first wrong one is told in one line.
class Reader
{
public:
    Reader(const QCommandLineParser &parser, QString *pError)
        : m_parser(parser)
        , m_pError(pError)
    {
    }

    bool Number(const char *szName, int minimum, int maximum, int *pNumber) const
    {
        if (!m_parser.isSet(QLatin1String(szName)))
            return true;
        std::int64_t number = 0;
        QString why;
        if (!ParseNumber(Value(szName).toUtf8(), minimum, maximum, &number, &why))
            return Fail(szName, why);
        *pNumber = static_cast<int>(number);
        return true;
    }

    bool Address(const char *szName, std::uint32_t *pAddress) const
    {
        const QString text = Value(szName);
        if (!m_parser.isSet(QLatin1String(szName)) || ParseLoopbackAddress(text, pAddress))
            return true;
        return Fail(szName, QStringLiteral("\"%1\" is no address 127.x.y.z with z from 1 to 254").arg(text));
    }

    bool Text(const char *szName, QString *pText) const
    {
        *pText = Value(szName);
        return !m_parser.isSet(QLatin1String(szName)) || !pText->isEmpty() ||
               Fail(szName, QStringLiteral("its value is empty"));
    }

private:
    QString Value(const char *szName) const { return m_parser.value(QLatin1String(szName)); }

    bool Fail(const char *szName, const QString &why) const
    {
        *m_pError = QStringLiteral("--%1: %2").arg(QLatin1String(szName), why);
        return false;
    }

    const QCommandLineParser &m_parser;
    QString *m_pError;
};

} // namespace

bool Options::Parse(const QStringList &arguments, Options *pOptions, QString *pError)
{
    QCommandLineParser parser;
    Declare(&parser);
    if (!parser.parse(arguments)) {
        *pError = parser.errorText() + QStringLiteral(" --help lists the options.");
        return false;
    }
    if (!parser.positionalArguments().isEmpty()) {
        *pError = QStringLiteral("there is nothing to do with \"%1\"; --help lists the options")
                      .arg(parser.positionalArguments().constFirst());
        return false;
    }
    pOptions->help = parser.isSet(QLatin1String(kHelp));
    pOptions->version = parser.isSet(QLatin1String(kVersion));
    const Reader reader(parser, pError);
    return reader.Number(kCount, 1, kMaxCameras, &pOptions->count) &&
           reader.Address(kFirstAddress, &pOptions->firstAddress) &&
           reader.Text(kDescription, &pOptions->descriptionFile) &&
           reader.Number(kLatency, 0, kMaxLatencyUs, &pOptions->latencyUs) &&
           reader.Text(kConfig, &pOptions->configFile) &&
           reader.Text(kControlSocket, &pOptions->controlSocket);
}

QString Options::HelpText()
{
    QCommandLineParser parser;
    Declare(&parser);
    return parser.helpText();
}

} // namespace KxFarm
