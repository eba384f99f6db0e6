#pragma once

#include <QtGlobal>

#ifdef kzkit_EXPORTS
#define KZKIT_EXPORT Q_DECL_EXPORT
#else
#define KZKIT_EXPORT Q_DECL_IMPORT
#endif
