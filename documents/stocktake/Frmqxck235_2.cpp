#include "documents/stocktake/Frmqxck235_2.h"

#include <QEvent>
#include <QPainter>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

#include "documents/common/DocumentCommon.h"
#include "framework/SizeMatrix.h"

using namespace qx::documents;
namespace sizes = qx::sizes;

TQXCK235_2* QXCK235_2 = nullptr;

namespace {
const char* const kGeneratedNote = "由盘点录入汇总自动生成";

QString countField(int i) { return "P" + QString::number(i); }
QString differenceField(int i) { return "Y" + QString::number(i); }
}  // namespace

TQXCK235_2::TQXCK235_2(QWidget* Owner) : TFrm_Sys_Filter(Owner) {
    setObjectName("QXCK235_2");
    SetCaption("盘点录入数据汇总");
    RB_Part = new QRadioButton("部分盘点", Panel_Condition);
    RB_Part->setObjectName("RB_Part");
    RB_Part->setChecked(true);
    RB_All = new QRadioButton("全盘", Panel_Condition);
    RB_All->setObjectName("RB_All");
    Panel_Condition->AddControl(RB_Part, QString());
    Panel_Condition->AddControl(RB_All, QString());
    Label4 = Panel_Condition->AddLabel("Label4", QString());
    Label4->setText("<<-选择一种盘点方式");
    Panel_Condition->NewRow();
    btn_ref = new QPushButton("刷新", Panel_Condition);
    btn_ref->setObjectName("btn_ref");
    Panel_Condition->AddControl(btn_ref, QString());
    Label5 = Panel_Condition->AddLabel("Label5", QString());
    Label5->setText("确定 后系统将自动生成损益单");
    Label6 = Panel_Condition->AddLabel("Label6", QString());
    Label6->setText("所有盘点录入单将不可再进行更改");
    Label6->installEventFilter(this);

    AdoQry_Tmp = new TClientDataSet(this);
    AdoQry_Tmp->setObjectName("AdoQry_Tmp");
    DBGridEh = TDBGridEh::CreateBrowseGrid(this, AdoQry_Tmp);
    DBGridEh->setObjectName("DBGridEh");
    AdoQry_Book = new TClientDataSet(this);
    AdoQry_Book->setObjectName("AdoQry_Book");
    AdoQry_Book->AddField("K_ID", ftString, 17, "款号");
    AdoQry_Book->AddField("COL_NAME", ftString, 20, "颜色");
    AdoQry_Book->AddField("SIZE_NAME", ftString, 10, "尺码");
    AdoQry_Book->AddField("BOOK", ftFloat, 0, "账面库存");
    AdoQry_Book->AddField("COUNTED", ftFloat, 0, "盘点数量");
    AdoQry_Book->AddField("DIFF", ftFloat, 0, "盈亏");
    AdoQry_Book->CreateDataSet();
    DBGridEh_Book = TDBGridEh::CreateBrowseGrid(this, AdoQry_Book);
    DBGridEh_Book->setObjectName("DBGridEh_Book");
    auto* bookTitle = new QLabel("盘点与账面对照(确定后写入损溢单的行)", this);
    bookTitle->setObjectName("Lab_Book");

    const int at = MainLayout()->indexOf(Panel_Condition) + 1;
    MainLayout()->insertWidget(at, DBGridEh, 3);
    MainLayout()->insertWidget(at + 1, bookTitle);
    MainLayout()->insertWidget(at + 2, DBGridEh_Book, 2);
    resize(1100, 640);

    gtime = CreateSizeTitleTimer([this] { gtimeTimer(gtime); });
    gtime->setSingleShot(true);
    connect(AdoQry_Tmp, &TClientDataSet::currentChanged, this, [this] { AdoQry_TmpAfterScroll(AdoQry_Tmp); });
    connect(btn_ref, &QPushButton::clicked, this, [this] { qx::guard([this] { btn_refClick(btn_ref); }); });
    DBGridEh->OnDrawColumnCell = [this](QPainter* p, const QRect& r, TColumnEh*, const TCellParams& params) {
        return drawZeroBlank(p, r, params);
    };
    FormCreate();
}

