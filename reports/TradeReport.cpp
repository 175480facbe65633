#include "reports/TradeReport.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <QToolButton>

#include "documents/common/DocumentCommon.h"
#include "framework/LinkForms.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "reports/ReportCommon.h"

namespace qx::reports {

GroupLists groupLists(DateGrouping dates, const std::vector<GroupItem>& items, bool bySize,
                      const QStringList& keptArticleItems) {
    GroupLists l;
    switch (dates) {
        case DateGrouping::Day:
            l.select += "convert(char(10),BDATE,20) as 开单日期";
            l.group += "convert(char(10),BDATE,20)";
            break;
        case DateGrouping::Month:
            l.select += "year(BDATE) as 年,month(BDATE) as 月";
            l.group += "year(BDATE),month(BDATE) ";
            break;
        case DateGrouping::Year:
            l.select += "year(BDATE) as 年";
            l.group += "year(BDATE)";
            break;
        case DateGrouping::None:
            break;
    }
    static const QStringList articleItems = {"WL_ID", "WL_NAME", "WL_GG", "DW_NAME"};
    for (const GroupItem& item : items) {
        if (bySize && articleItems.contains(item.sql) && !keptArticleItems.contains(item.sql)) continue;
        if (!item.chosen) continue;
        if (l.select != "select ") l.select += "," + kBreak;
        if (item.cls == "S") {
            if (item.name == "数量" && bySize)
                l.select += QString("wl_id  as 款号,wl_name as 品名,COL_NAME AS 颜色,m_id AS 码,") +
                            "SUM(s0) as '尺码|0',SUM(s1) as '尺码|1',SUM(s2) as '尺码|2',SUM(s3) as '尺码|3',SUM(s4) as "
                            "'尺码|4',SUM(s5) as '尺码|5',SUM(s6) as '尺码|6',SUM(s7) as '尺码|7',SUM(s8) as '尺码|8',SUM(s9) "
                            "as '尺码|9'" +
                            ",SUM(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9) AS '尺码|合计'";
            else
                l.select += "SUM(" + item.sql + ") AS " + item.name + " ";
        } else {
            if (l.group != "group by ") l.group += "," + kBreak;
            l.select += item.sql + " AS " + item.name + " ";
            l.group += item.sql;
        }
    }
    if (bySize) {
        if (l.group != "group by ") l.group += "," + kBreak;
        l.group += "wl_id,wl_name,col_name,m_id ";
    }
    return l;
}

QString warehouseSet() {
    return G_CHKCK ? "SELECT CK_ID INTO #TCK  FROM sys_USER_CK WHERE (user_id='" + SqlStr(G_UserId) + "');"
                   : QString("SELECT CK_ID INTO #TCK  FROM D1007;");
}

QString summaryBatch(const GroupLists& lists, const QString& rowSet) {
    return warehouseSet() + lists.select + " from ( " + rowSet + ") TMP " + kBreak + lists.group + ";DROP TABLE #TCK ";
}

QString settlementPiece(const QString& table, const QString& nonCashCode, bool cash, bool nonCash, bool doubled) {
    if (cash == nonCash) return {};
    const QString q = doubled ? "''" : "'";
    return " and (" + table + ".jy_id" + (nonCash ? "=" : "<>") + q + nonCashCode + q + ")";
}

QString detailSizes(const QString& line, bool negated) {
    QString out;
    for (int i = 0; i <= 9; ++i) {
        const QString n = QString::number(i);
        if (i > 0) out += i == 9 ? "," : ", ";
        out += negated ? "0-" + line + ".S" + n + " as S" + n : line + ".S" + n;
    }
    return out;
}

QString detailRights() {
    if (!G_CHKCK) return {};
    return " sys_USER_CK ON d1007.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id=''" + SqlStr(SqlStr(G_UserId)) +
           "'') INNER JOIN ";
}

QString detailBlock(const DetailBlock& b, const QString& oid, const QString& oname, const QString& conditions,
                    const QString& start, const QString& endNext) {
    const QString& h = b.head;
    const QString& l = b.line;
    return "SELECT " + b.kind + " AS TTYPE, " + h + ".BDATE, " + l + ".NOID,  D1800.M_ID," +
           "d1800.K_id, d1800.wl_name  AS WL_NAME" + ",D1800.DW_NAME, D1005.COL_NAME, " + detailSizes(l, b.negated) +
           ",0 AS STOT, 0.00 AS ZK,0.00 AS VIPZK,0.00 AS ODJ,0.00 AS OMONEY," + b.money + oid + "," + oname +
           " ,NULL AS NOTE FROM D1801 INNER JOIN " + l + " ON D1801.WL_ID = " + l + ".WL_ID INNER JOIN " +
           "D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN " + b.styleJoin + "D1005 ON D1801.COL_ID = D1005.COL_ID INNER JOIN " +
           h + " ON " + l + ".NOID = " + h + ".NOID AND (" + h + ".T=1) INNER JOIN " + b.partner + " ON " + h +
           ".KH_GYS_ID = " + b.partner + ".KH_GYS_ID INNER JOIN " + "D1007 ON " + h + ".CK_ID = D1007.CK_ID  INNER JOIN " +
           detailRights() + "D1101 ON " + h + ".YW_ID = D1101.YW_ID " + b.settlement + conditions + " and (" + h +
           ".bdate>=''" + start + "'') and (" + h + ".bdate<''" + endNext + "'')";
}

QString detailCall(const QString& blocks) {
    return "exec SYS_M @param=1,@sqltext=' SELECT * FROM (" + blocks + ") TMP order by oid,bdate,noid '";
}

}  // namespace qx::reports

