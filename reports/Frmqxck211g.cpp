#include "reports/Frmqxck211g.h"

TQXCK211G* QXCK211G = nullptr;

TQXCK211G::TQXCK211G(QWidget* Owner) : TQXCK201G(Owner, "QXCK211G", "销售汇总表", "正在汇总销售数据…") {}

TQXCK201GF* TQXCK211G::NewFilter() {
    QXCK211GF = new TQXCK211GF(this);
    return QXCK211GF;
}
