#include "opencamera.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <arpa/inet.h>
#include <unistd.h>

OpenCamera::OpenCamera(const char *szAddress)
    : OpenCamera(RecordFor(szAddress))
{
}

OpenCamera::OpenCamera(const KX_CC_DEVICE_INFO &info)
{
    m_nCode = KX_CC_CreateHandle(&m_hDevice, &info);
    if (m_nCode == KX_CC_OK)
        m_nCode = KX_CC_OpenDevice(m_hDevice, KX_CC_ACCESS_MODE_EXCLUSIVE, 0);
}

int OpenCamera::Get(const char *szName, uint32_t *pValue) const
{
    KX_CC_INT_VALUE value{};
    const int nCode = KX_CC_GetIntValue(m_hDevice, szName, &value);
    if (pValue != nullptr)
        *pValue = value.nCurValue;
    return nCode;
}

uint32_t TestNetwork()
{
    return 0x7F140000U + (static_cast<uint32_t>(getpid() & 0xFF) << 8U);
}

const char *TestAddress(int n)
{
    static QHash<int, QByteArray> addresses;
    QByteArray &address = addresses[n];
    if (address.isEmpty())
        address = QStringLiteral("127.20.%1.%2").arg(getpid() & 0xFF).arg(n).toLatin1();
    return address.constData();
}

KX_CC_DEVICE_INFO RecordFor(const char *szAddress)
{
    KX_CC_DEVICE_INFO info{};
    in_addr address{};
    inet_pton(AF_INET, szAddress, &address);
    info.nTransportType = KX_CC_TRANSPORT_GIGE;
    info.SpecialInfo.stGigEInfo.nCurrentIp = ntohl(address.s_addr);
    info.SpecialInfo.stGigEInfo.nInterfaceIp = 0x7F000001;
    return info;
}

QList<int> ChildProcesses()
{
    QList<int> children;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(tasks.filePath(task + "/children"));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &pid : file.readAll().simplified().split(' ')) {
            if (!pid.isEmpty())
                children << pid.toInt();
        }
    }
    return children;
}

int OpenDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size();
}
