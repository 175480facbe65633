#pragma once
// What the purchase and sales summary and detail reports share: the grouping items of the
// summary (rows of sys_GROUP) turned into the select and group lists, the settlement piece of a
// block, the temporary warehouse set around the grouped select, and the condition dialog's
// common part (date range, data sources, settlement kinds, partner, salesperson, warehouse and
// style filters with their checks).
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <vector>

#include "framework/Controls.h"
#include "framework/Frm_Base.h"

class QToolButton;
class TFrm_Sys_LINK_CK;

namespace qx::reports {

// The line break inside the report statements.
inline const QString kBreak = QStringLiteral("\r\n");

enum class DateGrouping { Day, Month, Year, None };

// One grouping item: title (column alias), expression, class ("S" summed, else a dimension),
// and whether the chosen combination includes it.
struct GroupItem {
    QString name;
    QString sql;
    QString cls;
    bool chosen = false;
};

struct GroupLists {
    QString select = "select ";
    QString group = "group by ";
};

// The select and group lists of a summary. bySize: the colour/size breakdown ("区分"), which
// skips the article items (WL_ID, WL_NAME, WL_GG, DW_NAME) except those in `keptArticleItems`
// and brings its own article and size columns.
GroupLists groupLists(DateGrouping dates, const std::vector<GroupItem>& items, bool bySize,
                      const QStringList& keptArticleItems = {});

// "SELECT CK_ID INTO #TCK  FROM sys_USER_CK WHERE (user_id='{user}');" with warehouse rights
// enforced, else "SELECT CK_ID INTO #TCK  FROM D1007;".
QString warehouseSet();

// The one batch: warehouse set, the select list with its " from ( … ) TMP ", a line break, the
// group list, the drop of the warehouse set.
QString summaryBatch(const GroupLists& lists, const QString& rowSet);

// The settlement condition of a block: none when both kinds are chosen; non-cash only
// " and ({table}.jy_id='{code}')", cash only " and ({table}.jy_id<>'{code}')". doubled: the
// quotes of a statement passed as a text argument.
QString settlementPiece(const QString& table, const QString& nonCashCode, bool cash, bool nonCash, bool doubled);

// One document block of a detail statement, whose text travels as an argument of the detail
// procedure (quotes doubled): the lines of `head`/`line` with the chosen dimension's oid/oname,
// sizes (negated for returns), the price and amount columns `money` (with their trailing comma),
// the partner table, the settlement piece, the filters and the date range.
struct DetailBlock {
    QString kind;        // row kind: "0" receipts and sales tickets, "2" returns
    QString head;        // "D8101"
    QString line;        // "D8101A"
    QString partner;     // "D1103" suppliers, "D1102" customers
    bool negated = false;
    QString money;
    QString settlement;
    QString styleJoin = {};  // a table joined after the styles, ending " INNER JOIN " (brands)
};
QString detailBlock(const DetailBlock& block, const QString& oid, const QString& oname, const QString& conditions,
                    const QString& start, const QString& endNext);
// The ten size columns of a detail line: "L.S0, L.S1, … L.S8,L.S9", negated as "0-L.S0 as S0".
QString detailSizes(const QString& line, bool negated);
// The warehouse rights join of a detail block (" sys_USER_CK ON … INNER JOIN "), empty when
// rights are not enforced.
QString detailRights();
// The detail procedure call over the blocks' union, ordered by dimension, date and number.
QString detailCall(const QString& blocks);

}  // namespace qx::reports

// The condition dialog's common part. Subclasses add their own choices and run buttons.
class TFrm_TradeFilter : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    struct Kind {
        QString partnerCaption;  // "供 应 商"
        QString partnerTable;    // lookup table: "d1103" suppliers, "d1102" customers
        QString partnerColumn;   // "D1103.KH_GYS_ID"
        QString receiptsCaption;  // "进货"
        QString returnsCaption;   // "退货"
        QString posCaption = {};  // a third data source ("POS"); none when empty
    };
    TFrm_TradeFilter(QWidget* Owner, const QString& name, const QString& caption, const Kind& kind);

    void InitForm() override;
    void BDATEChange(QObject* Sender);
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;

    // The filter conditions in the order partner, style, salesperson, warehouse, each only when
    // its edit is not empty after trimming. doubled: quotes doubled once more (a statement passed
    // as a text argument).
    QString Conditions(const QString& styleColumn, bool doubled) const;
    // The checks before a statement: reversed dates, no data source, no settlement kind; each
    // shows its message and aborts (the dialog stays open).
    void CheckChoices(const QString& sourceMessage, const QString& settlementMessage);
    // "{start}" and "{end + 1 day}" of the date range.
    QString StartText() const;
    QString EndNextText() const;
    // "  ●日期:" + start (MM-DD) + " 至 " + end (MM-DD)
    QString DateDescription() const;
    // The chosen data sources for the description: point of sale first, then receipts, returns
    // ("POS销售/销售开单/销售退货/").
    QString ChosenSources(const QString& receipts, const QString& returns, const QString& pos = {}) const;
    // The money columns are selected (the user may see amounts); the report sets it.
    QString MoneyRight = "1";

    QString SqlText;  // the statement of the last OK

    TDateEdit* BDATE;
    TDateEdit* EDATE;
    QLabel* titDATE;
    QToolButton* btn_dateset;
    QCheckBox* BSCHK1_1;
    QCheckBox* BSCHK1_2;
    QCheckBox* BSCHK1_3 = nullptr;  // point-of-sale receipts, when the kind has them
    QCheckBox* BSCHK2_1;
    QCheckBox* BSCHK2_2;
    TLinkEdit* KH_ID;
    QLabel* KG_NAME;
    TLinkEdit* YW_ID;
    QLabel* YW_NAME;
    TLinkEdit* CK_ID;
    QLabel* CK_NAME;
    TLinkEdit* wl_id;
    QLabel* wl_name;

protected:
    // Adds a row of run buttons to the dialog; each calls `run` with its tag (1-based).
    void AddRunButtons(const QStringList& captions, const std::function<void(int)>& run);
    Kind kind_;
    TFrm_Sys_LINK_CK* warehouseLink_ = nullptr;
};
