#include "period/Frmqxck342.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "period/Frmqxck342_1.h"
#include "period/Frmqxck342_2.h"
#include "framework/ProgressDialog.h"
#include "period/PeriodCommon.h"

TQXCK342* QXCK342 = nullptr;

const char* const TQXCK342::CloseStatement =
    "UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) ";
const char* const TQXCK342::ReverseCloseStatement =
    "UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, - 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) ";
const char* const TQXCK342::PeriodQuery = "select CK_END_DATE from sys_co";
const char* const TQXCK342::BalanceQuery = "select *  from V_CHECKKC";
const char* const TQXCK342::CostRecalculation = "EXEC SYS_CBKS";

namespace {

QLabel* note(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    return label;
}

// Runs one step; when it fails, says that the action failed before the framework reports why.
template <class Step>
void reportFailure(const QString& action, Step step) {
    try {
        step();
    } catch (const EDatabaseError&) {
        DISPINFO(action + "->>操作失败!", 5);
        throw;
    }
}

}  // namespace

TQXCK342::TQXCK342(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    setObjectName("QXCK342");
    SetCaption("库存期间月结");
    FuncNo = "242";
    // The form parameters: the function code first (the first argument of every data operation).
    SetFormParam("242", "", "", "", "", "");

    titBDATE = Panel_Condition->AddLabel("titBDATE", QString());
    titBDATE->setText("当前进销存月份为:");
    BDATE = Panel_Condition->AddLabel("BDATE", QString());
    Panel_Condition->NewRow();
    titEDATE = Panel_Condition->AddLabel("titEDATE", QString());
    titEDATE->setText("-->>月结后将转入：");
    EDATE = Panel_Condition->AddLabel("EDATE", QString());

    auto* notes = new QGroupBox(this);
    auto* notesLayout = new QVBoxLayout(notes);
    for (const char* text : {"注意事项：", "1、月结后期间的单据将不可以进行任何（新增，修改，删除）操作",
                             "2、如发现上期的单据有错误，需要更改，请进行反结后再操作"})
        notesLayout->addWidget(note(text, notes));
    MainLayout()->insertWidget(1, notes);

    auto* costs = new QGroupBox(this);
    auto* costsLayout = new QVBoxLayout(costs);
    for (const char* text : {"成本重算：", "1、如关心成本及利润的处理，可进行成本重算，否则请直接跳过",
                             "2、单据经常改动，有先填写出库的单据，然后再填写入库的单据",
                             "3、如产生负库存，请按系统提示修改单据日期后再重新重算",
                             "4、成本重算是按款号(不分色码)，移动加权法计算",
                             "5、重算需要进行大量的运算，如界面暂时无响应请等待。"})
        costsLayout->addWidget(note(text, costs));
    bsSkinButton1 = new QPushButton("开始进行成本重算", costs);
    bsSkinButton1->setObjectName("bsSkinButton1");
    costsLayout->addWidget(bsSkinButton1);
    MainLayout()->insertWidget(2, costs);

    btn_ok->setText("月结(F2)");
    btn_c = new QPushButton("反结", this);
    btn_c->setObjectName("btn_c");
    bth_kcchk = new QPushButton("帐目平衡检查", this);
    bth_kcchk->setObjectName("bth_kcchk");
    if (auto* buttons = qobject_cast<QHBoxLayout*>(MainLayout()->itemAt(MainLayout()->count() - 1)->layout())) {
        buttons->insertWidget(1, bth_kcchk);
        buttons->insertWidget(buttons->indexOf(btn_ok) + 1, btn_c);
    }
    btn_cancel->setText("退出");
    resize(560, 400);

    AdoQry_Tmp = new TClientDataSet(this);
    AdoQry_Tmp->setObjectName("AdoQry_Tmp");
    FormCreate();
}

void TQXCK342::FormCreate() {
    TFrm_Base_Dialog::FormCreate();
    qx::connectGuarded(btn_c, &QPushButton::clicked, this, [this] { btn_okClick(btn_c); });
    qx::connectGuarded(bth_kcchk, &QPushButton::clicked, this, [this] { bth_kcchkClick(bth_kcchk); });
    qx::connectGuarded(bsSkinButton1, &QPushButton::clicked, this, [this] { bsSkinButton1Click(bsSkinButton1); });
}

AnsiString TQXCK342::MonthLabel(const QDate& date) {
    return QString::number(date.toString("MM").toInt()) + "月份";
}

void TQXCK342::InitForm(const Trecord& rec) {
    // The host's rights flag decides until the period has been read; reading it enables the
    // close (whether the OK itself is refused is the framework's business).
    btn_ok->setEnabled((rec.HostFlags & HostFlagMayWrite) != 0);
    opensql(AdoQry_Tmp, FormParam[0], PeriodQuery, 0, 0, {}, {}, false, "1");
    const QDate end = AdoQry_Tmp->IsEmpty() ? QDate() : AdoQry_Tmp->FieldByName("CK_END_DATE")->AsDateTime().date();
    BDATE->setText(end.isValid() ? MonthLabel(end) : QString());
    EDATE->setText(end.isValid() ? MonthLabel(end.addMonths(1)) : QString());
    btn_ok->setEnabled(true);
}

void TQXCK342::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_F2) {
        Key = 0;
        if (btn_ok->isEnabled()) btn_ok->click();
        return;
    }
    TFrm_Base_Dialog::FormKeyDown(Sender, Key, Shift);
}

void TQXCK342::btn_okClick(QObject* Sender) {
    TFrm_Base_Dialog::btn_okClick(Sender);
    const bool reverse = Sender && Sender->objectName() == "btn_c";
    const AnsiString statement = reverse ? ReverseCloseStatement : CloseStatement;
    const AnsiString action = reverse ? "反月结" : "月结";
    AnsiString result;
    reportFailure(action, [&] { result = ExecSql(FormParam[0], action, "Edit", statement, 0, false, true, false, true); });
    if (result == "Y") {
        InitForm(Trecord());
        DISPINFO(action + "->>操作完成!", 5);
    } else {
        DISPINFO(action + "->>操作失败!", 5);
    }
}

void TQXCK342::bth_kcchkClick(QObject*) {
    TProgressRun::Run(this, "帐目平衡检查", [this] {
        opensql(AdoQry_Tmp, FormParam[0], BalanceQuery, 0, 0, {}, {}, false, "1");
    });
    if (AdoQry_Tmp->IsEmpty()) {
        DISPINFO("帐目平衡!", 5);
        return;
    }
    QXCK342_1 = new TQXCK342_1(this);
    QXCK342_1->InitForm(AdoQry_Tmp);
    QXCK342_1->ShowModal();
    QXCK342_1->Release();
}

void TQXCK342::bsSkinButton1Click(QObject*) {
    const AnsiString action = "全部成本重算";
    reportFailure(action, [&] {
        TProgressRun::Run(this, action, [this] {
            opensql(AdoQry_Tmp, FormParam[0], CostRecalculation, 0, 0, {}, {}, false, "1");
        });
    });
    if (!AdoQry_Tmp->IsEmpty()) {
        QXCK342_2 = new TQXCK342_2(this);
        QXCK342_2->SetFormParam(FormParam[0], FormParam[1], FormParam[2], FormParam[3], FormParam[4], FormParam[5]);
        QXCK342_2->INIT(AdoQry_Tmp);
        QXCK342_2->ShowModal();
        QXCK342_2->Release();
        return;
    }
    InitForm(Trecord());
    DISPINFO(action + "->>操作完成!", 5);
}
