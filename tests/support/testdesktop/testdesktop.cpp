#include "testdesktop.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const int kServerStartMs = 20000;

/// One line that a child writes, without its end; empty when it does not come.
QByteArray ReadLine(int nDescriptor)
{
    QByteArray line;
    char c = 0;
    pollfd waited = {nDescriptor, POLLIN, 0};
    while (poll(&waited, 1, kServerStartMs) == 1 && read(nDescriptor, &c, 1) == 1 && c != '\n')
        line += c;
    return line;
}

} // namespace

TestDesktop::~TestDesktop()
{
    for (auto it = m_vecChildren.rbegin(); it != m_vecChildren.rend(); ++it) {
        kill(*it, SIGTERM);
        waitpid(*it, nullptr, 0);
    }
}

bool TestDesktop::Start()
{
    for (const char *pProgram : {"Xvfb", "openbox"}) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(pProgram)).isEmpty()) {
            m_strReason = QStringLiteral("%1 is not installed").arg(QString::fromLatin1(pProgram));
            return false;
        }
    }
    return StartServer() && StartWindowManager();
}

bool TestDesktop::StartServer()
{
    int pipeEnds[2] = {-1, -1};
    if (pipe2(pipeEnds, O_CLOEXEC) != 0)
        return false;
    // The server chooses a free display and writes its number when it serves.
    Spawn({"Xvfb", "-displayfd", QByteArray::number(pipeEnds[1]), "-screen", "0", "1600x1000x24", "-nolisten",
           "tcp", "-noreset"},
          pipeEnds[1]);
    close(pipeEnds[1]);
    const QByteArray number = ReadLine(pipeEnds[0]);
    close(pipeEnds[0]);
    if (number.isEmpty()) {
        m_strReason = QStringLiteral("Xvfb did not start");
        return false;
    }
    qputenv("DISPLAY", ":" + number);
    qputenv("QT_QPA_PLATFORM", "xcb");
    return true;
}

bool TestDesktop::StartWindowManager()
{
    // A window that is shown before the window manager serves is never made the active one.
    const QTemporaryDir directory;
    const QString strReady = directory.filePath(QStringLiteral("ready"));
    Spawn({"openbox", "--sm-disable", "--startup", "touch " + QFile::encodeName(strReady)}, -1);
    const QDeadlineTimer deadline(kServerStartMs);
    while (!QFile::exists(strReady) && !deadline.hasExpired())
        QThread::msleep(10);
    if (QFile::exists(strReady))
        return true;
    m_strReason = QStringLiteral("openbox did not start");
    return false;
}

pid_t TestDesktop::Spawn(const std::vector<QByteArray> &arguments, int nKeptDescriptor)
{
    std::vector<char *> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const QByteArray &argument : arguments)
        pointers.push_back(const_cast<char *>(argument.constData()));
    pointers.push_back(nullptr);
    const pid_t nChild = fork();
    if (nChild == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (nKeptDescriptor >= 0)
            fcntl(nKeptDescriptor, F_SETFD, 0);
        const int nNull = open("/dev/null", O_RDWR);
        dup2(nNull, STDOUT_FILENO);
        dup2(nNull, STDERR_FILENO);
        execvp(pointers[0], pointers.data());
        _exit(127);
    }
    if (nChild > 0)
        m_vecChildren.push_back(nChild);
    return nChild;
}
