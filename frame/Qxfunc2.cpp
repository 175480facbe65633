#include "frame/Qxfunc2.h"

#include "frame/Dispatch.h"

// Opens the screen of rec.FuncCode owned by mainForm; see qx::frame::dispatch.
void QXProc2(const Trecord& rec, QWidget* mainForm) {
    qx::frame::dispatch(rec, mainForm);
}
