#include "TsqlFixture.h"

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, SelectWithJoinWhereGroupAndOrder) {
    db.run("INSERT INTO d1802 (WL_ID, CK_ID, K0, K1, KC) VALUES ('K101', 'A1', 1, 2, 3);"
           "INSERT INTO d1802 (WL_ID, CK_ID, K0, K1, KC) VALUES ('K102', 'A1', 4, 0, 4);"
           "INSERT INTO d1802 (WL_ID, CK_ID, K0, K1, KC) VALUES ('K101', 'B2', 5, 5, 10)");
    EXPECT_EQ(db.run("SELECT D.CK_ID, d1007.CK_NAME, SUM(D.K0+D.K1) AS QTY FROM d1802 D INNER JOIN d1007 ON d1007.CK_ID=D.CK_ID "
                     "WHERE (D.KC>0) GROUP BY D.CK_ID, d1007.CK_NAME HAVING (SUM(D.K0)>0) ORDER BY D.CK_ID DESC"),
              "B2|Shop|10\nA1|Head|7");
}

}  // namespace
}  // namespace qx::tsql::testing
