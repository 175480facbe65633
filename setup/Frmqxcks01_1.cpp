#include "setup/Frmqxcks01_1.h"

#include <QGridLayout>
#include <QLabel>
#include <set>

#include "framework/DBGridEh.h"
#include "framework/Zpy.h"
#include "setup/Frmqxcks01.h"

TQXCKS01_1* QXCKS01_1 = nullptr;

namespace {

// Codes "01", "02", ... (wider when there are more than 99 names).
QString code(int n, int count) { return QString::number(n).rightJustified(count > 99 ? 4 : 2, '0'); }

// Fills a list with the distinct names of one staging column and new codes.
void fillList(TClientDataSet* ds, const QString& idField, const QString& nameField, TClientDataSet* names,
              const QString& fallback) {
    ds->ClearFields();
    ds->AddField(idField, ftString, 4, "代号");
    ds->AddField(nameField, ftString, 30, "名称");
    ds->AddField("PYM", ftString, 30, "拼音码");
    ds->CreateDataSet();
    QStringList list;
    for (names->First(); !names->Eof(); names->Next()) {
        const QString name = names->Fields(0)->AsString().trimmed();
        if (!name.isEmpty()) list << name;
    }
    if (list.isEmpty() && !fallback.isEmpty()) list << fallback;
    for (int i = 0; i < list.size(); ++i) {
        ds->Append();
        ds->FieldByName(idField)->SetAsString(code(i + 1, int(list.size())));
        ds->FieldByName(nameField)->SetAsString(list[i]);
        ds->FieldByName("PYM")->SetAsString(GetPY(list[i]).left(10));
        ds->Post();
    }
    ds->First();
}

TDBGridEh* listGrid(QWidget* parent, QGridLayout* layout, int column, const QString& title, TClientDataSet* ds) {
    layout->addWidget(new QLabel(title, parent), 0, column);
    auto* grid = TDBGridEh::CreateBrowseGrid(parent, ds);
    grid->setObjectName("Grid_" + ds->objectName());
    layout->addWidget(grid, 1, column);
    return grid;
}

}  // namespace

TQXCKS01_1::TQXCKS01_1(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    setObjectName("QXCKS01_1");
    SetCaption("导入");
    Panel_Condition->hide();
    const auto dataset = [this](const char* name) {
        auto* ds = new TClientDataSet(this);
        ds->setObjectName(name);
        return ds;
    };
    AdoQry_Class = dataset("AdoQry_Class");
    AdoQry_Brand = dataset("AdoQry_Brand");
    AdoQry_Colour = dataset("AdoQry_Colour");
    AdoQry_Size = dataset("AdoQry_Size");
    AdoQry_Store = dataset("AdoQry_Store");
    AdoQry_Tmp = dataset("AdoQry_Tmp");
    auto* box = new QWidget;
    auto* g = new QGridLayout(box);
    listGrid(box, g, 0, "类别", AdoQry_Class);
    listGrid(box, g, 1, "品牌", AdoQry_Brand);
    listGrid(box, g, 2, "颜色", AdoQry_Colour);
    listGrid(box, g, 3, "尺码组", AdoQry_Size);
    listGrid(box, g, 4, "仓库", AdoQry_Store);
    MainLayout()->insertWidget(0, box, 1);
    StyleColours = new QCheckBox("记录每个款号的颜色(款号颜色组)", this);
    StyleColours->setObjectName("StyleColours");
    StyleColours->setChecked(true);
    MainLayout()->insertWidget(1, StyleColours);
    auto* warn = new QLabel("确定后将清空现有的商品、库存及所有单据,按上传的资料重新生成!");
    warn->setObjectName("Lab_Warning");
    MainLayout()->insertWidget(2, warn);
    btn_ok->setText("导入");
    resize(980, 480);
    FormCreate();
}

