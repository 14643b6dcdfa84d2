#include "scriptedsdk.h"

#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QRegularExpression>
#include <QSemaphore>
#include <QSet>
#include <QVariant>

#include <cstring>

#include <KxCameraControl/kxcameracontrol.h>

#include "journal.h"

namespace {

struct Script
{
    QStringList calls;
    QSet<void *> handles;
    KX_CC_DEVICE_INFO stLastDeviceInfo = {};
    QHash<QString, int> refusals; // by function, or by function and feature
    bool bHandleOfFailedCreate = false;
    bool bAnswerEverything = false;
    QHash<QString, QVariant> values;
    QByteArray description;
    bool bSizeSet = false;
    unsigned int nSize = 0;
    unsigned int nTerminator = 1; // bytes that are counted for the NUL
    bool bHoldOpens = false;
};

QMutex mutex; // protects the script and the last handle
QSemaphore heldOpens;
quintptr nLastHandle = 0; // never used twice, so that a stale handle shows

Script &TheScript()
{
    static Script script;
    return script;
}

QString RefusalKey(const QString &strFunction, const QString &strFeature)
{
    return strFunction + QLatin1Char(' ') + strFeature;
}

/// The caller holds the mutex.
void Note(const QString &strCall)
{
    TheScript().calls.append(strCall);
    Journal::Note(strCall);
}

/// Records the call and gives what it was told to return. The caller holds the mutex.
int Record(void *hDevice, const char *szFunction, const QStringList &arguments,
           const QString &strFeature = {})
{
    Script &script = TheScript();
    const QString strFunction = QString::fromLatin1(szFunction);
    const QString strCall =
        strFunction + QLatin1Char('(') + arguments.join(QStringLiteral(", ")) + QLatin1Char(')');
    if (!script.handles.contains(hDevice)) {
        Note(QStringLiteral("BAD HANDLE ") + strCall);
        return KX_CC_E_HANDLE;
    }
    Note(strCall);
    return script.refusals.value(RefusalKey(strFunction, strFeature),
                                 script.refusals.value(RefusalKey(strFunction, QString()), KX_CC_OK));
}

template <typename T>
int Get(void *hDevice, const char *szFunction, const char *szName, T preset, T *pValue)
{
    const QMutexLocker locker(&mutex);
    const QString strName = QString::fromLatin1(szName);
    const int nResult = Record(hDevice, szFunction, {strName}, strName);
    if (nResult != KX_CC_OK)
        return nResult;
    const Script &script = TheScript();
    if (!script.values.contains(strName) && !script.bAnswerEverything)
        return KX_CC_E_FEATURE_UNKNOWN;
    *pValue = script.values.value(strName, QVariant::fromValue(preset)).template value<T>();
    return KX_CC_OK;
}

int Set(void *hDevice, const char *szFunction, const char *szName, const QString &strValue)
{
    const QMutexLocker locker(&mutex);
    const QString strName = QString::fromLatin1(szName);
    return Record(hDevice, szFunction, {strName, strValue}, strName);
}

int File(void *hDevice, const char *szFunction, const char *szFileName)
{
    const QMutexLocker locker(&mutex);
    return Record(hDevice, szFunction, {QString::fromLatin1(szFileName)});
}

void SetValue(const QString &strName, const QVariant &value)
{
    const QMutexLocker locker(&mutex);
    TheScript().values.insert(strName, value);
}

} // namespace

void ScriptedSdk::Reset()
{
    ReleaseOpens();
    Journal::Clear();
    const QMutexLocker locker(&mutex);
    TheScript() = Script();
}

QStringList ScriptedSdk::Calls()
{
    const QMutexLocker locker(&mutex);
    return TheScript().calls;
}

QStringList ScriptedSdk::FeatureCalls()
{
    return Calls().filter(QRegularExpression(QStringLiteral("_[GS]et(Bool|Int|Enum|Float)Value")));
}

int ScriptedSdk::LivingHandles()
{
    const QMutexLocker locker(&mutex);
    return TheScript().handles.size();
}

KX_CC_DEVICE_INFO ScriptedSdk::LastDeviceInfo()
{
    const QMutexLocker locker(&mutex);
    return TheScript().stLastDeviceInfo;
}

void ScriptedSdk::Refuse(const QString &strFunction, int nCode, const QString &strFeature)
{
    const QMutexLocker locker(&mutex);
    TheScript().refusals.insert(RefusalKey(strFunction, strFeature), nCode);
}

void ScriptedSdk::HandOutHandleOfFailedCreate()
{
    const QMutexLocker locker(&mutex);
    TheScript().bHandleOfFailedCreate = true;
}

void ScriptedSdk::SetUnsigned(const QString &strName, quint32 nValue)
{
    SetValue(strName, nValue);
}

void ScriptedSdk::SetFloat(const QString &strName, float fValue)
{
    SetValue(strName, fValue);
}

void ScriptedSdk::SetBool(const QString &strName, bool bValue)
{
    SetValue(strName, bValue);
}

void ScriptedSdk::AnswerEverything()
{
    const QMutexLocker locker(&mutex);
    TheScript().bAnswerEverything = true;
}

void ScriptedSdk::SetDescription(const QByteArray &text)
{
    const QMutexLocker locker(&mutex);
    TheScript().description = text;
}

