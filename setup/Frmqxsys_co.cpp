#include "setup/Frmqxsys_co.h"

#include <QButtonGroup>
#include <QLabel>
#include <QVBoxLayout>

#include "framework/DBGridEh.h"

Tqxsys_co* qxsys_co = nullptr;

using qx::setup::SysParam;

const char* const Tqxsys_co::LoadQuery =
    "SELECT SYS_CO.*,B.* FROM (SELECT field_name FROM SYS_WEB WHERE (field_type = 'm') AND (field_table = 'cg')) B "
    "CROSS JOIN SYS_CO";

const char* const Tqxsys_co::MobileGridQuery =
    "SELECT CASE field_table WHEN 'CG' THEN '进货明细' WHEN 'kc' THEN '库存' WHEN 'vip' THEN '会员' WHEN 'ss' THEN "
    "'销售明细' WHEN 'xsg' THEN '销售汇总' END AS G, id, field_table, field_name,field_width, field_show FROM SYS_WEB "
    "ORDER BY field_table, field_order";

namespace {
const char* const kRuleMessages[4] = {
    "【条码规则】 商品资料中已经存在【条码即款号】的商品，不能把该勾选去掉!",
    "【条码规则】 商品资料中已经存在【无规则条码，自行录入】的商品，不能把该勾选去掉!",
    "【条码规则】 商品资料中已经存在【款+ 色 +尺码标识】的商品，不能把该勾选去掉!",
    "【条码规则】 商品资料中已经存在【款+ 尺码标识 +色】的商品，不能把该勾选去掉!",
};

QSpinBox* spin(const QString& name, int low, int high) {
    auto* s = new QSpinBox;
    s->setObjectName(name);
    s->setRange(low, high);
    return s;
}

// A number box on a row of its own.
QSpinBox* spinRow(TFormPanel* panel, const QString& name, int low, int high, const QString& caption) {
    QSpinBox* s = spin(name, low, high);
    panel->AddControl(s, caption);
    panel->NewRow();
    return s;
}

QRadioButton* radio(const QString& name, const QString& caption) {
    auto* r = new QRadioButton(caption);
    r->setObjectName(name);
    return r;
}

// Two or three exclusive choices in one row.
void group(TFormPanel* panel, const QString& caption, std::initializer_list<QRadioButton*> buttons) {
    auto* box = new QWidget;
    auto* layout = new QHBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* exclusive = new QButtonGroup(box);
    for (QRadioButton* b : buttons) {
        layout->addWidget(b);
        exclusive->addButton(b);
    }
    layout->addStretch();
    panel->AddControl(box, caption, 3);
    panel->NewRow();
}

QCheckBox* wideCheck(TFormPanel* panel, const QString& name, const QString& caption) {
    auto* c = new QCheckBox(caption);
    c->setObjectName(name);
    panel->AddControl(c, {}, 3);
    panel->NewRow();
    return c;
}
}  // namespace

QWidget* Tqxsys_co::addPage(const QString& name, const QString& caption, TFormPanel*& panel, int pairs) {
    auto* page = new QWidget;
    page->setObjectName(name);
    auto* layout = new QVBoxLayout(page);
    panel = new TFormPanel(page, name + "_Panel", pairs);
    layout->addWidget(panel);
    layout->addStretch();
    PageControl->addTab(page, caption);
    return page;
}

