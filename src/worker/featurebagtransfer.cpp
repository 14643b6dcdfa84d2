// The operations that leave the whole file to the camera SDK. The file's path goes to it as Latin-1.
#include "qoperatethread.h"

#include <KxCameraControl/kxcameracontrol.h>
#include <ToolBase/lumointerface.h>

#include "featurefile/cameraidentity.h"

namespace {

struct SdkError
{
    QString strCode;
    QString strDescription;
};

SdkError ErrorOf(int nResult)
{
    const int nCode = LumoInterface::SDKCode2LumoCode(static_cast<unsigned int>(nResult));
    return {LumoInterface::GenerateSDKCode(static_cast<unsigned int>(nCode)),
            LumoInterface::GenerateLumoErrorDesc(nCode)};
}

} // namespace

void QOperateThread::FeatureBagImport()
{
    if (OpenDevice()) {
        const int nResult = KX_CC_FeatureLoad(m_hDevice, m_strFilePath.toLatin1().constData());
        if (nResult != KX_CC_OK) {
            const SdkError error = ErrorOf(nResult);
            Fail("void QOperateThread::FeatureBagImport()",
                 QStringLiteral("KX_CC_FeatureLoad failed.%1").arg(error.strCode),
                 tr("Failed to load feature.%1").arg(error.strCode) + error.strDescription);
        }
    }
    ReleaseThread();
}

void QOperateThread::FeatureBagExport()
{
    if (OpenDevice()) {
        const auto names = CameraIdentity::FileNameParts(m_stDeviceInfo, CameraIdentity::Reading::Terminated);
        const QString strPath = CameraIdentity::FilePath(m_strFilePath, names);
        const int nResult = KX_CC_FeatureSave(m_hDevice, strPath.toLatin1().constData());
        if (nResult != KX_CC_OK) {
            const SdkError error = ErrorOf(nResult);
            Fail("void QOperateThread::FeatureBagExport()",
                 QStringLiteral("KX_CC_FeatureSave failed.%1").arg(error.strCode),
                 tr("Failed to save feature.%1").arg(error.strCode) + error.strDescription);
        }
    }
    ReleaseThread();
}