// ---------------------------------------------------------------- the dialog's common part

TFrm_TradeFilter::TFrm_TradeFilter(QWidget* Owner, const QString& name, const QString& caption, const Kind& kind)
    : TFrm_Sys_Filter(Owner), kind_(kind) {
    setObjectName(name);
    SetCaption(caption);
    BDATE = Panel_Condition->AddDateEdit("BDATE", "日期从");
    EDATE = Panel_Condition->AddDateEdit("EDATE", "至");
    titDATE = CreateDayCountLabel(Panel_Condition);
    Panel_Condition->AddControl(titDATE, QString());
    btn_dateset = CreateDatePresetButton(Panel_Condition);
    btn_dateset->setObjectName("btn_dateset");
    btn_dateset->setText("时段");
    Panel_Condition->AddControl(btn_dateset, QString());
    Panel_Condition->NewRow();
    auto* sources = new QLabel("数据来源", Panel_Condition);
    Panel_Condition->AddControl(sources, QString());
    BSCHK1_1 = Panel_Condition->AddCheckBox("BSCHK1_1", kind.receiptsCaption);
    BSCHK1_2 = Panel_Condition->AddCheckBox("BSCHK1_2", kind.returnsCaption);
    if (!kind.posCaption.isEmpty()) {
        BSCHK1_3 = Panel_Condition->AddCheckBox("BSCHK1_3", kind.posCaption);
        BSCHK1_3->setChecked(true);
    }
    Panel_Condition->NewRow();
    auto* settlement = new QLabel("结算方式", Panel_Condition);
    Panel_Condition->AddControl(settlement, QString());
    BSCHK2_1 = Panel_Condition->AddCheckBox("BSCHK2_1", "现金");
    BSCHK2_2 = Panel_Condition->AddCheckBox("BSCHK2_2", "非现金");
    for (QCheckBox* c : {BSCHK1_1, BSCHK1_2, BSCHK2_1, BSCHK2_2}) c->setChecked(true);
    Panel_Condition->NewRow();
    KH_ID = Panel_Condition->AddLinkEdit("KH_ID", kind.partnerCaption, 10, "KG_NAME");
    KG_NAME = KH_ID->NameLabel();
    Panel_Condition->NewRow();
    YW_ID = Panel_Condition->AddLinkEdit("YW_ID", "业 务 员", 4, "YW_NAME");
    YW_NAME = YW_ID->NameLabel();
    Panel_Condition->NewRow();
    CK_ID = Panel_Condition->AddLinkEdit("CK_ID", "仓    库", 4, "CK_NAME");
    CK_NAME = CK_ID->NameLabel();
    Panel_Condition->NewRow();
    wl_id = Panel_Condition->AddLinkEdit("wl_id", "商    品", 20, "wl_name");
    wl_name = wl_id->NameLabel();
    Panel_Condition->NewRow();
    StoredProps = {"BSCHK1_1", "BSCHK1_2", "BSCHK2_1", "BSCHK2_2"};
    if (BSCHK1_3) StoredProps << "BSCHK1_3";

    TFrm_Sys_Filter::FormCreate();
    SetDateEdits(BDATE, EDATE);
    for (TDateEdit* date : {BDATE, EDATE})
        qx::connectGuarded(date, &QDateEdit::dateChanged, this, [this, date] { BDATEChange(date); });
    auto* partners = new TFrm_Sys_LINK_KH(this);
    partners->init(KH_ID, kind.partnerTable, true);
    (new TFrm_Sys_LINK_YW(this))->init(YW_ID);
    (new TQX_LINK_K(this))->init(wl_id);
    CK_ID->setEnabled(!G_CKCOUNT_R);
    if (!G_CKCOUNT_R) {
        warehouseLink_ = new TFrm_Sys_LINK_CK(this);
        warehouseLink_->init(AdoQry_Work, CK_ID, CK_ID, FuncNo, "", "");
    }
}

