#include "setup/Frmqxcks02_1.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <vector>

#include "framework/DBGridEh.h"

TQXCKS02_1* QXCKS02_1 = nullptr;

namespace {
const char* const kFields[] = {"K_ID", "WL_NAME", "CLASS_ID", "CLASS_NAME", "tj", "DJ_VIP", "dj"};
}

AnsiString TQXCKS02_1::AvailableQuery(const AnsiString& ckId) {
    const AnsiString ck = SqlStr(ckId);
    return "SELECT D1800.K_ID, D1800.WL_NAME, D1004.CLASS_ID, D1004.CLASS_NAME,0.00 as tj,0.00 AS DJ_VIP ,d1800.pfj as "
           "dj FROM D1800 INNER JOIN D1004 ON D1800.CLASS_ID = D1004.CLASS_ID INNER JOIN  ( SELECT  D1800.K_ID FROM "
           "D1800 INNER JOIN D1801 ON D1800.K_ID = D1801.K_ID INNER JOIN D1802 ON D1801.WL_ID = D1802.WL_ID AND "
           "D1802.CK_ID ='" +
           ck + "' GROUP BY D1800.K_ID ) T ON D1800.K_ID=T.K_ID  LEFT OUTER JOIN D704A ON D1800.K_ID = D704A.K_ID AND "
                "D704A.CK_ID='" +
           ck + "'WHERE (D704A.K_ID IS NULL) ORDER BY D1004.CLASS_ID, D1800.K_ID";
}

AnsiString TQXCKS02_1::ChosenQuery(const AnsiString& ckId, int row) {
    return "SELECT D1800.K_ID, D1800.WL_NAME, D1004.CLASS_ID, D1004.CLASS_NAME,D704A.DJ as tj,D704A.DJ_VIP,d1800.pfj as "
           "dj  FROM D1800 INNER JOIN  D704A ON D1800.K_ID = D704A.K_ID AND D704A.CK_ID='" +
           SqlStr(ckId) + "' INNER JOIN D1004 ON D1800.CLASS_ID = D1004.CLASS_ID WHERE (D704A.I =" +
           QString::number(row) + ")";
}

TQXCKS02_1::TQXCKS02_1(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    setObjectName("QXCKS02_1");
    SetCaption("方案款号选择");
    Panel_Condition->hide();
    AdoQry_1 = new TClientDataSet(this);
    AdoQry_1->setObjectName("AdoQry_1");
    AdoQry_2 = new TClientDataSet(this);
    AdoQry_2->setObjectName("AdoQry_2");
    auto* note = new QLabel("只列出本仓库的款号，如果款号已参与其他方案将不能参加本方案(即列表中不显示)");
    note->setObjectName("Lab_Note");
    MainLayout()->insertWidget(0, note);
    auto* box = new QWidget;
    auto* h = new QHBoxLayout(box);
    GRID1 = TDBGridEh::CreateBrowseGrid(box, AdoQry_1);
    GRID1->setObjectName("GRID1");
    GRID2 = new TDBGridEh(box, "GRID2");
    GRID2->SetDataSet(AdoQry_2);
    auto* buttons = new QWidget(box);
    auto* v = new QVBoxLayout(buttons);
    const char* captions[6] = {"增加  > ", "删除  <", "所有该类别 >>", "所有该类别 <<", "全部 >>", "全部 <<"};
    for (int i = 0; i < 6; ++i) {
        auto* b = new QPushButton(captions[i], buttons);
        b->setObjectName("btn" + QString::number(i + 1));
        v->addWidget(b);
        MoveButtons[size_t(i)] = b;
        qx::connectGuarded(b, &QPushButton::clicked, this, [this, i] { btn_Click(i + 1); });
    }
    v->addStretch();
    h->addWidget(GRID1, 1);
    h->addWidget(buttons);
    h->addWidget(GRID2, 1);
    MainLayout()->insertWidget(1, box, 1);
    GRID1->OnDblClick = [this] { qx::guard([this] { GRID1DblClick(); }); };
    GRID2->OnDblClick = [this] { qx::guard([this] { GRID2DblClick(); }); };
    resize(900, 520);
    FormCreate();
}

