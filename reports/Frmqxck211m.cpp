#include "reports/Frmqxck211m.h"

TQXCK211M* QXCK211M = nullptr;

TQXCK211M::TQXCK211M(QWidget* Owner)
    : TQXCK201M(Owner, "QXCK211M", "销售明细查询", "正在查询销售明细…",
                {{"SJ", "单价", 60},
                 {"SMONEY", "金额", 80},
                 {"ODJ", "原价", 60},
                 {"OMONEY", "原金额", 80},
                 {"ZK", "折扣", 50},
                 {"VIPZK", "会员折扣", 60},
                 {"NOTE", "备注", 120}}) {}

TQXCK201MF* TQXCK211M::NewFilter() {
    QXCK211MF = new TQXCK211MF(this);
    return QXCK211MF;
}