void TQXCKS01_1::InitForm() {
    const auto names = [this](const char* column) {
        opensql(AdoQry_Tmp, "901",
                QString("SELECT ") + column + " FROM D1801IMP WHERE " + column + " IS NOT NULL GROUP BY " + column +
                    " ORDER BY " + column,
                0, 0, {}, {}, false, "1");
        return AdoQry_Tmp;
    };
    fillList(AdoQry_Class, "CLASS_ID", "CLASS_NAME", names("G"), "未分类");
    fillList(AdoQry_Brand, "PP_ID", "PP_NAME", names("E"), {});
    fillList(AdoQry_Size, "M_ID", "M_NAME", names("I"), "默认");
    fillList(AdoQry_Store, "CK_ID", "CK_NAME", names("A"), {});
    // Colours keep the code given in the sheet when there is one; the others get free codes.
    opensql(AdoQry_Tmp, "901",
            "SELECT H, MAX(col_id) AS col_id FROM D1801IMP WHERE H IS NOT NULL GROUP BY H ORDER BY H", 0, 0, {}, {},
            false, "1");
    AdoQry_Colour->ClearFields();
    AdoQry_Colour->AddField("COL_ID", ftString, 4, "代号");
    AdoQry_Colour->AddField("COL_NAME", ftString, 20, "名称");
    AdoQry_Colour->AddField("PYM", ftString, 20, "拼音码");
    AdoQry_Colour->AddField("S", ftString, 4, "色码");
    AdoQry_Colour->AddField("PP_ID", ftString, 4, "品牌");
    AdoQry_Colour->CreateDataSet();
    std::set<QString> used;
    for (AdoQry_Tmp->First(); !AdoQry_Tmp->Eof(); AdoQry_Tmp->Next())
        if (!AdoQry_Tmp->FieldByName("col_id")->AsString().trimmed().isEmpty())
            used.insert(AdoQry_Tmp->FieldByName("col_id")->AsString().trimmed().toUpper());
    int next = 1;
    const int count = AdoQry_Tmp->RecordCount();
    for (AdoQry_Tmp->First(); !AdoQry_Tmp->Eof(); AdoQry_Tmp->Next()) {
        QString id = AdoQry_Tmp->FieldByName("col_id")->AsString().trimmed();
        const QString name = AdoQry_Tmp->FieldByName("H")->AsString().trimmed();
        if (name.isEmpty()) continue;
        if (id.isEmpty()) {
            while (used.count(code(next, count))) ++next;
            id = code(next++, count);
            used.insert(id);
        }
        AdoQry_Colour->Append();
        AdoQry_Colour->FieldByName("COL_ID")->SetAsString(id);
        AdoQry_Colour->FieldByName("COL_NAME")->SetAsString(name);
        AdoQry_Colour->FieldByName("PYM")->SetAsString(GetPY(name).left(10));
        AdoQry_Colour->FieldByName("S")->SetAsString(id);
        AdoQry_Colour->FieldByName("PP_ID")->SetAsString("");
        AdoQry_Colour->Post();
    }
    AdoQry_Colour->First();
}

