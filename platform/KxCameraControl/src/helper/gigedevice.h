#ifndef KXCAMERACONTROL_HELPER_GIGEDEVICE_H
#define KXCAMERACONTROL_HELPER_GIGEDEVICE_H

#include <arv.h>

#include "gvcp/gvcpchannel.h"

/**
 * An ArvDevice whose registers are reached through a GvcpChannel.
 *
 * Aravis' own GigE Vision device fetches, unpacks and parses the description while it is constructed, so
 * nothing could look at a description before it is parsed, and a camera that lies about a size takes the
 * process down. This device only moves register values; its description is handed to ArvGc by others.
 */
G_DECLARE_FINAL_TYPE(KxGigeDevice, kx_gige_device, KX, GIGE_DEVICE, ArvDevice)

/// @param pChannel  borrowed; must outlive the device.
KxGigeDevice *kx_gige_device_new(kxcc::GvcpChannel *pChannel);

/// Says how the camera wants to be written: without WRITEMEM, or (descriptions of schema 1.0, GenICam 2.0,
/// appendix 3) with register commands for every register of 4 bytes.
void kx_gige_device_set_commands(KxGigeDevice *pDevice, bool bWriteMemory, bool bRegisterCommands);

#endif
