#ifndef STYLECTL_STYLEGLOBAL_H
#define STYLECTL_STYLEGLOBAL_H

#include <QtGlobal>

#if defined(STYLECTL_BUILD)
#    define STYLECTL_EXPORT Q_DECL_EXPORT
#else
#    define STYLECTL_EXPORT Q_DECL_IMPORT
#endif

#endif
