#pragma once
// The stocktake summary ("盘点录入数据汇总"): adds up the sheets still counting of one
// warehouse, sets them against the warehouse's stock per style, colour and size, and on OK
// writes the differences as one loss/gain sheet and closes the sheets, in one batch.
// Partial stocktake (the default) lists only what was counted; a full stocktake lists every
// stock row, an uncounted one as a loss of its whole stock.
// Below the summary, count against book: one row per SKU and size the sheet will get, with the
// book stock, the count and the difference, so the clerk sees what the sheet will do first.
#include "framework/Frm_Base.h"

class QRadioButton;
class QTimer;

class TQXCK235_2 : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    explicit TQXCK235_2(QWidget* Owner);
    ~TQXCK235_2() override;

    // Builds and opens the summary for the warehouse of the list's current sheet.
    void InitA(TClientDataSet* list);
    void FormCreate();
    void btn_refClick(QObject* Sender);
    void btn_okClick(QObject* Sender) override;  // generate
    void gtimeTimer(QObject* Sender);
    void AdoQry_TmpAfterScroll(TDataSet* DataSet);
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    void Label6DblClick(QObject* Sender);

    // The summary statement for a warehouse, partial or full.
    static AnsiString SummaryQuery(const AnsiString& warehouse, bool full);
    // The loss/gain sheet's number once generated ("" before).
    AnsiString GeneratedNumber() const { return generated_; }
    AnsiString Warehouse() const { return warehouse_; }

    QRadioButton* RB_Part;  // "部分盘点"
    QRadioButton* RB_All;   // "全盘"
    QPushButton* btn_ref;
    QLabel* Label4;  // "<<-选择一种盘点方式"
    QLabel* Label5;  // "确定 后系统将自动生成损益单"
    QLabel* Label6;  // "所有盘点录入单将不可再进行更改"
    TClientDataSet* AdoQry_Tmp;   // the summary rows
    TDBGridEh* DBGridEh;
    TClientDataSet* AdoQry_Book;  // count against book: the rows the sheet will get
    TDBGridEh* DBGridEh_Book;
    QTimer* gtime;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildSummaryColumns();
    void fillCountAgainstBook();
    bool drawZeroBlank(QPainter* painter, const QRect& rect, const TCellParams& params) const;

    TClientDataSet* list_ = nullptr;
    AnsiString warehouse_;
    AnsiString generated_;
};

extern TQXCK235_2* QXCK235_2;
