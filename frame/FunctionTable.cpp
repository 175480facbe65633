// The function codes of the host's menu that belong to this module, one row per code, and the
// screen each opens. The numbering is the host's, not the screen units': 203 opens the purchase
// detail report of unit 201M, 215 the order screen of unit 213, 217/218/219 the transfer,
// loss/gain and arrival screens of units 233/231/234, 241/242 the period screens of 341/342.
// A row without a factory belongs to a screen not yet part of the module: it opens nothing.
#include <algorithm>
#include <array>

#include "documents/lossgain/Frmqxck231.h"
#include "documents/orders/Frmqxck213.h"
#include "documents/purchase/Frmqxck201.h"
#include "documents/purchase/Frmqxck202.h"
#include "documents/sales/Frmqxck211.h"
#include "documents/sales/Frmqxck212.h"
#include "documents/stocktake/Frmqxck235.h"
#include "documents/transfer/Frmqxck233.h"
#include "documents/transfer/Frmqxck234.h"
#include "frame/Dispatch.h"
#include "labels/Frmqxck297.h"
#include "labels/Frmqxck299.h"
#include "period/Frmqxck341.h"
#include "period/Frmqxck342.h"
#include "reports/Frmqxck201g.h"
#include "reports/Frmqxck201m.h"
#include "reports/Frmqxck211g.h"
#include "reports/Frmqxck211m.h"
#include "reports/Frmqxck252.h"
#include "reports/Frmqxck253.h"
#include "reports/Frmqxck254.h"
#include "reports/Frmqxck255.h"
#include "reports/Frmqxck256.h"
#include "reports/Frmqxck263.h"
#include "reports/Frmqxck273.h"
#include "reports/Frmqxck281.h"
#include "reports/Frmqxck282.h"
#include "reports/Frmqxck283.h"
#include "setup/Frmqxcks01.h"
#include "setup/Frmqxcks02a.h"
#include "setup/Frmqxsys_co.h"

