#pragma once
// The sales progress: per style, the quantity sold on each day of a period of at most 60 days
// (one column per day, grouped under its month; Sundays in dark red on request), the current
// stock and the latest receiving date, through the cross-tab procedure with headers.
#include "framework/Frm_Base_Qry.h"

class TQXCK283F;

class TQXCK283 : public TFrm_Base_Qry {
    Q_OBJECT
public:
    explicit TQXCK283(QWidget* Owner);

    void InitForm(const Trecord& rec) override;
    void FormCreate();
    void Act_LocateExecute(QObject* Sender) override;
    void Act_RefreshExecute(QObject* Sender) override;
    // Column order and titles: style, name, unit, latest receipt, stock, the days, the total.
    void AdoQry_MainAfterOpen(TDataSet* DataSet);
    // The latest receiving date as "YYYY-MM-DD" whatever form the database hands it in.
    void DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params) override;

    // The row source (style, "YYYYMM|DD", quantity) and the procedure call around it.
    QString RowSource() const;
    QString BuildSql() const;

    // Lines of the sold quantity per style over the days of the run.
    qx::chart::ChartSpec ChartSpec() const override;
    // The day fields of the last run, in date order.
    QStringList DayFields() const { return dayFields_; }
    // True when the field is a day column falling on a Sunday.
    static bool IsSunday(const QString& dayField);

    QLabel* Lab_Note;  // where the latest date comes from
    TQXCK283F* Filter = nullptr;

private:
    QStringList dayFields_;
};

extern TQXCK283* QXCK283;
