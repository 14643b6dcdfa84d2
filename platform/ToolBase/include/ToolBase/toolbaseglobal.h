#ifndef TOOLBASE_TOOLBASEGLOBAL_H
#define TOOLBASE_TOOLBASEGLOBAL_H

#include <QtGlobal>

#if defined(TOOLBASE_BUILD)
#    define TOOLBASE_EXPORT Q_DECL_EXPORT
#else
#    define TOOLBASE_EXPORT Q_DECL_IMPORT
#endif

#endif
