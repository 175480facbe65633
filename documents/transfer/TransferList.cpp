#include "documents/transfer/TransferList.h"

#include <QHash>

#include "framework/DBGridEh.h"
#include "framework/DataSet.h"
#include "framework/Frm_Base_Entry_Head.h"
#include "framework/SizeMatrix.h"

using namespace qx::documents;

namespace qx::transfer {

QString lineQuery(bool arrival) {
    return QString("SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, D8303A.S0, D8303A.S1, "
                   "D8303A.S2, D8303A.S3, D8303A.S4,D8303A.S5, D8303A.S6, D8303A.S7, D1006.M9, D1006.M8, D1006.M7, "
                   "D1006.M6,D1006.M5, D1006.M4, D1006.M3, D1006.M2, D1006.M1, D1006.M0, D8303A.S9,D8303A.S8,") +
           (arrival ? "  " : "") +
           "D8303A.SMONEY,D8303A.SJ,D8303A.NOTE, D8303A.Y0,D8303A.Y1,D8303A.Y2,D8303A.Y3,D8303A.Y4,D8303A.Y5,"
           "D8303A.Y6,D8303A.Y7,D8303A.Y8,D8303A.Y9 FROM D1801 INNER JOIN D8303A ON D1801.WL_ID = D8303A.WL_ID "
           "INNER JOIN D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN D1006 ON D1800.M_ID = D1006.M_ID INNER JOIN D1005 "
           "ON D1801.COL_ID = D1005.COL_ID WHERE (D8303A.NOID =%s)";
}

DocumentListKind listKind(const QString& caption, const QString& lines) {
    return DocumentListKind{
        caption,
        "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT",
        "dj",
        "money",
        lines,
        "delete from D8303 Where (noid=%s)",
        {
            {"NOID", "调拨单号", 100},
            {"CK_ID", "调出仓号", 50, false},
            {"CK_NAME", "调出仓库", 90},
            {"CK_ID_IN", "调入仓号", 50, false},
            {"CK_NAME_IN", "调入仓库", 90},
            {"BDATE", "开单日期", 80},
            {"EDATE", "最后更改", 80},
            {"STRPARAM1", "经手", 70},
            {"SL", "数量", 60},
            {"SMON", "金额", 80, true, true},
            {"Y", "收货", 40, false},
            {"Y_WC", "收货误差数量", 80},
            {"YNAME", "收货人", 70},
            {"YDATE", "收货日期", 80},
            {"Y_NOTE", "收货备注", 120},
            {"USER_ID", "用户号", 60, false},
            {"USER_NAME", "开单", 70},
            {"SK", "审批", 60},
            {"SDATE", "审批日期", 80},
            {"NOTE", "备注", 150},
        },
    };
}

const DocumentFilterKind& filterKind(const QString& caption) {
    static QHash<QString, DocumentFilterKind> kinds;
    auto it = kinds.find(caption);
    if (it == kinds.end())
        it = kinds.insert(caption, DocumentFilterKind{
                                       caption,
                                       "D8303",
                                       "<开始日期> 不能大于 <结束日期>!",
                                       "调拔单号",
                                       " ●调拔单号:",
                                       {
                                           {"CK_ID", "调出仓库", " ●调出仓库=", "d1007.ck_ID", LookupList::Warehouse, "", 4},
                                           {"CK_ID_IN", "调入仓库", " ●调入仓库=", "d1007_1.ck_ID", LookupList::None, "", 4},
                                       },
                                   });
    return it.value();
}

void addReceiptColumns(TDBGridEh* grid, const TClientDataSet* lines, bool typed) {
    for (int i = 0; i < qx::sizes::Count; ++i) {
        const QString field = "Y" + QString::number(i);
        if (!lines->FindField(field) || grid->ColumnByField(field)) continue;
        TColumnEh* c = grid->AddColumn(field, "收货填写|-", 42);
        c->Alignment = Qt::AlignRight | Qt::AlignVCenter;
        c->Footer.ValueType = fvtSum;
        c->ReadOnly = !typed;
        const TColumnEh* size = grid->ColumnByField(qx::sizes::quantityField(i));
        c->Visible = size && size->Visible;
    }
    if (lines->FindField("YTOT") && !grid->ColumnByField("YTOT")) {
        TColumnEh* c = grid->AddColumn("YTOT", "收货填写|合计", 50);
        c->Alignment = Qt::AlignRight | Qt::AlignVCenter;
        c->Footer.ValueType = fvtSum;
        c->ReadOnly = true;
    }
    grid->ColumnsChanged();
}

void showReceiptsInLines(TFrm_Base_Entry_Head* list) {
    TDBGridEh* lines = list->DBGridEh_Detail;
    if (lines->ColumnCount() == 0) return;  // built with the first lines
    if (TColumnEh* amount = lines->ColumnByField("SMONEY")) {
        amount->Footer.ValueType = fvtSum;
        amount->DisplayFormat = "0.00";
    }
    addReceiptColumns(lines, list->AdoQry_Detail, false);
}

void blankZeroDiscrepancy(const TClientDataSet* heads, TColumnEh* column, TCellParams& params) {
    if (!column || column->FieldName.compare("Y_WC", Qt::CaseInsensitive) != 0) return;
    const int index = heads->FieldIndex("Y_WC");
    if (index < 0 || params.Row < 0 || params.Row >= heads->RecordCount()) return;
    bool ok = false;
    if (heads->CellValue(params.Row, index).toDouble(&ok) == 0 && ok) params.Text = "";
}

}  // namespace qx::transfer
