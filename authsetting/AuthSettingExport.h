#pragma once

#include <QtGlobal>

#if defined(AUTHSETTING_STATIC)
#define AUTHSETTING_EXPORT
#elif defined(AUTHSETTING_BUILD)
#define AUTHSETTING_EXPORT Q_DECL_EXPORT
#else
#define AUTHSETTING_EXPORT Q_DECL_IMPORT
#endif
