#include "period/Frmqxck342_2.h"

#include <QEvent>
#include <QVBoxLayout>

#include "period/PeriodCommon.h"

TQXCK342_2* QXCK342_2 = nullptr;

namespace {
// Double clicks on the title label.
class DoubleClickFilter : public QObject {
public:
    DoubleClickFilter(QObject* parent, std::function<void()> onDoubleClick) : QObject(parent), on_(std::move(onDoubleClick)) {}
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonDblClick) {
            on_();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> on_;
};
}  // namespace

TQXCK342_2::TQXCK342_2(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    setObjectName("QXCK342_2");
    SetCaption("成本重算负库存提示");
    Label3 = new QLabel("成本重算负库存提示", this);
    Label3->setObjectName("Label3");
    QFont title = Label3->font();
    title.setBold(true);
    title.setPointSizeF(title.pointSizeF() * 1.3);
    Label3->setFont(title);
    Label1 = new QLabel("成本重算出现负库存，造成该原因是：进货的日期迟于销售的日期。", this);
    Label1->setObjectName("Label1");
    Label2 = new QLabel("解决办法：把出现负库存的进货日期调前，或者把销售单据调后,然后再进行一次成本重算。", this);
    Label2->setObjectName("Label2");
    Label4 = new QLabel("对其它数据影响：对该商品参与的明细，汇总类利润计算会造成影响，如不关心利润可以直接跳过。", this);
    Label4->setObjectName("Label4");
    for (QLabel* l : {Label1, Label2, Label4}) l->setWordWrap(true);
    AdoQry_Main = new TClientDataSet(this);
    AdoQry_Main->setObjectName("AdoQry_Main");
    DBGridEh = TDBGridEh::CreateBrowseGrid(this, AdoQry_Main);
    DBGridEh->AutoColumns = false;
    DBGridEh->SetReadOnly(true);
    MainLayout()->insertWidget(0, Label3);
    MainLayout()->insertWidget(1, Label1);
    MainLayout()->insertWidget(2, Label2);
    MainLayout()->insertWidget(3, Label4);
    MainLayout()->insertWidget(4, DBGridEh, 1);
    btn_ok->setVisible(false);
    btn_cancel->setText("关闭");
    BuildColumns();
    resize(960, 520);
    FormCreate();
}

TQXCK342_2::~TQXCK342_2() { DBGridEh->ClearHooks(); }

void TQXCK342_2::BuildColumns() {
    qx::period::addColumns(DBGridEh, {{"K_ID", "款号", 90},
                                      {"WL_NAME", "品名", 120},
                                      {"noid", "单号", 100},
                                      {"BDATE", "日期", 80},
                                      {"mytype", "mytype", 40, false},
                                      {"C", "单据类型", 70},
                                      {"in1", "进|数量", 50},
                                      {"in_mon", "进|成本金额", 70},
                                      {"ou1", "出|数量", 50},
                                      {"ou_mon", "进|成本金额", 70},
                                      {"jc", "存|数量", 50},
                                      {"jc_mon", "存|成本金额", 70}});
    DBGridEh->ColumnsChanged();
}

void TQXCK342_2::FormCreate() {
    TFrm_Base_Dialog::FormCreate();
    Label3->installEventFilter(new DoubleClickFilter(Label3, [this] { qx::guard([this] { Label3DblClick(Label3); }); }));
}

void TQXCK342_2::INIT(TClientDataSet* Source) {
    SourceDataSet = Source;
    qx::period::copyDataSet(Source, AdoQry_Main);
    if (TField* date = AdoQry_Main->FindField("BDATE")) date->DisplayFormat = "yyyy-mm-dd";
    DBGridEh->SetDataSet(AdoQry_Main);
}

void TQXCK342_2::btn_okClick(QObject*) {
    if (SourceDataSet) INIT(SourceDataSet);
}

void TQXCK342_2::Label3DblClick(QObject*) {
    if (isMaximized()) showNormal();
    else showMaximized();
}