AnsiString TQXCKS01_1::GenerationBatch() const {
    const QString month = qx::ui::today().toString("yyyy-MM");
    AnsiString b =
        "DELETE FROM[D631];DELETE FROM[D641];DELETE FROM[SYS_LOG_IUD];DELETE FROM[D1809];DELETE FROM[D8300];DELETE "
        "FROM[D8303];DELETE FROM[D8301];DELETE FROM[D8202];DELETE FROM[D8201];DELETE FROM[D8102];DELETE "
        "FROM[D8101];DELETE FROM[D712];DELETE FROM[D713];DELETE FROM[D704a];update d1800 set kc = 0, dj = 0, money = "
        "0;DELETE FROM[SYS_LOG_ERR];DELETE FROM[SYS_LOG_IUD];DELETE FROM[SYS_LOG_LOGIN];DELETE FROM[SYS_back]; DELETE "
        "FROM[D1802];DELETE FROM[D1801];DELETE FROM[D1804];DELETE FROM[D1803];DELETE FROM[D1800];DELETE "
        "FROM[D1004];DELETE FROM[D1005];DELETE FROM[D1009];DELETE FROM[D1006];DELETE FROM[D701];DELETE "
        "FROM[D1007];INSERT INTO D1801 (WL_ID) VALUES ('ZZZZZ');update SYS_CO SET CK_END_DATE ='" +
        month + "-01'";
    const auto each = [](TClientDataSet* ds, const std::function<AnsiString()>& row) {
        AnsiString out;
        for (int i = 0; i < ds->RecordCount(); ++i) {
            TClientDataSet::RowScope scope(ds, i);
            out += row();
        }
        return out;
    };
    const auto q = [](TClientDataSet* ds, const char* f) { return SqlStr(ds->FieldByName(f)->AsString()); };
    b += each(AdoQry_Class, [&] {
        return "INSERT INTO D1004 (CLASS_ID, CLASS_NAME, CLASS_NOTE, OID, PYM) VALUES ('" + q(AdoQry_Class, "CLASS_ID") +
               "','" + q(AdoQry_Class, "CLASS_NAME") + "',null,'Z','" + q(AdoQry_Class, "PYM") + "');";
    });
    b += each(AdoQry_Brand, [&] {
        return "INSERT INTO D1009 (PP_ID, PP_NAME,PYM) VALUES ('" + q(AdoQry_Brand, "PP_ID") + "','" +
               q(AdoQry_Brand, "PP_NAME") + "','" + q(AdoQry_Brand, "PYM") + "');";
    });
    b += each(AdoQry_Colour, [&] {
        return "INSERT INTO D1005 (col_ID, COL_NAME, PYM,S,PP_ID) VALUES ('" + q(AdoQry_Colour, "COL_ID") + "','" +
               q(AdoQry_Colour, "COL_NAME") + "','" + q(AdoQry_Colour, "PYM") + "','" + q(AdoQry_Colour, "S") +
               "','" + q(AdoQry_Colour, "PP_ID") + "');";
    });
    b += each(AdoQry_Size, [&] {
        return "INSERT INTO D1006 (M_ID, M_NAME, PYM) VALUES ('" + q(AdoQry_Size, "M_ID") + "','" +
               q(AdoQry_Size, "M_NAME") + "','" + q(AdoQry_Size, "PYM") + "');";
    });
    b += each(AdoQry_Store, [&] {
        return "INSERT INTO D1007 (CK_ID, CK_NAME, CK_GL, CK_TEL, CK_ADDR, CK_NOTE, OID, PYM) VALUES ('" +
               q(AdoQry_Store, "CK_ID") + "','" + q(AdoQry_Store, "CK_NAME") + "','','','','','Z','" +
               q(AdoQry_Store, "PYM") + "');";
    });
    // the warehouses are new: rights to the old codes go (a code may now name another shop),
    // and the user who initialises gets every new one
    b += "DELETE FROM[sys_USER_ck];";
    b += "insert into sys_USER_ck select '" + SqlStr(G_UserId) + "' as a,ck_id,1 as b from d1007;";
    b += "\n\r";
    const AnsiString brand = AdoQry_Brand->RecordCount() > 0 ? SqlStr(AdoQry_Brand->CellValue(0, 0).toString()) : "";
    b += "INSERT INTO D1800 (PP_ID,K_ID,M_ID,CLASS_ID,WL_NAME, DW_NAME, WL_YS,  KC, DJ, CGJ, PFJ, PP, GHS,  CL, money, "
         "USER_ID, BDATE, EDATE, T, NOTE, PICT, PYM, CHECK_KC) select * from ( select '" +
         brand +
         "' AS PP_ID,*,'' as wl_name,'' as dw_name,0 as wl_ys,0 as kc,0 as dj,0 as cgj,0 as pfj,'' as pp,'' as "
         "ghs,'' as cl,0 as money,'admin' as user_id,getdate() as bdate,null as edate,1 as t,'' as note,'' as "
         "pict,'' as pym,0 as check_kc from (SELECT D1801IMP.B FROM D1801IMP  GROUP BY D1801IMP.B) tmp CROSS JOIN "
         "(select top 1 M_ID from d1006) d1006 CROSS JOIN (select top 1 CLASS_ID from d1004) d1004 ) a;";
    // the styles from their staged rows (the first non-empty value of each column)
    b += "UPDATE D1800 SET PP_KID=D1800.K_ID,WL_NAME=ISNULL(T.C,''),PYM=ISNULL(T.D,''),DW_NAME=ISNULL(T.F,''),"
         "M_ID=ISNULL(D1006.M_ID,D1800.M_ID),CLASS_ID=ISNULL(D1004.CLASS_ID,D1800.CLASS_ID),PP_ID=ISNULL(D1009.PP_ID,"
         "D1800.PP_ID),PP=ISNULL(T.PP_NAME,''),CL=ISNULL(T.W,''),PFJ=T.V,CGJ=T.U,DYEAR=T.DYEAR,JJ=T.DJJ FROM "
         "(SELECT B,MAX(C) AS C,MAX(D) AS D,MAX(E) AS PP_NAME,MAX(F) AS F,MAX(G) AS G,MAX(I) AS I,MAX(W) "
         "AS W,ISNULL(MAX(V),0) AS V,ISNULL(MAX(U),0) AS U,MAX(DYEAR) AS DYEAR,MAX(DJJ) AS DJJ FROM D1801IMP GROUP "
         "BY B) T LEFT OUTER JOIN D1004 ON T.G=D1004.CLASS_NAME LEFT OUTER JOIN D1006 ON T.I=D1006.M_NAME LEFT "
         "OUTER JOIN D1009 ON T.PP_NAME=D1009.PP_NAME WHERE D1800.K_ID=T.B;";
    b += "update d1800 set CHECK_KC =1 where k_id in (select b from d1801imp where check_kc is not null);";
    b += "update d1800 set vipf =0 where k_id in (select b from d1801imp where vipf is not null);";
    b += "update d1800 SET TMI=5;";
    b += "update d1800 set TMI=0 where k_id in (select b from d1801imp where x='0');";
    b += "update d1800 set TMI=1 where k_id in (select b from d1801imp where x='1');";
    b += "update d1800 set TMI=3 where k_id in (select b from d1801imp where x='3');";
    b += "update d1800 set TMI=2 where k_id in (select b from d1801imp where x='5');";
    b += "update d1800 set TMI=2 where k_id in (select b from d1801imp where isnull(x,'')='');";
    for (const char* c : {"j", "k", "l", "m", "n", "o", "p", "q", "r", "s", "t"})
        b += QString("update d1801imp set ") + c + "=0 where " + c + " is null;";
    if (StyleColours->isChecked())
        b += "insert into d1804 SELECT D1801IMP.B, D1005.COL_ID FROM D1801IMP INNER JOIN  D1005 ON D1801IMP.H = "
             "D1005.COL_NAME GROUP BY D1801IMP.B, D1005.COL_ID;";
    b += "delete d1801imp where (j+k+l+m+n+o+p+q+r+s)=0;";
    b += "INSERT INTO D1801 (WL_ID, K_ID, COL_ID) SELECT D1801IMP.B+D1005.COL_ID, D1801IMP.B, D1005.COL_ID FROM "
         "D1801IMP INNER JOIN D1005 ON D1801IMP.H = D1005.COL_NAME GROUP BY D1801IMP.B, D1005.COL_ID;";
    QString sizes, total;
    for (const char* c : {"J", "K", "L", "M", "N", "O", "P", "Q", "R", "S"}) {
        sizes += QString(",CONVERT(int,D1801IMP.") + c + ")";
        total += QString(total.isEmpty() ? "" : "+") + "CONVERT(int,D1801IMP." + c + ")";
    }
    b += "INSERT INTO D1802 (WL_ID, CK_ID, BDATE, B0, B1, B2, B3, B4, B5, B6, B7, B8, B9, BEGIN_MONEY,CHECK_KC) SELECT "
         "D1801IMP.B+D1005.COL_ID, D1007.CK_ID, '" +
         month + "-01'" + sizes + ",CONVERT(decimal(18,2),D1801IMP.T)*(" + total +
         "),0 FROM D1801IMP INNER JOIN D1005 ON D1801IMP.H = D1005.COL_NAME INNER JOIN D1007 ON D1801IMP.A = "
         "D1007.CK_NAME;";
    b += "UPDATE D1802 SET K0=B0,K1=B1,K2=B2,K3=B3,K4=B4,K5=B5,K6=B6,K7=B7,K8=B8,K9=B9,BEGIN_SL=B0+B1+B2+B3+B4+B5+B6+"
         "B7+B8+B9;";
    b += "UPDATE D1800 SET KC=T.SL,MONEY=T.JE FROM (SELECT D1801.K_ID,SUM(D1802.BEGIN_SL) AS SL,"
         "SUM(D1802.BEGIN_MONEY) AS JE FROM D1802 INNER JOIN D1801 ON D1802.WL_ID=D1801.WL_ID GROUP BY D1801.K_ID) T "
         "WHERE D1800.K_ID=T.K_ID;";
    b += "update d1800 set dj=money/kc where money>0 and kc>0;";
    return b;
}

