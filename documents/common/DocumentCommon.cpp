#include "documents/common/DocumentCommon.h"

#include <QLabel>
#include <QWidget>

#include "framework/Controls.h"
#include "framework/DBGridEh.h"
#include "framework/Frm_Base.h"
#include "framework/LinkForms.h"
#include "framework/SizeMatrix.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"

namespace qx::documents {

QString warehouseRightsJoin(const QString& warehouseTable) {
    if (!G_CHKCK) return {};
    return " sys_USER_CK ON " + warehouseTable + ".CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='" +
           SqlStr(G_UserId) + "') INNER JOIN ";
}

void handFunctionCode(TFrm_Base* screen, const QString& funcNo) {
    screen->FuncNo = funcNo;
    for (TFrm_Sys_LINK* link : screen->findChildren<TFrm_Sys_LINK*>()) link->FuncNo = funcNo;
}

void removeApprovalColumns(TDBGridEh* grid) {
    if (G_SK) return;
    for (int i = grid->ColumnCount() - 1; i >= 0; --i) {
        const QString title = grid->Columns(i)->Title;
        if (title == "审批" || title == "审批日期") grid->DeleteColumn(i);
    }
    grid->ColumnsChanged();
}

QColor unapprovedColor() {
    // The colour value is written blue-green-red: 0xFFFF80 is red 0x80, green 0xFF, blue 0xFF.
    constexpr unsigned value = 0xFFFF80;
    return QColor(int(value & 0xFF), int((value >> 8) & 0xFF), int((value >> 16) & 0xFF));
}

void tintUnapproved(const TClientDataSet* heads, TCellParams& params) {
    if (!G_SK || !heads || !heads->Active()) return;
    const int t = heads->FieldIndex("t");
    if (t < 0 || params.Row < 0 || params.Row >= heads->RecordCount()) return;
    const QVariant state = heads->CellValue(params.Row, t);
    if (!state.isNull() && state.toInt() == 0) params.Background = unapprovedColor();
}

QList<ListColumn> counterpartyListColumns(const CounterpartyTitles& titles, bool deliveryNote) {
    QList<ListColumn> columns{
        {"NOID", "单号", 100},
        {"KH_GYS_ID", titles.code, 70, false},
        {"KG_NAME", titles.name, 110},
        {"YW_ID", "业务员代号", 60, false},
        {"YW_NAME", "业务员", 70},
        {"CK_ID", "仓库号", 50, false},
        {"CK_NAME", "仓库", 90},
        {"BDATE", "开单日期", 90},
        {"EDATE", "最后更改", 90},
        {"JY_ID", "结算代号", 50, false},
        {"JY_NAME", "结算方式", 80},
    };
    if (deliveryNote) columns.append({"SEND_NO", "送货单号", 100});
    columns.append({
        {"SEND_ID", titles.deliveryCode, 50, false},
        {"SEND_NAME", titles.delivery, 70},
        {"USER_ID", "用户号", 60, false},
        {"USER_NAME", "开单", 70},
        {"SK", "审批", 60},
        {"SDATE", "审批日期", 90},
        {"NOTE", "备注", 160},
    });
    return columns;
}

QString skuCompletion(const QString& t) {
    return " INSERT INTO D1801 SELECT " + t + ".WL_ID, " + t + ".K_ID, " + t + ".COL_ID FROM " + t +
           " LEFT OUTER JOIN D1801 ON " + t + ".WL_ID = D1801.WL_ID WHERE (D1801.WL_ID IS NULL) AND (" + t +
           ".NOID='{number}');";
}

QString costFill(const QString& t) {
    return "UPDATE " + t + " SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M WHERE (" + t +
           ".K_ID=M.K_ID) AND (" + t + ".NOID='{number}');";
}

QString counterpartyHeadInsert(const QString& t) {
    return "INSERT INTO " + t +
           "(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,YW_ID,JY_ID, USER_ID, NOTE,TOLMONEY) VALUES ('{G_SKSTR}','{number}',"
           "'{KH_GYS_ID}','{warehouse}','{BDATE}','{SEND_ID}','{YW_ID}','{JY_ID}','{G_UserId}','{NOTE}','{total}');";
}

QString counterpartyHeadUpdate(const QString& t) {
    return "UPDATE " + t +
           " SET EDATE=GETDATE(), KH_GYS_ID='{KH_GYS_ID}',CK_ID='{warehouse}',BDATE='{BDATE}',SEND_ID='{SEND_ID}',"
           "YW_ID='{YW_ID}',JY_ID='{JY_ID}',USER_ID='{G_UserId}',NOTE='{NOTE}',TOLMONEY='{total}' WHERE noid='{number}';";
}

QString lineInsertWithZeroCost(const QString& t) {
    return "INSERT INTO " + t +
           "  VALUES ('{number}','{K_ID}{COL_ID}','{K_ID}','{COL_ID}','{warehouse}','{s0}','{s1}','{s2}','{s3}','{s4}',"
           "'{s5}','{s6}','{s7}','{s8}','{s9}',0,0,'{Sj}','{Smoney}','{NOTE}');";
}

QString dayCountText(const QDate& from, const QDate& to) {
    return "(" + QString::number(from.daysTo(to) + 1) + "天)";
}

QString shortDate(const QDate& date) { return date.toString("MM-dd"); }

void updateDayCount(const TDateEdit* from, const TDateEdit* to, QLabel* label) {
    const QString emptyMask = "    -  -  ";
    if (!from || !to || !label) return;
    if (from->Text() == emptyMask || to->Text() == emptyMask || from->Text().trimmed().isEmpty() ||
        to->Text().trimmed().isEmpty())
        return;
    label->setText(dayCountText(from->Date(), to->Date()));
}

void refuseReversedDates(TDateEdit* from, TDateEdit* to, const QString& message) {
    if (from->Date() <= to->Date()) return;
    DISPINFO(message, 5);
    from->setFocus();
    Abort();
}

void appendNumberRange(QString& condition, QString& description, const QString& label, const QString& column,
                       const QString& from, const QString& to) {
    const QString lower = from.trimmed();
    const QString upper = to.trimmed();
    if (lower.isEmpty() && upper.isEmpty()) return;
    description += label + lower + " 至 " + upper;
    if (!lower.isEmpty()) condition += "  AND (" + column + ">='" + SqlStr(lower) + "')";
    if (!upper.isEmpty()) condition += "  AND (" + column + "<='" + SqlStr(upper) + "')";
}

bool closeFirstVisiblePickList(std::initializer_list<TFrm_Sys_LINK*> lists) {
    for (TFrm_Sys_LINK* list : lists) {
        if (list && list->Visible()) {
            list->Close();
            return true;
        }
    }
    return false;
}

int firstLineWithBadQuantities(const TClientDataSet* lines) {
    const int total = lines->FieldIndex("STOT");
    for (int row = 0; row < lines->RecordCount(); ++row) {
        for (const QString& size : qx::sizes::quantityFields()) {
            const int s = lines->FieldIndex(size);
            if (s >= 0 && lines->CellValue(row, s).toDouble() < 0) return row;
        }
        if (total < 0 || !(lines->CellValue(row, total).toDouble() > 0)) return row;
    }
    return -1;
}

int firstLineWithAllSizesZero(const TClientDataSet* lines) {
    for (int row = 0; row < lines->RecordCount(); ++row) {
        bool allZero = true;
        for (const QString& size : qx::sizes::quantityFields()) {
            const int s = lines->FieldIndex(size);
            allZero = allZero && (s < 0 || lines->CellValue(row, s).toDouble() == 0);
        }
        if (allZero) return row;
    }
    return -1;
}

QString lineText(const TClientDataSet* lines, int row, const QString& field) {
    TClientDataSet::RowScope scope(lines, row);
    return lines->FieldByName(field)->AsString();
}

void checkTypedCodes(QWidget* panel) {
    for (TLinkEdit* edit : panel->findChildren<TLinkEdit*>()) {
        if (!edit->isModified() || !edit->LinkForm()) continue;
        edit->CheckId();  // reports, focuses and aborts for an unknown code
        edit->setModified(false);
    }
}

}  // namespace qx::documents
