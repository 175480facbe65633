#include "reports/Frmqxck201gf.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "documents/common/DocumentCommon.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"

TQXCK201GF* QXCK201GF = nullptr;

namespace {
// The captions' numbering does not follow the tags; the second caption lacks its opening bracket.
std::vector<TQXCK201GF::Preset> purchasePresets() {
    return {{"&1.按 【供应商】     ", "按 [供应商]", "A"},      {"&2.按 供应商/商品】", "按 [供应商/商品]", "B"},
            {"&7.按 【商品】       ", "按 [商品]", "C"},        {"&5.按 【部门】       ", "按 [部门]", "D"},
            {"&6.按 【业务员】     ", "按 [业务员]", "E"},      {"&3.按 【仓库】       ", "按 [仓库]", "F"},
            {"&4.按 【仓库/商品】  ", "按 [仓库/商品]", "G"}};
}
}  // namespace

TQXCK201GF::TQXCK201GF(QWidget* Owner)
    : TQXCK201GF(Owner, "QXCK201GF", "采购汇总表", "采购进货汇总查询", {"供 应 商", "d1103", "D1103.KH_GYS_ID", "进货", "退货"},
                 purchasePresets()) {}

TQXCK201GF::TQXCK201GF(QWidget* Owner, const QString& name, const QString& caption, const QString& headingText,
                       const Kind& kind, std::vector<Preset> presets)
    : TFrm_TradeFilter(Owner, name, caption, kind), presets_(std::move(presets)) {
    group_main = new TClientDataSet(this);
    group_main->setObjectName("group_main");
    auto* heading = new QLabel(headingText, this);
    heading->setObjectName("Lab_Title");
    MainLayout()->insertWidget(0, heading);
    Panel_Condition->NewRow();
    auto* dates = new QButtonGroup(this);
    RB1 = new QRadioButton("日报表", Panel_Condition);
    RB2 = new QRadioButton("月报表", Panel_Condition);
    RB3 = new QRadioButton("年报表", Panel_Condition);
    RB4 = new QRadioButton("不计日期", Panel_Condition);
    int n = 0;
    for (QRadioButton* r : {RB1, RB2, RB3, RB4}) {
        r->setObjectName("RB" + QString::number(++n));
        dates->addButton(r);
        Panel_Condition->AddControl(r, QString());
    }
    RB1->setChecked(true);
    Panel_Condition->NewRow();
    Panel_Condition->AddControl(new QLabel("分色分码", Panel_Condition), QString());
    auto* sizes = new QButtonGroup(this);
    BSCHK3_1 = new QRadioButton("区分", Panel_Condition);
    BSCHK3_1->setObjectName("BSCHK3_1");
    BSCHK3_2 = new QRadioButton("不分", Panel_Condition);
    BSCHK3_2->setObjectName("BSCHK3_2");
    for (QRadioButton* r : {BSCHK3_1, BSCHK3_2}) {
        sizes->addButton(r);
        Panel_Condition->AddControl(r, QString());
    }
    BSCHK3_1->setChecked(true);
    Panel_Condition->NewRow();
    auto* note = new QLabel("汇总组合  系统提示：如选定区分色码，系统默认将款号添加入分组项目中", Panel_Condition);
    Panel_Condition->AddControl(note, QString(), 4);
    StoredProps << "BSCHK3_1" << "BSCHK3_2" << "RB1" << "RB2" << "RB3" << "RB4";
    QStringList captions;
    for (const Preset& p : presets_) captions << p.caption;
    AddRunButtons(captions, [this](int tag) { btn_group(tag); });
    btn_ok->setText("按自定义汇总");
    btn_ok->setVisible(false);
    btn_okCustom = btn_ok;
}

void TQXCK201GF::InitForm() {
    TFrm_TradeFilter::InitForm();
    opensql(group_main, FuncNo,
            "SELECT group_name, group_sql, group_class, group_show, SHOW_WIDTH,A,B,C,D,E,F,G,H,I,J,K,L,M,N,O,P FROM sys_GROUP "
            "WHERE (group_id = " + FuncNo + ")" + " ORDER BY orderby");
}

void TQXCK201GF::btn_group(int tag) {
    if (tag < 1 || tag > int(presets_.size())) return;
    TFrm_Sys_Filter::btn_okClick(nullptr);
    Description = presets_[tag - 1].description;
    group(presets_[tag - 1].column);
}

void TQXCK201GF::btn_okClick(QObject* Sender) {
    TFrm_Sys_Filter::btn_okClick(Sender);
    Description = "按 自定义汇总";
    group("group_show");
}

