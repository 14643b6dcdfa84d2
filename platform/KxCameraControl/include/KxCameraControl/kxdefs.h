#ifndef KXCAMERACONTROL_KXDEFS_H
#define KXCAMERACONTROL_KXDEFS_H

#if defined(KX_CC_BUILD)
#    define KX_CC_API __attribute__((visibility("default")))
#else
#    define KX_CC_API
#endif

#ifdef __cplusplus
#    define KX_CC_BEGIN_DECLS extern "C" {
#    define KX_CC_END_DECLS }
#else
#    define KX_CC_BEGIN_DECLS
#    define KX_CC_END_DECLS
#endif

#endif
