#include "reports/Frmqxck282.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "documents/common/DocumentCommon.h"
#include "framework/DBGridEh.h"
#include "framework/ProgressDialog.h"
#include "framework/Settings.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "reports/ReportCommon.h"

TQXCK282* QXCK282 = nullptr;

namespace {

// The document blocks a measure draws from.
enum class Block { SalesTicket, PointOfSale, SalesReturn, PurchaseReceipt, PurchaseReturn };

// The sums of a block (quantity, amount, profit) and its tables up to the brand.
QString blockSums(Block b) {
    switch (b) {
        case Block::SalesTicket:
            return ",SUM(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9),SUM(D.SMONEY),SUM(D.SMONEY-D.MONEY) ";
        case Block::PointOfSale:
            return ",SUM(D.S0+D.S1+D.S2+D.S3+D.S4+D.S5+D.S6+D.S7+D.S8+D.S9),SUM(D.SMONEY),SUM(D.SMONEY-D.MONEY) ";
        // a return takes its quantity and amount off, but its margin is added as it stands
        case Block::SalesReturn:
            return ",0-SUM(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9),0-SUM(D.SMONEY),SUM(D.SMONEY-D.MONEY) ";
        // purchases carry no profit
        case Block::PurchaseReceipt:
            return ",SUM(D.S0+D.S1+D.S2+D.S3+D.S4+D.S5+D.S6+D.S7+D.S8+D.S9),SUM(D.MONEY),0 ";
        case Block::PurchaseReturn:
            return ",0-SUM(D.S0+D.S1+D.S2+D.S3+D.S4+D.S5+D.S6+D.S7+D.S8+D.S9),0-SUM(D.SMONEY),0 ";
    }
    return {};
}

QString blockTables(Block b) {
    const QString styleAndBrand = "JOIN D1800 K ON D.K_ID = K.K_ID JOIN D1009 D9 ON D9.PP_ID = K.PP_ID ";
    switch (b) {
        case Block::SalesTicket: return "FROM D8201 M JOIN D8201A D ON M.NOID = D.NOID " + styleAndBrand;
        // point-of-sale lines name the SKU only: the style comes through the SKU row, and lines
        // without an article (points, discounts, top-ups) have none
        case Block::PointOfSale:
            return "FROM d712 M JOIN d712a D ON M.NOID = D.NOID JOIN D1801 ON D.WL_ID = D1801.WL_ID "
                   "JOIN D1800 K ON D1801.K_ID = K.K_ID JOIN D1009 D9 ON D9.PP_ID = K.PP_ID ";
        case Block::SalesReturn: return "FROM D8202 M JOIN D8202A D ON M.NOID = D.NOID " + styleAndBrand;
        case Block::PurchaseReceipt: return "FROM D8101 M JOIN D8101A D ON M.NOID = D.NOID " + styleAndBrand;
        case Block::PurchaseReturn: return "FROM D8102 M JOIN D8102A D ON M.NOID = D.NOID " + styleAndBrand;
    }
    return {};
}

QList<Block> blocksOfMeasure(int measure) {
    switch (measure) {
        case 0: case 3: case 12: return {Block::SalesTicket, Block::PointOfSale, Block::SalesReturn};
        case 1: case 4: return {Block::SalesTicket, Block::PointOfSale};
        case 2: case 5: return {Block::SalesReturn};
        case 6: case 9: return {Block::PurchaseReceipt, Block::PurchaseReturn};
        case 7: case 10: return {Block::PurchaseReceipt};
        case 8: case 11: return {Block::PurchaseReturn};
    }
    return {};
}

QString valueColumnOfMeasure(int measure) {
    if (measure == 12) return "LY";
    if ((measure >= 3 && measure <= 5) || (measure >= 9 && measure <= 11)) return "smoney";
    return "SL";
}

// A row section: its row key, its header row and the table it joins to a block.
enum class Section { Warehouse, Brand, Category, Colour, Salesperson, Style };

QString rowKey(Section s) {
    switch (s) {
        case Section::Warehouse: return "'11-'+d1007.ck_name";
        case Section::Brand: return "'21-'+D9.PP_NAME";
        case Section::Category: return "'31-'+D1004.CLASS_NAME";
        case Section::Colour: return "'41-'+D1005.COL_NAME";
        case Section::Salesperson: return "'51-'+D1101.YW_NAME";
        case Section::Style: return "K.K_ID";
    }
    return {};
}

QString headerRow(Section s) {
    switch (s) {
        case Section::Warehouse: return " union all select '10--仓库-','','',0,0,0 ";
        case Section::Brand: return " union all select '20--品牌-','','',0,0,0 ";
        case Section::Category: return " union all select '30--类别-','','',0,0,0 ";
        case Section::Colour: return " union all select '40--颜色-','','',0,0,0 ";
        case Section::Salesperson: return " union all select '50--营业员-','','',0,0,0 ";
        case Section::Style: return {};
    }
    return {};
}

QString sectionJoin(Section s, Block b) {
    switch (s) {
        case Section::Warehouse: return "JOIN d1007 ON d1007.CK_ID = M.CK_ID ";
        case Section::Brand: return {};  // the brand is joined to every block
        case Section::Category: return "JOIN D1004 ON D1004.CLASS_ID = K.CLASS_ID ";
        case Section::Colour:
            return b == Block::PointOfSale ? "JOIN D1005 ON D1005.COL_ID = D1801.COL_ID " : "JOIN D1005 ON D1005.COL_ID = D.COL_ID ";
        case Section::Salesperson: return "JOIN D1101 ON D1101.YW_ID = M.YW_ID ";
        case Section::Style: return {};
    }
    return {};
}

QString periodKey(TQXCK282::Period p) {
    switch (p) {
        case TQXCK282::Period::Daily: return " CONVERT(CHAR(6), M.BDATE, 112),DATEPART(DAY,M.BDATE)";
        case TQXCK282::Period::Weekly: return "DATEPART(YEAR,M.BDATE),DATEPART(WK,M.BDATE)";
        case TQXCK282::Period::Monthly: return "DATEPART(YEAR,M.BDATE),DATEPART(MONTH,M.BDATE)";
    }
    return {};
}

const QString kEmptyRow = " select top 0 k_id as wl_id,K_ID AS M,K_ID AS D,0 as sl,0.00 as smoney,0.00 as ly from d1800  ";

QString wrapped(const QString& text, const QString& valueColumn) {
    return "SELECT  WL_ID,convert(varchar(6),M) + '|' + RIGHT('0'+CONVERT(VARCHAR(2),D),2) AS CK_NAME," + valueColumn +
           " AS KC " + "FROM (" + text + " ) T  ";
}

const char* const kMeasures[] = {"(销售)销量-退货量", "(销售)销量",     "(销售)退货量", "(销售)销售额-退货额", "(销售)销售额",
                                 "(销售)退货额",       "(进货)进货量-退货量", "(进货)进货量", "(进货)退货量",        "(进货)采购额-退货额",
                                 "(进货)采购额",       "(进货)退货额",     "利润"};

// A header row's key: two digits, the second 0, then "--" ("10--仓库-").
bool isHeaderKey(const QString& key) {
    static const QRegularExpression header("^[1-5]0--");
    return header.match(key).hasMatch();
}

}  // namespace

