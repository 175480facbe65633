#pragma once
// A stock document kind as a description: its tables, captions, head fields, line columns,
// checks, price arithmetic and statement templates. The document list, filter and entry
// screens of documents/common turn a description into the screens' repetitive parts (building
// the head, copying it from the list row, clearing it for a new document, the save batch, the
// list row after a save); a kind's own units hold only what is truly its own.
//
// Statement templates are the statements as the kind sends them, with {placeholders}:
//   {number} {warehouse} {total} {G_SKSTR} {G_UserId} {G_UserName} {discount}
//   {CONTROL}   the text of a head control by its name ({KH_GYS_ID}, {BDATE}, {send_no}, {NOTE})
//   {FIELD}     in line templates, a line field by name, any case ({K_ID}, {s0}, {Smoney}, {NOTE})
// Every value goes through the quoting helper; a placeholder is replaced once, so a typed
// "{number}" stays text.
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

namespace qx::documents {

enum class HeadRole {
    Number,     // Edit1: the document number
    Partner,    // supplier or customer lookup
    Warehouse,  // CK_ID lookup
    Date,       // BDATE
    Lookup,     // delivery, settlement, salesperson lookups
    Text,       // plain edits (send_no, NOTE)
    Changed,    // EDATE label: last changed
    Maker,      // USER_NAME label: who made the document
    Shown,      // a label shown for information: copied from the list row, cleared for a new one
    Heading,    // a caption starting a new row of the head, with no value ("收货填写-->")
};

enum class LookupList { None, Partner, Warehouse, Delivery, Settlement, Salesperson };

struct HeadField {
    QString control;    // object name, list field and placeholder: "KH_GYS_ID"
    QString caption;    // "供 应 商"
    HeadRole role;
    int maxLength = 0;
    QString nameLabel = {};  // the lookup's name label, also a list field: "KG_NAME"
    LookupList list = LookupList::None;
};

enum class LineCheck {
    PositiveQuantities,  // no negative size, a total above 0
    NotAllZero,          // signed quantities; only an all-zero line is refused
};

enum class PriceArithmetic {
    AmountFromPrice,        // SMONEY = STOT × SJ; the amount derives nothing
    PriceAndAmount,         // and SJ = SMONEY / STOT when the amount is typed
    PriceAndAmountWithTag,  // both, and OMONEY = STOT × ODJ
    None,                   // quantities only: nothing is derived
};

enum class TotalFrom {
    AmountField,  // the footer of the column showing SMONEY
    TotalTitle,   // the footer of the column titled "总额"
};

struct LineColumnTitle {
    QString field;
    QString title;
    int tag = 0;
};

struct DocumentKind {
    QString caption;             // "采购进货"
    QString headTable;           // "d8101": the taken-number check
    QString numberCheckCaption;  // caption the number checks report with: "出货单号"
    QString editLocks;           // controls locked in "Edit": "EDIT1,kh_gys_id,ck_id"
    QString partnerTable;        // "" suppliers, "d1102" customers
    bool partnerChecksOnExit = false;
    QString settlementCondition;  // settlement methods offered: "(jy_id<>'2')"
    QList<HeadField> head;        // in screen order

    QString priceLabel;   // title of SJ: "进货价"
    QString amountLabel;  // title of SMONEY: "金额"
    QList<LineColumnTitle> lineTitles;  // titles and tags of further line columns
    QString trailingFields;             // line columns after the total, in order, when not the usual
    bool linesKeepSource = false;       // lines carry the number of the order they came from (NOID)
    LineCheck lineCheck = LineCheck::PositiveQuantities;
    PriceArithmetic arithmetic = PriceArithmetic::AmountFromPrice;
    TotalFrom total = TotalFrom::AmountField;
    bool warehouseFixedByLines = false;  // the warehouse edit is disabled once a line exists
    bool copyAddStartsFresh = false;     // "CopyAdd" clears the head as "Add" does (lines are copied)

    // The save batch: head insert (new) or update (Edit, then the line delete), one insert
    // per line, then the completion and cost-fill statements, in order.
    QString insertHead;
    QString updateHead;
    QString deleteLines;
    QString insertLine;
    QStringList afterLines;
    // List row fields the saved head writes besides the head fields ("TOLMONEY").
    QStringList savedTotals;
    // Fixed values the saved head writes into the list row (field, value): a state shown as
    // text, a link the save cleared.
    QList<QPair<QString, QString>> savedListValues;

    const HeadField* field(HeadRole role) const {
        for (const HeadField& f : head)
            if (f.role == role) return &f;
        return nullptr;
    }
};

// What a document list shows and how it is configured.
struct ListColumn {
    QString field;
    QString title;
    int width = 80;
    bool shown = true;
    bool summed = false;
};

struct DocumentListKind {
    QString caption;
    QString qtyFields, priceFields, moneyFields;
    QString lineQuery;    // "%s" for the quoted number
    QString deleteQuery;  // "%S" for the quoted number
    QList<ListColumn> columns;
};

// The conditions of a document filter besides the date range and the number range.
struct FilterCondition {
    QString control;      // "KH_ID", "CK_ID", "ExtEdit1"
    QString caption;      // "供 应 商"
    QString description;  // "●供应商："
    QString column;       // "d1103.KH_gys_ID"
    LookupList list = LookupList::None;
    QString partnerTable;  // for a partner lookup: "" suppliers, "d1102" customers
    int maxLength = 0;
};

struct DocumentFilterKind {
    QString caption;
    QString headTable;           // "D8101": "(D8101.BDATE>=...)" and "D8101.NOID"
    QString reversedDates = "<开始日期> 不能大于 <结束日期>!";
    QString numberCaption;       // "进货单号"
    QString numberDescription;   // " ●进货单号："
    QList<FilterCondition> conditions;  // in screen and condition order
    QString dateDescription = " ●开单日期:";  // some dialogs write it with a full-width colon
};

}  // namespace qx::documents