void ScriptedSdk::ReportDescriptionSize(unsigned int nSize)
{
    const QMutexLocker locker(&mutex);
    TheScript().bSizeSet = true;
    TheScript().nSize = nSize;
}

void ScriptedSdk::ReportUnterminated()
{
    const QMutexLocker locker(&mutex);
    TheScript().nTerminator = 0;
}

void ScriptedSdk::HoldOpens()
{
    const QMutexLocker locker(&mutex);
    heldOpens.tryAcquire(heldOpens.available());
    TheScript().bHoldOpens = true;
}

void ScriptedSdk::ReleaseOpens()
{
    heldOpens.release(1000);
}

extern "C" {

int KX_CC_CreateHandle(void **phDevice, const KX_CC_DEVICE_INFO *pstDevInfo)
{
    const QMutexLocker locker(&mutex);
    Script &script = TheScript();
    Note(QStringLiteral("KX_CC_CreateHandle()"));
    script.stLastDeviceInfo = *pstDevInfo;
    const int nResult =
        script.refusals.value(RefusalKey(QStringLiteral("KX_CC_CreateHandle"), QString()), KX_CC_OK);
    *phDevice = nullptr;
    if (nResult == KX_CC_OK || script.bHandleOfFailedCreate) {
        *phDevice = reinterpret_cast<void *>(++nLastHandle); // a number that nobody looks behind
        script.handles.insert(*phDevice);
    }
    return nResult;
}

int KX_CC_OpenDevice(void *hDevice, unsigned int nAccessMode, unsigned short nSwitchoverKey)
{
    bool bHold = false;
    int nResult = KX_CC_OK;
    {
        const QMutexLocker locker(&mutex);
        bHold = TheScript().bHoldOpens;
        nResult = Record(hDevice, "KX_CC_OpenDevice",
                         {QString::number(nAccessMode), QString::number(nSwitchoverKey)});
    }
    if (bHold)
        heldOpens.tryAcquire(1, 10000);
    return nResult;
}

int KX_CC_CloseDevice(void *hDevice)
{
    const QMutexLocker locker(&mutex);
    return Record(hDevice, "KX_CC_CloseDevice", {});
}

int KX_CC_DestroyHandle(void *hDevice)
{
    const QMutexLocker locker(&mutex);
    const int nResult = Record(hDevice, "KX_CC_DestroyHandle", {});
    TheScript().handles.remove(hDevice);
    return nResult;
}

int KX_CC_GetIntValue(void *hDevice, const char *szName, KX_CC_INT_VALUE *pValue)
{
    return Get<quint32>(hDevice, "KX_CC_GetIntValue", szName, 1, &pValue->nCurValue);
}

int KX_CC_GetEnumValue(void *hDevice, const char *szName, KX_CC_ENUM_VALUE *pValue)
{
    return Get<quint32>(hDevice, "KX_CC_GetEnumValue", szName, 1, &pValue->nCurValue);
}

int KX_CC_GetFloatValue(void *hDevice, const char *szName, KX_CC_FLOAT_VALUE *pValue)
{
    return Get<float>(hDevice, "KX_CC_GetFloatValue", szName, 0.5F, &pValue->fCurValue);
}

int KX_CC_GetBoolValue(void *hDevice, const char *szName, bool *pValue)
{
    return Get<bool>(hDevice, "KX_CC_GetBoolValue", szName, true, pValue);
}

int KX_CC_SetIntValue(void *hDevice, const char *szName, unsigned int nValue)
{
    return Set(hDevice, "KX_CC_SetIntValue", szName, QString::number(nValue));
}

int KX_CC_SetEnumValue(void *hDevice, const char *szName, unsigned int nValue)
{
    return Set(hDevice, "KX_CC_SetEnumValue", szName, QString::number(nValue));
}

int KX_CC_SetFloatValue(void *hDevice, const char *szName, float fValue)
{
    return Set(hDevice, "KX_CC_SetFloatValue", szName, QString::number(static_cast<double>(fValue)));
}

int KX_CC_SetBoolValue(void *hDevice, const char *szName, bool bValue)
{
    return Set(hDevice, "KX_CC_SetBoolValue", szName,
               bValue ? QStringLiteral("true") : QStringLiteral("false"));
}

int KX_XML_GetGenICamXML(void *hDevice, unsigned char *pBuffer, unsigned int nBufferSize,
                         unsigned int *pnSize)
{
    const QMutexLocker locker(&mutex);
    const int nResult =
        Record(hDevice, "KX_XML_GetGenICamXML", {QString::number(nBufferSize), QString::number(*pnSize)});
    if (nResult != KX_CC_OK)
        return nResult;
    const Script &script = TheScript();
    const auto nText = static_cast<unsigned int>(script.description.size());
    *pnSize = script.bSizeSet ? script.nSize : nText + script.nTerminator;
    if (nText + script.nTerminator > nBufferSize || *pnSize > nBufferSize)
        return KX_CC_E_BUFFER_TOO_SMALL;
    // Without the NUL: the buffer is zero-filled.
    std::memcpy(pBuffer, script.description.constData(), nText);
    return KX_CC_OK;
}

int KX_CC_FeatureSave(void *hDevice, const char *szFileName)
{
    return File(hDevice, "KX_CC_FeatureSave", szFileName);
}

int KX_CC_FeatureLoad(void *hDevice, const char *szFileName)
{
    return File(hDevice, "KX_CC_FeatureLoad", szFileName);
}

} // extern "C"
