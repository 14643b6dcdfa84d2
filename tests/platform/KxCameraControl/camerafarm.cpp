#include "camerafarm.h"

#include <QFile>

#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

CameraFarm::~CameraFarm()
{
    Stop();
}

bool CameraFarm::IsThere()
{
    return QFile::exists(QStringLiteral(PROJECT_BIN_DIR "/kx-camera-farm"));
}

bool CameraFarm::Start(const QString &strFirstAddress, int nCount, const QString &strDescription)
{
    QStringList arguments{"--count",       QString::number(nCount), "--first-address",
                          strFirstAddress, "--control-socket",      m_folder.filePath("control")};
    if (!strDescription.isEmpty())
        arguments << "--description" << strDescription;
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(PROJECT_BIN_DIR "/kx-camera-farm"), arguments);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(30000))
            return false;
    }
    return m_process.readLine().startsWith("ready");
}

void CameraFarm::Stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(10000)) {
        m_process.kill();
        m_process.waitForFinished(10000);
    }
}

bool CameraFarm::Do(const QString &strCommand)
{
    const int nSocket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray path = QFile::encodeName(m_folder.filePath("control"));
    std::strncpy(address.sun_path, path.constData(), sizeof address.sun_path - 1);
    const QByteArray line = strCommand.toUtf8() + '\n';
    char answer[256] = "";
    bool bGood = connect(nSocket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    bGood = bGood && write(nSocket, line.constData(), static_cast<size_t>(line.size())) == line.size();
    bGood = bGood && read(nSocket, answer, sizeof answer - 1) > 0;
    close(nSocket);
    if (!bGood || std::strncmp(answer, "ok", 2) != 0)
        qWarning("%s: %s", line.constData(), answer);
    return bGood && std::strncmp(answer, "ok", 2) == 0;
}
