#pragma once

#include <QtGlobal>

#ifdef authutils_EXPORTS
#define AUTHUTILS_EXPORT Q_DECL_EXPORT
#else
#define AUTHUTILS_EXPORT Q_DECL_IMPORT
#endif
