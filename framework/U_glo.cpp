#include "framework/U_glo.h"

AnsiString G_UserId;
AnsiString G_UserName;
AnsiString G_ckid;
AnsiString G_CkName;
AnsiString G_CoName;
quint8 G_CKCOUNT_C = 0;
quint8 G_CKCOUNT_R = 0;
quint8 G_CKCOUNT_W = 0;
quint8 G_CHKCK = 0;
quint8 G_SK = 0;
AnsiString G_SKSTR = "1";
qint32 G_CM = 9;
quint8 GKH4_2 = 0;
Trecord G_record;

void ResetGlobals() {
    G_UserId.clear();
    G_UserName.clear();
    G_ckid.clear();
    G_CkName.clear();
    G_CoName.clear();
    G_CKCOUNT_C = G_CKCOUNT_R = G_CKCOUNT_W = 0;
    G_CHKCK = G_SK = GKH4_2 = 0;
    G_SKSTR = "1";
    G_CM = 9;
    G_record = Trecord{};
}
