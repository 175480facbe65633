#include "setup/Frmqxcks02.h"

#include <QGridLayout>
#include <QLabel>
#include <cmath>

#include "setup/Frmqxcks02_1.h"

TQXCKS02* QXCKS02 = nullptr;

namespace {
const char* const kRowNames[3] = {"【礼品】", "【特价】", "【固定折扣】"};
const QStringList kRules{"【满量】", "【吊牌满】", "【折后满】"};
const QStringList kBenefits{"打折", "折现", "送礼品"};
const char* const kGiftFrom = "1990-01-01";
const char* const kGiftTo = "2050-01-01";
}  // namespace

TQXCKS02::TQXCKS02(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    setObjectName("QXCKS02");
    SetCaption("促销方案设定");
    AdoQry_Tmp = new TClientDataSet(this);
    AdoQry_Tmp->setObjectName("AdoQry_Tmp");
    Panel_Condition->hide();
    Lab_Warehouse = new QLabel;
    Lab_Warehouse->setObjectName("Lab_Warehouse");
    MainLayout()->insertWidget(0, Lab_Warehouse);
    auto* box = new QWidget;
    box->setObjectName("SchemePanel");
    auto* g = new QGridLayout(box);
    MainLayout()->insertWidget(1, box, 1);
    const char* titles[] = {"", "生效", "说明", "促销方式", "满", "打折方式", "非会", "会员", "有效时间", "至", ""};
    for (int c = 0; c < 11; ++c) g->addWidget(new QLabel(titles[c]), 0, c);
    const auto name = [](const char* base, int row) { return QString(base) + QString::number(row); };
    for (int r = 0; r < Rows; ++r) {
        const int line = r + 1;
        g->addWidget(new QLabel(r < 3 ? QString(kRowNames[r]) : QString::number(r)), line, 0);
        T[r] = new QCheckBox(box);
        T[r]->setObjectName(name("T", r));
        g->addWidget(T[r], line, 1);
        FA[r] = nullptr;
        CLA[r] = CLAZK[r] = nullptr;
        F1[r] = F2[r] = F3[r] = nullptr;
        BDATE[r] = EDATE[r] = nullptr;
        if (r >= 3) {
            // one control per column, named after its field and row ("FA3", "F1_3", "CLA3")
            const auto place = [&](auto* control, const char* field, int column) {
                control->setObjectName(name(field, r));
                g->addWidget(control, line, column);
                return control;
            };
            const auto list = [&](const QStringList& items, const char* field, int column) {
                auto* c = place(new QComboBox(box), field, column);
                c->addItems(items);
                return c;
            };
            const auto number = [&](const char* field, int column) {
                auto* e = place(new QLineEdit(box), field, column);
                e->setMaxLength(20);
                e->setMaximumWidth(70);
                return e;
            };
            FA[r] = place(new QLineEdit(box), "FA", 2);
            FA[r]->setMaxLength(50);
            CLA[r] = list(kRules, "CLA", 3);
            F1[r] = number("F1_", 4);
            CLAZK[r] = list(kBenefits, "CLAZK", 5);
            F2[r] = number("F2_", 6);
            F3[r] = number("F3_", 7);
        }
        if (r >= 1) {
            BDATE[r] = new TDateEdit(box);
            BDATE[r]->setObjectName(name("BDATE", r));
            EDATE[r] = new TDateEdit(box);
            EDATE[r]->setObjectName(name("EDATE", r));
            g->addWidget(BDATE[r], line, 8);
            g->addWidget(EDATE[r], line, 9);
        }
        btn[r] = new QPushButton(r == 0 ? "礼品设定" : "款号选择", box);
        btn[r]->setObjectName(name("btn", r));
        g->addWidget(btn[r], line, 10);
        qx::connectGuarded(btn[r], &QPushButton::clicked, this, [this, r] { btn_Click(r); });
        connect(T[r], &QCheckBox::toggled, this, [this] { Changes(); });
        for (QLineEdit* e : {FA[r], F1[r], F2[r], F3[r]})
            if (e) connect(e, &QLineEdit::textChanged, this, [this] { Changes(); });
        for (QComboBox* c : {CLA[r], CLAZK[r]})
            if (c) connect(c, &QComboBox::currentIndexChanged, this, [this] { Changes(); });
        for (TDateEdit* d : {BDATE[r], EDATE[r]})
            if (d) connect(d, &QDateEdit::dateChanged, this, [this] { Changes(); });
    }
    c_all = new QCheckBox("全部", box);
    c_all->setObjectName("c_all");
    g->addWidget(c_all, Rows + 1, 1);
    qx::connectGuarded(c_all, &QCheckBox::clicked, this, [this] { c_allClick(c_all); });
    bsSkinButton1 = new QPushButton("清空该仓库所有方案", box);
    bsSkinButton1->setObjectName("bsSkinButton1");
    g->addWidget(bsSkinButton1, Rows + 1, 8, 1, 2);
    qx::connectGuarded(bsSkinButton1, &QPushButton::clicked, this, [this] { bsSkinButton1Click(bsSkinButton1); });
    btn_ok->setText("保存");
    btn_cancel->setText("关闭");
    resize(980, 520);
    FormCreate();
}

void TQXCKS02::InitForm(const AnsiString& mode, const AnsiString& ckId, const AnsiString& ckName) {
    CK_ID = ckId;
    MayEdit = mode == "Edit";
    Lab_Warehouse->setText(ckId + "  " + ckName);
    RefreshData();
}