TQXCK235_2::~TQXCK235_2() {
    DBGridEh->ClearHooks();
    if (QXCK235_2 == this) QXCK235_2 = nullptr;
}

void TQXCK235_2::FormCreate() {
    TFrm_Sys_Filter::FormCreate();
    buildSummaryColumns();
}

// Style, name, colour, then the three size groups: stock, count, gain/loss; the positions after
// the last one in use (G_CM) are hidden in each group.
void TQXCK235_2::buildSummaryColumns() {
    DBGridEh->ClearColumns();
    DBGridEh->AddColumn("k_id", "款号", 90);
    DBGridEh->AddColumn("wl_name", "品名", 110);
    DBGridEh->AddColumn("COL_NAME", "颜色", 60);
    const struct {
        const char* group;
        QString (*field)(int);
    } groups[] = {{"库存", &sizes::quantityField}, {"盘点汇总数量", &countField}, {"盈亏", &differenceField}};
    for (const auto& g : groups)
        for (int i = 0; i < sizes::Count; ++i) {
            TColumnEh* c = DBGridEh->AddColumn(g.field(i), QString(g.group) + "|" + g.field(i), 40);
            c->Alignment = Qt::AlignRight | Qt::AlignVCenter;
            c->Visible = i <= G_CM;
        }
    DBGridEh->ColumnsChanged();
}

AnsiString TQXCK235_2::SummaryQuery(const AnsiString& warehouse, bool full) {
    const QString wh = SqlStr(warehouse);
    const QString join = full ? "  LEFT JOIN( " : "  inner JOIN( ";
    return "select * , ISNULL(P0 - S0, 0 - S0) as Y0,  ISNULL(P1 - S1, 0 - S1) as Y1,       ISNULL(P2 - S2, 0 - S2) "
           "as Y2,      ISNULL(P3 - S3, 0 - S3) as Y3,     ISNULL(P4 - S4, 0 - S4) as Y4,     ISNULL(P5 - S5, 0 - S5) "
           "as Y5,    ISNULL(P6 - S6, 0 - S6) as Y6,    ISNULL(P7 - S7, 0 - S7) as Y7,     ISNULL(P8 - S8, 0 - S8) "
           "as Y8,    ISNULL(P9 - S9, 0 - S9) as Y9   from                           (select TOP 10000 D1800.K_ID,   "
           "D1005.COL_ID,         D1005.COL_NAME,      D1800.WL_NAME,       D1802.K0 as S0,      D1802.K1 as S1,      "
           "D1802.K2 as S2,     D1802.K3 as S3,    D1802.K4 as S4,    D1802.K5 as S5,    D1802.K6 as S6,   D1802.K7 "
           "as S7,   D1802.K8 as S8,   D1802.K9 as S9,D1006.M0, D1006.M1, D1006.M2, D1006.M3, D1006.M4, D1006.M5,"
           "D1006.M6, D1006.M7, D1006.M8, D1006.M9,  D1800.DJ   from D1801   INNER JOIN D1802 on D1801.WL_ID = "
           "D1802.WL_ID    INNER JOIN D1800 on D1801.K_ID = D1800.K_ID     INNER JOIN D1009 on D1800.PP_ID = "
           "D1009.PP_ID     INNER JOIN D1006 on D1800.M_ID = D1006.M_ID     INNER JOIN D1007 on D1802.CK_ID = "
           "D1007.CK_ID     INNER JOIN SYS_USER_CK on D1802.CK_ID = SYS_USER_CK.CK_ID and (SYS_USER_CK.USER_ID = "
           "'01')     INNER JOIN D1005 on D1801.COL_ID = D1005.COL_ID     WHERE D1802.CK_ID = '" +
           wh + "' ORDER BY D1800.K_ID, " + "    D1005.COL_ID)kc  " + join +
           "  select D1800.K_ID, D1005.COL_ID, SUM(d8300A.S0) as P0, SUM(d8300A.S1) as P1," +
           "  SUM(d8300A.S2) as P2, SUM(d8300A.S3) as P3, SUM(d8300A.S4) as P4, " +
           "  SUM(d8300A.S5) as P5, SUM(d8300A.S6) as P6, SUM(d8300A.S7) as P7, " +
           "  SUM(d8300A.S9) as P8, SUM(d8300A.S8) as P9 " + "  from D1801 INNER JOIN " +
           "  d8300A on D1801.WL_ID = d8300A.WL_ID INNER JOIN " + "  d8300 on d8300.noID = d8300a.noID INNER JOIN " +
           "  D1800 on D1801.K_ID = D1800.K_ID INNER JOIN " + "    D1006 on D1800.M_ID = D1006.M_ID INNER JOIN " +
           "    D1005 on D1801.COL_ID = D1005.COL_ID " + "    WHERE(d8300.t=0) and (d8300.ck_id = '" + wh + "') " +
           "    GROUP BY D1800.K_ID, D1005.COL_ID)PD on kc.K_ID = PD.K_ID and kc.COL_ID = PD.COL_ID  ";
}

