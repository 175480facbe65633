#pragma once
// Small screens built on the framework's bases, standing in for module screens in host tests.
#include <QCheckBox>
#include <QLineEdit>

#include "framework/DBGridEh.h"
#include "framework/Frm_Base.h"
#include "framework/Frm_Base_Qry.h"
#include "framework/U_function.h"

namespace qx::test {

// A report listing the warehouses (editable, unlike real reports).
class TQXTESTQRY : public TFrm_Base_Qry {
public:
    explicit TQXTESTQRY(QWidget* owner) : TFrm_Base_Qry(owner) {
        setObjectName("QXTESTQRY");
        SetCaption("测试仓库表");
    }
    void InitForm(const Trecord& rec) override {
        TFrm_Base_Qry::InitForm(rec);
        QrySql = "SELECT CK_ID, CK_NAME FROM d1007 ORDER BY CK_ID";
        GetData();
        DBGridEh->SetReadOnly(false);  // lets scripts add rows to this one
    }
};
inline TQXTESTQRY* QXTESTQRY = nullptr;

// A report with a chart: a number per warehouse, its rows the chart's axis.
class TQXTESTCHART : public TFrm_Base_Qry {
public:
    explicit TQXTESTCHART(QWidget* owner) : TFrm_Base_Qry(owner) {
        setObjectName("QXTESTCHART");
        SetCaption("测试图表");
        SumFields = QStringList{"N"};
    }
    void InitForm(const Trecord& rec) override {
        TFrm_Base_Qry::InitForm(rec);
        Lab_Condition->setText("全部仓库");
        QrySql = "SELECT CK_NAME, LEN(CK_NAME) * 10 + LEN(CK_ID) AS N FROM d1007 ORDER BY CK_ID";
        GetData();
    }
    qx::chart::ChartSpec ChartSpec() const override {
        return {qx::chart::ChartKind::Bars, qx::chart::Axis::Rows, "CK_NAME", {"N"}};
    }
};
inline TQXTESTCHART* QXTESTCHART = nullptr;

// A settings dialog: a text, a tick, OK asks before it keeps them.
class TQXTESTSET : public TFrm_Base_Dialog {
public:
    explicit TQXTESTSET(QWidget* owner) : TFrm_Base_Dialog(owner) {
        setObjectName("QXTESTSET");
        SetCaption("测试设置");
        Edit1 = Panel_Condition->AddEdit("Edit1", "公司名称", 40);
        Chk = Panel_Condition->AddCheckBox("Chk", "启用");
    }
    void InitForm(const Trecord&) { Edit1->setText(CoName); }
    void btn_okClick(QObject* sender) override {
        TFrm_Base_Dialog::btn_okClick(sender);
        if (DISPINFO("是否保存设置?", 2) == "y") {
            savedText = Edit1->text();
            savedChecked = Chk->isChecked();
        }
        SetModalResult(mrOk);
    }
    QLineEdit* Edit1;
    QCheckBox* Chk;
    static inline QString savedText;
    static inline bool savedChecked = false;
};
inline TQXTESTSET* QXTESTSET = nullptr;

}  // namespace qx::test