void TQXCKS02::RefreshData() {
    loading_ = true;
    const QDate today = qx::ui::today();
    for (int r = 0; r < Rows; ++r) {
        T[r]->setChecked(false);
        for (QLineEdit* e : {FA[r], F1[r], F2[r], F3[r]})
            if (e) e->clear();
        for (QComboBox* c : {CLA[r], CLAZK[r]})
            if (c) c->setCurrentIndex(0);
        for (TDateEdit* d : {BDATE[r], EDATE[r]})
            if (d) d->SetDate(today);
    }
    bsSkinButton1->setEnabled(MayEdit);
    opensql(AdoQry_Tmp, FuncNo, "SELECT * FROM D704 where ck_id='" + SqlStr(CK_ID) + "' ORDER BY I", 0, 0, {}, {},
            false, "1");
    for (AdoQry_Tmp->First(); !AdoQry_Tmp->Eof(); AdoQry_Tmp->Next()) {
        const int r = AdoQry_Tmp->FieldByName("I")->AsInteger();
        if (r < 0 || r >= Rows) continue;
        const auto text = [this](const char* f) { return AdoQry_Tmp->FieldByName(f)->AsString(); };
        T[r]->setChecked(AdoQry_Tmp->FieldByName("T")->AsInteger() != 0);
        if (r >= 1) {
            BDATE[r]->SetText(text("BDATE"));
            EDATE[r]->SetText(text("EDATE"));
        }
        if (r >= 3) {
            FA[r]->setText(text("FA"));
            CLA[r]->setCurrentIndex(std::clamp(AdoQry_Tmp->FieldByName("CLA")->AsInteger(), 0, 2));
            F1[r]->setText(text("F1"));
            F2[r]->setText(text("F2"));
            F3[r]->setText(text("F3"));
            CLAZK[r]->setCurrentIndex(std::clamp(AdoQry_Tmp->FieldByName("CLAZK")->AsInteger(), 0, 2));
        }
    }
    loading_ = false;
    btn_ok->setEnabled(false);
}

void TQXCKS02::Changes() {
    if (loading_) return;
    if (MayEdit) btn_ok->setEnabled(true);
}

void TQXCKS02::c_allClick(QObject*) {
    for (QCheckBox* t : T) t->setChecked(c_all->isChecked());
}

AnsiString TQXCKS02::NumberText(const QString& typed) {
    bool ok = false;
    const QString text = typed.trimmed();
    const double value = text.toDouble(&ok);
    return ok && std::isfinite(value) ? text : AnsiString("0");
}

AnsiString TQXCKS02::SaveBatch() const {
    const AnsiString ck = SqlStr(CK_ID);
    AnsiString batch = "UPDATE D1007 SET CS_DATE=GETDATE() where ck_id='" + ck + "';" +
                       "delete from d704 where ck_id='" + ck + "';";
    for (int r = 0; r < Rows; ++r) {
        AnsiString fa, cla = "0", clazk = "0", f1 = "0", f2 = "0", f3 = "0", from = kGiftFrom, to = kGiftTo;
        if (r == 1 || r == 2) {
            // row 2 takes row 1's dates
            from = BDATE[1]->Text();
            to = EDATE[1]->Text();
        }
        if (r >= 3) {
            fa = FA[r]->text();
            cla = QString::number(CLA[r]->currentIndex());
            clazk = QString::number(CLAZK[r]->currentIndex());
            f1 = NumberText(F1[r]->text());
            f2 = NumberText(F2[r]->text());
            f3 = NumberText(F3[r]->text());
            from = BDATE[r]->Text();
            to = EDATE[r]->Text();
        }
        batch += "INSERT INTO D704 VALUES('" + ck + "','" + QString::number(r) + "','" +
                 (T[r]->isChecked() ? "1" : "0") + "','" + SqlStr(fa) + "','" + cla + "','" + clazk + "','" +
                 SqlStr(f1) + "','" + SqlStr(f2) + "','" + SqlStr(f3) + "','" + SqlStr(from) + "','" + SqlStr(to) +
                 "');";
    }
    return batch;
}

void TQXCKS02::btn_okClick(QObject* Sender) {
    if (!MayEdit) return;
    TFrm_Base_Dialog::btn_okClick(Sender);
    // A validity period that ends before it starts is refused (rows 1 and 3-10 are saved with
    // their own dates).
    for (int r = 1; r < Rows; ++r) {
        if (r == 2) continue;
        if (BDATE[r]->Date() > EDATE[r]->Date()) {
            DISPINFO("有效时间的开始日期不能晚于结束日期!", 5);
            EDATE[r]->setFocus();
            Abort();
        }
    }
    ExecSql("101", "AA", "Edit", SaveBatch(), 65535, false, true, false, true);
    DISPINFO("方案设定已保存!", 5);
    btn_ok->setEnabled(false);
}

void TQXCKS02::bsSkinButton1Click(QObject*) {
    if (!MayEdit) return;
    ExecSql("101", "AA", "Edit", "delete FROM D704 where ck_id='" + SqlStr(CK_ID) + "'", 65535, false, true, false,
            true);
}

void TQXCKS02::btn_Click(int row) {
    opensql(AdoQry_Tmp, FuncNo, "SELECT top 1 ck_id FROM D704 where ck_id='" + SqlStr(CK_ID) + "' ORDER BY I", 0, 0,
            {}, {}, false, "1");
    if (AdoQry_Tmp->IsEmpty()) {
        DISPINFO("您必须先设定一种方案，且要保存后才可进行款号的选择!", 5);
        return;
    }
    const int mode = row == 0 ? -2 : row <= 2 ? -1 : CLA[row]->currentIndex();
    QXCKS02_1 = new TQXCKS02_1(this);
    QXCKS02_1->FuncNo = FuncNo;
    QXCKS02_1->InitForm(row, mode, CK_ID, MayEdit);
    QXCKS02_1->ShowModal();
    QXCKS02_1->Release();
    QXCKS02_1 = nullptr;
}