void TQXCKS02_1::setColumns(TDBGridEh* grid, bool values) {
    struct Column {
        const char* field;
        const char* title;
        int width;
    };
    const QString band = Row == 1 ? "特价" : "固定折扣";
    const Column columns[] = {{"K_ID", "款号", 90},       {"WL_NAME", "名称", 120}, {"CLASS_ID", "类别号", 50},
                              {"CLASS_NAME", "类别", 80}, {"tj", "", 70},           {"DJ_VIP", "", 70},
                              {"dj", "吊牌价", 70}};
    for (const Column& c : columns) {
        TColumnEh* column = grid->ColumnByField(c.field);
        if (!column) continue;
        column->Title = c.title;
        column->Width = c.width;
        column->ReadOnly = true;
        if (QString(c.field) == "tj" || QString(c.field) == "DJ_VIP") {
            column->Title = band + (QString(c.field) == "tj" ? "|非会员" : "|VIP");
            column->Visible = values;
            column->ReadOnly = !(values && MayEdit && grid == GRID2);
        }
    }
    grid->ColumnsChanged();
}

void TQXCKS02_1::InitForm(int row, int mode, const AnsiString& ckId, bool mayEdit) {
    Row = row;
    Mode = mode;
    CK_ID = ckId;
    MayEdit = mayEdit;
    for (QPushButton* b : MoveButtons) b->setEnabled(MayEdit);
    btn_ok->setEnabled(MayEdit);
    opensql(AdoQry_1, FuncNo, AvailableQuery(CK_ID), 0, 0, {}, {}, false, "1");
    opensql(AdoQry_2, FuncNo, ChosenQuery(CK_ID, Row), 0, 0, {}, {}, false, "1");
    setColumns(GRID1, false);
    setColumns(GRID2, Mode == -1);
}

void TQXCKS02_1::move(TClientDataSet* from, TClientDataSet* to, bool all, bool sameClass) {
    if (!MayEdit || !from->Active() || from->IsEmpty()) return;
    from->CheckBrowseMode();
    const AnsiString cls = from->FieldByName("CLASS_ID")->AsString();
    const int single = from->CurrentRow();
    std::vector<int> rows;  // in the source's order
    for (int row = 0; row < from->RecordCount(); ++row) {
        if (!all && !sameClass && row != single) continue;
        if (sameClass && from->CellValue(row, from->FieldIndex("CLASS_ID")).toString() != cls) continue;
        rows.push_back(row);
    }
    from->DisableControls();
    to->DisableControls();
    for (int row : rows) {
        from->SetRecNo(row + 1);
        to->Append();
        for (const char* f : kFields) to->FieldByName(f)->SetValue(from->FieldByName(f)->Value());
        to->Post();
    }
    for (auto it = rows.rbegin(); it != rows.rend(); ++it) {
        from->SetRecNo(*it + 1);
        from->Delete();
    }
    from->EnableControls();
    to->EnableControls();
}

void TQXCKS02_1::btn_Click(int tag) {
    switch (tag) {
        case 1: return move(AdoQry_1, AdoQry_2, false, false);
        case 2: return move(AdoQry_2, AdoQry_1, false, false);
        case 3: return move(AdoQry_1, AdoQry_2, false, true);
        case 4: return move(AdoQry_2, AdoQry_1, false, true);
        case 5: return move(AdoQry_1, AdoQry_2, true, false);
        case 6: return move(AdoQry_2, AdoQry_1, true, false);
    }
}

void TQXCKS02_1::GRID1DblClick() { btn_Click(1); }
void TQXCKS02_1::GRID2DblClick() { btn_Click(2); }

void TQXCKS02_1::btn_okClick(QObject* Sender) {
    if (!MayEdit) return;
    TFrm_Base_Dialog::btn_okClick(Sender);
    AdoQry_2->CheckBrowseMode();
    const AnsiString ck = SqlStr(CK_ID);
    const AnsiString row = QString::number(Row);
    AnsiString batch = "UPDATE D1007 SET CS_DATE=GETDATE() where ck_id='" + ck + "';" + "DELETE FROM D704A WHERE I=" +
                       row + " AND (CK_ID='" + ck + "');";
    for (int i = 0; i < AdoQry_2->RecordCount(); ++i) {
        AdoQry_2->SetRecNo(i + 1);
        if (Mode == -1 && !(AdoQry_2->FieldByName("tj")->AsFloat() > 0)) {
            GRID2->setFocus();
            DISPINFO("特价/折扣 不能小于0!请更正!", 5);
            Abort();
        }
        batch += "INSERT INTO D704A (I, K_ID,CK_ID, DJ,DJ_VIP) VALUES(" + row + ",'" +
                 SqlStr(AdoQry_2->FieldByName("K_ID")->AsString()) + "','" + ck + "'," +
                 FloatToStr(AdoQry_2->FieldByName("tj")->AsFloat()) + "," +
                 FloatToStr(AdoQry_2->FieldByName("DJ_VIP")->AsFloat()) + ")";
    }
    ExecSql("101", "AA", "Edit", batch, 65535, false, true, false, true);
    SetModalResult(mrOk);
    Close();
}