TQXCK282::TQXCK282(QWidget* Owner) : TFrm_Base_Qry(Owner) {
    setObjectName("QXCK282");
    SetCaption("经营综合分析");

    auto* head = new QWidget(this);
    head->setObjectName("Panel_Head");
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(4, 2, 4, 2);

    auto* periodBox = new QWidget(head);
    auto* periodGrid = new QVBoxLayout(periodBox);
    periodGrid->setContentsMargins(0, 0, 0, 0);
    periodGrid->setAlignment(Qt::AlignTop);
    auto* dates = new QHBoxLayout;
    dates->addWidget(new QLabel("期间：", periodBox));
    BDATE = new TDateEdit(periodBox);
    BDATE->setObjectName("BDATE");
    dates->addWidget(BDATE);
    dates->addWidget(new QLabel("至", periodBox));
    EDATE = new TDateEdit(periodBox);
    EDATE->setObjectName("EDATE");
    dates->addWidget(EDATE);
    periodGrid->addLayout(dates);
    auto* span = new QHBoxLayout;
    titDATE = CreateDayCountLabel(periodBox);
    span->addWidget(titDATE);
    btn_dateset = CreateDatePresetButton(periodBox);
    btn_dateset->setObjectName("btn_dateset");
    btn_dateset->setText("时段");
    span->addWidget(btn_dateset);
    span->addStretch(1);
    periodGrid->addLayout(span);
    row->addWidget(periodBox);

    auto* typeBox = new QGroupBox("报表类型：", head);
    auto* types = new QVBoxLayout(typeBox);
    auto radio = [typeBox, types](const char* name, const char* caption) {
        auto* r = new QRadioButton(QString::fromUtf8(caption), typeBox);
        r->setObjectName(name);
        types->addWidget(r);
        return r;
    };
    R1 = radio("R1", "日报表");
    R2 = radio("R2", "周报表");
    R3 = radio("R3", "月报表");
    R1->setChecked(true);
    row->addWidget(typeBox);

    auto* sectionBox = new QGroupBox("汇总项目", head);
    auto* sections = new QGridLayout(sectionBox);
    int placed = 0;
    auto box = [sectionBox, sections, &placed](const char* name, const char* caption) {
        auto* c = new QCheckBox(QString::fromUtf8(caption), sectionBox);
        c->setObjectName(name);
        c->setChecked(true);
        sections->addWidget(c, placed / 3, placed % 3);
        ++placed;
        return c;
    };
    C1 = box("C1", "仓库");
    C2 = box("C2", "品牌");
    C3 = box("C3", "类别");
    C4 = box("C4", "颜色");
    C5 = box("C5", "营业员");
    K1 = box("K1", "款号");
    row->addWidget(sectionBox);

    auto* sourceBox = new QWidget(head);
    auto* source = new QVBoxLayout(sourceBox);
    source->setContentsMargins(0, 0, 0, 0);
    source->setAlignment(Qt::AlignTop);
    source->addWidget(new QLabel("数据来源：", sourceBox));
    CB1 = new QComboBox(sourceBox);
    CB1->setObjectName("CB1");
    for (const char* m : kMeasures) CB1->addItem(QString::fromUtf8(m));
    CB1->setCurrentIndex(0);
    source->addWidget(CB1);
    btn_refresh = new QPushButton("( F5 ) 刷新", sourceBox);
    btn_refresh->setObjectName("btn_refresh");
    source->addWidget(btn_refresh);
    row->addWidget(sourceBox);
    row->addStretch(1);

    // below the toolbar, above the grid
    head->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    MainLayout()->insertWidget(MainLayout()->indexOf(ToolBar) + 1, head);
    FormCreate();
}

