#include "camerafarm.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int kStartLimitMs = 30000;
constexpr int kStopLimitMs = 10000;
constexpr int kAnswerLimitS = 10;

} // namespace

CameraFarm::~CameraFarm()
{
    Stop();
}

QString CameraFarm::Program()
{
    return QStringLiteral(PROJECT_BIN_DIR "/kx-camera-farm");
}

bool CameraFarm::IsInstalled()
{
    return QFileInfo(Program()).isExecutable();
}

bool CameraFarm::Start(const QStringList &arguments)
{
    Stop();
    m_strError.clear();
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
    m_process.start(Program(), arguments + QStringList{QStringLiteral("--control-socket"),
                                                       m_directory.filePath(QStringLiteral("control"))});
    QElapsedTimer timer;
    timer.start();
    while (!m_process.canReadLine()) {
        const int left = kStartLimitMs - static_cast<int>(timer.elapsed());
        if (left <= 0 || !m_process.waitForReadyRead(left)) {
            if (m_process.canReadLine())
                break;
            m_strError = m_process.errorString() + QLatin1String(": ") +
                         QString::fromUtf8(m_process.readAllStandardError());
            Stop();
            return false;
        }
    }
    const QList<QByteArray> words = m_process.readLine().simplified().split(' ');
    m_nCameras = words.value(1).toInt();
    if (words.value(0) == "ready" && m_nCameras > 0 && Connect())
        return true;
    m_strError = QStringLiteral("unexpected first line: ") + QString::fromUtf8(words.join(' '));
    Stop();
    return false;
}

bool CameraFarm::Connect()
{
    const QByteArray path = QFile::encodeName(m_directory.filePath(QStringLiteral("control")));
    sockaddr_un name = {};
    name.sun_family = AF_UNIX;
    std::memcpy(name.sun_path, path.constData(), qMin<std::size_t>(sizeof name.sun_path - 1, path.size()));
    m_nSocket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const timeval limit = {kAnswerLimitS, 0};
    ::setsockopt(m_nSocket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    return ::connect(m_nSocket, reinterpret_cast<const sockaddr *>(&name), sizeof name) == 0;
}

bool CameraFarm::Stop()
{
    if (m_nSocket >= 0)
        ::close(m_nSocket);
    m_nSocket = -1;
    if (m_process.state() == QProcess::NotRunning)
        return true;
    m_process.terminate();
    if (m_process.waitForFinished(kStopLimitMs))
        return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    m_process.kill();
    m_process.waitForFinished(kStopLimitMs);
    return false;
}

QByteArray CameraFarm::Command(const QByteArray &line)
{
    const QByteArray bytes = line + '\n';
    if (::send(m_nSocket, bytes.constData(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL) !=
        bytes.size())
        return {};
    QByteArray answer;
    while (!answer.endsWith('\n')) {
        char buffer[4096];
        const ssize_t count = ::recv(m_nSocket, buffer, sizeof buffer, 0);
        if (count <= 0)
            return {};
        answer.append(buffer, static_cast<int>(count));
    }
    answer.chop(1);
    return answer;
}

bool CameraFarm::Do(const QString &line)
{
    const QByteArray answer = Command(line.toUtf8());
    const bool good = answer == "ok" || answer.startsWith("ok ");
    if (!good)
        qWarning("%s: %s", qPrintable(line), answer.constData());
    return good;
}
