#pragma once
// Login globals: set by the host after the user signs in, read by the module.
#include <QtGlobal>

#include "framework/Export.h"
#include "framework/Types.h"

// The host's call-context record, handed to QXProc2 and to every screen's InitForm.
//
// Layout: the six user-context texts come first, in the order screens forward them to
// SetUserParam, then the 32-bit function code, then the host's own members. Texts are QStrings,
// so copying a record copies counted references, never the characters. Code reads members by
// name, never by offset: with 64-bit QStrings FuncCode sits after 6 x sizeof(QString) bytes,
// not at a fixed byte 96, and the record's size is the compiler's.
struct QX_FRAMEWORK_EXPORT Trecord {
    AnsiString UserId;    // user code
    AnsiString UserName;  // user name
    AnsiString CkId;      // default warehouse code
    AnsiString CkName;    // default warehouse name
    AnsiString CoName;    // company name
    AnsiString DbName;    // database the host is connected to
    qint32 FuncCode = 0;  // the menu function picked
    // Host-owned members, passed through untouched.
    AnsiString MenuCaption;
    qint32 HostFlags = 0;
};

// Bits of Trecord::HostFlags the module reads.
inline constexpr qint32 HostFlagMayWrite = 0x1;  // the user may run the function's actions

QX_FRAMEWORK_EXPORT extern AnsiString G_UserId;
QX_FRAMEWORK_EXPORT extern AnsiString G_UserName;
QX_FRAMEWORK_EXPORT extern AnsiString G_ckid;
QX_FRAMEWORK_EXPORT extern AnsiString G_CkName;
QX_FRAMEWORK_EXPORT extern AnsiString G_CoName;
QX_FRAMEWORK_EXPORT extern quint8 G_CKCOUNT_C;  // only one warehouse registered
QX_FRAMEWORK_EXPORT extern quint8 G_CKCOUNT_R;  // user may read fewer than two warehouses
QX_FRAMEWORK_EXPORT extern quint8 G_CKCOUNT_W;  // user may write to one warehouse only
QX_FRAMEWORK_EXPORT extern quint8 G_CHKCK;      // warehouse rights enforced
QX_FRAMEWORK_EXPORT extern quint8 G_SK;         // approval mode
QX_FRAMEWORK_EXPORT extern AnsiString G_SKSTR;  // T written into new heads
QX_FRAMEWORK_EXPORT extern qint32 G_CM;         // last size position in use (0-9)
QX_FRAMEWORK_EXPORT extern quint8 GKH4_2;       // barcodes kept per SKU and size
QX_FRAMEWORK_EXPORT extern Trecord G_record;    // the host's current record

// Puts every global back to its state before login (tests use it between cases).
QX_FRAMEWORK_EXPORT void ResetGlobals();