void TQXCK282::FormCreate() {
    TFrm_Base_Qry::FormCreate();
    // the choices sit in the head panel: there is no condition dialog to call up
    for (QAction* a : {Act_Locate, Act_Filter, Act_ShowReport}) {
        a->setEnabled(false);
        a->setVisible(false);
    }
    Lab_Condition->setVisible(false);
    SetDateEdits(BDATE, EDATE);
    for (TDateEdit* date : {BDATE, EDATE})
        qx::connectGuarded(date, &QDateEdit::dateChanged, this, [this] { EDATEChange(EDATE); });
    qx::connectGuarded(btn_refresh, &QPushButton::clicked, this, [this] { Act_Refresh->trigger(); });
    // the measure is kept for the next time the report is opened
    qx::connectGuarded(CB1, &QComboBox::currentIndexChanged, this, [this] {
        if (CB1->currentIndex() < 0) return;
        qx::settings::DialogOptions options(this);
        options.save("CB1", CB1->currentIndex());
        options.sync();
    });
    AdoQry_Main->AfterOpen = [this](TDataSet* ds) { AdoQry_MainAfterOpen(ds); };
}

void TQXCK282::InitForm(const Trecord& rec) {
    TFrm_Base_Qry::InitForm(rec);
    qx::reports::setMonthToToday(BDATE, EDATE);
    EDATEChange(EDATE);
    const int saved = qx::settings::DialogOptions(this).load("CB1", 0).toInt();
    if (saved >= 0 && saved < CB1->count()) {
        const QSignalBlocker quiet(CB1);
        CB1->setCurrentIndex(saved);
    }
}

void TQXCK282::Act_LocateExecute(QObject*) { BDATE->setFocus(); }

void TQXCK282::EDATEChange(QObject*) { qx::documents::updateDayCount(BDATE, EDATE, titDATE); }

