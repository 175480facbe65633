#pragma once
// The business analysis: one measure (sales or purchase quantity or amount, or profit) over a
// period, one column per day, week or month, rows in sections by warehouse, brand, category,
// colour and salesperson, or one row per style. The choices sit in the head panel; refresh (F5)
// checks them and hands the row source to the cross-tab procedure SYS_JD.
#include <QStringList>

#include "framework/Controls.h"
#include "framework/Frm_Base_Qry.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QToolButton;

class TQXCK282 : public TFrm_Base_Qry {
    Q_OBJECT
public:
    explicit TQXCK282(QWidget* Owner);

    void InitForm(const Trecord& rec) override;
    void FormCreate();
    void Act_LocateExecute(QObject* Sender) override;   // no dialog: the head panel takes the focus
    void Act_RefreshExecute(QObject* Sender) override;  // checks, statement, query
    void AdoQry_MainAfterOpen(TDataSet* DataSet);
    void DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params) override;
    void EDATEChange(QObject* Sender);
    qx::chart::ChartSpec ChartSpec() const override;

    enum class Period { Daily, Weekly, Monthly };
    Period ChosenPeriod() const;

    // The checks of a refresh, in order; each failure shows its message and returns false.
    bool CheckChoices();
    // The statement of the current choices (the checks are not made here).
    QString BuildSql() const;

    // Head panel
    TDateEdit* BDATE;
    TDateEdit* EDATE;
    QLabel* titDATE;
    QToolButton* btn_dateset;
    QRadioButton* R1;  // 日报表
    QRadioButton* R2;  // 周报表
    QRadioButton* R3;  // 月报表
    QCheckBox* C1;     // 仓库
    QCheckBox* C2;     // 品牌
    QCheckBox* C3;     // 类别
    QCheckBox* C4;     // 颜色
    QCheckBox* C5;     // 营业员
    QCheckBox* K1;     // 款号
    QComboBox* CB1;    // the measure
    QPushButton* btn_refresh;

    // What the last query returned: the period columns in order, and whether its rows were styles.
    QStringList PeriodFields() const { return periodFields_; }

private:
    QStringList periodFields_;
    QString labelField_;
    Period shownPeriod_ = Period::Daily;
    bool shownStyles_ = false;
    bool shownAmounts_ = false;  // amounts and profit: two decimals
};

extern TQXCK282* QXCK282;