void TQXCK235_2::InitA(TClientDataSet* list) {
    list_ = list;
    warehouse_ = list->FieldByName("ck_id")->AsString();
    opensql(AdoQry_Tmp, FuncNo, SummaryQuery(warehouse_, RB_All->isChecked()), 0, 0, {}, {}, false, "1");
    AdoQry_Tmp->First();
    gtimeTimer(gtime);
    fillCountAgainstBook();
}

void TQXCK235_2::btn_refClick(QObject*) {
    if (list_) InitA(list_);
}

// One row per SKU and size position whose difference is not 0: the lines the sheet will get,
// size by size, with the stock on the books and the counted quantity beside it.
void TQXCK235_2::fillCountAgainstBook() {
    ScopedDisableControls frozen(AdoQry_Book);
    AdoQry_Book->EmptyDataSet();
    for (int row = 0; row < AdoQry_Tmp->RecordCount(); ++row) {
        const QStringList names = sizes::namesOfRow(AdoQry_Tmp, row);
        auto value = [this, row](const QString& field) {
            const int i = AdoQry_Tmp->FieldIndex(field);
            return i < 0 ? 0.0 : AdoQry_Tmp->CellValue(row, i).toDouble();
        };
        for (int i = 0; i < sizes::Count; ++i) {
            const double difference = value(differenceField(i));
            if (difference == 0) continue;
            AdoQry_Book->Append();
            AdoQry_Book->FieldByName("K_ID")->SetAsString(lineText(AdoQry_Tmp, row, "K_ID"));
            AdoQry_Book->FieldByName("COL_NAME")->SetAsString(lineText(AdoQry_Tmp, row, "COL_NAME"));
            AdoQry_Book->FieldByName("SIZE_NAME")->SetAsString(names.value(i).isEmpty() ? sizes::quantityField(i)
                                                                                       : names.value(i));
            AdoQry_Book->FieldByName("BOOK")->SetAsFloat(value(sizes::quantityField(i)));
            AdoQry_Book->FieldByName("COUNTED")->SetAsFloat(value(sizes::quantityField(i)) + difference);
            AdoQry_Book->FieldByName("DIFF")->SetAsFloat(difference);
            AdoQry_Book->Post();
        }
    }
    AdoQry_Book->First();
}

void TQXCK235_2::AdoQry_TmpAfterScroll(TDataSet*) { gtime->start(); }

// The three size groups take the size names of the current row's size group.
void TQXCK235_2::gtimeTimer(QObject*) {
    gtime->stop();
    if (!AdoQry_Tmp->Active() || AdoQry_Tmp->IsEmpty()) return;
    const QStringList names = sizes::namesOfRow(AdoQry_Tmp, AdoQry_Tmp->CurrentRow());
    for (int i = 0; i < sizes::Count; ++i) {
        const QString name = names.value(i);
        if (TColumnEh* c = DBGridEh->ColumnByField(sizes::quantityField(i))) c->Title = "库存|" + name;
        if (TColumnEh* c = DBGridEh->ColumnByField(countField(i))) c->Title = "盘点汇总数量|" + name;
        if (TColumnEh* c = DBGridEh->ColumnByField(differenceField(i))) c->Title = "盈亏|" + name;
    }
    DBGridEh->ColumnsChanged();
}

