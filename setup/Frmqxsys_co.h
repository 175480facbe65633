#pragma once
// System settings: the company row sys_co (company data, backup reminder, the option string
// PARAM, the barcode rules) and the texts and grid columns of the mobile pages (sys_web).
// OK saves everything in one batch and closes; the mobile grid has its own save button.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>
#include <array>
#include <utility>
#include <vector>

#include "framework/Frm_Base.h"
#include "setup/SysParam.h"

class Tqxsys_co : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit Tqxsys_co(QWidget* Owner);

    void FormCreate();
    void InitForm(const Trecord& rec);
    void btn_okClick(QObject* Sender) override;
    void bsSkinTabSheet6Enter(QObject* Sender);
    void Button2Click(QObject* Sender);

    // The options as the controls show them, and back.
    qx::setup::SysParam ParamFromControls() const;
    void ParamToControls(const qx::setup::SysParam& p);
    // The rounding choice: "1", "2", "3" or "" when none is ticked.
    AnsiString RoundingChoice() const;
    // The statement the barcode-rule check opens, or "" when all four rules are ticked.
    AnsiString BarcodeRuleQuery() const;

    static const char* const LoadQuery;
    static const char* const MobileGridQuery;

    QTabWidget* PageControl;
    QWidget* bsSkinTabSheet6;  // the mobile grid page
    QWidget* BarcodePage;

    // company
    QLineEdit *co, *fzr, *tel, *fax, *addr, *email, *note;
    QSpinBox *QtyLen, *AmountLen, *PriceLen, *ck_date;
    // backup
    QLineEdit* BACKPATH;
    QSpinBox* backday;
    QCheckBox* GoLive;        // 20
    QCheckBox* GoLiveHidden;  // 6
    // general
    QCheckBox *AutoGoodsCode, *ClassPrefix, *WarehouseRights, *OfferUnknownStyle;
    QSpinBox* GoodsDigits;
    std::array<QComboBox*, 4> BarcodeOrder;
    QCheckBox *PartnerAutoCode, *LogOperations, *AllowNegative, *MemberAutoCode;
    QSpinBox *PartnerDigits, *SalesDecimals, *MemberDigits;
    QRadioButton *RoundHalf, *RoundUp, *RoundCut;
    QRadioButton *ByDiscount, *ByUnitPrice;
    // cashier
    QCheckBox *Discount, *OfflineSales, *MemberFirst, *NoteColumn, *Shift;
    QLineEdit* YuanPerPoint;
    // brands and barcodes
    QRadioButton *SingleBrand, *SeveralBrands, *ColourCode, *ColourMark, *AllColours, *BrandColours;
    std::array<QCheckBox*, 4> BarcodeRule;
    // mobile texts M1..M9, MA
    std::array<QLineEdit*, 10> MobileText;
    // mobile grid
    TClientDataSet* AdoQry_Tmp;
    TClientDataSet* AdoQry_Web;
    TDBGridEh* WebGrid;
    QPushButton* Button2;

private:
    std::vector<std::pair<QCheckBox*, bool qx::setup::SysParam::*>> FlagBindings() const;
    QWidget* addPage(const QString& name, const QString& caption, TFormPanel*& panel, int pairs = 2);
    void loadMobileGrid();
};

extern Tqxsys_co* qxsys_co;
