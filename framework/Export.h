#pragma once
#include <QtGlobal>

#if defined(QX_FRAMEWORK_BUILD)
#define QX_FRAMEWORK_EXPORT Q_DECL_EXPORT
#else
#define QX_FRAMEWORK_EXPORT Q_DECL_IMPORT
#endif
