/// The C entry point for logging.

#include "KxCameraControl/kxcameracontrol.h"
#include "log/log.h"

int KX_CC_SetLogCallback(unsigned int nLowestLevel, KX_CC_LOG_CALLBACK pCallback, void *pUser)
{
    return kxcc::SetLogReceiver(nLowestLevel, pCallback, pUser);
}
