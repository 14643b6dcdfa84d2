#ifndef KXCAMERACONTROL_KXLOG_H
#define KXCAMERACONTROL_KXLOG_H

/**
 * @file
 * What the library has to tell beside its result codes, for a log: why a camera could not be opened or was
 * lost, and what its helper process wrote to its standard error.
 *
 * Nothing is told before a callback is set, and nothing is ever written to the standard streams of the
 * application: the standard error of a helper process ends here as well, its first KX_CC_LOG_HELPER_LINES
 * lines and then one message that the rest is left out.
 */

#include "kxdefs.h"

KX_CC_BEGIN_DECLS

/** Levels, from the least to the most important. */
#define KX_CC_LOG_DEBUG 1u
#define KX_CC_LOG_INFO 2u
#define KX_CC_LOG_WARNING 3u /**< something went wrong for one camera */
#define KX_CC_LOG_ERROR 4u   /**< something is wrong with this machine or installation */

/** Lines of the standard error of one helper process, from opening to closing, that are handed on. What it
 * says beyond them is thrown away. */
#define KX_CC_LOG_HELPER_LINES 20u

/**
 * Takes one message.
 *
 * @param nLevel    KX_CC_LOG_...; take an unknown one for KX_CC_LOG_WARNING.
 * @param szCamera  The camera as a person knows it, "Model Serial (192.168.0.7)"; empty for a message about
 *                  none. Borrowed until the callback returns.
 * @param szText    One line of printable UTF-8 without a line end, a few hundred bytes at the most. It may
 *                  hold what the camera sent. Borrowed until the callback returns.
 * @param pUser     As given to KX_CC_SetLogCallback().
 *
 * Threads: called in the threads that call this library, in several at once; the call that it belongs to
 * waits for it, so it should be quick. It must not call functions of this library.
 */
typedef void (*KX_CC_LOG_CALLBACK)(unsigned int nLevel, const char *szCamera, const char *szText,
                                   void *pUser);

/**
 * Sets who takes the messages of this process; there is one at a time.
 *
 * @param nLowestLevel  Messages below it are not handed on: KX_CC_LOG_DEBUG to KX_CC_LOG_ERROR.
 * @param pCallback     Who takes them; NULL for nobody.
 * @param pUser         Handed to each call; borrowed until another callback is set.
 *
 * Threads: thread-safe. Waits until the calls of the former callback have returned: afterwards it is not
 * called any more, and its pUser may go.
 *
 * @retval KX_CC_E_PARAMETER  the level is none; the former callback stays
 */
KX_CC_API int KX_CC_SetLogCallback(unsigned int nLowestLevel, KX_CC_LOG_CALLBACK pCallback, void *pUser);

KX_CC_END_DECLS

#endif
