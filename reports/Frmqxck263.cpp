#include "reports/Frmqxck263.h"

TQXCK263* QXCK263 = nullptr;
TQXCK263F* QXCK263F = nullptr;

void TQXCK263::InitForm(const Trecord& rec) {
    QXCK263F = new TQXCK263F(this);
    Start(rec, QXCK263F);
}

QString TQXCK263::RowSource(const QString& condition) const {
    using qx::reports::whereClause;
    return qx::reports::pseudoYearRows() +
           " SELECT convert(varchar(20),YEAR(BDATE))+'进' as YY, MONTH(BDATE) as MM,MONEY  FROM D8101A INNER JOIN D8101 ON "
           "D8101A.NOID = D8101.NOID " +
           whereClause(condition) + " UNION  ALL " + " SELECT convert(varchar(20),YEAR(BDATE))+'退' as YY, MONTH(BDATE) as MM,0-sMONEY " +
           " FROM D8102A INNER JOIN D8102 ON D8102A.NOID = D8102.NOID " + whereClause(condition);
}
