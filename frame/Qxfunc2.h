#pragma once
// The module's entry: the host calls QXProc2 whenever the user picks one of the module's menu
// functions. It has C linkage so a host can find it by name in the loaded library.
#include <QWidget>

#include "framework/U_glo.h"

extern "C" Q_DECL_EXPORT void QXProc2(const Trecord& rec, QWidget* mainForm);

// What the host resolves: the type of QXProc2.
using QXProc2Function = void (*)(const Trecord& rec, QWidget* mainForm);