Tqxsys_co::Tqxsys_co(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    setObjectName("qxsys_co");
    SetCaption("系统设置");
    auto* title = new QLabel("系统参数设置");
    title->setObjectName("Lab_Title");
    title->setStyleSheet("font-size: 16px; font-weight: bold;");
    MainLayout()->insertWidget(0, title);
    PageControl = new QTabWidget;
    PageControl->setObjectName("PageControl");
    MainLayout()->insertWidget(1, PageControl, 1);
    Panel_Condition->hide();
    AdoQry_Tmp = new TClientDataSet(this);
    AdoQry_Tmp->setObjectName("AdoQry_Tmp");
    AdoQry_Web = new TClientDataSet(this);
    AdoQry_Web->setObjectName("AdoQry_Web");

    TFormPanel* p = nullptr;
    addPage("CompanyPage", "企业信息", p);
    co = p->AddEdit("co", "企业名称", 40);
    fzr = p->AddEdit("fzr", "负责人", 20);
    tel = p->AddEdit("tel", "电话", 50);
    fax = p->AddEdit("fax", "传真", 30);
    addr = p->AddEdit("addr", "地址", 80);
    email = p->AddEdit("email", "E-mail", 50);
    note = p->AddEdit("note", "备注", 50);
    QtyLen = spin("QtyLen", 0, 4);
    AmountLen = spin("AmountLen", 0, 4);
    PriceLen = spin("PriceLen", 0, 4);
    ck_date = spin("ck_date", 1, 31);
    for (QSpinBox* hidden : {QtyLen, AmountLen, PriceLen, ck_date}) {
        hidden->setParent(p);
        hidden->hide();
    }

    addPage("BackupPage", "备份设置", p);
    BACKPATH = p->AddEdit("BACKPATH", "备份路径", 255);
    p->NewRow();
    backday = spinRow(p, "backday", 0, 365, "每隔(天)提醒备份");
    GoLive = wideCheck(p, "GoLive", "正式启用  (单机版有效/更改后重新登录生效)");
    GoLiveHidden = new QCheckBox("正式启用", p);
    GoLiveHidden->setObjectName("GoLiveHidden");
    GoLiveHidden->hide();

    addPage("GeneralPage", "常规", p);
    AutoGoodsCode = wideCheck(p, "AutoGoodsCode", "商品自动编码");
    ClassPrefix = wideCheck(p, "ClassPrefix", "类别+");
    GoodsDigits = spinRow(p, "GoodsDigits", 4, 10, "位流水码");
    WarehouseRights = wideCheck(p, "WarehouseRights", "启用仓库权限控制:可设定不同用户有权操作不同的仓库");
    OfferUnknownStyle =
        wideCheck(p, "OfferUnknownStyle", "<进货单> 录入不存在的款号时,提示将资料增加至商品基本资料。 ");
    const QStringList orderItems{" ", "类别", "款号", "色码", "尺码标识"};
    for (int i = 0; i < 4; ++i) {
        BarcodeOrder[size_t(i)] = p->AddComboBox("BarcodeOrder" + QString::number(i),
                                                 i == 0 ? "条码生成顺序" : QString(), orderItems);
    }
    p->NewRow();
    PartnerAutoCode = wideCheck(p, "PartnerAutoCode", "客户/供应商自动编码");
    PartnerDigits = spinRow(p, "PartnerDigits", 4, 6, "位流水码");
    LogOperations = wideCheck(p, "LogOperations", "记录用户操作日记");
    SalesDecimals = spinRow(p, "SalesDecimals", 0, 2, "后台销售单金额小数位数：");
    RoundHalf = radio("RoundHalf", "四舍五入");
    RoundUp = radio("RoundUp", "直接进位");
    RoundCut = radio("RoundCut", "直接抹去");
    group(p, "计算方法：", {RoundHalf, RoundUp, RoundCut});
    AllowNegative = wideCheck(p, "AllowNegative", "商品增加默认为【允许负库存】");
    MemberAutoCode = wideCheck(p, "MemberAutoCode", "会员自动编码");
    MemberDigits = spinRow(p, "MemberDigits", 4, 6, "会员编码位数");
    ByDiscount = radio("ByDiscount", "折扣计算(默认)");
    ByUnitPrice = radio("ByUnitPrice", "单价计算");
    group(p, "销售单价格修改", {ByDiscount, ByUnitPrice});

    addPage("CashierPage", "POS收银", p);
    Discount = new QCheckBox("启用 <折扣>", p);
    Discount->setObjectName("Discount");
    Discount->hide();
    OfflineSales = wideCheck(p, "OfflineSales",
                             "启用 <离线销售>功能/网络版有效   (对于互联网使用，网络不稳定的情况下使用)");
    MemberFirst =
        wideCheck(p, "MemberFirst", "收银系统必须先录入会员 再录入购买商品（反之可随时更改本单的会员）");
    NoteColumn = new QCheckBox("显示 <备注> 栏", p);
    NoteColumn->setObjectName("NoteColumn");
    NoteColumn->hide();
    Shift = new QCheckBox("启用<当班/交班>功能   (如营业员经手现金建议启用,商场代收建议不启用)", p);
    Shift->setObjectName("Shift");
    Shift->hide();
    YuanPerPoint = p->AddEdit("YuanPerPoint", "消费", 10);
    p->AddLabel("PointLabel", "元积 1 分");

    BarcodePage = addPage("BarcodePage", "单品牌  / 多品牌", p);
    SingleBrand = radio("SingleBrand", "单品牌方案，不会出现重复款号");
    SeveralBrands = radio("SeveralBrands", "多品牌方案，使用该品牌款号，有可能出现重复款号");
    group(p, "品牌", {SingleBrand, SeveralBrands});
    ColourCode = radio("ColourCode", "颜色编码");
    ColourMark = radio("ColourMark", "颜色识别码");
    group(p, "颜色", {ColourCode, ColourMark});
    AllColours = radio("AllColours", "显示所有颜色");
    BrandColours = radio("BrandColours", "仅显示该款所属品牌的颜色");
    group(p, "颜色列表", {AllColours, BrandColours});
    const char* rules[4] = {"条码即款号", "商品有款号，且条码无任何规则，须自行录入", "款+ 色 +尺码标识",
                            "款+ 尺码标识 +色"};
    for (int i = 0; i < 4; ++i) BarcodeRule[size_t(i)] = wideCheck(p, "BarcodeRule" + QString::number(i), rules[i]);

    addPage("MobilePage", "手机版本设定", p, 1);
    const char* names[10] = {"M1", "M2", "M3", "M4", "M5", "M6", "M7", "M8", "M9", "MA"};
    for (int i = 0; i < 10; ++i) {
        MobileText[size_t(i)] = p->AddEdit(names[i], names[i], 100);
        p->NewRow();
    }

    bsSkinTabSheet6 = new QWidget;
    bsSkinTabSheet6->setObjectName("bsSkinTabSheet6");
    auto* gridLayout = new QVBoxLayout(bsSkinTabSheet6);
    auto* hint = new QLabel("提示：  下表只能更改宽度和显示/隐藏…   宽度填成 0  即手机不显示该栏");
    hint->setObjectName("Lab_WebHint");
    gridLayout->addWidget(hint);
    WebGrid = new TDBGridEh(bsSkinTabSheet6, "WebGrid");
    gridLayout->addWidget(WebGrid, 1);
    Button2 = new QPushButton("[保存]       手机参数保存后，刷新手机查看最终效果", bsSkinTabSheet6);
    Button2->setObjectName("Button2");
    gridLayout->addWidget(Button2);
    PageControl->addTab(bsSkinTabSheet6, "手机表格显示设定");
    qx::connectGuarded(Button2, &QPushButton::clicked, this, [this] { Button2Click(Button2); });
    connect(PageControl, &QTabWidget::currentChanged, this, [this](int index) {
        if (PageControl->widget(index) == bsSkinTabSheet6) qx::guard([this] { bsSkinTabSheet6Enter(bsSkinTabSheet6); });
    });
    resize(760, 560);
    FormCreate();
}

