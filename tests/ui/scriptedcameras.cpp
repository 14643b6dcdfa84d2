#include "scriptedcameras.h"

#include <QMutex>
#include <QMutexLocker>
#include <QSet>
#include <QWaitCondition>

#include <cstring>

#include <KxCameraControl/kxcameracontrol.h>

namespace {

struct Handle
{
    QByteArray serial;
    bool bOpen = false;
};

struct Script
{
    QMutex mutex; // protects the rest
    QWaitCondition released;
    QSet<QByteArray> setFailing;
    QSet<QByteArray> setHeld;
    QStringList listOpened;
    int nTogether = 0;
    int nOpen = 0;
};

Script &TheScript()
{
    static Script script;
    return script;
}

QByteArray SerialOf(const KX_CC_DEVICE_INFO &stInfo)
{
    if (stInfo.nTransportType == KX_CC_TRANSPORT_USB)
        return reinterpret_cast<const char *>(stInfo.SpecialInfo.stUsbInfo.chSerialNumber);
    return reinterpret_cast<const char *>(stInfo.SpecialInfo.stGigEInfo.chSerialNumber);
}

// One feature that the user set stores, and the one that is exported of it.
const char kDescription[] = R"(<?xml version="1.0"?>
<RegisterDescription>
<Integer Name="Width"><Streamable>Yes</Streamable><pValue>WidthReg</pValue></Integer>
<IntReg Name="WidthReg"><pInvalidator>UserSetLoad</pInvalidator></IntReg>
<Command Name="UserSetLoad"></Command>
</RegisterDescription>)";

} // namespace

void ScriptedCameras::Reset()
{
    const QMutexLocker locker(&TheScript().mutex);
    TheScript().setFailing.clear();
    TheScript().setHeld.clear();
    TheScript().listOpened.clear();
    TheScript().nTogether = 0;
    TheScript().released.wakeAll();
}

void ScriptedCameras::FailOpen(const QByteArray &serial)
{
    const QMutexLocker locker(&TheScript().mutex);
    TheScript().setFailing.insert(serial);
}

void ScriptedCameras::Hold(const QByteArray &serial)
{
    const QMutexLocker locker(&TheScript().mutex);
    TheScript().setHeld.insert(serial);
}

void ScriptedCameras::Release(const QByteArray &serial)
{
    const QMutexLocker locker(&TheScript().mutex);
    TheScript().setHeld.remove(serial);
    TheScript().released.wakeAll();
}

void ScriptedCameras::OpenTogether(int nCameras)
{
    const QMutexLocker locker(&TheScript().mutex);
    TheScript().listOpened.clear();
    TheScript().nTogether = nCameras;
}

int ScriptedCameras::OpenCount()
{
    const QMutexLocker locker(&TheScript().mutex);
    return TheScript().nOpen;
}

QStringList ScriptedCameras::Opened()
{
    const QMutexLocker locker(&TheScript().mutex);
    return TheScript().listOpened;
}

int KX_CC_CreateHandle(void **phDevice, const KX_CC_DEVICE_INFO *pstDevInfo)
{
    *phDevice = new Handle{SerialOf(*pstDevInfo)};
    return KX_CC_OK;
}

int KX_CC_OpenDevice(void *hDevice, unsigned int, unsigned short)
{
    Script &script = TheScript();
    const QMutexLocker locker(&script.mutex);
    Handle *pHandle = static_cast<Handle *>(hDevice);
    script.listOpened.append(QString::fromLatin1(pHandle->serial));
    ++script.nOpen;
    script.released.wakeAll();
    const auto isHeld = [&] {
        return script.setHeld.contains(pHandle->serial) || script.listOpened.size() < script.nTogether;
    };
    while (isHeld() && script.released.wait(&script.mutex, 20000)) {
    }
    if (script.setFailing.contains(pHandle->serial)) {
        --script.nOpen;
        return KX_CC_E_UNREACHABLE;
    }
    pHandle->bOpen = true;
    return KX_CC_OK;
}

int KX_CC_CloseDevice(void *hDevice)
{
    const QMutexLocker locker(&TheScript().mutex);
    Handle *pHandle = static_cast<Handle *>(hDevice);
    if (!pHandle->bOpen)
        return KX_CC_E_NOT_OPEN;
    pHandle->bOpen = false;
    --TheScript().nOpen;
    return KX_CC_OK;
}

int KX_CC_DestroyHandle(void *hDevice)
{
    delete static_cast<Handle *>(hDevice);
    return KX_CC_OK;
}

int KX_XML_GetGenICamXML(void *, unsigned char *pBuffer, unsigned int nBufferSize, unsigned int *pnSize)
{
    *pnSize = sizeof kDescription;
    if (nBufferSize < sizeof kDescription)
        return KX_CC_E_BUFFER_TOO_SMALL;
    std::memcpy(pBuffer, kDescription, sizeof kDescription);
    return KX_CC_OK;
}

int KX_CC_GetIntValue(void *, const char *, KX_CC_INT_VALUE *pValue)
{
    pValue->nCurValue = 640;
    return KX_CC_OK;
}

int KX_CC_GetEnumValue(void *, const char *, KX_CC_ENUM_VALUE *)
{
    return KX_CC_E_FEATURE_UNKNOWN;
}

int KX_CC_GetFloatValue(void *, const char *, KX_CC_FLOAT_VALUE *)
{
    return KX_CC_E_FEATURE_UNKNOWN;
}

int KX_CC_GetBoolValue(void *, const char *, bool *)
{
    return KX_CC_E_FEATURE_UNKNOWN;
}

int KX_CC_SetIntValue(void *, const char *, unsigned int)
{
    return KX_CC_OK;
}

int KX_CC_SetEnumValue(void *, const char *, unsigned int)
{
    return KX_CC_OK;
}

int KX_CC_SetFloatValue(void *, const char *, float)
{
    return KX_CC_OK;
}

int KX_CC_SetBoolValue(void *, const char *, bool)
{
    return KX_CC_OK;
}

int KX_CC_FeatureSave(void *, const char *)
{
    return KX_CC_OK;
}

int KX_CC_FeatureLoad(void *, const char *)
{
    return KX_CC_OK;
}

// The tests' device trees have their own source of cameras, so these are never asked.
int KX_CC_CreateEnumerator(void **phEnumerator, unsigned int)
{
    *phEnumerator = nullptr;
    return KX_CC_E_RESOURCE;
}

int KX_CC_Enumerate(void *, unsigned int, KX_CC_DEVICE_LIST *)
{
    return KX_CC_E_HANDLE;
}

int KX_CC_DestroyEnumerator(void *)
{
    return KX_CC_OK;
}

bool KX_CC_IsDeviceOpen(const KX_CC_DEVICE_INFO *)
{
    return false;
}

const char *KX_CC_ErrorText(int)
{
    return "scripted";
}
