#pragma once
// What the purchase (263) and sales (273) annual reports share: the condition dialog (a date
// range defaulting to the current year, an optional style) and the report form that hands its
// row source of (year label, month, amount) to the cross-tab procedure, so that every year label
// becomes a row with twelve month columns and a year total.
//
// The row source starts with the pseudo-year "1920": one row per month listed in sys_GROUP 263
// with amount 0, so that the cross-tab has every month column even in a year without data. The
// procedure returns that row like any other; the report takes it out of the grid after each run.
#include <QLabel>

#include "framework/Controls.h"
#include "framework/Frm_Base.h"
#include "framework/Frm_Base_Qry.h"

class QToolButton;

namespace qx::reports {

// The year label of the pseudo-year rows.
inline const QString kPseudoYear = QStringLiteral("1920");

// The first piece of every annual row source: the pseudo-year's month rows from sys_GROUP 263,
// followed by the union with the caller's first select.
QString pseudoYearRows();

// " where " + condition, nothing for an empty condition.
QString whereClause(const QString& condition);

// The month fields "1".."12" and their titles "一月".."十二月".
QStringList monthFields();
QStringList monthTitles();

}  // namespace qx::reports

class TFrm_AnnualFilter : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    TFrm_AnnualFilter(QWidget* Owner, const QString& name, const QString& caption);

    void FormCreate();
    void InitForm() override;
    void btn_okClick(QObject* Sender) override;
    void datechange(QObject* Sender);
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;

    TDateEdit* BDATE;
    TDateEdit* EDATE;
    QLabel* titDATE;
    QToolButton* btn_dateset;
    TLinkEdit* K_ID;
    QLabel* K_NAME;
    TFrm_Sys_LINK* StyleLink = nullptr;
};

class TFrm_AnnualReport : public TFrm_Base_Qry {
    Q_OBJECT
public:
    TFrm_AnnualReport(QWidget* Owner, const QString& name, const QString& caption);

    void FormCreate();
    // Base InitForm, the summed month fields, the dialog, the query action.
    void Start(const Trecord& rec, TFrm_AnnualFilter* dialog);
    void GetData() override;
    void Act_LocateExecute(QObject* Sender) override;
    void Act_RefreshExecute(QObject* Sender) override;
    // Bars per selected year label over the months.
    qx::chart::ChartSpec ChartSpec() const override;

    // The row source of (year label, month, amount) for a condition of the dialog.
    virtual QString RowSource(const QString& condition) const = 0;
    // The cross-tab call around the row source of the dialog's last condition.
    QString BuildSql() const;

    QLabel* Lab_Head;  // "物料资料："
    TFrm_AnnualFilter* Filter = nullptr;

private:
    void DropPseudoYear();
    void ShowColumns();
};
