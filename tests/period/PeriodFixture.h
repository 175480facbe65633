#pragma once
// A small shop in a temporary SQLite database for the period screens: warehouses 01 and 02,
// size group 01 (S M L, the fourth size without a name), styles K01 (may go negative) and K02
// (stock checked), each in colours 01 and 02; the open month starts 2026-03-15. Every statement
// the screens send is recorded; dialogs shown modally are handed to `onModal`.
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <ostream>
#include <vector>

#include "db/Database.h"
#include "framework/Frm_Base.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "tests/support/GoldenStatements.h"
#include "tests/support/RecordedCalls.h"
#include "tests/support/ShopDatabaseTest.h"

namespace qx::test {

using qx::dataop::Call;

// The statements of tests/period/golden/statements.sql by name, values filled in.
inline QString golden(const QString& name, const QHash<QString, QString>& values = {}) {
    static const GoldenStatements statements{"period/golden/statements.sql"};
    return statements.text(name, values);
}

class PeriodTest : public ShopDatabaseTest {
protected:
    void SetUp() override {
        ShopDatabaseTest::SetUp();
        G_ckid = "";  // the period screens run without a signed-in warehouse
        G_CM = 3;
        qx::ui::setModalHandler([this](TFrm_Base* dialog) {
            modalDialogs.push_back(dialog->objectName());
            if (onModal) return onModal(dialog);
            return int(mrCancel);
        });
    }
    // Writes stock rows directly, as only maintenance may.
    void maintain(const QString& sql) { execMaintenance(sql); }

    void seed() override {
        exec("INSERT INTO sys_co (CO, PARAM, CK_END_DATE) VALUES ('测试服饰', '', '2026-03-15')");
        seedUserAndWarehouses(*db);
        exec("INSERT INTO d1103 (KH_GYS_ID, KG_NAME) VALUES ('G01', '华美制衣')");
        exec("INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2, M3) VALUES ('01', '服装', 'S', 'M', 'L', '')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('01', '红色')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('02', '黑色')");
        exec("INSERT INTO d1004 (CLASS_ID, CLASS_NAME) VALUES ('C1', '衬衫类')");
        exec("INSERT INTO d1009 (PP_ID, PP_NAME) VALUES ('P1', '雅格')");
        exec("INSERT INTO d1800 (K_ID, M_ID, CLASS_ID, PP_ID, WL_NAME, DW_NAME, CGJ, TMI, CHECK_KC, WL_YS) VALUES "
             "('K01', '01', 'C1', 'P1', '衬衫', '件', 10, 0, 0, 1)");
        exec("INSERT INTO d1800 (K_ID, M_ID, CLASS_ID, PP_ID, WL_NAME, DW_NAME, CGJ, TMI, CHECK_KC, WL_YS) VALUES "
             "('K02', '01', 'C1', 'P1', '裤子', '条', 20, 0, 1, 0)");
        for (const char* sku : {"K0101", "K0102", "K0201", "K0202"})
            exec(QString("INSERT INTO d1801 VALUES ('%1', '%2', '%3')").arg(sku, QString(sku).left(3), QString(sku).mid(3)));
    }

    // An effective purchase receipt of one line (sizes S0..S3) into warehouse 01.
    void receive(const QString& noid, const QString& date, const QString& sku, const QList<int>& sizes, double price = 10,
                 const QString& warehouse = "01") {
        QStringList q;
        for (int i = 0; i < 10; ++i) q << QString::number(i < sizes.size() ? sizes[i] : 0);
        exec("INSERT INTO D8101 (T, NOID, KH_GYS_ID, CK_ID, BDATE, USER_ID) VALUES (1, '" + noid + "', 'G01', '" + warehouse + "', '" +
             date + "', 'U1');INSERT INTO D8101A VALUES ('" + noid + "', '" + sku + "', '" + sku.left(3) + "', '" + sku.mid(3) + "', '" +
             warehouse + "', " + q.join(", ") + ", " + QString::number(price) + ", 0, '')");
    }
    void sell(const QString& noid, const QString& date, const QString& sku, int qty, const QString& warehouse = "01") {
        exec("INSERT INTO D8201 (T, NOID, KH_GYS_ID, CK_ID, BDATE, USER_ID) VALUES (1, '" + noid + "', 'C01', '" + warehouse + "', '" +
             date + "', 'U1');INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0) VALUES ('" + noid + "', '" + sku + "', '" +
             sku.left(3) + "', '" + sku.mid(3) + "', '" + warehouse + "', " + QString::number(qty) + ")");
    }

    QString periodEnd() { return scalar("SELECT CK_END_DATE FROM sys_co").left(10); }

    QStringList modalDialogs;
    std::function<int(TFrm_Base*)> onModal;
};

}  // namespace qx::test
