#pragma once
// A shop database in a temporary folder for the setup screens: the company row, the mobile page
// rows, two warehouses, a class, a size group, colours and styles with stock; every statement
// sent is recorded, messages go to a scripted sink, modal dialogs to a handler the test sets.
#include <QDir>
#include <QFile>
#include <QTextStream>
#include <functional>

#include "tests/support/GoldenStatements.h"
#include "tests/support/ShopDatabaseTest.h"

namespace qx::test {

inline QString sourceDir() { return QString::fromLocal8Bit(qgetenv("QXCK_SOURCE_DIR")); }
inline QString sheetFile(const QString& name) { return sourceDir() + "/tests/setup/sheets/" + name; }
inline QString templateFile(const QString& name) { return sourceDir() + "/setup/templates/" + name; }

// Expected statements kept as data: tests/setup/golden/NAME (UTF-8, the trailing newline of the
// file is not part of the text).
inline QString golden(const QString& name) { return goldenBatch("setup/golden/" + name); }

// EXPECT_EQ(actual, golden(name)), or with QXCK_UPDATE_GOLDEN set, writes the file instead (to
// refresh expected statements after a deliberate change; review the diff).
#define EXPECT_GOLDEN(actual, name)                                                            \
    do {                                                                                       \
        if (qEnvironmentVariableIsSet("QXCK_UPDATE_GOLDEN")) {                                 \
            QFile out(sourceDir() + "/tests/setup/golden/" + QString(name));                  \
            ASSERT_TRUE(out.open(QIODevice::WriteOnly));                                       \
            out.write((QString(actual) + "\n").toUtf8());                                    \
        }                                                                                      \
        EXPECT_EQ(actual, golden(name));                                                       \
    } while (false)

class SetupTest : public ShopDatabaseTest {
protected:
    void seed() override {
        exec("INSERT INTO sys_co (CO, PARAM, PriceLen, AmountLen, QtyLen, ck_date, BACKDAY) VALUES "
             "('测试服饰', '', 2, 2, 0, 25, 7)");
        seedUserAndWarehouses(*db);
        for (int i = 1; i <= 10; ++i)
            exec(QString("INSERT INTO sys_web (id, field_table, field_name, field_width, field_show, field_type, "
                         "field_order) VALUES (%1, 'cg', '文字%1', 0, %1, 'm', %1)")
                     .arg(i));
        exec("INSERT INTO sys_web VALUES (11, 'kc', '款号', 80, 1, '', 1)");
        exec("INSERT INTO sys_web VALUES (12, 'kc', '库存', 60, 1, '', 2)");
        exec("INSERT INTO sys_web VALUES (13, 'CG', '进货数', 60, 0, '', 1)");
        exec("INSERT INTO sys_user_ck VALUES ('U1', '02', 0)");
        exec("INSERT INTO d1004 (CLASS_ID, CLASS_NAME) VALUES ('01', '上衣')");
        exec("INSERT INTO d1004 (CLASS_ID, CLASS_NAME) VALUES ('02', '裤装')");
        exec("INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2) VALUES ('01', '服装', 'S', 'M', 'L')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('01', '红色')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('02', '黑色')");
        const char* styles[][4] = {{"K01", "01", "衬衫", "99"}, {"K02", "01", "T恤", "59"},
                                   {"K03", "02", "长裤", "159"}, {"K04", "02", "短裤", "89"}};
        for (auto& s : styles) {
            exec(QString("INSERT INTO d1800 (K_ID, M_ID, CLASS_ID, WL_NAME, PFJ, TMI) VALUES ('%1', '01', '%2', '%3', "
                         "%4, 2)")
                     .arg(s[0], s[1], s[2], s[3]));
            exec(QString("INSERT INTO d1801 VALUES ('%1', '%2', '01')").arg(QString(s[0]) + "01", s[0]));
        }
        // stock in 01 for K01, K02, K03; K04 only in 02
        exec("INSERT INTO d1802 (WL_ID, CK_ID, K0) VALUES ('K0101', '01', 5)");
        exec("INSERT INTO d1802 (WL_ID, CK_ID, K0) VALUES ('K0201', '01', 5)");
        exec("INSERT INTO d1802 (WL_ID, CK_ID, K0) VALUES ('K0301', '01', 5)");
        exec("INSERT INTO d1802 (WL_ID, CK_ID, K0) VALUES ('K0401', '02', 5)");
    }

    // The ExecSql arguments of a call as "funcNo|noid|mode".
    static QString arguments(const Call& c) { return c.funcNo + "|" + c.noid + "|" + c.mode; }
    bool opened(const QString& sql) const {
        for (const auto& s : statements(Call::Kind::OpenSql))
            if (s == sql) return true;
        return false;
    }
};

}  // namespace qx::test
