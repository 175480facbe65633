#include "labels/Frmqxck299f.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "framework/DBGridEh.h"
#include "labels/LabelList.h"
#include "labels/TagSource.h"

TQXCK299F* QXCK299F = nullptr;

AnsiString TQXCK299F::StyleQuery(const AnsiString& style) {
    const QString k = SqlStr(style);
    return "SELECT D1800.*, D1006.*,T.C,d1009.pp_name FROM D1800 INNER JOIN D1006 ON D1800.M_ID = D1006.M_ID inner "
           "join d1009 on d1800.pp_id=d1009.pp_id LEFT JOIN  (SELECT TOP 1 K_ID,COL_ID AS C FROM D1804 WHERE k_id='" +
           k + "' ) T ON D1800.K_ID=T.K_ID WHERE (d1800.k_id='" + k + "')";
}

TQXCK299F::TQXCK299F(QWidget* Owner) : TFrm_Sys_Filter(Owner) {
    setObjectName("QXCK299F");
    SetCaption("按款号制作吊牌标签");
    EDIT1 = Panel_Condition->AddLinkEdit("EDIT1", "款    号", 17, "WL_NAME");
    WL_NAME = EDIT1->NameLabel();
    PP_NAME = Panel_Condition->AddLabel("PP_NAME", "品牌");
    PFJ = Panel_Condition->AddLabel("PFJ", "吊牌价");

    AdoQry_Work2 = new TClientDataSet(this);
    AdoQry_Main = new TClientDataSet(this);
    AdoQry_Main->setObjectName("AdoQry_Main");
    DBGridEh = new TDBGridEh(this, "DBGridEh");
    DBGridEh->SetDataSet(AdoQry_Main);
    MainLayout()->insertWidget(MainLayout()->indexOf(Panel_Condition) + 1, DBGridEh, 1);

    auto* buttons = new QHBoxLayout;
    Button2 = qx::labels::AddTagButton(this, "Button2", "生成标签", qx::labels::MakeTags);
    Button3 = qx::labels::AddTagButton(this, "Button3", "生成并关闭", qx::labels::MakeTagsAndClose);
    Button4 = qx::labels::AddTagButton(this, "Button4", "从进货单制作", qx::labels::SwitchSource);
    for (QPushButton* b : {Button2, Button3, Button4}) buttons->addWidget(b);
    buttons->addStretch(1);
    MainLayout()->insertLayout(MainLayout()->indexOf(DBGridEh) + 1, buttons);
    btn_ok->hide();  // F2 makes the tags and closes, as Button3
    btn_cancel->setText("关闭");
    resize(860, 480);
    FormCreate();
}

TQXCK299F::~TQXCK299F() {
    DBGridEh->ClearHooks();
    if (QXCK299F == this) QXCK299F = nullptr;
}

void TQXCK299F::FormCreate() {
    TFrm_Sys_Filter::FormCreate();
    StyleLink = new TQX_LINK_K(this);
    StyleLink->init(EDIT1);
    StyleLink->OnPicked = [this](const QString&, const QString&) { qx::guard([this] { EDIT1Exit(EDIT1); }); };
    qx::connectGuarded(EDIT1, &QLineEdit::editingFinished, this, [this] {
        if (EDIT1->text() != loadedStyle_) EDIT1Exit(EDIT1);
    });
    for (QPushButton* b : {Button2, Button3, Button4})
        qx::connectGuarded(b, &QPushButton::clicked, this, [this, b] { Button2Click(b); });
}

void TQXCK299F::InitA(TClientDataSet* list) { list_ = list; }

// The style typed: its data, its size titles and every colour with counts 0.
void TQXCK299F::EDIT1Exit(QObject*) {
    const QString style = EDIT1->text();
    loadedStyle_ = style;
    if (style.trimmed().isEmpty()) {
        if (AdoQry_Main->Active()) AdoQry_Main->EmptyDataSet();
        for (QLabel* l : {WL_NAME, PP_NAME, PFJ}) l->clear();
        return;
    }
    opensql(AdoQry_Work2, FuncNo, StyleQuery(style), 0, 0, {}, {}, false, "1");
    if (AdoQry_Work2->IsEmpty()) {
        if (AdoQry_Main->Active()) AdoQry_Main->EmptyDataSet();
        for (QLabel* l : {WL_NAME, PP_NAME, PFJ}) l->clear();
        DISPINFO("不存在的款号!请重新输入!", 5);
        EDIT1->setFocus();
        EDIT1->selectAll();
        Abort();
    }
    WL_NAME->setText(AdoQry_Work2->FieldByName("WL_NAME")->AsString());
    PP_NAME->setText(AdoQry_Work2->FieldByName("pp_name")->AsString());
    PFJ->setText(AdoQry_Work2->FieldByName("PFJ")->DisplayText());
    opensql(AdoQry_Main, FuncNo, qx::labels::StyleLinesSql(style), 0, 0, {}, {}, false, "1");
    QStringList sizes;
    for (int k = 0; k < 10; ++k) sizes << AdoQry_Work2->FieldByName("M" + QString::number(k))->AsString();
    qx::labels::SetupSourceGrid(DBGridEh, AdoQry_Main);
    TFrm_Base_Panel::SetSizeTitles(DBGridEh, sizes);
}

void TQXCK299F::Button2Click(QObject* Sender) {
    const int tag = qx::labels::ButtonTag(Sender);
    if (tag == qx::labels::SwitchSource) {
        SetModalResult(qx::labels::SwitchSource);
        return;
    }
    if (EDIT1->text().trimmed().isEmpty()) {
        DISPINFO("请输入款号!", 5);
        EDIT1->setFocus();
        Abort();
    }
    if (EDIT1->text() != loadedStyle_) EDIT1Exit(EDIT1);
    if (list_ && AdoQry_Main->Active()) qx::labels::AppendTags(AdoQry_Main, list_);
    if (tag == qx::labels::MakeTagsAndClose) SetModalResult(mrOk);
}

void TQXCK299F::btn_okClick(QObject*) { Button2Click(Button3); }