void Tqxsys_co::FormCreate() {
    PageControl->setCurrentIndex(0);
    TFrm_Base_Dialog::FormCreate();
}

void Tqxsys_co::InitForm(const Trecord&) {
    opensql(AdoQry_Tmp, FuncNo, LoadQuery, 0, 0, {}, {}, false, "1");
    // Without mobile text rows the cross join is empty: the company row is read on its own, so
    // that OK never writes an empty dialog over it.
    if (AdoQry_Tmp->IsEmpty()) opensql(AdoQry_Tmp, FuncNo, "SELECT * FROM SYS_CO", 0, 0, {}, {}, false, "1");
    if (!AdoQry_Tmp->IsEmpty()) {
        AdoQry_Tmp->First();
        const auto text = [this](const char* field) { return AdoQry_Tmp->FieldByName(field)->AsString(); };
        co->setText(text("co"));
        fzr->setText(text("fzr"));
        tel->setText(text("tel"));
        fax->setText(text("fax"));
        addr->setText(text("addr"));
        email->setText(text("email"));
        note->setText(text("note"));
        PriceLen->setValue(AdoQry_Tmp->FieldByName("PriceLen")->AsInteger());
        AmountLen->setValue(AdoQry_Tmp->FieldByName("AmountLen")->AsInteger());
        QtyLen->setValue(AdoQry_Tmp->FieldByName("QtyLen")->AsInteger());
        ck_date->setValue(AdoQry_Tmp->FieldByName("ck_date")->AsInteger());
        BACKPATH->setText(text("BACKPATH"));
        backday->setValue(AdoQry_Tmp->FieldByName("backday")->AsInteger());
        ParamToControls(SysParam::read(text("param")));
        // The first ten rows in the order the query gives them.
        int i = 0;
        if (AdoQry_Tmp->FindField("field_name"))
            for (AdoQry_Tmp->First(); !AdoQry_Tmp->Eof() && i < 10; AdoQry_Tmp->Next(), ++i)
                MobileText[size_t(i)]->setText(text("field_name"));
    }
    loadMobileGrid();
}