namespace qx::frame {
namespace {

using enum Pattern;
using enum Subsystem;
constexpr auto None = Precondition::None;
constexpr auto SeveralWarehouses = Precondition::SeveralWarehouses;
constexpr auto ReadableWarehouses = Precondition::SeveralWarehousesReadableByUser;

// clang-format off
const std::array kFunctions{
//  code  class          unit            base                    caption               pattern         precondition        subsystem  factory
    FunctionRow{201, "TQXCK201",   "Frmqxck201",   "TFrm_Base_Entry_Head", "采购进货",            Embedded,       None,               Documents, screen<TQXCK201, &QXCK201>},
    FunctionRow{202, "TQXCK202",   "Frmqxck202",   "TFrm_Base_Entry_Head", "采购退货",            Embedded,       None,               Documents, screen<TQXCK202, &QXCK202>},
    FunctionRow{203, "TQXCK201M",  "Frmqxck201m",  "TFrm_Base_Qry",        "采购进货明细表",      Embedded,       None,               Reports,   screen<TQXCK201M, &QXCK201M>},
    FunctionRow{204, "TQXCK201G",  "Frmqxck201g",  "TFrm_Base_Qry",        "采购进货汇总表",      Embedded,       None,               Reports,   screen<TQXCK201G, &QXCK201G>},
    FunctionRow{211, "TQXCK211",   "Frmqxck211",   "TFrm_Base_Entry_Head", "销售开单",            Embedded,       None,               Documents, screen<TQXCK211, &QXCK211>},
    FunctionRow{212, "TQXCK212",   "Frmqxck212",   "TFrm_Base_Entry_Head", "销售退货",            Embedded,       None,               Documents, screen<TQXCK212, &QXCK212>},
    FunctionRow{213, "TQXCK211M",  "Frmqxck211m",  "TFrm_Base_Qry",        "销售明细表",          Embedded,       None,               Reports,   screen<TQXCK211M, &QXCK211M>},
    FunctionRow{214, "TQXCK211G",  "Frmqxck211g",  "TFrm_Base_Qry",        "销售汇总表",          Embedded,       None,               Reports,   screen<TQXCK211G, &QXCK211G>},
    FunctionRow{215, "TQXCK213",   "Frmqxck213",   "TFrm_Base_Entry_Head", "订单/补单",           Embedded,       None,               Documents, screen<TQXCK213, &QXCK213>},
    FunctionRow{217, "TQXCK233",   "Frmqxck233",   "TFrm_Base_Entry_Head", "调拨单",              Embedded,       SeveralWarehouses,  Documents, screen<TQXCK233, &QXCK233>},
    FunctionRow{218, "TQXCK231",   "Frmqxck231",   "TFrm_Base_Entry_Head", "损溢单",              Embedded,       None,               Documents, screen<TQXCK231, &QXCK231>},
    FunctionRow{219, "TQXCK234",   "Frmqxck234",   "TFrm_Base_Entry_Head", "调拨到货点收",        Embedded,       SeveralWarehouses,  Documents, screen<TQXCK234, &QXCK234>},
    FunctionRow{235, "TQXCK235",   "Frmqxck235",   "TFrm_Base_Entry_Head", "盘点录入",            Embedded,       None,               Documents, screen<TQXCK235, &QXCK235>},
    FunctionRow{241, "TQXck341",   "Frmqxck341",   "TFrm_Base_Outer",      "商品库存期初",        Embedded,       None,               Period,    screen<TQXck341, &QXck341>},
    FunctionRow{242, "TQXCK342",   "Frmqxck342",   "TFrm_Base_Dialog",     "库存期间月结",        ModalDialog,    None,               Period,    screen<TQXCK342, &QXCK342>},
    FunctionRow{252, "TQXCK252",   "Frmqxck252",   "TFrm_Base_Qry",        "进销存分类表",        Embedded,       None,               Reports,   screen<TQXCK252, &QXCK252>},
    FunctionRow{253, "TQXCK253",   "Frmqxck253",   "TFrm_Base_Qry",        "进销存汇总表",        Embedded,       None,               Reports,   screen<TQXCK253, &QXCK253>},
    FunctionRow{254, "TQXCK254",   "Frmqxck254",   "TFrm_Base_Qry",        "进销存明细表",        Embedded,       None,               Reports,   screen<TQXCK254, &QXCK254>},
    FunctionRow{255, "TQXCK255",   "Frmqxck255",   "TFrm_Base_Qry",        "库存查询",            Embedded,       None,               Reports,   screen<TQXCK255, &QXCK255>},
    FunctionRow{256, "TQXCK256",   "Frmqxck256",   "TFrm_Base_Qry",        "库存分布查询",        Embedded,       ReadableWarehouses, Reports,   screen<TQXCK256, &QXCK256>},
    FunctionRow{263, "TQXCK263",   "Frmqxck263",   "TFrm_Base_Qry",        "采购年报表(金额)",    Embedded,       None,               Reports,   screen<TQXCK263, &QXCK263>},
    FunctionRow{273, "TQXCK273",   "Frmqxck273",   "TFrm_Base_Qry",        "销售年报表(销售额)",  Embedded,       None,               Reports,   screen<TQXCK273, &QXCK273>},
    FunctionRow{281, "TQXCK281",   "Frmqxck281",   "TFrm_Base_Qry",        "销售排行",            Embedded,       None,               Reports,   screen<TQXCK281, &QXCK281>},
    FunctionRow{282, "TQXCK282",   "Frmqxck282",   "TFrm_Base_Qry",        "经营综合分析",        Embedded,       None,               Reports,   screen<TQXCK282, &QXCK282>},
    FunctionRow{283, "TQXCK283",   "Frmqxck283",   "TFrm_Base_Qry",        "销售进度表",          Embedded,       None,               Reports,   screen<TQXCK283, &QXCK283>},
    FunctionRow{297, "TQXCK297",   "Frmqxck297",   "TFrm_Base_Outer",      "监管码",              Embedded,       None,               Labels,    screen<TQXCK297, &QXCK297>},
    FunctionRow{299, "TQXCK299",   "Frmqxck299",   "TFrm_Base_Qry",        "吊牌标签制作",        Embedded,       None,               Labels,    screen<TQXCK299, &QXCK299>},
    FunctionRow{704, "TQXCKS02A",  "Frmqxcks02a",  "TFrm_Base_Outer",      "促销方案",            ListWithParams, None,               Setup,     screen<TQXCKS02A, &QXCKS02A>},
    FunctionRow{901, "Tqxsys_co",  "Frmqxsys_co",  "TFrm_Base_Dialog",     "系统设置",            ModalDialog,    None,               Setup,     screen<Tqxsys_co, &qxsys_co>},
    FunctionRow{932, "TQXCKS01",   "Frmqxcks01",   "TFrm_Base_Dialog",     "系统初始化",          ModalDialog,    None,               Setup,     screen<TQXCKS01, &QXCKS01>},
};
// clang-format on

}  // namespace

std::span<const FunctionRow> functionTable() {
    return kFunctions;
}

const FunctionRow* findFunction(int code) {
    const auto row = std::ranges::find(kFunctions, code, &FunctionRow::code);
    return row == kFunctions.end() ? nullptr : &*row;
}

}  // namespace qx::frame
