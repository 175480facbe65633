#pragma once
// The promotion scheme of one warehouse: eleven numbered rows. Row 0 is the gift promotion
// (active flag only), rows 1 and 2 special prices and fixed discounts per style (active flag and
// dates), rows 3-10 free rules (description, rule, threshold, benefit, non-member and member
// values, dates). Saving replaces all eleven rows; the style buttons assign styles to a row.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <array>

#include "framework/Frm_Base.h"

class TQXCKS02 : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TQXCKS02(QWidget* Owner);

    // mode "Edit" allows saving and clearing; anything else only shows the scheme.
    void InitForm(const AnsiString& mode, const AnsiString& ckId, const AnsiString& ckName);
    void RefreshData();
    void btn_okClick(QObject* Sender) override;
    void btn_Click(int row);
    void c_allClick(QObject* Sender);
    void Changes();
    void bsSkinButton1Click(QObject* Sender);

    // The save batch of the inputs as they are (no checks).
    AnsiString SaveBatch() const;
    // A threshold or value as stored: the typed number, "0" when it is not one.
    static AnsiString NumberText(const QString& typed);

    static constexpr int Rows = 11;
    AnsiString CK_ID;
    bool MayEdit = false;
    TClientDataSet* AdoQry_Tmp;

    std::array<QCheckBox*, Rows> T;
    std::array<QLineEdit*, Rows> FA;        // rows 3-10
    std::array<QComboBox*, Rows> CLA;       // rows 3-10
    std::array<QComboBox*, Rows> CLAZK;     // rows 3-10
    std::array<QLineEdit*, Rows> F1, F2, F3;  // rows 3-10
    std::array<TDateEdit*, Rows> BDATE, EDATE;  // rows 1-10
    std::array<QPushButton*, Rows> btn;     // style buttons, tag = row
    QCheckBox* c_all;
    QPushButton* bsSkinButton1;
    QLabel* Lab_Warehouse;

private:
    bool loading_ = false;
};

extern TQXCKS02* QXCKS02;