QString TQXCK201GF::RowSet(const QString& conditions) const {
    const bool cash = BSCHK2_1->isChecked(), nonCash = BSCHK2_2->isChecked();
    const QString range1 = " and (d8101.bdate>='" + StartText() + "') and (d8101.bdate<'" + EndNextText() + "') ";
    const QString range2 = " and (d8102.bdate>='" + StartText() + "') and (d8102.bdate<'" + EndNextText() + "')";
    QString out;
    if (BSCHK1_1->isChecked())
        out += QString("  SELECT D8101.BDATE, D8101.NOID, D1008.BM_NAME,D1103.KG_NAME,D1101.YW_NAME,D1007.CK_NAME, ") +
               "D1800.K_ID AS WL_ID, D1800.WL_NAME, D1800.PP AS WL_GG, D1800.DW_NAME,D1800.m_id,S0,S1,S2,S3,S4,S5,S6,S7,S8,S9, " +
               (MoneyRight == "1" ? "D8101A.MONEY," : "0.00 as money,") + "D1005.COL_ID,D1005.COL_NAME FROM D8101  " +
               "INNER JOIN D8101A ON D8101A.NOID = D8101.NOID " +
               qx::reports::settlementPiece("d8101", "2", cash, nonCash, false) +
               "INNER JOIN D1801 ON D1801.WL_ID = D8101A.WL_ID " + "INNER JOIN D1800 ON D1801.k_ID = D1800.K_ID " +
               "INNER JOIN D1101 ON D8101.YW_ID = D1101.YW_ID " + "INNER JOIN D1008 ON D1101.BM_ID = D1008.BM_ID " +
               "INNER JOIN D1103 ON D8101.KH_GYS_ID = D1103.KH_GYS_ID " + "INNER JOIN D1007 ON D8101.CK_ID = D1007.CK_ID " +
               "INNER JOIN #TCK ON #TCK.CK_ID = D1007.CK_ID " + "INNER JOIN D1005 ON D1801.COL_ID = D1005.COL_ID" +
               " where (D8101.T=1) " + conditions + range1;
    if (BSCHK1_1->isChecked() && BSCHK1_2->isChecked()) out += " UNION ALL";
    if (BSCHK1_2->isChecked())
        out += QString(" SELECT D8102.BDATE,D8102.NOID,D1008.BM_NAME,D1103.KG_NAME, D1101.YW_NAME, ") +
               "D1007.CK_NAME,D1800.K_ID AS WL_ID,D1800.WL_NAME,D1800.PP AS WL_GG,D1800.DW_NAME,D1800.m_id, " +
               "0-S0 as s0,0-S1 as s1,0-S2 as s2,0-S3 as s3,0-S4 as s4,0-S5 as s5,0-S6 as s6,0-S7 as s7,0-S8 as s8,0-S9 as s9," +
               (MoneyRight == "1" ? "0-D8102A.SMONEY AS MONEY," : "0.00 as money,") + "D1005.COL_ID,D1005.COL_NAME  " +
               "FROM D8102  " + "INNER JOIN D8102A ON D8102A.NOID = D8102.NOID " +
               qx::reports::settlementPiece("d8102", "0", cash, nonCash, false) +
               "INNER JOIN D1801 ON D1801.WL_ID = D8102A.WL_ID " + "INNER JOIN D1800 ON D1801.k_ID = D1800.K_ID  " +
               "INNER JOIN D1101 ON D8102.YW_ID = D1101.YW_ID " + "INNER JOIN D1008 ON D1101.BM_ID = D1008.BM_ID " +
               "INNER JOIN D1103 ON D8102.KH_GYS_ID = D1103.KH_GYS_ID " + "INNER JOIN D1007 ON D8102.CK_ID = D1007.CK_ID " +
               "INNER JOIN #TCK ON #TCK.CK_ID = D1007.CK_ID " + "INNER JOIN D1005 ON D1801.COL_ID = D1005.COL_ID" +
               " where (D8102.T=1) " + conditions + range2;
    return out;
}

void TQXCK201GF::group(const QString& column) {
    using namespace qx::reports;
    const QString conditions = Conditions("d1800.K_id", false);
    CheckDate(BDATE);
    CheckDate(EDATE);
    qx::documents::refuseReversedDates(BDATE, EDATE);
    const DateGrouping dates = RB1->isChecked()   ? DateGrouping::Day
                               : RB2->isChecked() ? DateGrouping::Month
                               : RB3->isChecked() ? DateGrouping::Year
                                                  : DateGrouping::None;
    std::vector<GroupItem> items;
    for (group_main->First(); !group_main->Eof(); group_main->Next()) {
        TField* chosen = group_main->FindField(column);
        items.push_back({group_main->FieldByName("group_name")->AsString(), group_main->FieldByName("group_sql")->AsString(),
                         group_main->FieldByName("group_class")->AsString(), chosen && chosen->AsBoolean()});
    }
    const GroupLists lists = groupLists(dates, items, BSCHK3_1->isChecked(), KeptArticleItems(column));
    CheckChoices(SourceMessage(), SettlementMessage());
    SqlText = summaryBatch(lists, RowSet(conditions));
    Description = SourceDescription() + "  ●日期:" + BDATE->Date().toString("MM-dd") + " 至 " + EDATE->Date().toString("MM-dd") + " " +
                  Description;
    SaveProps();
    SetModalResult(mrOk);
}

QString TQXCK201GF::SourceMessage() const { return "<采购收货、采购退货> 至少选择一项以上进行查询"; }
QString TQXCK201GF::SettlementMessage() const { return "结算方式中:现金、月结/待结 至少选中一项进行查询"; }
QStringList TQXCK201GF::KeptArticleItems(const QString&) const { return {}; }

QString TQXCK201GF::SourceDescription() const { return ChosenSources("采购进货/", "采购退货/"); }
