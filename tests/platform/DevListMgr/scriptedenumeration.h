#ifndef TESTS_SCRIPTEDENUMERATION_H
#define TESTS_SCRIPTEDENUMERATION_H

#include <QMutex>
#include <QVector>

#include <KxCameraControl/kxcameracontrol.h>

/// What the enumeration functions of the camera SDK answer in this program.
struct ScriptedEnumeration
{
    QMutex mutex; ///< protects the rest
    int nCreateResult = KX_CC_OK;
    int nEnumerateResult = KX_CC_OK;
    QVector<KX_CC_DEVICE_INFO> vecDevices;
    bool bOpen = false;
    int nEnumerators = 0; ///< made and not yet destroyed
    int nCreated = 0;
    unsigned int nTransports = 0; ///< of the last one made
};

ScriptedEnumeration &Script();

#endif