TQXCK282::Period TQXCK282::ChosenPeriod() const {
    if (R2->isChecked()) return Period::Weekly;
    if (R3->isChecked()) return Period::Monthly;
    return Period::Daily;
}

bool TQXCK282::CheckChoices() {
    const qint64 days = BDATE->Date().daysTo(EDATE->Date());
    auto refuse = [](QWidget* focus, const QString& message) {
        DISPINFO(message, 5);
        if (focus) focus->setFocus();
        return false;
    };
    if (days < 0) return refuse(BDATE, "开始日期不能大于结束日期!");
    if (ChosenPeriod() == Period::Daily && days > 31) return refuse(BDATE, "报表类型是【日报表】请将日期限制在31天范围内!");
    if (days > 366) return refuse(BDATE, "请将日期限制在366天(约一年)范围内!");
    bool any = false;
    for (QCheckBox* c : {C1, C2, C3, C4, C5, K1}) any = any || c->isChecked();
    if (!any) return refuse(C1, "汇总项目至少勾选一项!");
    return true;
}

QString TQXCK282::BuildSql() const {
    const int measure = CB1->currentIndex();
    const QString period = periodKey(ChosenPeriod());
    const QString rights = G_CHKCK ? " JOIN sys_USER_CK U ON M.CK_ID = U.CK_ID AND (U.user_id='" + SqlStr(G_UserId) + "') "
                                   : QString();
    const QString where = " where m.bdate>='" + SqlStr(BDATE->Text()) + "' and m.bdate<'" +
                          SqlStr(qx::reports::nextDay(EDATE->Date())) + "'";

    QList<Section> chosen;
    if (K1->isChecked()) {
        chosen << Section::Style;
    } else {
        const QList<QPair<QCheckBox*, Section>> order{{C1, Section::Warehouse},
                                                      {C2, Section::Brand},
                                                      {C3, Section::Category},
                                                      {C4, Section::Colour},
                                                      {C5, Section::Salesperson}};
        for (const auto& [box, section] : order)
            if (box->isChecked()) chosen << section;
    }

    QString rows = kEmptyRow;
    QString headers = kEmptyRow;
    for (Section s : chosen) {
        for (Block b : blocksOfMeasure(measure))
            rows += " union all " + QString("SELECT ") + rowKey(s) + "," + period + blockSums(b) + blockTables(b) +
                    sectionJoin(s, b) + rights + where + "GROUP BY " + rowKey(s) + "," + period;
        headers += headerRow(s);
    }

    const QString value = valueColumnOfMeasure(measure);
    QString sql = "EXEC SYS_JD @param1=" + QuotedStr(wrapped(rows, value)) + ",@param2='" + "wl_id" + "',@param3='" +
                  "ck_name" + "',@param4='" + "kc";
    if (K1->isChecked()) {
        sql += "',@selectstr='" + QString(",D1800.WL_NAME,D1800.DW_NAME ") + "',@innerstr='" + " JOIN " + "(  " +
               "SELECT D1801.K_ID,NULL AS BDATE, " + "SUM(M.K0+M.K1+M.K2+M.K3+M.K4+M.K5+M.K6+ M.K7+M.K8+M.K9) as KC " +
               "FROM D1802 M JOIN " + "D1801 on M.WL_ID = D1801.WL_ID " + " GROUP BY D1801.K_ID) C on C.K_ID = D.WL_ID " +
               "INNER JOIN D1800 ON D1800.K_ID=C.K_ID " + "ORDER BY D1800.K_ID '";
    } else {
        sql += "',@selectstr='" + QString("',@innerstr='") + "',@PARAM11=" + QuotedStr(wrapped(headers, value));
    }
    return sql;
}

void TQXCK282::Act_RefreshExecute(QObject*) {
    if (!CheckChoices()) return;
    QrySql = BuildSql();
    shownPeriod_ = ChosenPeriod();
    shownStyles_ = K1->isChecked();
    shownAmounts_ = valueColumnOfMeasure(CB1->currentIndex()) != "SL";
    Refreshing = true;
    try {
        TProgressRun::Run(this, "正在进行经营综合分析…", [this] { GetData(); });
    } catch (...) {
        Refreshing = false;
        throw;
    }
    Refreshing = false;
    AdoQry_MainAfterOpen(AdoQry_Main);
}

