#include "scriptedenumeration.h"

#include <QMutexLocker>

ScriptedEnumeration &Script()
{
    static ScriptedEnumeration script;
    return script;
}

int KX_CC_CreateEnumerator(void **phEnumerator, unsigned int nTransports)
{
    const QMutexLocker locker(&Script().mutex);
    *phEnumerator = nullptr;
    if (Script().nCreateResult != KX_CC_OK)
        return Script().nCreateResult;
    *phEnumerator = new int(1);
    ++Script().nEnumerators;
    ++Script().nCreated;
    Script().nTransports = nTransports;
    return KX_CC_OK;
}

int KX_CC_Enumerate(void *, unsigned int, KX_CC_DEVICE_LIST *pstList)
{
    const QMutexLocker locker(&Script().mutex);
    pstList->nDeviceNum = static_cast<unsigned int>(Script().vecDevices.size());
    pstList->pstDevices = Script().vecDevices.constData();
    return Script().nEnumerateResult;
}

int KX_CC_DestroyEnumerator(void *hEnumerator)
{
    const QMutexLocker locker(&Script().mutex);
    if (hEnumerator)
        --Script().nEnumerators;
    delete static_cast<int *>(hEnumerator);
    return KX_CC_OK;
}

bool KX_CC_IsDeviceOpen(const KX_CC_DEVICE_INFO *)
{
    const QMutexLocker locker(&Script().mutex);
    return Script().bOpen;
}

const char *KX_CC_ErrorText(int)
{
    return "scripted";
}
