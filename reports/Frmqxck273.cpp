#include "reports/Frmqxck273.h"

#include <QVBoxLayout>

TQXCK273* QXCK273 = nullptr;
TQXCK273F* QXCK273F = nullptr;

TQXCK273::TQXCK273(QWidget* Owner) : TFrm_AnnualReport(Owner, "QXCK273", "销售年报表(销售额)") {
    Lab_Note = new QLabel("系统提示：（销售=销售开单+POS销售） （退换=销售退货+POS销售退换）  ", this);
    Lab_Note->setObjectName("Lab_Note");
    Lab_Note->setStyleSheet("color: blue");
    MainLayout()->addWidget(Lab_Note);
}

void TQXCK273::InitForm(const Trecord& rec) {
    QXCK273F = new TQXCK273F(this);
    Start(rec, QXCK273F);
}

QString TQXCK273::RowSource(const QString& condition) const {
    using qx::reports::whereClause;
    const QString andCondition = condition.isEmpty() ? QString() : " AND " + condition;
    return qx::reports::pseudoYearRows() +
           " SELECT convert(varchar(20),YEAR(BDATE))+' 销售' as YY, MONTH(BDATE) as MM,SMONEY  FROM D8201A INNER JOIN D8201 ON "
           "D8201A.NOID = D8201.NOID " +
           whereClause(condition) + " UNION  ALL " + " SELECT convert(varchar(20),YEAR(BDATE))+' 销售' as YY, MONTH(BDATE) as MM,SMONEY " +
           " FROM v_D712 A  WHERE (A.S0+A.S1+A.S2+A.S3+A.S4+A.S5+A.S6+A.S7+A.S8+A.S9)>0" + andCondition + " UNION  ALL " +
           " SELECT convert(varchar(20),YEAR(BDATE))+'退换' as YY, MONTH(BDATE) as MM,0-sMONEY " +
           " FROM D8202A INNER JOIN D8202 ON D8202A.NOID = D8202.NOID " + whereClause(condition) + " UNION  ALL " +
           " SELECT convert(varchar(20),YEAR(BDATE))+'退换' as YY, MONTH(BDATE) as MM,SMONEY " +
           " FROM V_D712 A WHERE (A.S0+A.S1+A.S2+A.S3+A.S4+A.S5+A.S6+A.S7+A.S8+A.S9)<0" + andCondition;
}