void TQXCK282::AdoQry_MainAfterOpen(TDataSet*) {
    TDBGridEh* g = DBGridEh;
    periodFields_.clear();
    labelField_.clear();
    if (g->ColumnCount() == 0) return;
    // wl_ID, wl_NAME, dw_name first, then the periods as they came, the total last
    QStringList fields;
    for (const QString& f : {QString("wl_ID"), QString("wl_NAME"), QString("dw_name")})
        if (TColumnEh* c = g->ColumnByField(f)) fields << c->FieldName;
    QString total;
    for (int i = 0; i < g->ColumnCount(); ++i) {
        const QString f = g->Columns(i)->FieldName;
        if (fields.contains(f, Qt::CaseInsensitive)) continue;
        if (f.compare("total", Qt::CaseInsensitive) == 0) total = f;
        else periodFields_ << f;
    }
    fields << periodFields_;
    if (!total.isEmpty()) fields << total;
    g->AutoColumns = false;
    g->ClearColumns();
    for (const QString& f : fields) g->AddColumn(f, f);
    if (TColumnEh* c = g->ColumnByField("wl_ID")) {
        labelField_ = c->FieldName;
        c->Title = "款号";
        c->Width = shownStyles_ ? 100 : 140;
    }
    if (TColumnEh* c = g->ColumnByField("wl_NAME")) {
        c->Title = "名称";
        c->Width = 160;
    }
    if (TColumnEh* c = g->ColumnByField("dw_name")) {
        c->Title = "单位";
        c->Width = 50;
        c->Alignment = Qt::AlignCenter;
    }
    // period titles: the year (and month) above, the day, week or month below
    for (const QString& f : periodFields_) {
        TColumnEh* c = g->ColumnByField(f);
        const QString upper = f.section('|', 0, 0);
        const QString lower = f.section('|', 1);
        switch (shownPeriod_) {
            case Period::Daily:
                c->Title = upper.left(4) + "年" + upper.mid(4) + "月|" + lower + "日";
                c->Width = 50;
                break;
            case Period::Weekly:
                c->Title = upper + "年|第" + lower + "周";
                c->Width = 60;
                break;
            case Period::Monthly:
                c->Title = upper + "年|" + lower + "月";
                c->Width = 70;
                break;
        }
        // a style appears once, so the columns add up; sections each count the same sales again
        if (shownStyles_) c->Footer.ValueType = fvtSum;
        if (shownAmounts_) c->DisplayFormat = "0.00";
    }
    if (TColumnEh* c = g->ColumnByField("total")) {
        c->Title = "合计";
        c->FontColor = Qt::blue;
        if (shownStyles_) c->Footer.ValueType = fvtSum;
        if (shownAmounts_) c->DisplayFormat = "0.00";
    }
    g->SetFrozenCols(shownStyles_ ? 3 : 1);
    g->SetFooterRowVisible(shownStyles_);
    g->ColumnsChanged();
    g->AutoColumns = true;
}

void TQXCK282::DBGridEhGetCellParams(QObject*, TColumnEh* Column, TCellParams& Params) {
    TField* key = AdoQry_Main->FindField("wl_ID");
    if (key && isHeaderKey(key->AsString())) {
        // a section's header row: its title in bold on a band of colour
        Params.Background = QColor(0xE2, 0xEC, 0xF8);
        Params.Font.setBold(true);
    }
    TField* f = Column->Field();
    if (!f || Column->FieldName.compare("wl_ID", Qt::CaseInsensitive) == 0 ||
        Column->FieldName.compare("wl_NAME", Qt::CaseInsensitive) == 0 ||
        Column->FieldName.compare("dw_name", Qt::CaseInsensitive) == 0)
        return;
    if (f->IsNull()) {
        Params.Text = "";
        return;
    }
    bool numeric = false;
    const double v = f->Value().toDouble(&numeric);
    if (!numeric) return;
    if (v == 0) Params.Text = "";
    else if (v < 0) Params.FontColor = Qt::red;
}

qx::chart::ChartSpec TQXCK282::ChartSpec() const {
    if (periodFields_.isEmpty() || labelField_.isEmpty()) return {};
    // months as bars; days and weeks as lines; every selected row is one series
    return {shownPeriod_ == Period::Monthly ? qx::chart::ChartKind::Bars : qx::chart::ChartKind::Lines,
            qx::chart::Axis::Columns, labelField_, periodFields_};
}
