#include "qoperatethread.h"

#include <KxCameraControl/kxcameracontrol.h>

#include "workerlog.h"

QOperateThread::QOperateThread(QObject *parent)
    : QThread(parent)
{
}

QOperateThread::~QOperateThread() = default;

void QOperateThread::SetImportThreadInfo(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, QString strFilePath)
{
    m_nThreadType = FeatureXmlImportType;
    m_stDeviceInfo = stDeviceInfo;
    m_strFilePath = strFilePath;
}

void QOperateThread::SetExportThreadInfo(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, QString strFilePath)
{
    m_nThreadType = FeatureXmlExportType;
    m_stDeviceInfo = stDeviceInfo;
    m_strFilePath = strFilePath;
}

void QOperateThread::run()
{
    emit SigBeginThread(m_stDeviceInfo.nDeviceID, m_nThreadType);
    switch (m_nThreadType) {
    case FeatureBagImportType:
        FeatureBagImport();
        break;
    case FeatureBagExportType:
        FeatureBagExport();
        break;
    case FeatureXmlImportType:
        FeatureXmlImport();
        break;
    case FeatureXmlExportType:
        FeatureXmlExport();
        break;
    default:
        break; // no operation, so no end either
    }
}

bool QOperateThread::OpenDevice()
{
    const unsigned short nSwitchoverKey = 0;
    if (KX_CC_CreateHandle(&m_hDevice, &m_stDeviceInfo.stDevInfo) != KX_CC_OK)
        return false;
    return KX_CC_OpenDevice(m_hDevice, KX_CC_ACCESS_MODE_EXCLUSIVE, nSwitchoverKey) == KX_CC_OK;
}

void QOperateThread::ReleaseThread()
{
    if (m_hDevice) {
        KX_CC_CloseDevice(m_hDevice);
        KX_CC_DestroyHandle(m_hDevice);
        m_hDevice = nullptr;
    }
    ExitThread();
}

void QOperateThread::ExitThread()
{
    m_bRunning = false;
    emit SigEndThread(m_stDeviceInfo.nDeviceID, m_nThreadType, m_strFilePath);
}

void QOperateThread::Fail(const char *szFunction, const QString &strLogText, const QString &strMessage)
{
    LogWorkerFailure(szFunction, strLogText);
    emit SigThreadInfo(m_stDeviceInfo.nDeviceID, strMessage, true);
}