// The plain check boxes and the option each one shows, both ways.
std::vector<std::pair<QCheckBox*, bool SysParam::*>> Tqxsys_co::FlagBindings() const {
    return {{AutoGoodsCode, &SysParam::autoGoodsCode},   {ClassPrefix, &SysParam::classPrefix},
            {WarehouseRights, &SysParam::warehouseRights}, {OfferUnknownStyle, &SysParam::offerUnknownStyle},
            {Discount, &SysParam::discount},             {GoLiveHidden, &SysParam::goLiveHidden},
            {OfflineSales, &SysParam::offlineSales},     {MemberFirst, &SysParam::memberFirst},
            {NoteColumn, &SysParam::noteColumn},         {Shift, &SysParam::shift},
            {PartnerAutoCode, &SysParam::partnerAutoCode}, {LogOperations, &SysParam::logOperations},
            {GoLive, &SysParam::goLive},                 {AllowNegative, &SysParam::allowNegative},
            {MemberAutoCode, &SysParam::memberAutoCode}};
}

void Tqxsys_co::ParamToControls(const SysParam& s) {
    for (const auto& [box, flag] : FlagBindings()) box->setChecked(s.*flag);
    GoodsDigits->setValue(s.goodsDigits);
    PartnerDigits->setValue(s.partnerDigits);
    MemberDigits->setValue(s.memberDigits);
    SalesDecimals->setValue(s.salesDecimals.trimmed().toInt());
    YuanPerPoint->setText(s.yuanPerPoint);
    for (int i = 0; i < 4; ++i) {
        BarcodeOrder[size_t(i)]->setCurrentIndex(s.barcodeOrder[size_t(i)]);
        BarcodeRule[size_t(i)]->setChecked(s.barcodeRules[size_t(i)]);
    }
    RoundHalf->setChecked(s.rounding == "1");
    RoundUp->setChecked(s.rounding == "2");
    RoundCut->setChecked(s.rounding == "3");
    (s.singleBrand ? SingleBrand : SeveralBrands)->setChecked(true);
    (s.colourCode ? ColourCode : ColourMark)->setChecked(true);
    (s.allColours ? AllColours : BrandColours)->setChecked(true);
    ByDiscount->setChecked(true);
    if (!s.byDiscount) ByUnitPrice->setChecked(true);
}

SysParam Tqxsys_co::ParamFromControls() const {
    SysParam s;
    for (const auto& [box, flag] : FlagBindings()) s.*flag = box->isChecked();
    s.goodsDigits = GoodsDigits->value();
    s.partnerDigits = PartnerDigits->value();
    s.memberDigits = MemberDigits->value();
    s.salesDecimals = QString::number(SalesDecimals->value());
    s.yuanPerPoint = YuanPerPoint->text();
    for (int i = 0; i < 4; ++i) {
        s.barcodeOrder[size_t(i)] = std::max(0, BarcodeOrder[size_t(i)]->currentIndex());
        s.barcodeRules[size_t(i)] = BarcodeRule[size_t(i)]->isChecked();
    }
    s.rounding = RoundingChoice();
    s.singleBrand = SingleBrand->isChecked();
    s.colourCode = ColourCode->isChecked();
    s.allColours = AllColours->isChecked();
    s.byDiscount = ByDiscount->isChecked();
    return s;
}

AnsiString Tqxsys_co::RoundingChoice() const {
    if (RoundHalf->isChecked()) return "1";
    if (RoundUp->isChecked()) return "2";
    if (RoundCut->isChecked()) return "3";
    return {};
}

AnsiString Tqxsys_co::BarcodeRuleQuery() const {
    bool all = true;
    AnsiString sql = "select top 1 tmi from d1800 where (1<0)";
    for (int i = 0; i < 4; ++i) {
        if (BarcodeRule[size_t(i)]->isChecked()) continue;
        all = false;
        sql += " or (tmi = " + QString::number(i) + ")";
    }
    return all ? AnsiString() : sql;
}