void TFrm_TradeFilter::AddRunButtons(const QStringList& captions, const std::function<void(int)>& run) {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < captions.size(); ++i) {
        auto* b = new QPushButton(captions[i], row);
        b->setObjectName("btn_group" + QString::number(i + 1));
        b->setProperty("Tag", i + 1);
        layout->addWidget(b);
        qx::connectGuarded(b, &QPushButton::clicked, this, [run, i] { run(i + 1); });
    }
    MainLayout()->insertWidget(MainLayout()->count() - 1, row);
}

void TFrm_TradeFilter::InitForm() {
    TFrm_Sys_Filter::InitForm();
    qx::reports::setMonthToToday(BDATE, EDATE);
    BDATEChange(BDATE);
}

void TFrm_TradeFilter::BDATEChange(QObject*) { qx::documents::updateDayCount(BDATE, EDATE, titDATE); }

void TFrm_TradeFilter::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_Escape && warehouseLink_ && warehouseLink_->Visible()) {
        warehouseLink_->Close();
        Key = 0;
        return;
    }
    TFrm_Sys_Filter::FormKeyDown(Sender, Key, Shift);
}

QString TFrm_TradeFilter::Conditions(const QString& styleColumn, bool doubled) const {
    const QString q = doubled ? "''" : "'";
    auto value = [doubled](const QLineEdit* e) {
        const QString v = SqlStr(e->text().trimmed());
        return doubled ? SqlStr(v) : v;
    };
    QString out;
    if (!KH_ID->text().trimmed().isEmpty()) out += " AND (" + kind_.partnerColumn + "=" + q + value(KH_ID) + q + ")";
    if (!wl_id->text().trimmed().isEmpty()) out += " AND (" + styleColumn + "=" + q + value(wl_id) + q + ")";
    if (!YW_ID->text().trimmed().isEmpty()) out += " AND (D1101.YW_ID=" + q + value(YW_ID) + q + ")";
    if (!CK_ID->text().trimmed().isEmpty()) out += " AND (D1007.CK_ID=" + q + value(CK_ID) + q + ")";
    return out;
}

void TFrm_TradeFilter::CheckChoices(const QString& sourceMessage, const QString& settlementMessage) {
    CheckDate(BDATE);
    CheckDate(EDATE);
    qx::documents::refuseReversedDates(BDATE, EDATE);
    if (!BSCHK1_1->isChecked() && !BSCHK1_2->isChecked() && !(BSCHK1_3 && BSCHK1_3->isChecked())) {
        DISPINFO(sourceMessage, 5);
        Abort();
    }
    if (!BSCHK2_1->isChecked() && !BSCHK2_2->isChecked()) {
        DISPINFO(settlementMessage, 5);
        Abort();
    }
}

QString TFrm_TradeFilter::StartText() const { return BDATE->Date().toString("yyyy-MM-dd"); }
QString TFrm_TradeFilter::EndNextText() const { return qx::reports::nextDay(EDATE->Date()); }

QString TFrm_TradeFilter::DateDescription() const {
    return "  ●日期:" + BDATE->Date().toString("MM-dd") + " 至 " + EDATE->Date().toString("MM-dd");
}

QString TFrm_TradeFilter::ChosenSources(const QString& receipts, const QString& returns, const QString& pos) const {
    QString sources;
    if (BSCHK1_3 && BSCHK1_3->isChecked()) sources += pos;
    if (BSCHK1_1->isChecked()) sources += receipts;
    if (BSCHK1_2->isChecked()) sources += returns;
    return sources;
}