// A cell showing "0" is drawn empty: the selection colour when selected, else the even-row
// colour on every second row.
bool TQXCK235_2::drawZeroBlank(QPainter* painter, const QRect& rect, const TCellParams& params) const {
    if (params.Text != "0") return false;
    QColor fill = params.Background.isValid() ? params.Background : DBGridEh->palette().base().color();
    if (params.Selected) fill = QColor(201, 208, 226);
    else if (params.Row % 2 == 1) fill = DBGridEh->palette().alternateBase().color();
    painter->fillRect(rect, fill);
    return true;
}

void TQXCK235_2::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_F5) {
        btn_refClick(btn_ref);
        Key = 0;
        return;
    }
    TFrm_Sys_Filter::FormKeyDown(Sender, Key, Shift);
}

bool TQXCK235_2::eventFilter(QObject* watched, QEvent* event) {
    if (watched == Label6 && event->type() == QEvent::MouseButtonDblClick) qx::guard([this] { Label6DblClick(Label6); });
    return TFrm_Sys_Filter::eventFilter(watched, event);
}

// A double click on the warning shows it again as a message.
void TQXCK235_2::Label6DblClick(QObject*) { DISPINFO(Label5->text() + "," + Label6->text() + "!", 5); }

void TQXCK235_2::btn_okClick(QObject* Sender) {
    TFrm_Sys_Filter::btn_okClick(Sender);
    if (!list_ || !AdoQry_Tmp->Active()) return;
    const AnsiString number = GetNOID("218", "", 0);
    const QString wh = SqlStr(warehouse_);
    QString batch;
    bool written = false;
    {
        ScopedDisableControls frozen(AdoQry_Tmp);
        batch = "INSERT INTO d8301(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES ('" + SqlStr(number) + "','" +
                SqlStr(G_SKSTR) + "','" + wh + "','" + qx::ui::today().toString("yyyy-MM-dd") + "','" + "" + "','" +
                SqlStr(G_UserId) + "','" + kGeneratedNote + "')";
        for (int row = 0; row < AdoQry_Tmp->RecordCount(); ++row) {
            QStringList differences;
            bool allZero = true;
            for (int i = 0; i < sizes::Count; ++i) {
                const QString d = lineText(AdoQry_Tmp, row, differenceField(i));
                if (d.toDouble() != 0) allZero = false;
                differences << "'" + SqlStr(d) + "'";
            }
            if (allZero) continue;
            const QString style = SqlStr(lineText(AdoQry_Tmp, row, "K_ID"));
            const QString colour = SqlStr(lineText(AdoQry_Tmp, row, "COL_ID"));
            batch += "INSERT INTO d8301A  VALUES ('" + SqlStr(number) + "','" + style + colour + "','" + style + "','" +
                     colour + "','" + wh + "'," + differences.join(",") + ",0,0" + ",'" + "');";
            written = true;
        }
    }
    if (!written) {
        DISPINFO("本次汇总没有盈亏数量，单据不能保存(没有盈亏可以不保存)", 5);
        if (DISPINFO("是否将单据状态置为已处理?如果本次盘点结束请点【是】，如果还将再次编辑点【否】", 2) == "y")
            ExecSql(FuncNo, list_->FieldByName("NOID")->AsString(), "E",
                    "UPDATE D8300 SET t=1 WHERE (T=0) AND (CK_ID='" + wh + "');", 65535, false, true, false, true);
        return;
    }
    batch += "UPDATE d8301A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M "
             "WHERE (d8301A.K_ID=M.K_ID) AND (d8301A.NOID='" +
             SqlStr(number) + "');";
    batch += "UPDATE D8300 SET t=1,d8301noid='" + SqlStr(number) + "' WHERE (T=0) AND (CK_ID='" + wh + "')";
    ExecSql("218", number, "Add", batch, 65535, false, true, false, true);
    generated_ = number;

    list_->Edit();
    list_->FieldByName("t")->SetAsInteger(1);
    list_->FieldByName("t_name")->SetAsString("已汇总");
    list_->FieldByName("d8301noid")->SetAsString(number);
    list_->Post();
    DISPINFO("系统已自动生成损溢单号 [" + number + "] 本次盘点结束!", 5);
    SetModalResult(mrOk);
}