void Tqxsys_co::btn_okClick(QObject* Sender) {
    TFrm_Base_Dialog::btn_okClick(Sender);
    // The points rate sits in the comma-separated option list: it must be a plain number.
    bool number = false;
    YuanPerPoint->text().trimmed().toDouble(&number);
    if (!number || YuanPerPoint->text().contains(',')) {
        PageControl->setCurrentWidget(YuanPerPoint->parentWidget()->parentWidget());
        DISPINFO("消费积分的金额必须是数字!", 5);
        YuanPerPoint->setFocus();
        Abort();
    }
    const SysParam s = ParamFromControls();
    if (std::none_of(s.barcodeRules.begin(), s.barcodeRules.end(), [](bool on) { return on; })) {
        PageControl->setCurrentWidget(BarcodePage);
        DISPINFO("【条码规则】 至少要勾选一项!", 5);
        Abort();
    }
    const AnsiString ruleQuery = BarcodeRuleQuery();
    if (!ruleQuery.isEmpty()) {
        opensql(AdoQry_Tmp, FuncNo, ruleQuery, 0, 0, {}, {}, false, "1");
        if (!AdoQry_Tmp->IsEmpty()) {
            PageControl->setCurrentWidget(BarcodePage);
            const int tmi = AdoQry_Tmp->Fields(0)->AsInteger();
            if (!AdoQry_Tmp->Fields(0)->IsNull() && tmi >= 0 && tmi <= 3) DISPINFO(kRuleMessages[tmi], 5);
            Abort();
        }
    }
    AnsiString batch = "update sys_co set co='" + SqlStr(co->text()) + "',fzr='" + SqlStr(fzr->text()) + "',tel='" +
                       SqlStr(tel->text()) + "',fax='" + SqlStr(fax->text()) + "',addr='" + SqlStr(addr->text()) +
                       "',email='" + SqlStr(email->text()) + "',note='" + SqlStr(note->text()) + "',BACKPATH='" +
                       SqlStr(BACKPATH->text()) + "',backday='" + QString::number(backday->value()) + "',param='" +
                       SqlStr(s.write()) + "',PriceLen=" + QString::number(PriceLen->value()) +
                       ",AmountLen=" + QString::number(AmountLen->value()) + ",ck_date=" +
                       QString::number(ck_date->value()) + ",ck_qs=" + (s.warehouseRights ? "1" : "0") +
                       ",CK_MENOY=4;";
    for (int i = 0; i < 10; ++i)
        batch += "update sys_web set field_name='" + SqlStr(MobileText[size_t(i)]->text()) +
                 "' WHERE (field_type = 'm') and (field_show=" + QString::number(i + 1) + ");";
    ExecSql(FormParam[0], "", "E", batch, 0, false, true, false, true);
    SetModalResult(mrOk);
    Close();
}

void Tqxsys_co::loadMobileGrid() {
    if (AdoQry_Web->Active()) return;
    opensql(AdoQry_Web, FuncNo, MobileGridQuery, 0, 0, {}, {}, false, "1");
    if (WebGrid->ColumnByField("G") == nullptr) WebGrid->SetDataSet(AdoQry_Web);
    struct Column {
        const char* field;
        const char* title;
        bool editable;
        bool shown;
    };
    static const Column columns[] = {{"G", "功能", false, true},          {"id", "id", false, false},
                                     {"field_table", "", false, false},   {"field_name", "栏目名称", false, true},
                                     {"field_width", "宽度", true, true}, {"field_show", "显示/隐藏", true, true}};
    for (const Column& c : columns) {
        if (TField* f = AdoQry_Web->FindField(c.field)) {
            f->ReadOnly = !c.editable;
            f->Visible = c.shown;
        }
        if (TColumnEh* column = WebGrid->ColumnByField(c.field)) {
            column->Title = c.title;
            column->ReadOnly = !c.editable;
            column->Visible = c.shown;
        }
    }
    WebGrid->ColumnsChanged();
}

void Tqxsys_co::bsSkinTabSheet6Enter(QObject*) { loadMobileGrid(); }

void Tqxsys_co::Button2Click(QObject*) {
    if (!AdoQry_Web->Active()) return;
    AdoQry_Web->CheckBrowseMode();
    const int current = AdoQry_Web->RecNo();
    AnsiString batch;
    AdoQry_Web->DisableControls();
    for (AdoQry_Web->First(); !AdoQry_Web->Eof(); AdoQry_Web->Next())
        batch += "update sys_web set field_width=" + QString::number(AdoQry_Web->FieldByName("field_width")->AsInteger()) +
                 ",field_show=" + QString::number(AdoQry_Web->FieldByName("field_show")->AsInteger()) +
                 "where id=" + QString::number(AdoQry_Web->FieldByName("id")->AsInteger()) + ";";
    AdoQry_Web->SetRecNo(current);
    AdoQry_Web->EnableControls();
    if (batch.isEmpty()) return;
    // The data operation answers "Y"; the grid's save accepts either case.
    if (ExecSql(FormParam[0], "", "E", batch, 65535, false, true, false, true).compare("y", Qt::CaseInsensitive) == 0)
        DISPINFO("保存成功! 请刷新手机显示的页面查看最终的效果!", 5);
}