AnsiString TQXCKS01_1::ColourGroupBatch() {
    opensql(AdoQry_Tmp, "901",
            "SELECT D1804.K_ID, D1005.COL_NAME FROM D1804 INNER JOIN D1005 ON D1804.COL_ID = D1005.COL_ID ORDER BY "
            "D1804.K_ID, D1804.COL_ID",
            0, 0, {}, {}, false, "1");
    AnsiString batch, style, names;
    for (AdoQry_Tmp->First(); !AdoQry_Tmp->Eof(); AdoQry_Tmp->Next()) {
        const QString k = AdoQry_Tmp->FieldByName("K_ID")->AsString();
        if (k != style && !style.isEmpty()) {
            batch += "update d1800 set COL_GROUP='" + SqlStr(names) + "' where k_id='" + SqlStr(style) + "';";
            names.clear();
        }
        style = k;
        names += (names.isEmpty() ? "" : ",") + AdoQry_Tmp->FieldByName("COL_NAME")->AsString();
    }
    if (!style.isEmpty())
        batch += "update d1800 set COL_GROUP='" + SqlStr(names) + "' where k_id='" + SqlStr(style) + "';";
    return batch;
}

void TQXCKS01_1::btn_okClick(QObject* Sender) {
    TFrm_Base_Dialog::btn_okClick(Sender);
    // The batch wipes the whole stock database first: never without rows to rebuild it from.
    opensql(AdoQry_Tmp, "901", "SELECT COUNT(*) AS N FROM D1801IMP", 0, 0, {}, {}, false, "1");
    if (AdoQry_Tmp->IsEmpty() || AdoQry_Tmp->Fields(0)->AsInteger() == 0) {
        DISPINFO("没有已上传的商品资料,请先运行第2步 准备上传 和第3步 上传!", 5);
        return;
    }
    AnsiString result;
    try {
        result = qx::setup::execInitialisation(GenerationBatch());
    } catch (const EDatabaseError& e) {
        if (qEnvironmentVariableIsSet("QXCK_SETUP_DEBUG")) qWarning("%s | %s", qPrintable(e.Message()), qPrintable(e.Statement()));
        DISPINFO("导入错误!", 5);
        return;
    }
    if (result != "Y") {
        DISPINFO("导入错误!", 5);
        return;
    }
    DISPINFO("系统已成功导入资料!尺码组 仅导入名称,请自行补齐相应的尺码!\n\r部分参数可能会因为重新初始而更改,请重新登录进销存系统!",
             5);
    const AnsiString groups = ColourGroupBatch();
    bool synced = true;
    if (!groups.isEmpty()) {
        try {
            synced = qx::setup::execInitialisation(groups) == "Y";
        } catch (const EDatabaseError&) {
            synced = false;
        }
    }
    DISPINFO(synced ? "系统已同步款号颜色组资料!" : "同步颜色组错误!", 5);
    SetModalResult(mrOk);
}
