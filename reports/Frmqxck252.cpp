#include "reports/Frmqxck252.h"

#include <QAction>

TQXCK252* QXCK252 = nullptr;
TQXCK252F* QXCK252F = nullptr;

const QStringList TQXCK252::KindFields{"IN3", "IN7", "IN4", "IN5", "IN6", "OU2", "OU10", "OU4", "OU5", "OU6"};

TQXCK252::TQXCK252(QWidget* Owner) : TFrm_MovementReport(Owner, "QXCK252", "进销存分类表", false) { FormCreate(); }

void TQXCK252::FormCreate() {
    TFrm_Base_Qry::FormCreate();
    Act_Locate->setText("汇总");
    Act_Locate->setToolTip("汇总");
    Act_Locate->setProperty("ImageIndex", 20);
    AddArticleColumns();
    DBGridEh->AddColumn("BeginKc", "期初结存", 60);
    const QList<QPair<QString, QString>> columns{
        {"IN3", "本期入库数量|销售退"}, {"IN7", "本期入库数量|POS退"},  {"IN4", "本期入库数量|盘盈"},
        {"IN5", "本期入库数量|调拔进"}, {"IN6", "本期入库数量|采购入"}, {"TOL_IN", "本期入库数量|合计"},
        {"OU2", "本期出库数量|销售出"}, {"OU10", "本期出库数量|POS销售"}, {"OU4", "本期出库数量|盘亏"},
        {"OU5", "本期出库数量|调拔出"}, {"OU6", "本期出库数量|采购退"}, {"TOL_OUT", "本期出库数量|合计"}};
    for (const auto& [field, title] : columns) DBGridEh->AddColumn(field, title, 55)->Footer.ValueType = fvtSum;
    DBGridEh->AddColumn("END_KC", "期末结存", 60);
    DBGridEh->ColumnsChanged();
}

void TQXCK252::InitForm(const Trecord& rec) {
    QtyFields = "beginkc,in1,in2,in3,in4,in5,in6,in7,in8,tol_in,ou1,ou2,ou3,ou4,ou5,ou6,ou7,ou8,tol_out,end_kc";
    SumFields = SplitFields("in1,in2,in3,in4,in5,in6,in7,in8,tol_in,ou1,ou2,ou3,ou4,ou5,ou6,ou7,ou8,ou10,tol_out,end_kc");
    QXCK252F = new TQXCK252F(this);
    Start(rec, QXCK252F);
}

void TQXCK252::AfterQuery() {
    for (const QString& field : KindFields) {
        TColumnEh* c = DBGridEh->ColumnByField(field);
        if (!c) continue;
        c->Visible = DBGridEh->GetSumValue(field) > 0 || !Filter->HideEmptyKinds;
    }
    DBGridEh->ColumnsChanged();
}
