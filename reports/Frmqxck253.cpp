#include "reports/Frmqxck253.h"

#include <QAction>

TQXCK253* QXCK253 = nullptr;
TQXCK253F* QXCK253F = nullptr;

TQXCK253::TQXCK253(QWidget* Owner) : TFrm_MovementReport(Owner, "QXCK253", "进销存汇总表", true) { FormCreate(); }

void TQXCK253::FormCreate() {
    TFrm_Base_Qry::FormCreate();
    Act_Locate->setText("汇总");
    Act_Locate->setToolTip("汇总");
    Act_Locate->setProperty("ImageIndex", 20);
    AddArticleColumns();
    const QList<QPair<QString, QString>> columns{
        {"BeginKc", "期初结存|数量"}, {"BeginKc_mon", "期初结存|成本金额"}, {"TOL_IN", "本期入库|数量"},
        {"TOL_IN_mon", "本期入库|成本金额"}, {"TOL_OUT", "本期出库|数量"}, {"TOL_OUT_mon", "本期出库|成本金额"},
        {"END_KC", "期末结存|数量"}, {"END_KC_mon", "期末结存|成本金额"}};
    for (const auto& [field, title] : columns) DBGridEh->AddColumn(field, title, 70);
    DBGridEh->ColumnsChanged();
}

void TQXCK253::InitForm(const Trecord& rec) {
    QtyFields = "beginkc,tol_in,tol_out,end_kc";
    MoneyFields = "TOL_IN_mon,TOL_OUT_mon,END_KC_mon,BeginKc_mon";
    CostFields = SplitFields(MoneyFields);
    SumFields = SplitFields("beginkc,beginkc_mon,tol_in,tol_in_mon,tol_out,tol_out_mon,end_kc,end_kc_mon");
    QXCK253F = new TQXCK253F(this);
    Start(rec, QXCK253F);
}
