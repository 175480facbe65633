#include "reports/Frmqxck201mf.h"

#include <QPushButton>

#include "framework/U_function.h"
#include "framework/U_glo.h"

TQXCK201MF* QXCK201MF = nullptr;

namespace {
std::vector<TQXCK201MF::Dimension> purchaseDimensions() {
    return {{"&1.按 【供应商】", "D1103.KH_GYS_ID AS oid", "D1103.KG_NAME AS oname"},
            {"&2.按 【商品】", "d1800.K_id AS oid", "d1800.wl_name AS oname"},
            {"&3.按 【业务员】", "D1101.YW_ID AS oid", "D1101.YW_NAME oname"},
            {"&4.按 【仓库】", "D1007.CK_ID AS oid", "D1007.CK_NAME oname"}};
}
}  // namespace

TQXCK201MF::TQXCK201MF(QWidget* Owner)
    : TQXCK201MF(Owner, "QXCK201MF", "采购进货明细查询", {"供 应 商", "d1103", "D1103.KH_GYS_ID", "进货", "退货"},
                 purchaseDimensions()) {}

TQXCK201MF::TQXCK201MF(QWidget* Owner, const QString& name, const QString& caption, const Kind& kind,
                       std::vector<Dimension> dimensions)
    : TFrm_TradeFilter(Owner, name, caption, kind), dimensions_(std::move(dimensions)) {
    QStringList captions;
    for (const Dimension& d : dimensions_) captions << d.caption;
    AddRunButtons(captions, [this](int tag) { btn_group(tag); });
    btn_ok->setVisible(false);
}

void TQXCK201MF::btn_okClick(QObject*) { btn_group(1); }

QString TQXCK201MF::SourceMessage() const { return "数据来源中:采购进货、采购退货 至少选中一项进行查询"; }
QString TQXCK201MF::SettlementMessage() const { return "结算方式中:现金、月结/待结 至少选中一项进行查询"; }

QString TQXCK201MF::SourceDescription() const { return ChosenSources("采购进货/", "采购退货/"); }

QString TQXCK201MF::Blocks(int tag, const QString& conditions) const {
    using qx::reports::DetailBlock;
    const Dimension& d = dimensions_[tag - 1];
    const bool cash = BSCHK2_1->isChecked(), nonCash = BSCHK2_2->isChecked();
    const bool money = MoneyRight == "1";
    const DetailBlock receipts{"0", "D8101", "D8101A", "D1103", false,
                               money ? "D8101A.DJ, D8101A.MONEY," : "0.00 AS DJ,0.00 as money,",
                               qx::reports::settlementPiece("d8101", "2", cash, nonCash, true)};
    const DetailBlock returns{"2", "D8102", "D8102A", "D1103", true,
                              money ? "D8102A.SJ, 0-D8102A.SMONEY AS SMONEY," : "0.00 AS sJ,0.00 as smoney,",
                              qx::reports::settlementPiece("d8102", "0", cash, nonCash, true)};
    // Only the chosen data sources: a block left out is replaced by nothing, and the UNION ALL goes with it.
    QStringList blocks;
    if (BSCHK1_1->isChecked()) blocks << qx::reports::detailBlock(receipts, d.oid, d.oname, conditions, StartText(), EndNextText());
    if (BSCHK1_2->isChecked()) blocks << qx::reports::detailBlock(returns, d.oid, d.oname, conditions, StartText(), EndNextText());
    return blocks.join(" UNION ALL ");
}

void TQXCK201MF::btn_group(int tag) {
    if (tag < 1 || tag > int(dimensions_.size())) return;
    TFrm_Sys_Filter::btn_okClick(nullptr);
    CheckChoices(SourceMessage(), SettlementMessage());
    SqlText = qx::reports::detailCall(Blocks(tag, Conditions("d1800.k_id", true)));
    Description = " ●数据来源->" + SourceDescription() + DateDescription();
    SaveProps();
    SetModalResult(mrOk);
}
